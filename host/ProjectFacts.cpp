#include "host/ProjectFacts.h"

#include <algorithm>
#include <charconv>

#include "foundation/AsciiText.h"

namespace velora {
namespace {

constexpr int64_t kWord = 0xFFFF;
constexpr int64_t kDouble = 0xFFFFFFFF;
constexpr int64_t kLow = INT32_MIN;
constexpr int64_t kHigh = INT32_MAX;

constexpr const char* kP = kProjectSection;
constexpr const char* kR = kResourcesSection;
constexpr const char* kO = kOutputsSection;
constexpr const char* kS = kScriptSection;

constexpr FactRow kFacts[] = {
    {Fact::kVersion, kP, "Version", 1, 1, 1, false, "version of this form of file"},
    {Fact::kSystemClock, kP, "SystemClock", 1, kHigh, 8192000, false, "system clock in hertz"},
    {Fact::kMode, kP, "Mode", 1, 3, 1, false, "pins by 1 port, 2 OUT pin, 3 name of OUT pin"},

    {Fact::kTimerLoadA, kR, "TimerLoadA", 0, kWord, 0, false, "timer load A"},
    {Fact::kTimerLoadB, kR, "TimerLoadB", kLow, kHigh, 0, false, "timer load B"},
    {Fact::kTimerLoadC, kR, "TimerLoadC", 0, kDouble, 0, false, "timer load C"},
    {Fact::kTimerLoadD, kR, "TimerLoadD", 0, kDouble, 0, false, "timer load D"},
    {Fact::kChannelTotal, kR, "ChannelTotal", 0, kWord, 0, false, "channels in all"},
    {Fact::kTimerPlan, kR, "TimerPlan", kLow, kHigh, 0, false, "timer plan"},
    {Fact::kGroupTimerLoad0, kR, "GroupTimerLoad0", kLow, kHigh, 0, false, "timer load of group 0"},
    {Fact::kOptionA, kR, "OptionA", kLow, kHigh, 0, false, "option A"},
    {Fact::kOptionB, kR, "OptionB", kLow, kHigh, 0, false, "option B"},
    {Fact::kOptionC, kR, "OptionC", kLow, kHigh, 0, false, "option C"},
    {Fact::kOptionD, kR, "OptionD", kLow, kHigh, 0, false, "option D"},
    {Fact::kGenValueA, kR, "GenValueA", kLow, kHigh, 0, false, "generator value A"},
    {Fact::kGenValueB, kR, "GenValueB", kLow, kHigh, 0, false, "generator value B"},
    {Fact::kGenValueC, kR, "GenValueC", kLow, kHigh, 0, false, "generator value C"},
    {Fact::kAudioStackFlag, kR, "AudioStackFlag", kLow, kHigh, 0, false, "audio stack"},

    {Fact::kUserMapped, kO, "UserMapped", 0, 1, 0, false, "hand-made pin map in force"},
    {Fact::kTimerFlags, kO, "TimerFlags", 0, kDouble, 0, true, "timer flags"},
    {Fact::kFirstTimerIndex, kO, "FirstTimerIndex", 0, 3, 0, false, "first timer"},
    {Fact::kTimerRecord, kO, "TimerRecord", kLow, kHigh, 0, true, "code of the timer record", true},
    {Fact::kColorCount, kO, "ColorCount", 0, kHigh, 0, false, "colours"},
    {Fact::kSensorModeA, kO, "SensorModeA", kLow, kHigh, 0, false, "sensor mode A", true},
    {Fact::kSensorModeB, kO, "SensorModeB", kLow, kHigh, 0, false, "sensor mode B", true},
    {Fact::kLvdLevelCount, kO, "LvdLevelCount", 0, kHigh, 0, false, "levels of voltage detection"},

    {Fact::kOutputWord, kS, "OutputWord", 0, kDouble, 0, true, "output word"},
    {Fact::kMatrixCountA, kS, "MatrixCountA", 0, kHigh, 0, false, "matrix lines A"},
    {Fact::kMatrixCountB, kS, "MatrixCountB", 0, kHigh, 0, false, "matrix lines B"},
    {Fact::kSinglePinCount, kS, "SinglePinCount", 0, kHigh, 0, false, "single pins"},
    {Fact::kInputPinCount, kS, "InputPinCount", 0, kHigh, 0, false, "input pins"},
    {Fact::kOutputCountA, kS, "OutputCountA", 0, kHigh, 0, false, "output pins A"},
    {Fact::kFixedPinCount, kS, "FixedPinCount", 0, kHigh, 0, false, "fixed pins"},
    {Fact::kOutputCountB, kS, "OutputCountB", 0, kHigh, 0, false, "output pins B"},
    {Fact::kFeatureFlags, kS, "FeatureFlags", 0, kDouble, 0, true, "feature flags"},
    {Fact::kSecondLevelFlag, kS, "SecondLevelFlag", kLow, kHigh, 0, false, "second level"},
    {Fact::kFeatureKey, kS, "FeatureKey", kLow, kHigh, 0, false, "key of the feature block"},
    {Fact::kEventCount, kS, "EventCount", 0, kHigh, 0, false, "events of the script"},
};
static_assert(std::size(kFacts) == static_cast<size_t>(Fact::kCount));
static_assert(std::ranges::is_sorted(kFacts, {}, &FactRow::fact));

}  // namespace

std::span<const FactRow> AllFacts() { return kFacts; }

const FactRow& RowOf(Fact fact) { return kFacts[static_cast<size_t>(fact)]; }

const FactRow* FindFact(std::string_view section, std::string_view key) {
  const auto* const found = std::ranges::find_if(kFacts, [&](const FactRow& row) {
    return row.key == key && EqualsNoCase(row.section, section);
  });
  return found == std::end(kFacts) ? nullptr : found;
}

int64_t FactValues::Get(Fact fact) const {
  return values_[static_cast<size_t>(fact)].value_or(RowOf(fact).fallback);
}

Result<int64_t> ParseWhole(std::string_view text, int64_t least, int64_t most) {
  const std::string quoted = "'" + std::string(text) + "'";
  const bool negative = text.starts_with('-');
  std::string_view digits = negative ? text.substr(1) : text;
  const int base = StartsWithNoCase(digits, "0x") ? 16 : 10;
  if (base == 16) digits.remove_prefix(2);
  uint64_t magnitude = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, magnitude, base);
  if (read.ec == std::errc::invalid_argument || read.ptr != end) {
    return Status::Error(quoted + " is no whole number");
  }
  const bool huge = read.ec != std::errc() || magnitude > uint64_t{1} << 62;
  const auto size = static_cast<int64_t>(huge ? 0 : magnitude);
  const int64_t value = negative ? -size : size;
  if (huge || value < least || value > most) {
    return Status::Error(quoted + " is not from " + std::to_string(least) + " to " +
                         std::to_string(most));
  }
  return value;
}

std::string FactText(const FactRow& row, int64_t value) {
  if (!row.hex || value < 0) return std::to_string(value);
  char buffer[20];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, 16);
  return "0x" + ToUpper(std::string_view(buffer, static_cast<size_t>(end.ptr - buffer)));
}

}  // namespace velora
