// Setters and getters. The section of the store is in PinMapSection.cpp, copy and
// comparison are in PinMapCopy.cpp.
#include "pinmap/VeloraPinMapInfoMgr.h"

#include <algorithm>
#include <utility>

#include "pinmap/Boundary.h"

namespace velora {

namespace {

constexpr uint8_t kHardwarePwmLevels = 255;

/// Reads a field of an entry; nothing of an entry that isn't there.
template <typename Entry, typename T>
T FieldOf(const std::vector<Entry>& list, int32_t index, T Entry::*field) {
  return Holds(list, index) ? list[static_cast<size_t>(index)].*field : T{};
}

template <typename Entry, typename T>
void SetField(std::vector<Entry>& list, int32_t index, T Entry::*field, T value) {
  if (Holds(list, index)) list[static_cast<size_t>(index)].*field = value;
}

const int32_t* GetIndices(const std::vector<EventColorInfo>& events, int32_t index,
                          IndexList EventColorInfo::*field, int32_t* count) {
  if (!Holds(events, index)) {
    Give(count, 0);
    return nullptr;
  }
  const IndexList& list = events[static_cast<size_t>(index)].*field;
  const auto end = std::ranges::find_if(list, [](int32_t entry) { return entry < 0; });
  Give(count, static_cast<int32_t>(end - list.begin()));
  return list.data();
}

void SetIndices(std::vector<EventColorInfo>& events, int32_t index,
                IndexList EventColorInfo::*field, const int32_t* values, int32_t count) {
  if (!Holds(events, index)) return;
  IndexList& list = events[static_cast<size_t>(index)].*field;
  const int32_t room = static_cast<int32_t>(list.size());
  const auto used = static_cast<size_t>(values ? std::clamp(count, 0, room) : 0);
  std::copy_n(values, used, list.begin());
  if (used < list.size()) list[used] = -1;
}

/// The entry of an expander's table, or null.
template <typename Expanders, typename Table>
auto* ExpanderEntry(Expanders& expanders, int32_t index, Table IOExpanderInfo::*table,
                    int32_t group, int32_t entry) {
  const bool inside = Holds(expanders, index) && group >= 0 && group < kExpanderGroups &&
                      entry >= 0 && entry < kExpanderEntries;
  return inside ? &(expanders[static_cast<size_t>(index)].*
                    table)[static_cast<size_t>(group)][static_cast<size_t>(entry)]
                : nullptr;
}

template <typename T>
void GiveRgb(const std::array<T, 3>& values, T* red, T* green, T* blue) {
  Give(red, values[0]);
  Give(green, values[1]);
  Give(blue, values[2]);
}

template <typename List>
int32_t SizeOf(const List& list) {
  return static_cast<int32_t>(list.size());
}

}  // namespace

C_VeloraPinMapInfoMgr::C_VeloraPinMapInfoMgr() {
  outPortIndex_.fill(0xFFFF);
  outPortPinIndex_.fill(0xFF);
}

void C_VeloraPinMapInfoMgr::AdoptPoints(uint32_t pin, Points points) {
  pinPoints_[pin] = std::move(points);
  pins_[pin].AdjustCurveCtrlPointNum = static_cast<uint32_t>(pinPoints_[pin].size());
  pins_[pin].AdjustCurveCtrlPoints = pinPoints_[pin].empty() ? nullptr : pinPoints_[pin].data();
}

int32_t C_VeloraPinMapInfoMgr::SetPin(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex,
                                      uint8_t pwmType, uint8_t stopValue, uint8_t keepLevel,
                                      uint64_t multiPinValue, const PinRecord* record) {
  if (pin >= kOutPinCount || !record) return 0;
  outPortIndex_[pin] = portIndex;
  outPortPinIndex_[pin] = portPinIndex;
  outPinPwmType_[pin] = pwmType;
  outPinStopValue_[pin] = stopValue;
  outPinKeepLevel_[pin] = keepLevel;
  outPinMultiPinValue_[pin] = multiPinValue;
  // The points are copied before the old ones go: the record may be this pin's own.
  const tagVLRCurveCtrlPoint* const points = record->AdjustCurveCtrlPoints;
  Points copy;
  if (points) copy.assign(points, points + record->AdjustCurveCtrlPointNum);
  pins_[pin] = *record;
  AdoptPoints(pin, std::move(copy));
  return 1;
}

int32_t C_VeloraPinMapInfoMgr::SetPin32(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex,
                                        uint8_t pwmType, uint8_t stopValue, uint8_t keepLevel,
                                        uint8_t multiPinValue, const PinRecord* record) {
  return SetPin(pin, portIndex, portPinIndex, pwmType, stopValue, keepLevel, multiPinValue, record);
}

const PinRecord* C_VeloraPinMapInfoMgr::GetPin(uint32_t pin, uint16_t* portIndex,
                                               uint8_t* portPinIndex, uint8_t* pwmType,
                                               uint8_t* stopValue, uint8_t* keepLevel,
                                               uint64_t* multiPinValue) const {
  if (pin >= kOutPinCount) return nullptr;
  Give(portIndex, outPortIndex_[pin]);
  Give(portPinIndex, outPortPinIndex_[pin]);
  Give(pwmType, outPinPwmType_[pin]);
  Give(stopValue, outPinStopValue_[pin]);
  Give(keepLevel, outPinKeepLevel_[pin]);
  Give(multiPinValue, outPinMultiPinValue_[pin]);
  return &pins_[pin];
}

const PinRecord* C_VeloraPinMapInfoMgr::GetPin8(uint32_t pin, uint16_t* portIndex,
                                                uint8_t* portPinIndex, uint8_t* pwmType,
                                                uint8_t* stopValue, uint8_t* keepLevel,
                                                uint8_t* multiPinValue) const {
  uint64_t wide = 0;
  const PinRecord* record =
      GetPin(pin, portIndex, portPinIndex, pwmType, stopValue, keepLevel, &wide);
  if (record) Give(multiPinValue, static_cast<uint8_t>(wide));
  return record;
}

const PinRecord* C_VeloraPinMapInfoMgr::ComputeOutputLevels() {
  uint8_t firmwareLevels = 0;
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) {
    if (!pins_[pin].Convert || outPinPwmType_[pin] != kPwmFirmware) continue;
    firmwareLevels = std::max(firmwareLevels, uint8_t{pins_[pin].YResolution});
  }
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) {
    switch (outPinPwmType_[pin]) {
      case kPwmNone:
        pins_[pin].OutputLevels = 1;
        break;
      case kPwmHardware:
        pins_[pin].OutputLevels = kHardwarePwmLevels;
        break;
      case kPwmFirmware:
        pins_[pin].OutputLevels = firmwareLevels;
        break;
      default:
        break;
    }
  }
  return pins_.data();
}

