#include "audio/wavedata/SampleFormat.h"

namespace velora {
namespace {

constexpr uint16_t kMaxBits = 32;

}  // namespace

SampleFormat::SampleFormat(uint16_t resolutionBits, uint16_t containerBits, bool twosComplement)
    : isSigned(twosComplement), resolution(resolutionBits) {
  if (resolution == 0 || resolution > kMaxBits) resolution = kMaxBits;
  if (containerBits <= kMaxBits) bytes = static_cast<uint16_t>((containerBits + 7) >> 3);
  signBit = 1u << (resolution - 1);
  signExtend = 0u - signBit;
  valueMask = signBit | (signBit - 1);
  minValue = static_cast<int32_t>(signExtend);
  maxValue = static_cast<int32_t>(signBit - 1);
}

SampleFormat::SampleFormat(const I_WavInfo& info)
    : SampleFormat(info.GetResolutionBits(), info.GetContainerBits(), info.IsSigned() != 0) {}

}  // namespace velora
