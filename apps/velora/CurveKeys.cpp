#include "CurveKeys.h"

#include <algorithm>
#include <charconv>

#include "EventText.h"

namespace velora::cli {
namespace {

constexpr size_t kMostDecimals = 4;  // 9999 is the longest fraction that a curve holds

std::string Quoted(std::string_view text) {
  constexpr size_t kShown = 40;
  const bool cut = text.size() > kShown;
  return "'" + std::string(text.substr(0, kShown)) + (cut ? "...'" : "'");
}

Result<int64_t> ReadInteger(std::string_view text, int64_t least, int64_t most) {
  int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, value);
  if (parsed.ec == std::errc() && parsed.ptr == end && value >= least && value <= most) {
    return value;
  }
  return Status::Error(Quoted(text) + " is not an integer from " + std::to_string(least) + " to " +
                       std::to_string(most));
}

Result<DecimalFrequency> ReadFrequency(std::string_view text, int64_t most) {
  const size_t dot = text.find('.');
  std::string_view decimals = dot == text.npos ? std::string_view() : text.substr(dot + 1);
  decimals = decimals.substr(0, decimals.find_last_not_of('0') + 1);
  if (decimals.size() > kMostDecimals) {
    return Status::Error(Quoted(text) + " has more than four decimals, which curves do not hold");
  }
  const auto whole = ReadInteger(text.substr(0, dot), 0, most);
  if (!whole || !std::ranges::all_of(decimals, [](char c) { return c >= '0' && c <= '9'; })) {
    return Status::Error(Quoted(text) + " is not a frequency from 0 to " + std::to_string(most) +
                         " Hz");
  }
  DecimalFrequency frequency;
  frequency.whole = static_cast<uint16_t>(whole.Value());
  frequency.digits = static_cast<uint8_t>(decimals.size());
  for (const char c : decimals) {
    frequency.fraction = static_cast<uint16_t>(frequency.fraction * 10 + (c - '0'));
  }
  return frequency;
}

Status ReadPoints(std::string_view text, const CurveKey& key, CurveValue& value) {
  std::vector<tagVLRCurveCtrlPoint> points;
  for (const std::string_view item : SplitFields(text, ',')) {
    const auto parts = SplitFields(item, ':');
    if (parts.size() != 2) return Status::Error(Quoted(item) + " is not POSITION:LEVEL");
    const auto position = ReadInteger(parts[0], key.least, key.most);
    if (!position) return position.GetStatus();
    const auto level = ReadInteger(parts[1], 0, 255);
    if (!level) return level.GetStatus();
    const auto sample = static_cast<uint32_t>(position.Value());
    if (!points.empty() && sample <= points.back().Sample) {
      return Status::Error("the position " + std::to_string(sample) + " does not lie behind " +
                           std::to_string(points.back().Sample));
    }
    points.push_back({sample, static_cast<uint8_t>(level.Value())});
  }
  if (points.size() < 2) return Status::Error("there must be two points at least");
  if (points.size() > UINT16_MAX) return Status::Error("there are more than 65535 points");
  value = std::move(points);
  return {};
}

Result<uint32_t> ReadColour(std::string_view text) {
  std::string_view digits = text;
  if (digits.starts_with('#')) digits.remove_prefix(1);
  uint32_t colour = 0;
  const char* const end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, colour, 16);
  if (digits.size() != 6 || parsed.ec != std::errc() || parsed.ptr != end) {
    return Status::Error(Quoted(text) + " is not a colour, as #ff8000");
  }
  // Red is the lowest byte of a key.
  return (colour >> 16) | (colour & 0xFF00) | ((colour & 0xFF) << 16);
}

