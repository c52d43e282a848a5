#include "host/PinMapWords.h"

#include <velora/VeloraTypes.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

#include "foundation/StringHelpers.h"

namespace velora {
namespace {

enum class Form : uint8_t { kPlain, kFlag, kPwmType, kMethod, kColor, kMask };

/// A "%d" of a key stands for an index, which its words show at the same "%d".
struct KeyWords {
  std::string_view key;
  std::string_view words;
  Form form = Form::kPlain;
};

constexpr KeyWords kKeys[] = {
    {"Pin%d_Convert", "pin %d: in use", Form::kFlag},
    {"Pin%d_OutPortIndex", "pin %d: port"},
    {"Pin%d_OutPortPinIndex", "pin %d: pin of the port"},
    {"Pin%d_OutPinPWMType", "pin %d: kind of PWM", Form::kPwmType},
    {"Pin%d_OutPinStopValue", "pin %d: stop value"},
    {"Pin%d_OutPinKeepLevel", "pin %d: keeps its level", Form::kFlag},
    {"Pin%d_OutPinMultiPinValue", "pin %d: multiple pins", Form::kMask},
    {"Pin%d_MapEventIndex", "pin %d: action number"},
    {"Pin%d_XResolution", "pin %d: sample frequency"},
    {"Pin%d_YResolution", "pin %d: level resolution"},
    {"Pin%d_AdjustCurveCtrlPointNum", "pin %d: points of the gamma curve"},
    {"Pin%d_AdjustCurveCtrlPoint%d_X", "pin %d: position of gamma point %d"},
    {"Pin%d_AdjustCurveCtrlPoint%d_Y", "pin %d: level of gamma point %d"},
    {"FirmwarePWMTimer", "firmware PWM timer"},
    {"FirmwarePWMFrequency", "firmware PWM frequency"},
    {"UsedRAMSize", "used RAM"},
    {"UsedStackSize", "used stack"},
    {"VLRConvertMethod", "convert method", Form::kMethod},
    {"MaxEventColorNumber", "number of colour events"},
    {"EnableColorEvent", "colour events", Form::kFlag},
    {"EventColorType%d", "colour event %d: type"},
    {"EventColor%d", "colour event %d: colour", Form::kColor},
    {"EventColorCurveSet%d_%d", "colour event %d: curve set, entry %d"},
    {"EventColorCurveMap%d", "colour event %d: curve map"},
    {"EventColorSpeed%d", "colour event %d: speed"},
    {"EventColorLevel%d", "colour event %d: level"},
    {"EventColorBindedPins%d_%d", "colour event %d: bound pins, entry %d"},
    {"DynamicCurveEnable", "dynamic curve", Form::kFlag},
    {"DynamicCurveNumber", "dynamic curve: number of colours"},
    {"DynamicCurveColor%d", "dynamic curve: colour %d", Form::kColor},
    {"DynamicCurveTableCPNum", "dynamic curve: points"},
    {"DynamicCurveTableCP%d_X", "dynamic curve: position of point %d"},
    {"DynamicCurveTableCP%d_Y", "dynamic curve: level of point %d"},
    {"DynamicCurveActiveHigh", "dynamic curve: active high", Form::kFlag},
    {"DynamicCurveGroupNum", "dynamic curve: groups"},
    {"IOExpanderNum", "number of IO expanders"},
    {"IOExpander%d", "IO expander %d: model"},
    {"IOExpander_ClkSource%d.%d.%d", "IO expander %d: clock of port %d, pin %d"},
    {"IOExpander_CurrentType%d.%d.%d", "IO expander %d: current of port %d, pin %d"},
    {"UserCtrlIOExpEnable", "IO expanders controlled by the user", Form::kFlag},
    {"IoExpanderSelectPinNum", "number of select pins"},
    {"IoExpanderSelectPin%d", "select pin %d", Form::kMask},
    {"HwPwmSourceClkGrpNum", "number of hardware PWM groups"},
    {"HwPwmSourceClk_%d", "hardware PWM group %d: clock source"},
    {"WavLenColorLEDMixEn", "mixing of colours by wave length", Form::kFlag},
    {"LEDWaveLength_R", "wave length of red"},
    {"LEDWaveLength_G", "wave length of green"},
    {"LEDWaveLength_B", "wave length of blue"},
    {"LEDMaxLumen_R", "lumen of red"},
    {"LEDMaxLumen_G", "lumen of green"},
    {"LEDMaxLumen_B", "lumen of blue"},
    {"LEDMixingScale", "scale of mixing"},
    {"ColorLEDParamSource", "source of the colour LED values"},
    {"ColorLEDRx", "chromaticity x of red"},
    {"ColorLEDGx", "chromaticity x of green"},
    {"ColorLEDBx", "chromaticity x of blue"},
    {"ColorLEDRy", "chromaticity y of red"},
    {"ColorLEDGy", "chromaticity y of green"},
    {"ColorLEDBy", "chromaticity y of blue"},
    {"ColorLEDRBigY", "luminance of red"},
    {"ColorLEDGBigY", "luminance of green"},
    {"ColorLEDBBigY", "luminance of blue"},
    {"ColorLEDRComp", "compensation of red"},
    {"ColorLEDGComp", "compensation of green"},
    {"ColorLEDBComp", "compensation of blue"},
    {"SerialLEDSampleFreq", "serial LED: sample frequency"},
    {"SerialLEDColorType", "serial LED: colour type"},
    {"SerialLEDScanType", "serial LED: scan type"},
    {"SerialLEDEnable", "serial LED", Form::kFlag},
    {"SerialLEDCount", "serial LED: number of LEDs"},
    {"SerialLEDWireMode", "serial LED: wire mode"},
    {"SerialLEDHighLevel0Time", "serial LED: high time of a 0"},
    {"SerialLEDHighLevel1Time", "serial LED: high time of a 1"},
    {"SerialLEDLowLevel0Time", "serial LED: low time of a 0"},
    {"SerialLEDLowLevel1Time", "serial LED: low time of a 1"},
    {"SerialLEDHighLevel0Tick", "serial LED: high ticks of a 0"},
    {"SerialLEDHighLevel1Tick", "serial LED: high ticks of a 1"},
    {"SerialLEDLowLevel0Tick", "serial LED: low ticks of a 0"},
    {"SerialLEDLevel1Tick", "serial LED: low ticks of a 1"},
    {"BrightnessLevel", "serial LED: brightness"},
    {"ClockRateMode", "serial LED: clock rate"},
    {"OrderBit", "serial LED: order of bits"},
    {"IsSupportConvertVLR", "serial LED: conversion", Form::kFlag},
    {"SWALEDSPIClock", "serial LED: SPI clock"},
    {"SLEDOneWireModeDeviceName", "serial LED: device on one wire"},
    {"SLEDTwoWireModeDeviceName", "serial LED: device on two wires"},
    {"SerialLEDPinUse_Mode%d", "serial LED: pins of mode %d"},
    {"SerialLEDExtendPinInfo_Mode%d", "serial LED: further pins of mode %d"},
    {"VixenImportInterval", "serial LED: import interval"},
    {"SLED_AdjustCurveCtrlPointNum", "serial LED: points of the gamma curve"},
    {"SLED_AdjustCurveCtrlPoint%d_X", "serial LED: position of gamma point %d"},
    {"SLED_AdjustCurveCtrlPoint%d_Y", "serial LED: level of gamma point %d"},
    {"EnableMotorMode", "motor", Form::kFlag},
    {"MotorMode", "motor: mode"},
    {"GPIOCount", "motor: GPIO lines"},
    {"ADCSectorCount", "motor: ADC sectors"},
    {"GPIOSectorInfoCount", "motor: GPIO sectors listed"},
    {"GPIOSectorInfo%d_SectorIndex", "motor: index of GPIO sector %d"},
    {"GPIOSectorInfo%d_GPIOValue", "motor: value of GPIO sector %d"},
    {"GPIOSectorInfo%d_AngleRangeStart", "motor: first angle of GPIO sector %d"},
    {"GPIOSectorInfo%d_AngleRangeEnd", "motor: last angle of GPIO sector %d"},
    {"ADCSectorInfoCount", "motor: ADC sectors listed"},
    {"ADCSectorInfo%d_SectorIndex", "motor: index of ADC sector %d"},
    {"ADCSectorInfo%d_ADCRangeStart", "motor: first value of ADC sector %d"},
    {"ADCSectorInfo%d_ADCRangeEnd", "motor: last value of ADC sector %d"},
    {"ADCSectorInfo%d_AngleRangeStart", "motor: first angle of ADC sector %d"},
    {"ADCSectorInfo%d_AngleRangeEnd", "motor: last angle of ADC sector %d"},
    {"ServoModePinIndexCount", "motor: number of servo pins"},
    {"ServoMode%d_PinIndex", "motor: servo pin %d"},
    {"RuntimeEnvelopGammaCPNum", "runtime envelope: points of the gamma curve"},
    {"RuntimeEnvelopGammaCP%d_X", "runtime envelope: position of gamma point %d"},
    {"RuntimeEnvelopGammaCP%d_Y", "runtime envelope: level of gamma point %d"},
    {"RuntimeEnvelopSamplePerGroup", "runtime envelope: samples of a group"},
    {"RuntimeEnvelopEnabled", "runtime envelope", Form::kFlag},
    {"RuntimeEnvelopActiveHigh", "runtime envelope: active high", Form::kFlag},
};

constexpr std::string_view kMark = "%d";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The indices of a key that has the pattern's form.
std::optional<std::vector<std::string_view>> Match(std::string_view pattern, std::string_view key) {
  std::vector<std::string_view> indices;
  while (true) {
    const size_t mark = pattern.find(kMark);
    const std::string_view head = pattern.substr(0, mark);
    if (!key.starts_with(head)) return std::nullopt;
    key.remove_prefix(head.size());
    if (mark == std::string_view::npos) break;
    pattern.remove_prefix(mark + kMark.size());
    const size_t digits = static_cast<size_t>(std::ranges::find_if_not(key, IsDigit) - key.begin());
    if (digits == 0) return std::nullopt;
    indices.push_back(key.substr(0, digits));
    key.remove_prefix(digits);
  }
  return key.empty() ? std::optional(indices) : std::nullopt;
}

struct Found {
  const KeyWords* row = nullptr;
  std::vector<std::string_view> indices;
};

Found Find(std::string_view key) {
  for (const KeyWords& row : kKeys) {
    if (auto indices = Match(row.key, key)) return {&row, std::move(*indices)};
  }
  return {};
}

std::string Hex(uint64_t value) {
  std::array<char, 16> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 16);
  return "0x" + std::string(buffer.data(), end.ptr);
}

}  // namespace

