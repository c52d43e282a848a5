// The values that describe a curve: what each is called, how it is written, what
// it may be.
//
// Options of the command line and keys of a JSON description are the same rows. A
// value has one written form, that of the option; the JSON reader turns its own
// into that.
//
//   integer      4000
//   frequency    12.5                        up to four decimals
//   points       0:0,4000:255                sample:level
//   colours      0:#ff0000,4000:#00ff00:hold a colour runs to the next one, or with
//                                            "hold" stays until it
//   levels       0,128,255
//   pins         0 or 0,1,2
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <velora/VeloraTypes.h>
#include "curves/ColorKey.h"
#include "platform/Status.h"

namespace velora::cli {

enum class CurveValueKind : uint8_t {
  kInteger,
  kFrequency,
  kFlag,
  kText,
  kPoints,
  kColours,
  kLevels,
  kPins,
  kCurves,  ///< descriptions of other curves; no option has it
};

struct CurveKey {
  const char* name;         ///< in JSON
  const char* option;       ///< long option; null when only JSON has it
  const char* placeholder;  ///< of the option's value
  CurveValueKind kind;
  int64_t least;     ///< of the integer, the position of a point, the pin
  int64_t most;      ///< inclusive
  const char* help;  ///< a sentence without its full stop
};

inline constexpr int64_t kLastPosition = UINT32_MAX;
inline constexpr int64_t kLastPin = kOutPinCount - 1;

inline constexpr CurveKey kCurveKeys[] = {
    {"name", "name", "TEXT", CurveValueKind::kText, 0, 0, "What pictures and columns call it"},
    {"start", "start", "SAMPLE", CurveValueKind::kInteger, 0, kLastPosition,
     "First sample of the curve"},
    {"end", "end", "SAMPLE", CurveValueKind::kInteger, 0, kLastPosition,
     "Last sample of the curve; without it, the last point's, else the sound's"},
    {"level", "level", "LEVEL", CurveValueKind::kInteger, 0, 255, "The constant level"},
    {"from", "from", "LEVEL", CurveValueKind::kInteger, 0, 255, "Level at the start"},
    {"to", "to", "LEVEL", CurveValueKind::kInteger, 0, 255, "Level one sample behind the end"},
    {"freq", "freq", "HZ", CurveValueKind::kFrequency, 0, 65535, "Cycles a second, as 12.5"},
    {"endFreq", "end-freq", "HZ", CurveValueKind::kFrequency, 0, 65535,
     "Sweep to this frequency; 0 for none"},
    {"phase", "phase", "SAMPLES", CurveValueKind::kInteger, 0, kLastPosition,
     "Where in its cycle the curve begins"},
    {"duty", "duty", "PERCENT", CurveValueKind::kInteger, 0, 100,
     "Share of a cycle at the high level, which comes first"},
    {"peak", "peak", "SAMPLE", CurveValueKind::kInteger, 0, kLastPosition,
     "Where the rise would end if the curve were one cycle: its share of each"},
    {"high", "high", "LEVEL", CurveValueKind::kInteger, 0, 255, "The high level"},
    {"low", "low", "LEVEL", CurveValueKind::kInteger, 0, 255, "The low level"},
    {"points", "points", "SAMPLE:LEVEL,...", CurveValueKind::kPoints, 0, kLastPosition,
     "The control points, in rising order"},
    {"levels", "levels", "LEVEL,...", CurveValueKind::kLevels, 0, 255, "A level for each sample"},
    {"window", "window", "SAMPLES", CurveValueKind::kInteger, 1, 65535,
     "Samples of which one loudness is taken"},
    {"map", "map", "LOUDNESS:LEVEL,...", CurveValueKind::kPoints, 0, 255,
     "Which level each loudness gives, both 0 to 255; bent as a spline"},
    {"threshold", "threshold", "MAGNITUDE", CurveValueKind::kInteger, 0, 65535,
     "Magnitude from which a sample is loud; full scale is 32768"},
    {"colours", "colours", "SAMPLE:#RRGGBB[:hold],...", CurveValueKind::kColours, 0, kLastPosition,
     "The colours, in rising order; each runs to the next one, or holds until it"},
    {"inverted", "inverted", nullptr, CurveValueKind::kFlag, 0, 1,
     "Deliver every level as 255 less the level"},
    {"pin", "pin", "PIN", CurveValueKind::kPins, 0, kLastPin,
     "The output, 0 to 31; three for a colour, as 0,1,2"},
    {"sampleFreq", "sample-freq", "HZ", CurveValueKind::kInteger, 1, 65535,
     "Levels a second that events take; without it, 30"},
    {"resolution", "resolution", "N", CurveValueKind::kInteger, 1, 255,
     "Parameter of an event for level 255; without it, 63"},
    {"curves", nullptr, nullptr, CurveValueKind::kCurves, 0, 0, "The two factors of a product"},
};

/// Null for a name that is none.
const CurveKey* FindCurveKey(std::string_view name);

/// A frequency as curves take it: whole + fraction / 10^digits.
struct DecimalFrequency {
  uint16_t whole = 0;
  uint16_t fraction = 0;
  uint8_t digits = 0;

  double Value() const;
  /// The fraction for a number of digits that is not below its own.
  uint16_t FractionAt(uint8_t wantedDigits) const;
};

using CurveValue =
    std::variant<int64_t, DecimalFrequency, bool, std::string, std::vector<tagVLRCurveCtrlPoint>,
                 std::vector<VLRColorKey>, std::vector<uint8_t>>;

/// Reads a value in its written form. Points and colours rise strictly and are two
/// at least; pins differ. The error does not name the key.
Status ReadCurveValue(const CurveKey& key, std::string_view text, CurveValue& value);

/// The values given for one curve.
class CurveFields {
 public:
  /// Reads and keeps the value; a key is given once only.
  Status Add(const CurveKey& key, std::string_view text);

  bool Has(std::string_view name) const { return fields_.contains(name); }

  /// The written form; empty without the key.
  std::string Written(std::string_view name) const;

  /// The value; `otherwise` without the key, which must be of that kind.
  int64_t Integer(std::string_view name, int64_t otherwise) const {
    const auto* value = Find<int64_t>(name);
    return value ? *value : otherwise;
  }

  template <typename T>
  const T* Find(std::string_view name) const {
    const auto found = fields_.find(name);
    return found == fields_.end() ? nullptr : std::get_if<T>(&found->second.value);
  }

 private:
  struct Field {
    CurveValue value;
    std::string written;
  };
  std::map<std::string_view, Field> fields_;  // by CurveKey::name
};

}  // namespace velora::cli
