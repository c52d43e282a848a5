#include "audio/wavedata/WavInfo.h"

namespace velora {
namespace {

constexpr uint16_t kPcmTag = 1;

}  // namespace

uint32_t C_WavInfo::GetDurationMs() const {
  if (sampleRate_ == 0) return 0;
  const double seconds = static_cast<double>(GetFrameCount()) / sampleRate_;
  return static_cast<uint32_t>(static_cast<uint64_t>(seconds * 1000));
}

uint32_t C_WavInfo::GetFrameCount() const {
  if (containerBits_ == 0 || channels_ == 0) return 0;
  return dataSize_ * 8 / containerBits_ / channels_;
}

uint16_t C_WavInfo::GetContainerBytes() const {
  return static_cast<uint16_t>((containerBits_ + 7u) >> 3);
}

uint16_t C_WavInfo::GetBlockAlign() const {
  return static_cast<uint16_t>(uint32_t{channels_} * GetContainerBytes());
}

uint32_t C_WavInfo::GetBytesPerSecond() const {
  return channels_ * sampleRate_ * GetContainerBytes();
}

void C_WavInfo::Assign(const I_WavInfo* other) {
  if (!other) return;
  Set(other->GetSampleRate(), other->GetDataSize(), other->GetChannels(),
      other->GetResolutionBits(), other->GetContainerBits(), other->IsSigned());
}

void C_WavInfo::Set(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                    uint16_t container, int32_t isSigned) {
  signed_ = isSigned;
  sampleRate_ = rate;
  dataSize_ = size;
  channels_ = channels;
  resolutionBits_ = resolution;
  containerBits_ = container;
}

void C_WavInfo::GetWaveFormat(WaveFormatRecord* out) const {
  *out = {kPcmTag, channels_, sampleRate_, GetBytesPerSecond(), GetBlockAlign(), resolutionBits_};
}

}  // namespace velora