Status ReadColours(std::string_view text, const CurveKey& key, CurveValue& value) {
  std::vector<VLRColorKey> colours;
  for (const std::string_view item : SplitFields(text, ',')) {
    const auto parts = SplitFields(item, ':');
    const bool holds = parts.size() == 3 && parts[2] == "hold";
    if (parts.size() != 2 && !holds) {
      return Status::Error(Quoted(item) + " is not SAMPLE:#RRGGBB nor SAMPLE:#RRGGBB:hold");
    }
    const auto position = ReadInteger(parts[0], key.least, key.most);
    if (!position) return position.GetStatus();
    const auto colour = ReadColour(parts[1]);
    if (!colour) return colour.GetStatus();
    const auto sample = static_cast<uint32_t>(position.Value());
    if (!colours.empty() && sample <= colours.back().Sample) {
      return Status::Error("the position " + std::to_string(sample) + " does not lie behind " +
                           std::to_string(colours.back().Sample));
    }
    colours.push_back({sample, colour.Value(), holds ? 0u : 1u});
  }
  if (colours.size() < 2) return Status::Error("there must be two colours at least");
  value = std::move(colours);
  return {};
}

Status ReadBytes(std::string_view text, const CurveKey& key, CurveValue& value) {
  std::vector<uint8_t> bytes;
  for (const std::string_view item : SplitFields(text, ',')) {
    const auto byte = ReadInteger(item, key.least, key.most);
    if (!byte) return byte.GetStatus();
    bytes.push_back(static_cast<uint8_t>(byte.Value()));
  }
  value = std::move(bytes);
  return {};
}

Status ReadPins(std::string_view text, const CurveKey& key, CurveValue& value) {
  if (Status read = ReadBytes(text, key, value); !read) return read;
  std::vector<uint8_t> sorted = std::get<std::vector<uint8_t>>(value);
  std::ranges::sort(sorted);
  if (std::ranges::adjacent_find(sorted) != sorted.end()) {
    return Status::Error(Quoted(text) + " names a pin twice");
  }
  return {};
}

template <typename T>
Status Store(const Result<T>& result, CurveValue& value) {
  if (!result) return result.GetStatus();
  value = result.Value();
  return {};
}

}  // namespace

const CurveKey* FindCurveKey(std::string_view name) {
  const auto* found =
      std::ranges::find_if(kCurveKeys, [name](const CurveKey& key) { return key.name == name; });
  return found == std::end(kCurveKeys) ? nullptr : found;
}

double DecimalFrequency::Value() const {
  double power = 1;
  for (int i = 0; i < digits; ++i) power *= 10;
  return whole + fraction / power;
}

uint16_t DecimalFrequency::FractionAt(uint8_t wantedDigits) const {
  uint32_t scaled = fraction;
  for (int i = digits; i < wantedDigits; ++i) scaled *= 10;
  return static_cast<uint16_t>(scaled);
}

Status ReadCurveValue(const CurveKey& key, std::string_view text, CurveValue& value) {
  switch (key.kind) {
    case CurveValueKind::kInteger:
      return Store(ReadInteger(text, key.least, key.most), value);
    case CurveValueKind::kFrequency:
      return Store(ReadFrequency(text, key.most), value);
    case CurveValueKind::kFlag:
      value = text == "true";
      return {};
    case CurveValueKind::kText:
      value = std::string(text);
      return {};
    case CurveValueKind::kPoints:
      return ReadPoints(text, key, value);
    case CurveValueKind::kColours:
      return ReadColours(text, key, value);
    case CurveValueKind::kLevels:
      return ReadBytes(text, key, value);
    case CurveValueKind::kPins:
      return ReadPins(text, key, value);
    case CurveValueKind::kCurves:
      break;
  }
  return Status::Error("cannot be given here");
}

Status CurveFields::Add(const CurveKey& key, std::string_view text) {
  if (Has(key.name)) return Status::Error("is given twice");
  Field field;
  field.written = text;
  if (Status read = ReadCurveValue(key, text, field.value); !read) return read;
  fields_.emplace(key.name, std::move(field));
  return {};
}

std::string CurveFields::Written(std::string_view name) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? std::string() : found->second.written;
}

}  // namespace velora::cli
