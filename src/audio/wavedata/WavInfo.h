// The format record of a sound.
#pragma once

#include <cstdint>

#include <velora/I_WavInfo.h>

namespace velora {

/// A new record is signed and otherwise empty.
class C_WavInfo final : public I_WavInfo {
 public:
  C_WavInfo() = default;
  C_WavInfo(const C_WavInfo&) = default;
  C_WavInfo& operator=(const C_WavInfo&) = default;

  uint32_t GetDurationMs() const override;
  uint32_t GetDataSize() const override { return dataSize_; }
  uint32_t GetSampleRate() const override { return sampleRate_; }
  uint32_t GetFrameCount() const override;
  uint16_t GetResolutionBits() const override { return resolutionBits_; }
  uint16_t GetContainerBits() const override { return containerBits_; }
  uint16_t GetChannels() const override { return channels_; }
  uint16_t GetContainerBytes() const override;
  uint16_t GetBlockAlign() const override;
  uint32_t GetBytesPerSecond() const override;
  int32_t IsSigned() const override { return signed_; }
  void SetSampleRate(uint32_t rate) override { sampleRate_ = rate; }
  void Assign(const I_WavInfo* other) override;
  void Set(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution, uint16_t container,
           int32_t isSigned) override;
  void GetWaveFormat(WaveFormatRecord* out) const override;

  /// Bytes of sample data.
  void SetDataSize(uint32_t size) { dataSize_ = size; }

  /// The other fields stay.
  void SetChannels(uint16_t channels) { channels_ = channels; }

 private:
  int32_t signed_ = 1;
  uint32_t sampleRate_ = 0;
  uint32_t dataSize_ = 0;
  uint16_t channels_ = 0;
  uint16_t resolutionBits_ = 0;
  uint16_t containerBits_ = 0;
};

}  // namespace velora
