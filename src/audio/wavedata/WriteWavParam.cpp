#include "audio/wavedata/WriteWavParam.h"

#include <velora/I_VeloraPinMapInfoMgr.h>

namespace velora {
namespace {

template <typename T>
void Give(T* out, T value) {
  if (out) *out = value;
}

}  // namespace

void C_WriteWavParam::SetTargetFormat(uint16_t resolution, uint16_t container, uint32_t isSigned) {
  targetResolution_ = resolution;
  targetContainer_ = container;
  targetSigned_ = isSigned;
  hasTargetFormat_ = true;
}

void C_WriteWavParam::GetTargetFormat(uint16_t* resolution, uint16_t* container,
                                      uint32_t* isSigned) const {
  Give(resolution, targetResolution_);
  Give(container, targetContainer_);
  Give(isSigned, targetSigned_);
}

void C_WriteWavParam::SetSilenceParams(uint32_t minLength, uint32_t threshold) {
  silenceMinLength_ = minLength;
  silenceThreshold_ = threshold;
  hasSilenceParams_ = true;
}

void C_WriteWavParam::GetSilenceParams(uint32_t* minLength, uint32_t* threshold) const {
  Give(minLength, silenceMinLength_);
  Give(threshold, silenceThreshold_);
}

int32_t C_WriteWavParam::GetConvertMethod() const {
  return pinMapMgr_ ? pinMapMgr_->GetConvertMethod() : 1;
}

void C_WriteWavParam::CopyFrom(const I_WriteWavParam& other) {
  C_WriteWavParam copy;  // other may be this object
  other.GetTargetFormat(&copy.targetResolution_, &copy.targetContainer_, &copy.targetSigned_);
  other.GetSilenceParams(&copy.silenceMinLength_, &copy.silenceThreshold_);
  copy.codecParam_ = other.GetCodecParam();
  copy.value1_ = other.GetValue1();
  copy.hasTargetFormat_ = other.HasTargetFormat() != 0;
  copy.hasSilenceParams_ = other.HasSilenceParams() != 0;
  copy.lscEnabled_ = other.GetLscEnabled();
  copy.lscTable_ = other.GetLscTable();
  copy.value4_ = other.GetValue4();
  copy.lveMode_ = other.GetLveMode();
  copy.lvePercent1_ = other.GetLvePercent1();
  copy.lvePercent2_ = other.GetLvePercent2();
  copy.lvePercent3_ = other.GetLvePercent3();
  copy.lscIndex_ = other.GetLscIndex();
  copy.pinMapMgr_ = other.GetPinMapMgr();
  *this = copy;
}

}  // namespace velora
