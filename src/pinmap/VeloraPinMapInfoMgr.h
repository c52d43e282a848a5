// The pin map of a project, in memory.
#pragma once

#include <velora/I_VeloraPinMapInfoMgr.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "pinmap/VeloraMotorModeMgr.h"
#include "pinmap/VeloraSerialLEDMgr.h"

namespace velora {

/// What a colour event sets off.
enum EventColorType : int32_t {
  kEventColor = 1,
  kEventCurveSet = 2,
  kEventCurveMap = 3,
  kEventSpeed = 4,
  kEventLevel = 5,
};

/// A list of up to 32 indices: ends at the first negative entry or with the array.
using IndexList = std::array<int32_t, kOutPinCount>;

/// One colour event. Of Color, Level, CurveMap, CurveSet and Speed the one that the type
/// names counts.
struct EventColorInfo {
  int32_t Type;    ///< an EventColorType
  uint32_t Color;  ///< 0xRRGGBB
  int32_t Level;
  int32_t CurveMap;
  IndexList CurveSet;    ///< curves
  IndexList BindedPins;  ///< pins
  float Speed;
};

inline constexpr int32_t kExpanderGroups = 3;
inline constexpr int32_t kExpanderEntries = 8;

/// A value for each entry of each group of an IO expander.
using ExpanderTable = std::array<std::array<int32_t, kExpanderEntries>, kExpanderGroups>;

/// One IO expander.
struct IOExpanderInfo {
  std::string Name;
  ExpanderTable ClkSource;
  ExpanderTable CurrentType;
};

/// See I_VeloraPinMapInfoMgr for what the operations do.
///
/// Pins are kept as parallel arrays; a pin's index is its channel in the event stream.
/// The records point into the manager's own points, so the manager can't be copied as a
/// value: CopyFrom copies.
class C_VeloraPinMapInfoMgr final : public I_VeloraPinMapInfoMgr {
 public:
  C_VeloraPinMapInfoMgr();
  C_VeloraPinMapInfoMgr(const C_VeloraPinMapInfoMgr&) = delete;
  C_VeloraPinMapInfoMgr& operator=(const C_VeloraPinMapInfoMgr&) = delete;

  int32_t Save(I_CUIniFile* store) override;
  int32_t Load(I_CUIniFile* store) override;

  int32_t SetPin(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex, uint8_t pwmType,
                 uint8_t stopValue, uint8_t keepLevel, uint64_t multiPinValue,
                 const PinRecord* record) override;
  int32_t SetPin32(uint32_t pin, uint16_t portIndex, uint8_t portPinIndex, uint8_t pwmType,
                   uint8_t stopValue, uint8_t keepLevel, uint8_t multiPinValue,
                   const PinRecord* record) override;
  const PinRecord* GetPin(uint32_t pin, uint16_t* portIndex, uint8_t* portPinIndex,
                          uint8_t* pwmType, uint8_t* stopValue, uint8_t* keepLevel,
                          uint64_t* multiPinValue) const override;
  const PinRecord* GetPin8(uint32_t pin, uint16_t* portIndex, uint8_t* portPinIndex,
                           uint8_t* pwmType, uint8_t* stopValue, uint8_t* keepLevel,
                           uint8_t* multiPinValue) const override;
  const PinRecord* ComputeOutputLevels() override;

  void SetFirmwarePWMTimer(const char* name) override;
  const char* GetFirmwarePWMTimer() const override { return firmwarePwmTimer_.c_str(); }
  void SetFirmwarePWMFrequency(int32_t value) override { firmwarePwmFrequency_ = value; }
  int32_t GetFirmwarePWMFrequency() const override { return firmwarePwmFrequency_; }
  void SetUsedRAMSize(uint16_t bytes) override { usedRamSize_ = bytes; }
  uint16_t GetUsedRAMSize() const override { return usedRamSize_; }
  void SetUsedStackSize(uint16_t bytes) override { usedStackSize_ = bytes; }
  uint16_t GetUsedStackSize() const override { return usedStackSize_; }

