// The pin map's section of a project: Save and Load.
#include <array>
#include <cstdlib>
#include <string>
#include <utility>

#include "pinmap/ProjectSection.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora {

namespace {

constexpr PointKeys kPinPointKeys{"Pin%d_AdjustCurveCtrlPointNum", "Pin%d_AdjustCurveCtrlPoint%d_X",
                                  "Pin%d_AdjustCurveCtrlPoint%d_Y"};
constexpr PointKeys kDynamicTableKeys{"DynamicCurveTableCPNum", "DynamicCurveTableCP%d_X",
                                      "DynamicCurveTableCP%d_Y"};
constexpr PointKeys kRuntimeGammaKeys{"RuntimeEnvelopGammaCPNum", "RuntimeEnvelopGammaCP%d_X",
                                      "RuntimeEnvelopGammaCP%d_Y"};

constexpr size_t kKeysPerEvent = 1 + kOutPinCount;
constexpr size_t kKeysPerExpander = 1 + 2 * kExpanderGroups * kExpanderEntries;
constexpr int32_t kWhite = 0xFFFFFF;
constexpr int32_t kEndOfList = -1;

/// A value for red, green and blue, with what each is without its key.
template <typename T>
struct RgbKeys {
  std::array<const char*, 3> keys;
  std::array<T, 3> defaults;
};

constexpr RgbKeys<int32_t> kWaveLengthKeys{
    {"LEDWaveLength_R", "LEDWaveLength_G", "LEDWaveLength_B"}, {610, 540, 470}};
// Unlike a new manager's 700: a project without these keys is read as 255.
constexpr RgbKeys<int32_t> kMaxLumenKeys{{"LEDMaxLumen_R", "LEDMaxLumen_G", "LEDMaxLumen_B"},
                                         {255, 255, 255}};
constexpr RgbKeys<double> kColorLedXKeys{{"ColorLEDRx", "ColorLEDGx", "ColorLEDBx"},
                                         {0.662528233225, 0.222336598546, 0.126662160307}};
constexpr RgbKeys<double> kColorLedYKeys{{"ColorLEDRy", "ColorLEDGy", "ColorLEDBy"},
                                         {0.33722098144, 0.760020004636, 0.053425919494}};
constexpr RgbKeys<double> kColorLedBigYKeys{{"ColorLEDRBigY", "ColorLEDGBigY", "ColorLEDBBigY"},
                                            {128.0, 128.0, 128.0}};
constexpr RgbKeys<double> kColorLedCompKeys{{"ColorLEDRComp", "ColorLEDGComp", "ColorLEDBComp"},
                                            {0.0, 0.0, 0.0}};

template <typename Archive>
void TransferRgb(Archive& archive, const RgbKeys<int32_t>& rgb, std::array<int32_t, 3>& values) {
  for (size_t i = 0; i < 3; ++i) archive.Int(rgb.keys[i], values[i], rgb.defaults[i]);
}

template <typename Archive>
void TransferRgb(Archive& archive, const RgbKeys<double>& rgb, std::array<double, 3>& values) {
  for (size_t i = 0; i < 3; ++i) archive.Double(rgb.keys[i], values[i], rgb.defaults[i]);
}

/// 64 bits don't fit an integer of the store: they are a signed decimal text.
template <typename Archive>
void TransferWide(Archive& archive, const KeyText& key, uint64_t& value) {
  std::string text = std::to_string(static_cast<int64_t>(value));
  archive.Text(key, text);
  if constexpr (Archive::kReads) {
    value = static_cast<uint64_t>(std::strtoll(text.c_str(), nullptr, 10));
  }
}

/// A list of single values.
template <typename Archive, typename T>
void TransferList(Archive& archive, const char* number, const char* entry, std::vector<T>& list) {
  archive.Count(number, list, 1);
  int32_t index = 0;
  for (T& value : list) archive.Int(KeyText(entry, index++), value, 0);
}

/// The entries up to the end of the list; the writer always marks the end, behind a full
/// list with one key more than it has entries. What stands behind the end stays.
template <typename Archive>
void TransferCurveSet(Archive& archive, IndexList& set, int32_t event) {
  const auto key = [event](int32_t j) { return KeyText("EventColorCurveSet%d_%d", event, j); };
  int32_t j = 0;
  for (int32_t& entry : set) {
    if (!Archive::kReads && entry < 0) break;
    archive.Int(key(j++), entry, kEndOfList);
    if (entry < 0) {
      entry = kEndOfList;
      break;
    }
  }
  if constexpr (!Archive::kReads) archive.Int(key(j), kEndOfList, 0);
}

/// The value that the type of the event names; none for an unknown type.
template <typename Archive>
void TransferEventValue(Archive& archive, EventColorInfo& event, int32_t e) {
  switch (event.Type) {
    case kEventColor:
      archive.Int(KeyText("EventColor%d", e), event.Color, kWhite);
      break;
    case kEventCurveSet:
      TransferCurveSet(archive, event.CurveSet, e);
      break;
    case kEventCurveMap:
      archive.Int(KeyText("EventColorCurveMap%d", e), event.CurveMap, 0);
      break;
    case kEventSpeed: {
      double speed = event.Speed;
      archive.Double(KeyText("EventColorSpeed%d", e), speed, 0.0);
      event.Speed = static_cast<float>(speed);
      break;
    }
    case kEventLevel:
      archive.Int(KeyText("EventColorLevel%d", e), event.Level, 0);
      break;
    default:
      break;
  }
}

template <typename Archive>
void TransferEvents(Archive& archive, std::vector<EventColorInfo>& events) {
  int32_t e = 0;
  for (EventColorInfo& event : events) {
    archive.Int(KeyText("EventColorType%d", e), event.Type, 0);
    TransferEventValue(archive, event, e);
    int32_t j = 0;
    for (int32_t& pin : event.BindedPins) {
      archive.Int(KeyText("EventColorBindedPins%d_%d", e, j++), pin, kEndOfList);
    }
    ++e;
  }
}

template <typename Archive>
void TransferExpander(Archive& archive, IOExpanderInfo& expander, int32_t x) {
  const KeyText name("IOExpander%d", x);
  if constexpr (Archive::kReads) {
    archive.RequiredText(name, expander.Name);
  } else {
    archive.Text(name, expander.Name);
  }
  for (int32_t g = 0; g < kExpanderGroups; ++g) {
    for (int32_t k = 0; k < kExpanderEntries; ++k) {
      const auto group = static_cast<size_t>(g);
      const auto entry = static_cast<size_t>(k);
      archive.Int(KeyText("IOExpander_ClkSource%d.%d.%d", x, g, k),
                  expander.ClkSource[group][entry], 0);
      archive.Int(KeyText("IOExpander_CurrentType%d.%d.%d", x, g, k),
                  expander.CurrentType[group][entry], 0);
    }
  }
}

/// Projects from before there were clock groups have one source for all pins.
void LoadSingleClock(SectionReader& reader, std::vector<int32_t>& clocks) {
  const int32_t source = reader.ReadInt("HWPwmClockSource", -1);
  if (source >= 0) clocks.assign(1, source);
}

}  // namespace