void C_VeloraPinMapInfoMgr::SetFirmwarePWMTimer(const char* name) {
  firmwarePwmTimer_ = TextOf(name);
}

void C_VeloraPinMapInfoMgr::SetHostPinValue(uint32_t pin, uint32_t value) {
  if (pin < kOutPinCount) hostPinValue_[pin] = value;
}

uint32_t C_VeloraPinMapInfoMgr::GetHostPinValue(uint32_t pin) const {
  return pin < kOutPinCount ? hostPinValue_[pin] : 0;
}

// --- Clocks ------------------------------------------------------------------

void C_VeloraPinMapInfoMgr::SetHwPwmSourceClk(int32_t index, int32_t value) {
  if (Holds(hwPwmSourceClks_, index)) hwPwmSourceClks_[static_cast<size_t>(index)] = value;
}

void C_VeloraPinMapInfoMgr::SetFirstHwPwmSourceClk(int32_t value) {
  if (hwPwmSourceClks_.empty()) hwPwmSourceClks_.resize(1);
  hwPwmSourceClks_.front() = value;
}

int32_t C_VeloraPinMapInfoMgr::GetHwPwmSourceClk(int32_t index) const {
  return Holds(hwPwmSourceClks_, index) ? hwPwmSourceClks_[static_cast<size_t>(index)] : 0;
}

void C_VeloraPinMapInfoMgr::SetHwPwmSourceClkCount(int32_t count) {
  hwPwmSourceClks_.resize(ListSize(count));
}

int32_t C_VeloraPinMapInfoMgr::GetHwPwmSourceClkCount() const { return SizeOf(hwPwmSourceClks_); }

// --- Colour events -----------------------------------------------------------

void C_VeloraPinMapInfoMgr::SetEventColorCount(int32_t count) {
  eventColors_.resize(ListSize(count));
}

int32_t C_VeloraPinMapInfoMgr::GetEventColorCount() const { return SizeOf(eventColors_); }

void C_VeloraPinMapInfoMgr::SetEventType(int32_t index, int32_t type) {
  SetField(eventColors_, index, &EventColorInfo::Type, type);
}

int32_t C_VeloraPinMapInfoMgr::GetEventType(int32_t index) const {
  return FieldOf(eventColors_, index, &EventColorInfo::Type);
}

uint32_t C_VeloraPinMapInfoMgr::GetEventColor(int32_t index) const {
  return FieldOf(eventColors_, index, &EventColorInfo::Color);
}