  void SetHostValue1(int32_t value) override { hostValue1_ = value; }
  int32_t GetHostValue1() const override { return hostValue1_; }
  void SetHostValue2(int32_t value) override { hostValue2_ = value; }
  int32_t GetHostValue2() const override { return hostValue2_; }
  void SetHostValue3(int32_t value) override { hostValue3_ = value; }
  int32_t GetHostValue3() const override { return hostValue3_; }
  void SetHostValue4(int32_t value) override { hostValue4_ = value; }
  int32_t GetHostValue4() const override { return hostValue4_; }
  void SetHostPinValue(uint32_t pin, uint32_t value) override;
  uint32_t GetHostPinValue(uint32_t pin) const override;
  void SetHostValue5(int32_t value) override { hostValue5_ = value; }
  int32_t GetHostValue5() const override { return hostValue5_; }
  void SetHostValue6(int32_t value) override { hostValue6_ = value; }
  int32_t GetHostValue6() const override { return hostValue6_; }
  void SetHostValue7(int32_t value) override { hostValue7_ = value; }
  int32_t GetHostValue7() const override { return hostValue7_; }
  void SetHostValue8(int32_t value) override { hostValue8_ = value; }
  int32_t GetHostValue8() const override { return hostValue8_; }

  int32_t GetConvertMethod() const override { return convertMethod_; }
  void SetConvertMethod(int32_t method) override { convertMethod_ = method; }
  void SetHwPwmSourceClk(int32_t index, int32_t value) override;
  void SetFirstHwPwmSourceClk(int32_t value) override;
  int32_t GetHwPwmSourceClk(int32_t index) const override;
  int32_t GetFirstHwPwmSourceClk() const override { return GetHwPwmSourceClk(0); }

  void SetEnableColorEvent(int32_t flag) override { enableColorEvent_ = flag; }
  int32_t GetEnableColorEvent() const override { return enableColorEvent_; }
  void SetEventColorCount(int32_t count) override;
  int32_t GetEventColorCount() const override;
  void SetEventType(int32_t index, int32_t type) override;
  int32_t GetEventType(int32_t index) const override;
  uint32_t GetEventColor(int32_t index) const override;
  void SetEventColor(int32_t index, uint32_t color) override;
  int32_t GetEventCurveMap(int32_t index) const override;
  void SetEventCurveMap(int32_t index, int32_t map) override;
  const int32_t* GetEventCurveSet(int32_t index, int32_t* count) const override;
  void SetEventCurveSet(int32_t index, const int32_t* values, int32_t count) override;
  float GetEventSpeed(int32_t index) const override;
  void SetEventSpeed(int32_t index, float speed) override;
  int32_t GetEventLevel(int32_t index) const override;
  void SetEventLevel(int32_t index, int32_t level) override;
  const int32_t* GetEventBindedPins(int32_t index, int32_t* count) const override;
  void SetEventBindedPins(int32_t index, const int32_t* values, int32_t count) override;

  void SetIOExpanderCount(int32_t count) override;
  int32_t GetIOExpanderCount() const override;
  void SetIOExpanderName(int32_t index, const char* name) override;
  const char* GetIOExpanderName(int32_t index) const override;
  void SetIOExpanderClkSource(int32_t index, int32_t group, int32_t entry, int32_t value) override;
  int32_t GetIOExpanderClkSource(int32_t index, int32_t group, int32_t entry) const override;
  void SetIOExpanderCurrentType(int32_t index, int32_t group, int32_t entry,
                                int32_t value) override;
  int32_t GetIOExpanderCurrentType(int32_t index, int32_t group, int32_t entry) const override;
  void SetIoExpanderSelectPinCount(int32_t count) override;
  int32_t GetIoExpanderSelectPinCount() const override;
  int32_t SetIoExpanderSelectPin(int32_t index, uint32_t port, uint32_t pin) override;
  int32_t GetIoExpanderSelectPin(int32_t index, uint32_t* port, uint32_t* pin) const override;
  void SetHwPwmSourceClkCount(int32_t count) override;
  int32_t GetHwPwmSourceClkCount() const override;