int32_t C_VeloraPinMapInfoMgr::Save(I_CUIniFile* store) {
  if (!store) return 0;
  SectionWriter writer(*store, kPinMapSection);
  writer.BeginChecked();
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) TransferPin(writer, pin);
  TransferFirmwareValues(writer);
  writer.Count("MaxEventColorNumber", eventColors_, kKeysPerEvent);
  if (!writer.EndChecked()) return 0;
  writer.Int("EnableColorEvent", enableColorEvent_, 0);
  TransferEvents(writer, eventColors_);
  TransferRest(writer, store);
  return 1;
}

int32_t C_VeloraPinMapInfoMgr::Load(I_CUIniFile* store) {
  if (!store) return 0;
  SectionReader reader(*store, kPinMapSection);
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) TransferPin(reader, pin);
  TransferFirmwareValues(reader);
  reader.Int("EnableColorEvent", enableColorEvent_, 0);
  reader.Count("MaxEventColorNumber", eventColors_, kKeysPerEvent);
  TransferEvents(reader, eventColors_);
  TransferRest(reader, store);
  return 1;
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferPin(Archive& archive, uint32_t pin) {
  PinRecord& record = pins_[pin];
  archive.Int(KeyText("Pin%d_Convert", pin), record.Convert, 0);
  if (!Archive::kReads && !record.Convert) return;
  archive.Int(KeyText("Pin%d_OutPortIndex", pin), outPortIndex_[pin], 0);
  archive.Int(KeyText("Pin%d_OutPortPinIndex", pin), outPortPinIndex_[pin], 0);
  archive.Int(KeyText("Pin%d_OutPinPWMType", pin), outPinPwmType_[pin], 0);
  archive.Int(KeyText("Pin%d_OutPinStopValue", pin), outPinStopValue_[pin], 0);
  archive.Int(KeyText("Pin%d_OutPinKeepLevel", pin), outPinKeepLevel_[pin], 0);
  TransferWide(archive, KeyText("Pin%d_OutPinMultiPinValue", pin), outPinMultiPinValue_[pin]);
  archive.Int(KeyText("Pin%d_MapEventIndex", pin), record.MapEventIndex, 0);
  uint16_t frequency = record.XResolution;  // the record is packed: no reference to its field
  archive.Int(KeyText("Pin%d_XResolution", pin), frequency, 0);
  record.XResolution = frequency;
  archive.Int(KeyText("Pin%d_YResolution", pin), record.YResolution, 0);
  TransferPinPoints(archive, pin);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferPinPoints(Archive& archive, uint32_t pin) {
  const KeyText number(kPinPointKeys.number, pin);
  const auto index = static_cast<int32_t>(pin);
  if constexpr (Archive::kReads) {
    const int32_t claimed = archive.ReadInt(number, 0);
    const int32_t cut = claimed < 0 ? 0 : claimed & 0xFFFF;  // 16 bits count, here alone
    Points points(archive.Bound(cut, sizeof(tagVLRCurveCtrlPoint), kKeysPerPoint));
    TransferEntries(archive, kPinPointKeys, points, index);
    AdoptPoints(pin, std::move(points));
  } else {
    archive.Count(number, pinPoints_[pin], kKeysPerPoint);
    TransferEntries(archive, kPinPointKeys, pinPoints_[pin], index);
  }
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferFirmwareValues(Archive& archive) {
  archive.Text("FirmwarePWMTimer", firmwarePwmTimer_);
  archive.Int("FirmwarePWMFrequency", firmwarePwmFrequency_, 0);
  archive.Int("UsedRAMSize", usedRamSize_, 0);
  archive.Int("UsedStackSize", usedStackSize_, 0);
  archive.Int("VLRConvertMethod", convertMethod_, kConvertPwm);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferRest(Archive& archive, I_CUIniFile* store) {
  TransferDynamicCurve(archive);
  TransferExpanders(archive);
  TransferClocks(archive);
  TransferColorLed(archive);
  if constexpr (Archive::kReads) {
    serialLed_.Load(store);
    motorMode_.Load(store);
  } else {
    serialLed_.Save(store);
    motorMode_.Save(store);
  }
  TransferRuntimeEnvelop(archive);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferDynamicCurve(Archive& archive) {
  archive.Int("DynamicCurveEnable", dynamicCurveEnable_, 0);
  TransferList(archive, "DynamicCurveNumber", "DynamicCurveColor%d", dynamicCurveColors_);
  TransferPoints(archive, kDynamicTableKeys, dynamicCurveTable_);
  archive.Int("DynamicCurveActiveHigh", dynamicCurveActiveHigh_, 0);
  archive.Int("DynamicCurveGroupNum", dynamicCurveGroupNum_, 0);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferExpanders(Archive& archive) {
  archive.Count("IOExpanderNum", ioExpanders_, kKeysPerExpander);
  int32_t x = 0;
  for (IOExpanderInfo& expander : ioExpanders_) TransferExpander(archive, expander, x++);
  archive.Keep("UserCtrlIOExpEnable", userCtrlIoExpEnable_);
  TransferList(archive, "IoExpanderSelectPinNum", "IoExpanderSelectPin%d", ioExpanderSelectPins_);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferClocks(Archive& archive) {
  TransferList(archive, "HwPwmSourceClkGrpNum", "HwPwmSourceClk_%d", hwPwmSourceClks_);
  if constexpr (Archive::kReads) {
    if (hwPwmSourceClks_.empty()) LoadSingleClock(archive, hwPwmSourceClks_);
  }
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferColorLed(Archive& archive) {
  archive.Int("WavLenColorLEDMixEn", wavLenColorLedMixEn_, 0);
  TransferRgb(archive, kWaveLengthKeys, ledWaveLength_);
  TransferRgb(archive, kMaxLumenKeys, ledMaxLumen_);
  archive.Double("LEDMixingScale", ledMixingScale_, 1.0);
  archive.Int("ColorLEDParamSource", colorLedParamSource_, 0);
  TransferRgb(archive, kColorLedXKeys, colorLedX_);
  TransferRgb(archive, kColorLedYKeys, colorLedY_);
  TransferRgb(archive, kColorLedBigYKeys, colorLedBigY_);
  TransferRgb(archive, kColorLedCompKeys, colorLedComp_);
}

template <typename Archive>
void C_VeloraPinMapInfoMgr::TransferRuntimeEnvelop(Archive& archive) {
  TransferPoints(archive, kRuntimeGammaKeys, runtimeEnvelopGammaCp_);
  archive.Keep("RuntimeEnvelopSamplePerGroup", runtimeEnvelopSamplePerGroup_);
  archive.Keep("RuntimeEnvelopEnabled", runtimeEnvelopEnabled_);
  archive.Keep("RuntimeEnvelopActiveHigh", runtimeEnvelopActiveHigh_);
}

}  // namespace velora
