#include "CurveText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace velora::cli {
namespace {

struct Column {
  const CurveLane* lane;
  const CurveChannel* channel;
};

std::vector<Column> ColumnsOf(std::span<const CurveLane> lanes) {
  std::vector<Column> columns;
  for (const CurveLane& lane : lanes) {
    for (const CurveChannel& channel : lane.channels) columns.push_back({&lane, &channel});
  }
  return columns;
}

void AppendNumber(std::string& text, uint64_t number) {
  std::array<char, 20> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  text.append(digits.data(), end.ptr);
}

/// A name as one cell.
std::string Cell(const std::string& name) {
  if (name.find_first_of(",\"\n\r") == std::string::npos) return name;
  std::string quoted = "\"";
  for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

constexpr uint64_t kNoSample = UINT64_MAX;

/// The first sample from `from` on that any curve has.
uint64_t NextSample(std::span<const CurveLane> lanes, uint64_t from) {
  uint64_t next = kNoSample;
  for (const CurveLane& lane : lanes) {
    if (lane.end >= from) next = std::min(next, std::max<uint64_t>(lane.start, from));
  }
  return next;
}

}  // namespace

std::string CurvesCsv(std::span<const CurveLane> lanes) {
  const auto columns = ColumnsOf(lanes);
  std::string text = "sample";
  for (const Column& column : columns) text += "," + Cell(column.lane->ColumnName(*column.channel));
  text += "\n";
  for (uint64_t sample = NextSample(lanes, 0); sample != kNoSample;
       sample = NextSample(lanes, sample + 1)) {
    AppendNumber(text, sample);
    for (const Column& column : columns) {
      text += ',';
      if (sample < column.lane->start || sample > column.lane->end) continue;
      AppendNumber(text, column.channel->levels[sample - column.lane->start]);
    }
    text += '\n';
  }
  return text;
}

std::string CurvesJson(std::span<const CurveLane> lanes, uint32_t rate) {
  const auto line = [](const nlohmann::ordered_json& value) {
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  };
  std::string text =
      "{\n  \"rate\": " + (rate ? std::to_string(rate) : "null") + ",\n  \"curves\": [";
  bool isFirst = true;
  for (const Column& column : ColumnsOf(lanes)) {
    nlohmann::ordered_json object;
    object["name"] = column.lane->ColumnName(*column.channel);
    object["kind"] = column.lane->kind->name;
    object["start"] = column.lane->start;
    object["end"] = column.lane->end;
    object["pin"] = nullptr;
    if (column.channel->pin) object["pin"] = *column.channel->pin;
    std::string head = line(object);
    head.pop_back();
    text += (isFirst ? "\n    " : ",\n    ") + head + ",\"levels\":[";
    isFirst = false;
    for (const uint8_t level : column.channel->levels) {
      AppendNumber(text, level);
      text += ',';
    }
    text.back() = ']';
    text += '}';
  }
  return text + "\n  ]\n}\n";
}

Result<std::string> CurvesRaw(std::span<const CurveLane> lanes) {
  const auto columns = ColumnsOf(lanes);
  if (columns.size() != 1) {
    std::string names;
    for (const Column& column : columns) {
      names += (names.empty() ? "" : ", ") + column.lane->ColumnName(*column.channel);
    }
    return Status::Error("raw bytes hold one curve; --only names it, of " + names);
  }
  const auto& levels = columns.front().channel->levels;
  return std::string(levels.begin(), levels.end());
}

}  // namespace velora::cli