  void CopyFrom(void* reserved, I_VeloraPinMapInfoMgr* other, int32_t withEvents) override;
  int32_t IsDifferent(void* reserved, I_VeloraPinMapInfoMgr* other, int32_t withEvents) override;

  void SetDynamicCurveEnable(int32_t flag) override { dynamicCurveEnable_ = flag; }
  int32_t GetDynamicCurveEnable() const override { return dynamicCurveEnable_; }
  int32_t GetDynamicCurveColorCount() const override;
  void SetDynamicCurveColorCount(int32_t count) override;
  void SetDynamicCurveColor(int32_t index, int32_t color) override;
  int32_t GetDynamicCurveColor(int32_t index) const override;
  void SetDynamicCurveTable(const tagVLRCurveCtrlPoint* points, int32_t count) override;
  const tagVLRCurveCtrlPoint* GetDynamicCurveTable(int32_t* count) const override;
  void SetDynamicCurveActiveHigh(int32_t flag) override { dynamicCurveActiveHigh_ = flag; }
  int32_t GetDynamicCurveActiveHigh() const override { return dynamicCurveActiveHigh_; }
  void SetDynamicCurveGroupNum(int32_t value) override { dynamicCurveGroupNum_ = value; }
  int32_t GetDynamicCurveGroupNum() const override { return dynamicCurveGroupNum_; }

  void SetWavLenColorLEDMixEn(int32_t flag) override { wavLenColorLedMixEn_ = flag; }
  int32_t GetWavLenColorLEDMixEn() const override { return wavLenColorLedMixEn_; }
  void SetLEDWaveLength(int32_t red, int32_t green, int32_t blue) override;
  void GetLEDWaveLength(int32_t* red, int32_t* green, int32_t* blue) const override;
  void SetLEDMaxLumen(int32_t red, int32_t green, int32_t blue) override;
  void GetLEDMaxLumen(int32_t* red, int32_t* green, int32_t* blue) const override;
  void SetLEDMixingScale(double scale) override { ledMixingScale_ = scale; }
  double GetLEDMixingScale() const override { return ledMixingScale_; }
  void SetColorLEDParamSource(int32_t source) override { colorLedParamSource_ = source; }
  int32_t GetColorLEDParamSource() const override { return colorLedParamSource_; }
  void SetColorLEDx(double red, double green, double blue) override;
  void GetColorLEDx(double* red, double* green, double* blue) const override;
  void SetColorLEDy(double red, double green, double blue) override;
  void GetColorLEDy(double* red, double* green, double* blue) const override;
  void SetColorLEDBigY(double red, double green, double blue) override;
  void GetColorLEDBigY(double* red, double* green, double* blue) const override;
  void SetColorLEDComp(double red, double green, double blue) override;
  void GetColorLEDComp(double* red, double* green, double* blue) const override;

  I_VeloraSerialLEDMgr* GetSerialLEDMgr() override { return &serialLed_; }
  I_VeloraMotorModeMgr* GetMotorModeMgr() override { return &motorMode_; }

  void SetUserCtrlIOExpEnable(int32_t flag) override { userCtrlIoExpEnable_ = flag; }
  int32_t GetUserCtrlIOExpEnable() const override { return userCtrlIoExpEnable_; }
  void SetRuntimeEnvelopEnabled(int32_t flag) override { runtimeEnvelopEnabled_ = flag; }
  int32_t GetRuntimeEnvelopEnabled() const override { return runtimeEnvelopEnabled_; }
  void SetRuntimeEnvelopSamplePerGroup(int32_t samples) override;
  int32_t GetRuntimeEnvelopSamplePerGroup() const override;
  void SetRuntimeEnvelopGammaCP(const tagVLRCurveCtrlPoint* points, int32_t count) override;
  const tagVLRCurveCtrlPoint* GetRuntimeEnvelopGammaCP(int32_t* count) const override;
  void SetRuntimeEnvelopActiveHigh(int32_t flag) override { runtimeEnvelopActiveHigh_ = flag; }
  int32_t GetRuntimeEnvelopActiveHigh() const override { return runtimeEnvelopActiveHigh_; }

