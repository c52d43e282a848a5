// The format of a sound.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velora {

#pragma pack(push, 1)
/// The first 16 bytes of a "fmt " chunk, in the byte order of the machine.
struct WaveFormatRecord {
  uint16_t FormatTag;  ///< 1: PCM
  uint16_t Channels;
  uint32_t SampleRate;  ///< frames per second
  uint32_t BytesPerSecond;
  uint16_t BlockAlign;     ///< bytes of a frame
  uint16_t BitsPerSample;  ///< significant bits
};
#pragma pack(pop)
static_assert(sizeof(WaveFormatRecord) == 16 && offsetof(WaveFormatRecord, BitsPerSample) == 14);

/// A format record. A sample has `resolution` significant bits and occupies a
/// container; it is two's complement, or offset binary (half of the range added).
/// A frame is one sample of each channel.
///
/// Embedded in its owner. The order of the operations is the contract. 16
/// operations, 17 raw slots: the destructor takes two.
class I_WavInfo {
 public:
  /// Slot 0. Whole milliseconds of the sound, cut; 0 at rate 0.
  virtual uint32_t GetDurationMs() const = 0;

  /// Slot 1. Bytes of sample data.
  virtual uint32_t GetDataSize() const = 0;

  /// Slot 2. Frames per second.
  virtual uint32_t GetSampleRate() const = 0;

  /// Slot 3. Data size x 8 / container bits / channels in 32 bits, so that it
  /// wraps above 512 MB. More than the data hold for containers that are no whole
  /// bytes. 0 without channels or container.
  virtual uint32_t GetFrameCount() const = 0;

  /// Slots 4 and 5.
  virtual uint16_t GetResolutionBits() const = 0;
  virtual uint16_t GetContainerBits() const = 0;

  /// Slot 6.
  virtual uint16_t GetChannels() const = 0;

  /// Slot 7. Bytes that a sample occupies: container bits rounded up to bytes.
  virtual uint16_t GetContainerBytes() const = 0;

  /// Slots 8 and 9. Bytes of a frame, and of a second.
  virtual uint16_t GetBlockAlign() const = 0;
  virtual uint32_t GetBytesPerSecond() const = 0;

  /// Slot 10. Non-zero for two's complement.
  virtual int32_t IsSigned() const = 0;

  /// Slot 11.
  virtual void SetSampleRate(uint32_t rate) = 0;

  /// Slot 12. Takes over all fields; null is ignored.
  virtual void Assign(const I_WavInfo* other) = 0;

  /// Slot 13. `size` in bytes; nothing is checked.
  virtual void Set(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                   uint16_t container, int32_t isSigned) = 0;

  /// Slot 14. `out` must not be null.
  virtual void GetWaveFormat(WaveFormatRecord* out) const = 0;

  /// Slots 15 and 16.
  virtual ~I_WavInfo() = default;
};

}  // namespace velora
