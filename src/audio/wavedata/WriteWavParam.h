// The write settings of a sound.
#pragma once

#include <cstdint>

#include <velora/I_WriteWavParam.h>

namespace velora {

class C_WriteWavParam final : public I_WriteWavParam {
 public:
  C_WriteWavParam() = default;
  C_WriteWavParam(const C_WriteWavParam&) = default;
  C_WriteWavParam& operator=(const C_WriteWavParam&) = default;

  void Reset() override { *this = C_WriteWavParam(); }
  void SetTargetFormat(uint16_t resolution, uint16_t container, uint32_t isSigned) override;
  int32_t HasTargetFormat() const override { return hasTargetFormat_; }
  void GetTargetFormat(uint16_t* resolution, uint16_t* container,
                       uint32_t* isSigned) const override;
  void SetCodecParam(uint32_t param) override { codecParam_ = param; }
  uint32_t GetCodecParam() const override { return codecParam_; }
  void SetSilenceParams(uint32_t minLength, uint32_t threshold) override;
  int32_t HasSilenceParams() const override { return hasSilenceParams_; }
  void GetSilenceParams(uint32_t* minLength, uint32_t* threshold) const override;
  void SetValue1(uint32_t value) override { value1_ = value; }
  uint32_t GetValue1() const override { return value1_; }
  void SetLscEnabled(uint32_t enabled) override { lscEnabled_ = enabled; }
  uint32_t GetLscEnabled() const override { return lscEnabled_; }
  void SetLscTable(uint32_t table) override { lscTable_ = table; }
  uint32_t GetLscTable() const override { return lscTable_; }
  void SetValue4(uint32_t value) override { value4_ = value; }
  uint32_t GetValue4() const override { return value4_; }
  void SetLveMode(uint8_t mode) override { lveMode_ = mode; }
  uint8_t GetLveMode() const override { return lveMode_; }
  void SetLvePercent1(uint16_t percent) override { lvePercent1_ = percent; }
  uint16_t GetLvePercent1() const override { return lvePercent1_; }
  void SetLvePercent2(uint16_t percent) override { lvePercent2_ = percent; }
  uint16_t GetLvePercent2() const override { return lvePercent2_; }
  void SetLvePercent3(uint16_t percent) override { lvePercent3_ = percent; }
  uint16_t GetLvePercent3() const override { return lvePercent3_; }
  void SetLscIndex(uint32_t index) override { lscIndex_ = index; }
  uint32_t GetLscIndex() const override { return lscIndex_; }
  int32_t GetConvertMethod() const override;
  void SetPinMapMgr(I_VeloraPinMapInfoMgr* manager) override { pinMapMgr_ = manager; }
  I_VeloraPinMapInfoMgr* GetPinMapMgr() const override { return pinMapMgr_; }

  /// Takes over every field.
  void CopyFrom(const I_WriteWavParam& other);

 private:
  uint16_t targetResolution_ = 0;
  uint16_t targetContainer_ = 0;
  uint32_t targetSigned_ = 0;
  uint32_t codecParam_ = 0;
  uint32_t silenceMinLength_ = 0;
  uint32_t silenceThreshold_ = 0;
  uint32_t value1_ = 0;
  bool hasTargetFormat_ = false;
  bool hasSilenceParams_ = false;
  uint32_t lscEnabled_ = 0;
  uint32_t lscTable_ = 0;
  uint32_t value4_ = 0;
  uint8_t lveMode_ = 0;
  uint16_t lvePercent1_ = 100;
  uint16_t lvePercent2_ = 100;
  uint16_t lvePercent3_ = 100;
  uint32_t lscIndex_ = 0;
  I_VeloraPinMapInfoMgr* pinMapMgr_ = nullptr;
};

}  // namespace velora
