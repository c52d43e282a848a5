// Events and silence regions as text: JSON, CSV and label tracks.
//
//   JSON    {"events": [{"sample", "type", "param", "text"}], "regions": [{"start", "length"}]};
//           other keys are passed over, so that what `velora events --json` prints
//           can be read again
//   CSV     kind,sample,length,type,param
//           event,800,,4100,7
//           silence,2000,400,,
//   labels  start, end and label with tabs between, the times in seconds with six
//           decimals; the label as in a wave file: (4100,7) or SILENCE
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Status.h"

namespace velora {
class C_ActionEventMgr;
}

namespace velora::cli {

struct EventRow {
  uint32_t sample = 0;
  int32_t type = 0;
  int32_t param = 0;
  std::string text;
};

struct RegionRow {
  uint32_t start = 0;
  uint32_t length = 0;
};

/// Both in ascending order of position once they come from a sound.
struct EventList {
  std::vector<EventRow> events;
  std::vector<RegionRow> regions;
};

enum class EventForm { kJson, kCsv, kLabels };

EventList ListEvents(const C_ActionEventMgr& manager);

/// Puts the list in place of all that the manager holds. Rows with one position keep
/// their order.
void StoreEvents(const EventList& list, C_ActionEventMgr& manager);

/// By a file's extension: .json, .csv, .txt (labels). An error for any other.
Result<EventForm> FormOfName(const std::string& path);

/// JSON alone is not made here: it has the sound's facts too.
std::string MakeCsv(const EventList& list);
std::string MakeLabels(const EventList& list, uint32_t rate);

/// Adds the rows of a text to the list. The error names the line or the key. Labels
/// that stand for no event are counted in `skipped`.
Status ParseEvents(const std::string& text, EventForm form, uint32_t rate, EventList& list,
                   size_t* skipped);

/// One number that fills the whole text.
Status ParseField(std::string_view text, const char* name, uint32_t* value);
Status ParseField(std::string_view text, const char* name, int32_t* value);

/// The fields of a line between its separators.
std::vector<std::string_view> SplitFields(std::string_view line, char separator);

}  // namespace velora::cli