void C_VeloraPinMapInfoMgr::SetEventColor(int32_t index, uint32_t color) {
  SetField(eventColors_, index, &EventColorInfo::Color, color);
}

int32_t C_VeloraPinMapInfoMgr::GetEventCurveMap(int32_t index) const {
  return FieldOf(eventColors_, index, &EventColorInfo::CurveMap);
}

void C_VeloraPinMapInfoMgr::SetEventCurveMap(int32_t index, int32_t map) {
  SetField(eventColors_, index, &EventColorInfo::CurveMap, map);
}

const int32_t* C_VeloraPinMapInfoMgr::GetEventCurveSet(int32_t index, int32_t* count) const {
  return GetIndices(eventColors_, index, &EventColorInfo::CurveSet, count);
}

void C_VeloraPinMapInfoMgr::SetEventCurveSet(int32_t index, const int32_t* values, int32_t count) {
  SetIndices(eventColors_, index, &EventColorInfo::CurveSet, values, count);
}

float C_VeloraPinMapInfoMgr::GetEventSpeed(int32_t index) const {
  return FieldOf(eventColors_, index, &EventColorInfo::Speed);
}

void C_VeloraPinMapInfoMgr::SetEventSpeed(int32_t index, float speed) {
  SetField(eventColors_, index, &EventColorInfo::Speed, speed);
}

int32_t C_VeloraPinMapInfoMgr::GetEventLevel(int32_t index) const {
  return FieldOf(eventColors_, index, &EventColorInfo::Level);
}

void C_VeloraPinMapInfoMgr::SetEventLevel(int32_t index, int32_t level) {
  SetField(eventColors_, index, &EventColorInfo::Level, level);
}

const int32_t* C_VeloraPinMapInfoMgr::GetEventBindedPins(int32_t index, int32_t* count) const {
  return GetIndices(eventColors_, index, &EventColorInfo::BindedPins, count);
}

void C_VeloraPinMapInfoMgr::SetEventBindedPins(int32_t index, const int32_t* values,
                                               int32_t count) {
  SetIndices(eventColors_, index, &EventColorInfo::BindedPins, values, count);
}

// --- IO expanders ------------------------------------------------------------

void C_VeloraPinMapInfoMgr::SetIOExpanderCount(int32_t count) {
  ioExpanders_.resize(ListSize(count));
}

int32_t C_VeloraPinMapInfoMgr::GetIOExpanderCount() const { return SizeOf(ioExpanders_); }

void C_VeloraPinMapInfoMgr::SetIOExpanderName(int32_t index, const char* name) {
  if (Holds(ioExpanders_, index)) ioExpanders_[static_cast<size_t>(index)].Name = TextOf(name);
}

const char* C_VeloraPinMapInfoMgr::GetIOExpanderName(int32_t index) const {
  return Holds(ioExpanders_, index) ? ioExpanders_[static_cast<size_t>(index)].Name.c_str()
                                    : nullptr;
}

void C_VeloraPinMapInfoMgr::SetIOExpanderClkSource(int32_t index, int32_t group, int32_t entry,
                                                   int32_t value) {
  Give(ExpanderEntry(ioExpanders_, index, &IOExpanderInfo::ClkSource, group, entry), value);
}

int32_t C_VeloraPinMapInfoMgr::GetIOExpanderClkSource(int32_t index, int32_t group,
                                                      int32_t entry) const {
  const int32_t* value =
      ExpanderEntry(ioExpanders_, index, &IOExpanderInfo::ClkSource, group, entry);
  return value ? *value : 0;
}

void C_VeloraPinMapInfoMgr::SetIOExpanderCurrentType(int32_t index, int32_t group, int32_t entry,
                                                     int32_t value) {
  Give(ExpanderEntry(ioExpanders_, index, &IOExpanderInfo::CurrentType, group, entry), value);
}

int32_t C_VeloraPinMapInfoMgr::GetIOExpanderCurrentType(int32_t index, int32_t group,
                                                        int32_t entry) const {
  const int32_t* value =
      ExpanderEntry(ioExpanders_, index, &IOExpanderInfo::CurrentType, group, entry);
  return value ? *value : 0;
}

void C_VeloraPinMapInfoMgr::SetIoExpanderSelectPinCount(int32_t count) {
  ioExpanderSelectPins_.resize(ListSize(count));
}

int32_t C_VeloraPinMapInfoMgr::GetIoExpanderSelectPinCount() const {
  return SizeOf(ioExpanderSelectPins_);
}

