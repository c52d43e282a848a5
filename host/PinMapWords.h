// The keys of a pin map in words.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velora {

/// What a key of the sections [VeloraPinMapInfo] and [VLRMotorInfo] is: "pin 3: sample
/// frequency". The key itself where there are no words for it.
std::string KeyInWords(std::string_view key);

/// A value of that key for a person: "firmware" for a PWM type of 2.
std::string ValueInWords(std::string_view key, std::string_view value);

/// The pin of a key such as "Pin3_XResolution"; none for other keys.
std::optional<uint32_t> PinOfKey(std::string_view key);

/// "none", "hardware", "firmware", "expander"; the number for other types.
std::string PwmTypeInWords(int32_t type);

/// "PWM", "MIPS-first PWM", "BAM"; the number for other methods.
std::string ConvertMethodInWords(int32_t method);

}  // namespace velora
