// The numbers of a project: what the host's getters answer, each a key of its file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Status.h"

namespace velora {

enum class Fact : uint8_t {
  // [Project]
  kVersion,
  kSystemClock,
  kMode,
  // [Resources]
  kTimerLoadA,
  kTimerLoadB,
  kTimerLoadC,
  kTimerLoadD,
  kChannelTotal,
  kTimerPlan,
  kGroupTimerLoad0,
  kOptionA,
  kOptionB,
  kOptionC,
  kOptionD,
  kGenValueA,
  kGenValueB,
  kGenValueC,
  kAudioStackFlag,
  // [Outputs]
  kUserMapped,
  kTimerFlags,
  kFirstTimerIndex,
  kTimerRecord,
  kColorCount,
  kSensorModeA,
  kSensorModeB,
  kLvdLevelCount,
  // [Script]
  kOutputWord,
  kMatrixCountA,
  kMatrixCountB,
  kSinglePinCount,
  kInputPinCount,
  kOutputCountA,
  kFixedPinCount,
  kOutputCountB,
  kFeatureFlags,
  kSecondLevelFlag,
  kFeatureKey,
  kEventCount,
  kCount,
};

inline constexpr char kProjectSection[] = "Project";
inline constexpr char kSoundsSection[] = "Sounds";
inline constexpr char kOutputsSection[] = "Outputs";
inline constexpr char kResourcesSection[] = "Resources";
inline constexpr char kScriptSection[] = "Script";
inline constexpr char kSettingsSection[] = "Settings";
inline constexpr char kPartNumberKey[] = "Part";

/// What the file and the messages know of a fact.
struct FactRow {
  Fact fact;
  const char* section;
  const char* key;
  int64_t least;  ///< smallest value, inclusive
  int64_t most;   ///< largest value, inclusive
  int64_t fallback;
  bool hex;  ///< written in hexadecimal
  const char* words;
  bool optional = false;  ///< whether the file has it matters, not only its value
};

/// In the order of Fact.
std::span<const FactRow> AllFacts();
const FactRow& RowOf(Fact fact);

/// Null for a key that is none. Sections have no case, keys do.
const FactRow* FindFact(std::string_view section, std::string_view key);

/// The facts of one project.
class FactValues {
 public:
  /// The value, or the fact's default where the file says nothing.
  int64_t Get(Fact fact) const;
  bool Has(Fact fact) const { return values_[static_cast<size_t>(fact)].has_value(); }
  void Set(Fact fact, int64_t value) { values_[static_cast<size_t>(fact)] = value; }

 private:
  std::array<std::optional<int64_t>, static_cast<size_t>(Fact::kCount)> values_;
};

/// A whole number in decimal or, behind "0x", in hexadecimal, from `least` to `most`.
/// The message says what is wrong with the text.
Result<int64_t> ParseWhole(std::string_view text, int64_t least, int64_t most);

/// The number as the row's key is written.
std::string FactText(const FactRow& row, int64_t value);

}  // namespace velora
