#include "audio/WaveFileUtil/WaveLabels.h"

#include <cstdio>

#include "audio/WaveFileUtil/EventCollector.h"
#include "audio/wavedata/ActionEventMgr.h"
#include "audio/wavedata/WavDataCueInfo.h"
#include "audio/wavedata/WavDataListInfo.h"
#include "foundation/AsciiText.h"

namespace velora {
namespace {

constexpr std::string_view kSilenceLabel = "SILENCE";
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr size_t kMaxNumberLength = 31;

/// The two actions whose labels stand in square brackets.
constexpr bool IsSquareAction(int32_t type) { return type == 0xFD0 || type == 0xFD1; }

/// C's atoi, but for a number beyond 32 bits, of which it says nothing.
int32_t ReadNumber(std::string_view text) {
  text = TrimLeft(text.substr(0, kMaxNumberLength), kWhiteSpace);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  uint32_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    value = value * 10 + static_cast<uint32_t>(c - '0');
  }
  return static_cast<int32_t>(negative ? 0 - value : value);
}

}  // namespace

std::optional<LabelPair> ParsePair(std::string_view text, LabelBrackets brackets) {
  const size_t open = text.find(brackets.open);
  if (open == std::string_view::npos) return std::nullopt;
  const size_t comma = text.find(',', open + 1);
  if (comma == std::string_view::npos) return std::nullopt;
  const size_t close = text.find(brackets.close, comma + 1);
  if (close == std::string_view::npos) return std::nullopt;
  return LabelPair{ReadNumber(text.substr(open + 1, comma - open - 1)),
                   ReadNumber(text.substr(comma + 1, close - comma - 1))};
}

std::vector<LabelPair> ParseLabel(std::string_view text, LabelBrackets brackets,
                                  LabelConverter* converter) {
  if (const std::optional<LabelPair> pair = ParsePair(text, brackets)) return {*pair};
  std::vector<std::string> strings;
  if (!converter || !converter->Convert(text, strings)) return {};

  std::vector<LabelPair> pairs;
  bool lastParsed = false;
  for (const std::string& string : strings) {
    const std::optional<LabelPair> pair = ParsePair(string, brackets);
    lastParsed = pair.has_value();
    if (pair) pairs.push_back(*pair);
    if (pairs.size() == kMaxLabelPairs) break;
  }
  if (!lastParsed) pairs.clear();
  return pairs;
}

bool IsSilenceLabel(std::string_view text) {
  return EqualsNoCase(Trim(text, kWhiteSpace), kSilenceLabel);
}

std::string MakeEventLabel(int32_t type, int32_t param) {
  char text[32];
  const char* form = IsSquareAction(type) ? "[%d,%d]" : "(%d,%d)";
  std::snprintf(text, sizeof text, form, type, param);
  return text;
}

void LabelsToEvents(C_WavDataCueInfo& cues, const C_WavDataListInfo& labels,
                    LabelConverter* converter, C_ActionEventMgr& events) {
  EventCollector found;
  for (const C_WavDataListInfo::Label& label : labels.Labels()) {
    const C_WavDataCueInfo::C_CuePoint* point = cues.FindById(label.cueId);
    if (!point) continue;
    const uint32_t position = point->GetPosition();
    std::vector<LabelPair> pairs = ParseLabel(label.Text(), kRoundBrackets, converter);
    if (pairs.empty() && IsSilenceLabel(label.Text())) {
      found.AddRegion(position, labels.GetTextLength(label.cueId));
      continue;
    }
    if (pairs.empty()) pairs = ParseLabel(label.Text(), kSquareBrackets, converter);
    for (const LabelPair& pair : pairs) found.AddEvent(pair.type, position, pair.param);
  }
  found.AddTo(events);
}

bool EventsToLabels(const C_ActionEventMgr& events, C_WavDataCueInfo& cues,
                    C_WavDataListInfo& labels) {
  labels.ClearLabels();
  labels.ClearTexts();
  uint32_t id = 0;
  const auto add = [&](uint32_t position, const char* label) {
    ++id;
    return cues.SetPoint(id, position, "data", 0, 0, position) && labels.AddLabel(id, label);
  };
  for (const C_ActionEvent* event : events.Events()) {
    const std::string label = MakeEventLabel(event->GetType(), event->GetParam());
    if (!add(event->GetSample(), label.c_str())) return false;
  }
  for (const C_ActionSilenceRegion* region : events.Regions()) {
    if (!add(region->GetStart(), kSilenceLabel.data())) return false;
    if (!labels.AddText(id, region->GetLength())) return false;
  }
  return true;
}

}  // namespace velora