std::string KeyInWords(std::string_view key) {
  const Found found = Find(key);
  if (!found.row) return std::string(key);
  std::string words(found.row->words);
  for (const std::string_view index : found.indices) {
    words.replace(words.find(kMark), kMark.size(), index);
  }
  return words;
}

std::string ValueInWords(std::string_view key, std::string_view value) {
  const Found found = Find(key);
  switch (found.row ? found.row->form : Form::kPlain) {
    case Form::kFlag:
      return ReadInt(value) ? "yes" : "no";
    case Form::kPwmType:
      return PwmTypeInWords(ReadInt(value));
    case Form::kMethod:
      return ConvertMethodInWords(ReadInt(value));
    case Form::kColor:
      return Hex(static_cast<uint32_t>(ReadInt(value)));
    case Form::kMask: {
      int64_t mask = 0;
      std::from_chars(value.data(), value.data() + value.size(), mask);
      return Hex(static_cast<uint64_t>(mask));
    }
    case Form::kPlain:
      break;
  }
  return value.empty() ? "nothing" : std::string(value);
}

std::optional<uint32_t> PinOfKey(std::string_view key) {
  if (!key.starts_with("Pin")) return std::nullopt;
  key.remove_prefix(3);
  uint32_t pin = 0;
  const auto read = std::from_chars(key.data(), key.data() + key.size(), pin);
  if (read.ec != std::errc() || read.ptr == key.data() + key.size() || *read.ptr != '_') {
    return std::nullopt;
  }
  return pin;
}

std::string PwmTypeInWords(int32_t type) {
  switch (type) {
    case kPwmNone:
      return "none";
    case kPwmHardware:
      return "hardware";
    case kPwmFirmware:
      return "firmware";
    case kPwmIoExpander:
      return "expander";
    default:
      return std::to_string(type);
  }
}

std::string ConvertMethodInWords(int32_t method) {
  switch (method) {
    case kConvertPwm:
      return "PWM";
    case kConvertMipsFirstPwm:
      return "MIPS-first PWM";
    case kConvertBam:
      return "BAM";
    default:
      return std::to_string(method);
  }
}

}  // namespace velora
