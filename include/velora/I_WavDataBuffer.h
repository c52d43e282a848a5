// The samples of a sound, one at a time.
//
// Values are signed whatever the stored form; silence is 0. For whole blocks of
// samples the library has faster ways of its own.
#pragma once

#include <cstdint>

namespace velora {

/// A cursor over one channel. It may stand anywhere, also outside the sound,
/// where every sample reads as 0 and writing does nothing.
///
/// The order of the operations is the contract. Six operations, seven raw slots:
/// the destructor takes two.
class I_WavDataBufferIterator {
 public:
  /// Slot 0.
  virtual void Seek(uint32_t frame) = 0;

  /// Slots 1 and 2. One frame on or back.
  virtual void Next() = 0;
  virtual void Prev() = 0;

  /// Slot 3.
  virtual int32_t Get() const = 0;

  /// Slot 4. The value is held to the range of the resolution.
  virtual void Set(int32_t value) = 0;

  /// Slots 5 and 6.
  virtual ~I_WavDataBufferIterator() = default;
};

/// Embedded in the sound. The order of the operations is the contract. Five
/// operations, six raw slots: the destructor takes two.
class I_WavDataBuffer {
 public:
  /// Slot 0. 0 outside the data.
  virtual int32_t GetSample(uint32_t frame, uint16_t channel) const = 0;

  /// Slot 1. The value is not clamped: bits that do not fit are lost. Nothing
  /// happens outside the data.
  virtual void SetSample(uint32_t frame, int32_t value, uint16_t channel) = 0;

  /// Slot 2. The largest magnitude in the frames `from` to `to` - 1 (`to` itself
  /// does not count) of the channels from first to last, both included. -1 when
  /// `to` is not a frame or the last channel not a channel of the sound, then 0
  /// when there is nothing between `from` and `to`.
  virtual int64_t GetPeak(uint32_t from, uint32_t to, uint16_t firstChannel,
                          uint16_t lastChannel) const = 0;

  /// Slot 3. The iterator belongs to the buffer and dies with the next call.
  virtual I_WavDataBufferIterator* CreateIterator(uint32_t frame, uint16_t channel) = 0;

  /// Slots 4 and 5.
  virtual ~I_WavDataBuffer() = default;
};

}  // namespace velora
