// Copy and comparison of pin maps. Both go through the interface, since the other side
// may be a host's own.
#include <velora/I_VeloraMotorModeMgr.h>
#include <velora/I_VeloraSerialLEDMgr.h>

#include "foundation/AsciiText.h"
#include "pinmap/Boundary.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora {

namespace {

using Mgr = I_VeloraPinMapInfoMgr;

/// One pin as GetPin tells it.
struct PinView {
  uint16_t port_index = 0;
  uint8_t port_pin_index = 0;
  uint8_t pwm_type = 0;
  uint8_t stop_value = 0;
  uint8_t keep_level = 0;
  uint64_t multi_pin_value = 0;
  const PinRecord* record = nullptr;

  PinView(const Mgr& manager, uint32_t pin)
      : record(manager.GetPin(pin, &port_index, &port_pin_index, &pwm_type, &stop_value,
                              &keep_level, &multi_pin_value)) {}

  bool Converted() const { return record && record->Convert; }
  std::span<const tagVLRCurveCtrlPoint> GetPoints() const {
    if (!record->AdjustCurveCtrlPoints) return {};
    return {record->AdjustCurveCtrlPoints, record->AdjustCurveCtrlPointNum};
  }
};

// OutputLevels is derived from the rest and left out.
bool SameRecord(const PinView& a, const PinView& b) {
  return a.record->Convert == b.record->Convert &&
         a.record->MapEventIndex == b.record->MapEventIndex &&
         a.record->XResolution == b.record->XResolution &&
         a.record->YResolution == b.record->YResolution && Same(a.GetPoints(), b.GetPoints());
}

bool SamePin(const Mgr& first, const Mgr& second, uint32_t pin) {
  const PinView a(first, pin);
  const PinView b(second, pin);
  if (!a.Converted() && !b.Converted()) return true;  // what such a pin holds is stale
  if (!a.record || !b.record) return false;
  return a.port_index == b.port_index && a.port_pin_index == b.port_pin_index &&
         a.pwm_type == b.pwm_type && a.stop_value == b.stop_value && a.keep_level == b.keep_level &&
         a.multi_pin_value == b.multi_pin_value && SameRecord(a, b);
}

bool SamePins(const Mgr& a, const Mgr& b) {
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) {
    if (!SamePin(a, b, pin)) return false;
  }
  return true;
}

bool SameBoundPins(const Mgr& a, const Mgr& b, int32_t event) {
  return Same(ArrayOf(a, &Mgr::GetEventBindedPins, event),
              ArrayOf(b, &Mgr::GetEventBindedPins, event));
}

/// Compares the value that counts for the type, and the bound pins of colours and levels.
bool SameEvent(const Mgr& a, const Mgr& b, int32_t event) {
  if (a.GetEventType(event) != b.GetEventType(event)) return false;
  switch (a.GetEventType(event)) {
    case kEventColor:
      return a.GetEventColor(event) == b.GetEventColor(event) && SameBoundPins(a, b, event);
    case kEventCurveSet:
      return Same(ArrayOf(a, &Mgr::GetEventCurveSet, event),
                  ArrayOf(b, &Mgr::GetEventCurveSet, event));
    case kEventCurveMap:
      return a.GetEventCurveMap(event) == b.GetEventCurveMap(event);
    case kEventSpeed:
      return a.GetEventSpeed(event) == b.GetEventSpeed(event);
    case kEventLevel:
      return a.GetEventLevel(event) == b.GetEventLevel(event) && SameBoundPins(a, b, event);
    default:
      return true;
  }
}

bool SameEvents(const Mgr& a, const Mgr& b) {
  if (a.GetEnableColorEvent() != b.GetEnableColorEvent()) return false;
  const int32_t count = a.GetEventColorCount();
  if (count != b.GetEventColorCount()) return false;
  for (int32_t event = 0; event < count; ++event) {
    if (!SameEvent(a, b, event)) return false;
  }
  return true;
}

bool SameFirmware(const Mgr& a, const Mgr& b) {
  return EqualsNoCase(TextOf(a.GetFirmwarePWMTimer()), TextOf(b.GetFirmwarePWMTimer())) &&
         a.GetFirmwarePWMFrequency() == b.GetFirmwarePWMFrequency() &&
         a.GetFirstHwPwmSourceClk() == b.GetFirstHwPwmSourceClk() &&
         a.GetConvertMethod() == b.GetConvertMethod() && a.GetUsedRAMSize() == b.GetUsedRAMSize();
}

/// Calls visit(group, entry) for all of an expander; false as soon as a call is.
template <typename Visit>
bool ForEachEntry(Visit visit) {
  for (int32_t group = 0; group < kExpanderGroups; ++group) {
    for (int32_t entry = 0; entry < kExpanderEntries; ++entry) {
      if (!visit(group, entry)) return false;
    }
  }
  return true;
}