int32_t C_VeloraPinMapInfoMgr::SetIoExpanderSelectPin(int32_t index, uint32_t port, uint32_t pin) {
  if (index < 0 || index >= kMaxListEntries) return 0;
  if (!Holds(ioExpanderSelectPins_, index)) SetIoExpanderSelectPinCount(index + 1);
  ioExpanderSelectPins_[static_cast<size_t>(index)] = port << 8 | (pin & 0xFF);
  return 1;
}

int32_t C_VeloraPinMapInfoMgr::GetIoExpanderSelectPin(int32_t index, uint32_t* port,
                                                      uint32_t* pin) const {
  if (!Holds(ioExpanderSelectPins_, index)) return 0;
  const uint32_t value = ioExpanderSelectPins_[static_cast<size_t>(index)];
  Give(port, value >> 8);
  Give(pin, value & 0xFF);
  return 1;
}

// --- Dynamic curve -----------------------------------------------------------

int32_t C_VeloraPinMapInfoMgr::GetDynamicCurveColorCount() const {
  return SizeOf(dynamicCurveColors_);
}

void C_VeloraPinMapInfoMgr::SetDynamicCurveColorCount(int32_t count) {
  dynamicCurveColors_.resize(ListSize(count));
}

void C_VeloraPinMapInfoMgr::SetDynamicCurveColor(int32_t index, int32_t color) {
  if (Holds(dynamicCurveColors_, index)) dynamicCurveColors_[static_cast<size_t>(index)] = color;
}

int32_t C_VeloraPinMapInfoMgr::GetDynamicCurveColor(int32_t index) const {
  return Holds(dynamicCurveColors_, index) ? dynamicCurveColors_[static_cast<size_t>(index)] : 0;
}

void C_VeloraPinMapInfoMgr::SetDynamicCurveTable(const tagVLRCurveCtrlPoint* points,
                                                 int32_t count) {
  dynamicCurveTable_ = CopyOf(points, count);
}

const tagVLRCurveCtrlPoint* C_VeloraPinMapInfoMgr::GetDynamicCurveTable(int32_t* count) const {
  return HandOut(dynamicCurveTable_, count);
}

// --- Colour LED --------------------------------------------------------------

void C_VeloraPinMapInfoMgr::SetLEDWaveLength(int32_t red, int32_t green, int32_t blue) {
  ledWaveLength_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetLEDWaveLength(int32_t* red, int32_t* green, int32_t* blue) const {
  GiveRgb(ledWaveLength_, red, green, blue);
}

void C_VeloraPinMapInfoMgr::SetLEDMaxLumen(int32_t red, int32_t green, int32_t blue) {
  ledMaxLumen_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetLEDMaxLumen(int32_t* red, int32_t* green, int32_t* blue) const {
  GiveRgb(ledMaxLumen_, red, green, blue);
}

void C_VeloraPinMapInfoMgr::SetColorLEDx(double red, double green, double blue) {
  colorLedX_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetColorLEDx(double* red, double* green, double* blue) const {
  GiveRgb(colorLedX_, red, green, blue);
}

void C_VeloraPinMapInfoMgr::SetColorLEDy(double red, double green, double blue) {
  colorLedY_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetColorLEDy(double* red, double* green, double* blue) const {
  GiveRgb(colorLedY_, red, green, blue);
}

void C_VeloraPinMapInfoMgr::SetColorLEDBigY(double red, double green, double blue) {
  colorLedBigY_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetColorLEDBigY(double* red, double* green, double* blue) const {
  GiveRgb(colorLedBigY_, red, green, blue);
}

void C_VeloraPinMapInfoMgr::SetColorLEDComp(double red, double green, double blue) {
  colorLedComp_ = {red, green, blue};
}

void C_VeloraPinMapInfoMgr::GetColorLEDComp(double* red, double* green, double* blue) const {
  GiveRgb(colorLedComp_, red, green, blue);
}

// --- Runtime envelope --------------------------------------------------------

void C_VeloraPinMapInfoMgr::SetRuntimeEnvelopSamplePerGroup(int32_t samples) {
  runtimeEnvelopSamplePerGroup_ = samples;
}

int32_t C_VeloraPinMapInfoMgr::GetRuntimeEnvelopSamplePerGroup() const {
  return runtimeEnvelopSamplePerGroup_;
}

void C_VeloraPinMapInfoMgr::SetRuntimeEnvelopGammaCP(const tagVLRCurveCtrlPoint* points,
                                                     int32_t count) {
  runtimeEnvelopGammaCp_ = CopyOf(points, count);
}

const tagVLRCurveCtrlPoint* C_VeloraPinMapInfoMgr::GetRuntimeEnvelopGammaCP(int32_t* count) const {
  return HandOut(runtimeEnvelopGammaCp_, count);
}

}  // namespace velora
