// The serial LED settings of a project, in memory.
#pragma once

#include <velora/I_VeloraSerialLEDMgr.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace velora {

/// See I_VeloraSerialLEDMgr for what the operations do.
class C_VeloraSerialLEDMgr final : public I_VeloraSerialLEDMgr {
 public:
  static constexpr uint32_t kModeCount = 4;

  void CopyFrom(const I_VeloraSerialLEDMgr* other) override;
  int32_t IsSame(const I_VeloraSerialLEDMgr* other) const override;
  int32_t Save(I_CUIniFile* store) override;
  int32_t Load(I_CUIniFile* store) override;

  void SetSampleFreq(int32_t value) override;
  uint8_t GetSampleFreq() const override { return sampleFreq_; }
  void SetColorType(uint8_t value) override { colorType_ = value; }
  uint8_t GetColorType() const override { return colorType_; }
  void SetScanType(uint8_t value) override { scanType_ = value; }
  uint8_t GetScanType() const override { return scanType_; }
  void SetEnable(int32_t flag) override { enable_ = flag; }
  int32_t GetEnable() const override { return enable_; }
  void SetCount(int32_t count) override;
  int32_t GetCount() const override { return count_; }
  void SetWireMode(int32_t mode) override { wireMode_ = mode; }
  int32_t GetWireMode() const override { return wireMode_; }
  void SetPinUse(uint8_t value, uint32_t mode) override;
  uint8_t GetPinUse(uint32_t mode) const override;

  void SetHighLevel0Time(double time) override { highLevel0Time_ = time; }
  double GetHighLevel0Time() const override { return highLevel0Time_; }
  void SetHighLevel1Time(double time) override { highLevel1Time_ = time; }
  double GetHighLevel1Time() const override { return highLevel1Time_; }
  void SetLowLevel0Time(double time) override { lowLevel0Time_ = time; }
  double GetLowLevel0Time() const override { return lowLevel0Time_; }
  void SetLowLevel1Time(double time) override { lowLevel1Time_ = time; }
  double GetLowLevel1Time() const override { return lowLevel1Time_; }
  void SetHighLevel0Tick(uint8_t tick) override { highLevel0Tick_ = tick; }
  uint8_t GetHighLevel0Tick() const override { return highLevel0Tick_; }
  void SetHighLevel1Tick(uint8_t tick) override { highLevel1Tick_ = tick; }
  uint8_t GetHighLevel1Tick() const override { return highLevel1Tick_; }
  void SetLowLevel0Tick(uint8_t tick) override { lowLevel0Tick_ = tick; }
  uint8_t GetLowLevel0Tick() const override { return lowLevel0Tick_; }
  void SetLowLevel1Tick(uint8_t tick) override { lowLevel1Tick_ = tick; }
  uint8_t GetLowLevel1Tick() const override { return lowLevel1Tick_; }

  void SetBrightnessLevel(int32_t level) override;
  uint8_t GetBrightnessLevel() const override { return brightnessLevel_; }
  void SetClockRateMode(int32_t mode) override;
  uint8_t GetClockRateMode() const override { return clockRateMode_; }
  void SetOrderBit(uint8_t value) override { orderBit_ = value; }
  uint8_t GetOrderBit() const override { return orderBit_; }
  void SetIsSupportConvert(int32_t flag) override { isSupportConvert_ = flag; }
  int32_t GetIsSupportConvert() const override { return isSupportConvert_; }
  int32_t GetColorChannelCount() const override;
  void SetSPIClock(int32_t clock) override { spiClock_ = clock; }
  int32_t GetSPIClock() const override { return spiClock_; }

  void SetOneWireDeviceName(const char* name) override;
  const char* GetOneWireDeviceName() const override { return oneWireDeviceName_.c_str(); }
  void SetTwoWireDeviceName(const char* name) override;
  const char* GetTwoWireDeviceName() const override { return twoWireDeviceName_.c_str(); }
  void SetExtendPinInfo(uint32_t mode, const char* text) override;
  const char* GetExtendPinInfo(uint32_t mode) const override;
  void SetVixenImportInterval(int32_t interval) override { vixenImportInterval_ = interval; }
  int32_t GetVixenImportInterval() const override { return vixenImportInterval_; }
  void SetAdjustCurve(const tagVLRCurveCtrlPoint* points, int32_t count) override;
  const tagVLRCurveCtrlPoint* GetAdjustCurve(int32_t* count) const override;

 private:
  /// The keys in their order, for a reader or a writer.
  template <typename Archive>
  void Transfer(Archive& archive);

  double highLevel0Time_ = 0.35;
  double highLevel1Time_ = 0.7;
  double lowLevel0Time_ = 0.8;
  double lowLevel1Time_ = 0.6;
  uint8_t sampleFreq_ = 30;
  uint8_t colorType_ = 1;
  uint8_t scanType_ = 4;
  int32_t enable_ = 0;
  int32_t isSupportConvert_ = 1;
  int32_t count_ = 64;
  int32_t spiClock_ = 0;
  int32_t wireMode_ = -1;
  std::array<uint8_t, kModeCount> pinUse_{};
  uint8_t orderBit_ = 1;
  uint8_t highLevel0Tick_ = 6;
  uint8_t highLevel1Tick_ = 12;
  uint8_t lowLevel0Tick_ = 18;
  uint8_t lowLevel1Tick_ = 12;
  uint8_t brightnessLevel_ = 31;
  uint8_t clockRateMode_ = 0;
  std::string emptyText_;  // what a mode out of range gets
  std::string oneWireDeviceName_;
  std::string twoWireDeviceName_;
  std::array<std::string, kModeCount> extendPinInfo_;
  int32_t vixenImportInterval_ = 25;
  std::vector<tagVLRCurveCtrlPoint> adjustCurve_;
};

}  // namespace velora
