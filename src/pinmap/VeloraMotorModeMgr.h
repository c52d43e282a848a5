// The motor settings of a project, in memory.
#pragma once

#include <velora/I_VeloraMotorModeMgr.h>

#include <cstdint>
#include <vector>

#include "pinmap/UniqueTable.h"

namespace velora {

/// See I_VeloraMotorModeMgr for what the operations do.
class C_VeloraMotorModeMgr final : public I_VeloraMotorModeMgr {
 public:
  void CopyFrom(const I_VeloraMotorModeMgr* other) override;
  int32_t IsSame(const I_VeloraMotorModeMgr* other) const override;
  int32_t Save(I_CUIniFile* store) override;
  int32_t Load(I_CUIniFile* store) override;

  void SetEnableMotorMode(int32_t flag) override { enableMotorMode_ = flag; }
  int32_t GetEnableMotorMode() const override { return enableMotorMode_; }
  void SetMotorMode(const uint32_t* mode) override;
  uint32_t GetMotorMode() const override { return motorMode_; }
  void SetGPIOCount(const int32_t* count) override;
  int32_t GetGPIOCount() const override { return gpioCount_; }
  void SetADCSectorCount(const int32_t* count) override;
  int32_t GetADCSectorCount() const override { return adcSectorCount_; }

  const GPIOSectorInfo* BuildGPIOSectors(const int32_t* gpioCount, int32_t* count) override;
  const GPIOSectorInfo* GetGPIOSectors(int32_t* count) const override;
  const GPIOSectorInfo* GetGPIOSectorAt(const int32_t* index) const override;
  const GPIOSectorInfo* FindGPIOSectorByAngle(const int32_t* angle) const override;
  int32_t AddGPIOSector(const GPIOSectorInfo* info) override;
  int32_t ClearGPIOSectors() override;
  int32_t SortGPIOSectors() override;

  const ADCSectorInfo* BuildADCSectors(const int32_t* adcSectorCount, const int32_t* adcRange,
                                       int32_t* count) override;
  const ADCSectorInfo* GetADCSectors(int32_t* count) const override;
  const ADCSectorInfo* GetADCSectorAt(const int32_t* index) const override;
  const ADCSectorInfo* FindADCSectorByAngle(const int32_t* angle) const override;
  int32_t AddADCSector(const ADCSectorInfo* info) override;
  int32_t ClearADCSectors() override;
  int32_t SortADCSectors() override;

  const int32_t* GetServoPins(int32_t* count) const override;
  int32_t HasServoPin(const int32_t* pin) const override;
  int32_t AddServoPin(const int32_t* pin) override;
  int32_t ClearServoPins() override;
  int32_t SortServoPins() override;

  uint8_t AngleToServoLevel(const int32_t* angle) const override;

 private:
  int32_t enableMotorMode_ = 0;
  uint32_t motorMode_ = 0;  // 0 to 2
  int32_t gpioCount_ = 0;
  int32_t adcSectorCount_ = 0;
  T_UniqueTable<GPIOSectorInfo, &GPIOSectorInfo::SectorIndex> gpioSectors_;
  T_UniqueTable<ADCSectorInfo, &ADCSectorInfo::SectorIndex> adcSectors_;
  std::vector<GPIOSectorInfo> generatedGpioSectors_;
  std::vector<ADCSectorInfo> generatedAdcSectors_;
  T_UniqueTable<int32_t, std::identity{}> servoPins_;
};

}  // namespace velora
