#include "pinmap/VeloraSerialLEDMgr.h"

#include <tuple>
#include <utility>

#include "pinmap/Boundary.h"
#include "pinmap/ProjectSection.h"

namespace velora {

namespace {

using Mgr = I_VeloraSerialLEDMgr;

/// A value that is copied and compared by itself.
template <typename Setter, typename Getter>
struct Value {
  Setter set;
  Getter get;
};
template <typename Setter, typename Getter>
Value(Setter, Getter) -> Value<Setter, Getter>;

constexpr std::tuple kValues{
    Value{&Mgr::SetSampleFreq, &Mgr::GetSampleFreq},
    Value{&Mgr::SetColorType, &Mgr::GetColorType},
    Value{&Mgr::SetScanType, &Mgr::GetScanType},
    Value{&Mgr::SetEnable, &Mgr::GetEnable},
    Value{&Mgr::SetCount, &Mgr::GetCount},
    Value{&Mgr::SetWireMode, &Mgr::GetWireMode},
    Value{&Mgr::SetHighLevel0Time, &Mgr::GetHighLevel0Time},
    Value{&Mgr::SetHighLevel1Time, &Mgr::GetHighLevel1Time},
    Value{&Mgr::SetLowLevel0Time, &Mgr::GetLowLevel0Time},
    Value{&Mgr::SetLowLevel1Time, &Mgr::GetLowLevel1Time},
    Value{&Mgr::SetHighLevel0Tick, &Mgr::GetHighLevel0Tick},
    Value{&Mgr::SetHighLevel1Tick, &Mgr::GetHighLevel1Tick},
    Value{&Mgr::SetLowLevel0Tick, &Mgr::GetLowLevel0Tick},
    Value{&Mgr::SetLowLevel1Tick, &Mgr::GetLowLevel1Tick},
    Value{&Mgr::SetBrightnessLevel, &Mgr::GetBrightnessLevel},
    Value{&Mgr::SetClockRateMode, &Mgr::GetClockRateMode},
    Value{&Mgr::SetOrderBit, &Mgr::GetOrderBit},
    Value{&Mgr::SetIsSupportConvert, &Mgr::GetIsSupportConvert},
    Value{&Mgr::SetSPIClock, &Mgr::GetSPIClock},
    Value{&Mgr::SetVixenImportInterval, &Mgr::GetVixenImportInterval},
};

constexpr PointKeys kAdjustCurveKeys{"SLED_AdjustCurveCtrlPointNum",
                                     "SLED_AdjustCurveCtrlPoint%d_X",
                                     "SLED_AdjustCurveCtrlPoint%d_Y"};

constexpr int32_t InRange(int32_t value, int32_t low, int32_t high, int32_t otherwise) {
  return value >= low && value <= high ? value : otherwise;
}

bool SameTexts(const Mgr& a, const Mgr& b) {
  return TextOf(a.GetOneWireDeviceName()) == TextOf(b.GetOneWireDeviceName()) &&
         TextOf(a.GetTwoWireDeviceName()) == TextOf(b.GetTwoWireDeviceName());
}

bool SameModes(const Mgr& a, const Mgr& b) {
  for (uint32_t mode = 0; mode < C_VeloraSerialLEDMgr::kModeCount; ++mode) {
    if (a.GetPinUse(mode) != b.GetPinUse(mode)) return false;
    if (TextOf(a.GetExtendPinInfo(mode)) != TextOf(b.GetExtendPinInfo(mode))) return false;
  }
  return true;
}

}  // namespace

void C_VeloraSerialLEDMgr::CopyFrom(const I_VeloraSerialLEDMgr* other) {
  if (!other || other == this) return;
  Mgr& self = *this;
  std::apply([&](const auto&... value) { ((self.*value.set)((other->*value.get)()), ...); },
             kValues);
  SetOneWireDeviceName(other->GetOneWireDeviceName());
  SetTwoWireDeviceName(other->GetTwoWireDeviceName());
  for (uint32_t mode = 0; mode < kModeCount; ++mode) {
    SetPinUse(other->GetPinUse(mode), mode);
    SetExtendPinInfo(mode, other->GetExtendPinInfo(mode));
  }
  const auto curve = ArrayOf(*other, &Mgr::GetAdjustCurve);
  SetAdjustCurve(curve.data(), static_cast<int32_t>(curve.size()));
}

int32_t C_VeloraSerialLEDMgr::IsSame(const I_VeloraSerialLEDMgr* other) const {
  if (!other) return 1;
  const Mgr& self = *this;
  const bool values = std::apply(
      [&](const auto&... value) { return (((self.*value.get)() == (other->*value.get)()) && ...); },
      kValues);
  return values && SameTexts(self, *other) && SameModes(self, *other) &&
         Same(ArrayOf(self, &Mgr::GetAdjustCurve), ArrayOf(*other, &Mgr::GetAdjustCurve));
}

template <typename Archive>
void C_VeloraSerialLEDMgr::Transfer(Archive& archive) {
  archive.Keep("SerialLEDSampleFreq", sampleFreq_);
  archive.Keep("SerialLEDColorType", colorType_);
  archive.Keep("SerialLEDScanType", scanType_);
  archive.Keep("SerialLEDEnable", enable_);
  archive.Keep("SerialLEDCount", count_);
  archive.Keep("SerialLEDWireMode", wireMode_);
  archive.Keep("SerialLEDHighLevel0Time", highLevel0Time_);
  archive.Keep("SerialLEDHighLevel1Time", highLevel1Time_);
  archive.Keep("SerialLEDLowLevel0Time", lowLevel0Time_);
  archive.Keep("SerialLEDLowLevel1Time", lowLevel1Time_);
  archive.Keep("SerialLEDHighLevel0Tick", highLevel0Tick_);
  archive.Keep("SerialLEDHighLevel1Tick", highLevel1Tick_);
  archive.Keep("SerialLEDLowLevel0Tick", lowLevel0Tick_);
  archive.Keep("SerialLEDLevel1Tick", lowLevel1Tick_);  // the only key without "Low"
  archive.Keep("BrightnessLevel", brightnessLevel_);
  archive.Keep("ClockRateMode", clockRateMode_);
  archive.Keep("OrderBit", orderBit_);
  archive.Keep("IsSupportConvertVLR", isSupportConvert_);
  archive.Keep("SWALEDSPIClock", spiClock_);
  archive.Text("SLEDOneWireModeDeviceName", oneWireDeviceName_);
  archive.Text("SLEDTwoWireModeDeviceName", twoWireDeviceName_);
  for (uint32_t mode = 0; mode < kModeCount; ++mode) {
    archive.Keep(KeyText("SerialLEDPinUse_Mode%d", mode), pinUse_[mode]);
    archive.Text(KeyText("SerialLEDExtendPinInfo_Mode%d", mode), extendPinInfo_[mode]);
  }
  archive.Keep("VixenImportInterval", vixenImportInterval_);
  TransferPoints(archive, kAdjustCurveKeys, adjustCurve_);
}

int32_t C_VeloraSerialLEDMgr::Save(I_CUIniFile* store) {
  if (!store) return 0;
  SectionWriter writer(*store, kPinMapSection);
  Transfer(writer);
  return 1;
}

int32_t C_VeloraSerialLEDMgr::Load(I_CUIniFile* store) {
  if (!store) return 0;
  SectionReader reader(*store, kPinMapSection);
  Transfer(reader);
  return 1;
}

void C_VeloraSerialLEDMgr::SetSampleFreq(int32_t value) {
  sampleFreq_ = static_cast<uint8_t>(InRange(value, 1, 100, 30));
}

void C_VeloraSerialLEDMgr::SetCount(int32_t count) { count_ = InRange(count, 1, 65025, 64); }

void C_VeloraSerialLEDMgr::SetPinUse(uint8_t value, uint32_t mode) {
  if (mode < kModeCount) pinUse_[mode] = value;
}

uint8_t C_VeloraSerialLEDMgr::GetPinUse(uint32_t mode) const {
  return mode < kModeCount ? pinUse_[mode] : 0xFF;
}

void C_VeloraSerialLEDMgr::SetBrightnessLevel(int32_t level) {
  brightnessLevel_ = static_cast<uint8_t>(InRange(level, 1, 31, 31));
}

void C_VeloraSerialLEDMgr::SetClockRateMode(int32_t mode) {
  clockRateMode_ = static_cast<uint8_t>(InRange(mode, 0, 3, 0));
}

int32_t C_VeloraSerialLEDMgr::GetColorChannelCount() const {
  if (wireMode_ < 0 || wireMode_ > 3) return 0;
  if (colorType_ <= 2) return 3;
  return colorType_ <= 4 ? 2 : 0;
}

void C_VeloraSerialLEDMgr::SetOneWireDeviceName(const char* name) {
  oneWireDeviceName_ = TextOf(name);
}

void C_VeloraSerialLEDMgr::SetTwoWireDeviceName(const char* name) {
  twoWireDeviceName_ = TextOf(name);
}

void C_VeloraSerialLEDMgr::SetExtendPinInfo(uint32_t mode, const char* text) {
  if (mode < kModeCount) extendPinInfo_[mode] = TextOf(text);
}

const char* C_VeloraSerialLEDMgr::GetExtendPinInfo(uint32_t mode) const {
  return (mode < kModeCount ? extendPinInfo_[mode] : emptyText_).c_str();
}

void C_VeloraSerialLEDMgr::SetAdjustCurve(const tagVLRCurveCtrlPoint* points, int32_t count) {
  adjustCurve_ = CopyOf(points, count);
}

const tagVLRCurveCtrlPoint* C_VeloraSerialLEDMgr::GetAdjustCurve(int32_t* count) const {
  return HandOut(adjustCurve_, count);
}

}  // namespace velora