bool SameExpander(const Mgr& a, const Mgr& b, int32_t x) {
  if (TextOf(a.GetIOExpanderName(x)) != TextOf(b.GetIOExpanderName(x))) return false;
  return ForEachEntry([&](int32_t group, int32_t entry) {
    return a.GetIOExpanderClkSource(x, group, entry) == b.GetIOExpanderClkSource(x, group, entry) &&
           a.GetIOExpanderCurrentType(x, group, entry) ==
               b.GetIOExpanderCurrentType(x, group, entry);
  });
}

/// With the same number of expanders on both sides.
bool SameExpanders(const Mgr& a, const Mgr& b) {
  for (int32_t x = 0; x < a.GetIOExpanderCount(); ++x) {
    if (!SameExpander(a, b, x)) return false;
  }
  return true;
}

bool SameSelectPins(const Mgr& a, const Mgr& b) {
  const int32_t count = a.GetIoExpanderSelectPinCount();
  if (count != b.GetIoExpanderSelectPinCount()) return false;
  for (int32_t i = 0; i < count; ++i) {
    uint32_t portA = 0, portB = 0, pinA = 0, pinB = 0;
    a.GetIoExpanderSelectPin(i, &portA, &pinA);
    b.GetIoExpanderSelectPin(i, &portB, &pinB);
    if (portA != portB || pinA != pinB) return false;
  }
  return true;
}

bool SameClockGroups(const Mgr& a, const Mgr& b) {
  const int32_t count = a.GetHwPwmSourceClkCount();
  if (count != b.GetHwPwmSourceClkCount()) return false;
  for (int32_t i = 0; i < count; ++i) {
    if (a.GetHwPwmSourceClk(i) != b.GetHwPwmSourceClk(i)) return false;
  }
  return true;
}

bool SameRuntimeEnvelop(const Mgr& a, const Mgr& b) {
  return a.GetRuntimeEnvelopEnabled() == b.GetRuntimeEnvelopEnabled() &&
         a.GetRuntimeEnvelopSamplePerGroup() == b.GetRuntimeEnvelopSamplePerGroup() &&
         a.GetRuntimeEnvelopActiveHigh() == b.GetRuntimeEnvelopActiveHigh() &&
         Same(ArrayOf(a, &Mgr::GetRuntimeEnvelopGammaCP),
              ArrayOf(b, &Mgr::GetRuntimeEnvelopGammaCP));
}

void CopyPins(Mgr& to, const Mgr& from) {
  for (uint32_t pin = 0; pin < kOutPinCount; ++pin) {
    const PinView view(from, pin);
    to.SetPin(pin, view.port_index, view.port_pin_index, view.pwm_type, view.stop_value,
              view.keep_level, view.multi_pin_value, view.record);
  }
}

void CopyEvents(Mgr& to, const Mgr& from) {
  to.SetEnableColorEvent(from.GetEnableColorEvent());
  const int32_t count = from.GetEventColorCount();
  to.SetEventColorCount(count);
  for (int32_t e = 0; e < count; ++e) {
    const auto set = ArrayOf(from, &Mgr::GetEventCurveSet, e);
    const auto pins = ArrayOf(from, &Mgr::GetEventBindedPins, e);
    to.SetEventType(e, from.GetEventType(e));
    to.SetEventColor(e, from.GetEventColor(e));
    to.SetEventLevel(e, from.GetEventLevel(e));
    to.SetEventCurveMap(e, from.GetEventCurveMap(e));
    to.SetEventCurveSet(e, set.data(), static_cast<int32_t>(set.size()));
    to.SetEventBindedPins(e, pins.data(), static_cast<int32_t>(pins.size()));
    to.SetEventSpeed(e, from.GetEventSpeed(e));
  }
}

void CopyDynamicCurve(Mgr& to, const Mgr& from) {
  to.SetDynamicCurveEnable(from.GetDynamicCurveEnable());
  const int32_t count = from.GetDynamicCurveColorCount();
  to.SetDynamicCurveColorCount(count);
  for (int32_t i = 0; i < count; ++i) to.SetDynamicCurveColor(i, from.GetDynamicCurveColor(i));
  to.SetDynamicCurveActiveHigh(from.GetDynamicCurveActiveHigh());
  const auto table = ArrayOf(from, &Mgr::GetDynamicCurveTable);
  to.SetDynamicCurveTable(table.data(), static_cast<int32_t>(table.size()));
  to.SetDynamicCurveGroupNum(from.GetDynamicCurveGroupNum());
}

