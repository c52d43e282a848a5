#include "EventText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "FormatArgument.h"
#include "audio/WaveFileUtil/WaveLabels.h"
#include "audio/wavedata/ActionEventMgr.h"

namespace velora::cli {
namespace {

constexpr std::string_view kCsvHeading = "kind,sample,length,type,param";

template <typename T>
Status ParseInteger(std::string_view text, const char* name, T* value) {
  const char* end = text.data() + text.size();
  const auto [stopped, fault] = std::from_chars(text.data(), end, *value);
  if (fault == std::errc() && stopped == end) return {};
  return Status::Error(std::string(name) + " '" + std::string(text) + "' is not an integer from " +
                       std::to_string(std::numeric_limits<T>::min()) + " to " +
                       std::to_string(std::numeric_limits<T>::max()));
}

/// Lines without their ends, whichever of the two usual ones they have.
std::vector<std::string_view> SplitLines(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::vector<std::string_view> lines = SplitFields(text, '\n');
  for (std::string_view& line : lines) {
    if (line.ends_with('\r')) line.remove_suffix(1);
  }
  return lines;
}

Status AtLine(size_t index, const std::string& message) {
  return Status::Error("line " + std::to_string(index + 1) + ": " + message);
}

// ---- CSV --------------------------------------------------------------------

Status ParseCsvRow(std::string_view line, EventList& list) {
  const auto fields = SplitFields(line, ',');
  if (fields.size() != 5) {
    return Status::Error("has " + std::to_string(fields.size()) + " fields, not the 5 of '" +
                         std::string(kCsvHeading) + "'");
  }
  uint32_t sample = 0;
  if (Status status = ParseField(fields[1], "sample", &sample); !status) return status;
  if (fields[0] == "event") {
    EventRow row;
    row.sample = sample;
    if (Status status = ParseField(fields[3], "type", &row.type); !status) return status;
    if (Status status = ParseField(fields[4], "param", &row.param); !status) return status;
    list.events.push_back(row);
    return {};
  }
  if (fields[0] != "silence") {
    return Status::Error("kind '" + std::string(fields[0]) + "' is neither event nor silence");
  }
  RegionRow row;
  row.start = sample;
  if (Status status = ParseField(fields[2], "length", &row.length); !status) return status;
  list.regions.push_back(row);
  return {};
}

Status ParseCsv(const std::string& text, EventList& list) {
  const auto lines = SplitLines(text);
  if (lines.front() != kCsvHeading) {
    return AtLine(0, "is not the heading '" + std::string(kCsvHeading) + "'");
  }
  for (size_t i = 1; i < lines.size(); ++i) {
    if (lines[i].empty()) continue;
    if (Status row = ParseCsvRow(lines[i], list); !row) return AtLine(i, row.Message());
  }
  return {};
}

// ---- labels -----------------------------------------------------------------

Status ParseSeconds(std::string_view text, uint32_t rate, uint32_t* sample) {
  double seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, fault] = std::from_chars(text.data(), end, seconds);
  const double position = std::round(seconds * rate);
  if (fault != std::errc() || stopped != end || !(position >= 0 && position <= UINT32_MAX)) {
    return Status::Error("'" + std::string(text) + "' is not a time in the sound, in seconds");
  }
  *sample = static_cast<uint32_t>(position);
  return {};
}

Status ParseLabelRow(std::string_view line, uint32_t rate, EventList& list, size_t* skipped) {
  const auto fields = SplitFields(line, '\t');
  if (fields.size() != 3) {
    return Status::Error("has not the three fields start, end, label with tabs between");
  }
  uint32_t start = 0;
  uint32_t end = 0;
  if (Status status = ParseSeconds(fields[0], rate, &start); !status) return status;
  if (Status status = ParseSeconds(fields[1], rate, &end); !status) return status;
  std::vector<LabelPair> pairs = ParseLabel(fields[2], kRoundBrackets, nullptr);
  if (pairs.empty() && IsSilenceLabel(fields[2])) {
    if (end < start) return Status::Error("the silence ends before it starts");
    list.regions.push_back({start, end - start});
    return {};
  }
  if (pairs.empty()) pairs = ParseLabel(fields[2], kSquareBrackets, nullptr);
  for (const LabelPair& pair : pairs) list.events.push_back({start, pair.type, pair.param, {}});
  if (pairs.empty()) ++*skipped;
  return {};
}

Status ParseLabels(const std::string& text, uint32_t rate, EventList& list, size_t* skipped) {
  if (rate == 0) return Status::Error("the sound has no rate, so that times mean nothing");
  const auto lines = SplitLines(text);
  for (size_t i = 0; i < lines.size(); ++i) {
    // A line that begins with a backslash is the frequency range of the label above.
    if (lines[i].empty() || lines[i].starts_with('\\')) continue;
    if (Status row = ParseLabelRow(lines[i], rate, list, skipped); !row) {
      return AtLine(i, row.Message());
    }
  }
  return {};
}

// ---- JSON -------------------------------------------------------------------

/// An integer of the object that fits T; `otherwise` says what a missing key means.
template <typename T>
Status Take(const nlohmann::json& object, const char* key, T* value) {
  const auto found = object.find(key);
  if (found == object.end()) return Status::Error(std::string("has no \"") + key + "\"");
  if (found->is_number_integer()) {
    const bool large = found->is_number_unsigned() && found->get<uint64_t>() > INT64_MAX;
    const int64_t number = large ? INT64_MAX : found->get<int64_t>();
    if (number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max()) {
      *value = static_cast<T>(number);
      return {};
    }
  }
  return Status::Error(std::string("\"") + key + "\" is not an integer from " +
                       std::to_string(std::numeric_limits<T>::min()) + " to " +
                       std::to_string(std::numeric_limits<T>::max()));
}

Status TakeEvent(const nlohmann::json& object, EventList& list) {
  EventRow row;
  if (Status status = Take(object, "sample", &row.sample); !status) return status;
  if (Status status = Take(object, "type", &row.type); !status) return status;
  if (Status status = Take(object, "param", &row.param); !status) return status;
  if (const auto text = object.find("text"); text != object.end() && text->is_string()) {
    row.text = text->get<std::string>();
  }
  list.events.push_back(std::move(row));
  return {};
}

Status TakeRegion(const nlohmann::json& object, EventList& list) {
  RegionRow row;
  if (Status status = Take(object, "start", &row.start); !status) return status;
  if (Status status = Take(object, "length", &row.length); !status) return status;
  list.regions.push_back(row);
  return {};
}

Status TakeAll(const nlohmann::json& document, const char* key, EventList& list,
               Status (*take)(const nlohmann::json&, EventList&)) {
  const auto found = document.find(key);
  if (found == document.end()) return {};
  if (!found->is_array()) return Status::Error(std::string("\"") + key + "\" is not an array");
  for (size_t i = 0; i < found->size(); ++i) {
    const nlohmann::json& element = (*found)[i];
    const Status taken =
        element.is_object() ? take(element, list) : Status::Error("is not an object");
    if (!taken) {
      return Status::Error(std::string(key) + "[" + std::to_string(i) + "] " + taken.Message());
    }
  }
  return {};
}

Status ParseJson(const std::string& text, EventList& list) {
  nlohmann::json document;
  try {
    document = nlohmann::json::parse(text);
  } catch (const nlohmann::json::exception& error) {
    return Status::Error(std::string("is not JSON: ") + error.what());
  }
  if (!document.is_object() || !(document.contains("events") || document.contains("regions"))) {
    return Status::Error("is not an object with \"events\" or \"regions\"");
  }
  if (Status events = TakeAll(document, "events", list, TakeEvent); !events) return events;
  return TakeAll(document, "regions", list, TakeRegion);
}

}  // namespace

