// The kinds of curves: what each takes, and its levels.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "CurveKeys.h"
#include "platform/Status.h"

namespace velora::cli {

struct CurveBuild;

/// A key that a kind takes.
struct KindKey {
  static constexpr int32_t kRequired = -1;
  static constexpr int32_t kOptional = -2;  ///< left out, it counts for nothing or is worked out

  const char* key;
  int32_t otherwise = kOptional;  ///< the integer that counts without the key, or one of these
};

struct CurveKind {
  const char* name;
  const char* summary;            ///< without a full stop
  std::span<const KindKey> keys;  ///< beside those that every curve has
  enum Needs : uint8_t { kNothing, kRate, kSound } needs;
  uint8_t channels;  ///< levels for each sample: 1, or 3 for a colour
  Status (*make)(CurveBuild& build);
};

std::span<const CurveKind> AllCurveKinds();

/// Null for a name that is none.
const CurveKind* FindCurveKind(std::string_view name);

/// "'sin' is no kind of curve; did you mean 'sine'?"
Status NoSuchKind(std::string_view name);

/// Where a curve stands: by itself, or as a factor of a product, which has no name
/// and no output.
enum class CurveRole : uint8_t { kLane, kFactor };

/// The names of all keys that a curve of the kind takes, in the order of kCurveKeys.
std::vector<const char*> KeysOf(const CurveKind& kind, CurveRole role);

/// Good for a key that the kind takes, otherwise "sine has no 'duti'", with the
/// likely spelling or all that it has.
Status CheckTakesKey(const CurveKind& kind, CurveRole role, std::string_view key);

/// What `velora curve --kinds` prints: every kind with its keys, and every key.
std::string CurveKindsText();

/// A curve as a person describes it.
struct CurveRequest {
  const CurveKind* kind = nullptr;
  CurveFields fields;
  std::vector<CurveRequest> parts;  ///< the factors of a product
  std::string place;                ///< for messages: "curves[2]"; empty for one curve
};

/// What all curves of one run share.
struct CurveSetting {
  uint32_t rate = 0;  ///< samples a second; 0 when nobody said
  bool hasSound = false;
  std::span<const int16_t> sound = {};  ///< mono
  uint32_t sampleFreq = 30;
  uint32_t resolution = 63;
};

/// The levels of one output.
struct CurveChannel {
  std::string name;  ///< "red" and so on in a colour, else empty
  std::optional<uint8_t> pin;
  std::vector<uint8_t> levels;  ///< of the samples from the lane's start on
};

/// A curve with its levels.
struct CurveLane {
  const CurveKind* kind = nullptr;
  std::string name;
  std::string facts;  ///< the values given, in words
  uint32_t start = 0;
  uint32_t end = 0;  ///< inclusive, behind start
  uint32_t sampleFreq = 0;
  uint32_t resolution = 0;
  bool inverted = false;
  std::vector<tagVLRCurveCtrlPoint> points;  ///< as given, where there are any
  std::vector<CurveChannel> channels;

  /// "glow", or "run.red" for a channel of a colour.
  std::string ColumnName(const CurveChannel& channel) const;
};

/// Checks all requests, and only then works out their levels. Lanes of one name
/// get numbers. Refuses what would take more than kMostLevels levels in all. The
/// error begins with the place.
inline constexpr uint64_t kMostLevels = uint64_t{1} << 28;
Result<std::vector<CurveLane>> MakeCurveLanes(std::span<const CurveRequest> requests,
                                              const CurveSetting& setting);

}  // namespace velora::cli