 private:
  template <typename T>
  using PerPin = std::array<T, kOutPinCount>;
  template <typename T>
  using Rgb = std::array<T, 3>;  // red, green, blue
  using Points = std::vector<tagVLRCurveCtrlPoint>;

  /// Gives a pin its points and lets its record tell of them.
  void AdoptPoints(uint32_t pin, Points points);

  // Parts of the section, in their order, each described once for reader and writer.
  template <typename Archive>
  void TransferPin(Archive& archive, uint32_t pin);
  template <typename Archive>
  void TransferPinPoints(Archive& archive, uint32_t pin);
  template <typename Archive>
  void TransferFirmwareValues(Archive& archive);
  template <typename Archive>
  void TransferDynamicCurve(Archive& archive);
  template <typename Archive>
  void TransferExpanders(Archive& archive);
  template <typename Archive>
  void TransferClocks(Archive& archive);
  template <typename Archive>
  void TransferColorLed(Archive& archive);
  template <typename Archive>
  void TransferRuntimeEnvelop(Archive& archive);
  /// All keys behind the colour events.
  template <typename Archive>
  void TransferRest(Archive& archive, I_CUIniFile* store);

  PerPin<uint16_t> outPortIndex_;
  PerPin<uint8_t> outPortPinIndex_;
  PerPin<uint8_t> outPinPwmType_{};
  PerPin<uint8_t> outPinStopValue_{};
  PerPin<uint8_t> outPinKeepLevel_{};
  PerPin<uint64_t> outPinMultiPinValue_{};
  PerPin<PinRecord> pins_{};
  PerPin<Points> pinPoints_;  // what the records point to
  std::string firmwarePwmTimer_;
  int32_t firmwarePwmFrequency_ = 0;
  uint16_t usedRamSize_ = 0;
  uint16_t usedStackSize_ = 0;
  int32_t hostValue1_ = 0;
  int32_t hostValue5_ = 1;
  int32_t hostValue2_ = 0;
  int32_t hostValue3_ = 0;
  int32_t hostValue4_ = 0;
  PerPin<uint32_t> hostPinValue_{};
  int32_t hostValue6_ = 0;
  int32_t hostValue7_ = 1;
  int32_t hostValue8_ = 2;
  int32_t convertMethod_ = kConvertPwm;
  int32_t enableColorEvent_ = 0;
  std::vector<EventColorInfo> eventColors_;
  std::vector<IOExpanderInfo> ioExpanders_;
  std::vector<uint32_t> ioExpanderSelectPins_;  // port << 8 | pin
  int32_t userCtrlIoExpEnable_ = 0;
  std::vector<int32_t> hwPwmSourceClks_;
  int32_t dynamicCurveEnable_ = 0;
  std::vector<int32_t> dynamicCurveColors_;
  Points dynamicCurveTable_;
  int32_t dynamicCurveActiveHigh_ = 0;
  int32_t dynamicCurveGroupNum_ = 0;
  int32_t wavLenColorLedMixEn_ = 0;
  Rgb<int32_t> ledWaveLength_{610, 540, 470};
  Rgb<int32_t> ledMaxLumen_{700, 700, 700};
  double ledMixingScale_ = 1.0;
  int32_t colorLedParamSource_ = 0;
  Rgb<double> colorLedX_{0.662528233225, 0.222336598546, 0.126662160307};
  Rgb<double> colorLedY_{0.33722098144, 0.760020004636, 0.053425919494};
  Rgb<double> colorLedBigY_{128, 128, 128};
  Rgb<double> colorLedComp_{};
  C_VeloraSerialLEDMgr serialLed_;
  C_VeloraMotorModeMgr motorMode_;
  int32_t runtimeEnvelopEnabled_ = 0;
  int32_t runtimeEnvelopSamplePerGroup_ = 256;
  int32_t runtimeEnvelopActiveHigh_ = 1;
  Points runtimeEnvelopGammaCp_;
};

}  // namespace velora