void CopyExpanders(Mgr& to, const Mgr& from) {
  const int32_t count = from.GetIOExpanderCount();
  to.SetIOExpanderCount(count);
  for (int32_t x = 0; x < count; ++x) {
    to.SetIOExpanderName(x, from.GetIOExpanderName(x));
    ForEachEntry([&](int32_t group, int32_t entry) {
      to.SetIOExpanderClkSource(x, group, entry, from.GetIOExpanderClkSource(x, group, entry));
      to.SetIOExpanderCurrentType(x, group, entry, from.GetIOExpanderCurrentType(x, group, entry));
      return true;
    });
  }
}

void CopyFirmwareAndClocks(Mgr& to, const Mgr& from) {
  to.SetFirmwarePWMTimer(from.GetFirmwarePWMTimer());
  to.SetFirmwarePWMFrequency(from.GetFirmwarePWMFrequency());
  to.SetUsedRAMSize(from.GetUsedRAMSize());
  to.SetUsedStackSize(from.GetUsedStackSize());
  to.SetConvertMethod(from.GetConvertMethod());
  to.SetFirstHwPwmSourceClk(from.GetFirstHwPwmSourceClk());
  const int32_t count = from.GetHwPwmSourceClkCount();
  to.SetHwPwmSourceClkCount(count);
  for (int32_t i = 0; i < count; ++i) to.SetHwPwmSourceClk(i, from.GetHwPwmSourceClk(i));
}

template <typename T>
void CopyRgb(Mgr& to, const Mgr& from, void (Mgr::*get)(T*, T*, T*) const,
             void (Mgr::*set)(T, T, T)) {
  T red{}, green{}, blue{};
  (from.*get)(&red, &green, &blue);
  (to.*set)(red, green, blue);
}

void CopyColorLed(Mgr& to, const Mgr& from) {
  CopyRgb(to, from, &Mgr::GetLEDWaveLength, &Mgr::SetLEDWaveLength);
  CopyRgb(to, from, &Mgr::GetLEDMaxLumen, &Mgr::SetLEDMaxLumen);
  to.SetLEDMixingScale(from.GetLEDMixingScale());
  to.SetWavLenColorLEDMixEn(from.GetWavLenColorLEDMixEn());
  to.SetColorLEDParamSource(from.GetColorLEDParamSource());
  CopyRgb(to, from, &Mgr::GetColorLEDx, &Mgr::SetColorLEDx);
  CopyRgb(to, from, &Mgr::GetColorLEDy, &Mgr::SetColorLEDy);
  CopyRgb(to, from, &Mgr::GetColorLEDBigY, &Mgr::SetColorLEDBigY);
  CopyRgb(to, from, &Mgr::GetColorLEDComp, &Mgr::SetColorLEDComp);
}

void CopyRuntimeEnvelop(Mgr& to, const Mgr& from) {
  to.SetRuntimeEnvelopEnabled(from.GetRuntimeEnvelopEnabled());
  to.SetRuntimeEnvelopSamplePerGroup(from.GetRuntimeEnvelopSamplePerGroup());
  to.SetRuntimeEnvelopActiveHigh(from.GetRuntimeEnvelopActiveHigh());
  const auto gamma = ArrayOf(from, &Mgr::GetRuntimeEnvelopGammaCP);
  to.SetRuntimeEnvelopGammaCP(gamma.data(), static_cast<int32_t>(gamma.size()));
}

}  // namespace

void C_VeloraPinMapInfoMgr::CopyFrom(void* /*reserved*/, I_VeloraPinMapInfoMgr* other,
                                     int32_t withEvents) {
  if (!other || other == this) return;
  CopyPins(*this, *other);
  if (withEvents) CopyEvents(*this, *other);
  CopyDynamicCurve(*this, *other);
  CopyExpanders(*this, *other);
  CopyFirmwareAndClocks(*this, *other);
  CopyColorLed(*this, *other);
  serialLed_.CopyFrom(other->GetSerialLEDMgr());
  motorMode_.CopyFrom(other->GetMotorModeMgr());
  CopyRuntimeEnvelop(*this, *other);
}

int32_t C_VeloraPinMapInfoMgr::IsDifferent(void* /*reserved*/, I_VeloraPinMapInfoMgr* other,
                                           int32_t withEvents) {
  if (!other) return 1;
  if (other == this) return 0;
  const Mgr& a = *this;
  const Mgr& b = *other;
  const bool same = SamePins(a, b) && (!withEvents || SameEvents(a, b)) && SameFirmware(a, b) &&
                    a.GetIOExpanderCount() == b.GetIOExpanderCount() &&
                    serialLed_.IsSame(other->GetSerialLEDMgr()) &&
                    motorMode_.IsSame(other->GetMotorModeMgr()) && SameExpanders(a, b) &&
                    a.GetUserCtrlIOExpEnable() == b.GetUserCtrlIOExpEnable() &&
                    SameSelectPins(a, b) && SameClockGroups(a, b) && SameRuntimeEnvelop(a, b);
  return !same;
}

}  // namespace velora
