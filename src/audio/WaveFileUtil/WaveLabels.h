// Labels of a wave file that stand for action events and silence.
//
// A label hangs on a cue point and says what happens there:
//   (4100,7)   action 4100 with parameter 7
//   [4048,2]   the same form for the two actions written in square brackets
//   SILENCE    a silence region; its length stands in the text record of the point
// Any other label is a note for people and makes no event.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velora {

class C_ActionEventMgr;
class C_WavDataCueInfo;
class C_WavDataListInfo;

/// Turns label forms of other programs into the system's own. One object serves one
/// file, so that what it remembers never touches another file.
class LabelConverter {
 public:
  virtual ~LabelConverter() = default;

  /// Appends what the text stands for, one string a pair. False, with nothing
  /// appended, when the text is of no known form.
  virtual bool Convert(std::string_view text, std::vector<std::string>& strings) = 0;
};

/// An action and its parameter.
struct LabelPair {
  int32_t type;
  int32_t param;

  friend bool operator==(const LabelPair&, const LabelPair&) = default;
};

/// A pair of delimiters.
struct LabelBrackets {
  char open;
  char close;
};
inline constexpr LabelBrackets kRoundBrackets{'(', ')'};
inline constexpr LabelBrackets kSquareBrackets{'[', ']'};

/// At most so many pairs are taken from one label.
inline constexpr size_t kMaxLabelPairs = 256;

/// The first pair in the text: the opening delimiter, the first comma behind it, the
/// first closing delimiter behind that, and between them two numbers as C's atoi reads
/// them, from at most 31 characters each. Numbers keep their low 32 bits.
std::optional<LabelPair> ParsePair(std::string_view text, LabelBrackets brackets);

/// All pairs that a label stands for, empty when it stands for none. A label that is
/// no pair itself goes through the converter, which may be null; if the last of its
/// strings is no pair, none counts.
std::vector<LabelPair> ParseLabel(std::string_view text, LabelBrackets brackets,
                                  LabelConverter* converter);

/// True for SILENCE in any case with white space around it.
bool IsSilenceLabel(std::string_view text);

/// The label that stands for an action event.
std::string MakeEventLabel(int32_t type, int32_t param);

/// Adds the events and regions that the labels stand for, each at the position of the
/// first cue point with the label's id; labels without a point are passed over.
void LabelsToEvents(C_WavDataCueInfo& cues, const C_WavDataListInfo& labels,
                    LabelConverter* converter, C_ActionEventMgr& events);

/// Writes the events and then the regions as cue points with ids from 1 and their
/// labels. The labels are replaced; points with these ids are changed in their place,
/// all other points stay. False when memory is short.
bool EventsToLabels(const C_ActionEventMgr& events, C_WavDataCueInfo& cues,
                    C_WavDataListInfo& labels);

}  // namespace velora