Status ParseField(std::string_view text, const char* name, uint32_t* value) {
  return ParseInteger(text, name, value);
}

Status ParseField(std::string_view text, const char* name, int32_t* value) {
  return ParseInteger(text, name, value);
}

std::vector<std::string_view> SplitFields(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  for (;;) {
    const size_t end = line.find(separator);
    fields.push_back(line.substr(0, end));
    if (end == std::string_view::npos) return fields;
    line.remove_prefix(end + 1);
  }
}

EventList ListEvents(const C_ActionEventMgr& manager) {
  EventList list;
  for (const C_ActionEvent* event : manager.Events()) {
    list.events.push_back(
        {event->GetSample(), event->GetType(), event->GetParam(), event->GetText()});
  }
  for (const C_ActionSilenceRegion* region : manager.Regions()) {
    list.regions.push_back({region->GetStart(), region->GetLength()});
  }
  return list;
}

void StoreEvents(const EventList& list, C_ActionEventMgr& manager) {
  // Ascending input is appended, so that equal positions keep their order.
  EventList sorted = list;
  std::ranges::stable_sort(sorted.events, {}, &EventRow::sample);
  std::ranges::stable_sort(sorted.regions, {}, &RegionRow::start);
  manager.ClearEvents();
  manager.ClearSilenceRegions();
  for (const EventRow& row : sorted.events) {
    (void)manager.AddEventAtSample(row.type, row.sample, row.text.c_str(), row.param);
  }
  for (const RegionRow& row : sorted.regions) {
    (void)manager.AddSilenceRegion(row.start, row.length);
  }
}

Result<EventForm> FormOfName(const std::string& path) {
  const std::string_view extension = ExtensionOf(path);
  if (extension == ".json") return EventForm::kJson;
  if (extension == ".csv") return EventForm::kCsv;
  if (extension == ".txt") return EventForm::kLabels;
  return Status::Error("the name does not end in .json, .csv or .txt; --as names the form");
}

std::string MakeCsv(const EventList& list) {
  std::string text = std::string(kCsvHeading) + "\n";
  for (const EventRow& row : list.events) {
    text += "event," + std::to_string(row.sample) + ",," + std::to_string(row.type) + "," +
            std::to_string(row.param) + "\n";
  }
  for (const RegionRow& row : list.regions) {
    text += "silence," + std::to_string(row.start) + "," + std::to_string(row.length) + ",,\n";
  }
  return text;
}

std::string MakeLabels(const EventList& list, uint32_t rate) {
  const auto line = [rate](double start, double end, const std::string& label) {
    char times[64];
    std::snprintf(times, sizeof times, "%.6f\t%.6f\t", rate ? start / rate : 0.0,
                  rate ? end / rate : 0.0);
    return times + label + "\n";
  };
  std::string text;
  for (const EventRow& row : list.events) {
    text += line(row.sample, row.sample, MakeEventLabel(row.type, row.param));
  }
  for (const RegionRow& row : list.regions) {
    text += line(row.start, double{1} * row.start + row.length, "SILENCE");
  }
  return text;
}

Status ParseEvents(const std::string& text, EventForm form, uint32_t rate, EventList& list,
                   size_t* skipped) {
  switch (form) {
    case EventForm::kJson:
      return ParseJson(text, list);
    case EventForm::kCsv:
      return ParseCsv(text, list);
    case EventForm::kLabels:
      return ParseLabels(text, rate, list, skipped);
  }
  return {};
}

}  // namespace velora::cli
