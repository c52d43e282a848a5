// The sample block of a sound.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include <velora/I_WavDataBuffer.h>
#include <velora/I_WavInfo.h>
#include "audio/wavedata/SampleBlock.h"
#include "audio/wavedata/SampleFormat.h"

namespace velora {

class C_WavDataBuffer;

/// A cursor over one channel of a buffer. It keeps the format the buffer had when
/// it was made, and must not outlive the buffer.
class C_WavDataBufferIterator final : public I_WavDataBufferIterator {
 public:
  C_WavDataBufferIterator(C_WavDataBuffer& buffer, uint32_t frame, uint16_t channel);

  void Seek(uint32_t frame) override;
  void Next() override { offset_ += stride_; }
  void Prev() override { offset_ -= stride_; }
  int32_t Get() const override;
  void Set(int32_t value) override;

 private:
  bool IsInside() const;

  C_WavDataBuffer* buffer_;
  int64_t offset_ = 0;  ///< bytes from the start of the block, perhaps outside it
  uint16_t channel_;
  int64_t stride_;  ///< bytes of a frame
  SampleFormat format_;
};

/// Owns a block of bytes or borrows a foreign one, and reads it in the format of
/// the record it is bound to. No access leaves the block, whatever that record
/// says of its size.
class C_WavDataBuffer final : public I_WavDataBuffer {
 public:
  /// Bound to `info` for life. The record is looked at by Bind alone, and may come
  /// to life after the buffer.
  explicit C_WavDataBuffer(const I_WavInfo* info);
  ~C_WavDataBuffer() override;
  C_WavDataBuffer(const C_WavDataBuffer&) = delete;
  C_WavDataBuffer& operator=(const C_WavDataBuffer&) = delete;

  int32_t GetSample(uint32_t frame, uint16_t channel) const override;
  void SetSample(uint32_t frame, int32_t value, uint16_t channel) override;
  int64_t GetPeak(uint32_t from, uint32_t to, uint16_t firstChannel,
                  uint16_t lastChannel) const override;
  C_WavDataBufferIterator* CreateIterator(uint32_t frame, uint16_t channel) override;

  /// To be called after every change of the record. Before the first time the
  /// buffer has no samples.
  void Bind();
  const SampleFormat& Format() const { return format_; }

  std::span<std::byte> Bytes() { return {data_, size_}; }
  std::span<const std::byte> Bytes() const { return {data_, size_}; }
  bool IsExternal() const { return external_; }

  /// A new block, not cleared, in place of the old one. False, with no block left,
  /// when memory is short.
  bool Allocate(uint64_t size);

  /// As Allocate, at an address that modulo 4096 is `pagePhase`.
  bool AllocateAt(uint64_t size, unsigned pagePhase);

  /// Borrows a block from now on.
  void Attach(std::byte* bytes, uint64_t size);

  /// The borrowed block, of which the buffer then knows nothing more; null when it
  /// owns its block.
  std::byte* Detach();

  /// Takes the other's block over, owned or borrowed, and leaves it none.
  void TakeBlock(C_WavDataBuffer& other);

  /// Bytes of a frame; 0 for a format without samples.
  size_t FrameBytes() const { return size_t{channels_} * format_.bytes; }

  /// Whole frames that are really in the block.
  uint64_t FramesInBlock() const;

  /// A run of the block: frames from `frame` on, held to the block, of one channel
  /// or of all channels one after the other.
  Samples Channel(uint64_t frame, uint64_t frames, uint16_t channel);
  ConstSamples Channel(uint64_t frame, uint64_t frames, uint16_t channel) const;
  Samples AllChannels(uint64_t frame, uint64_t frames);
  ConstSamples AllChannels(uint64_t frame, uint64_t frames) const;

  /// Calls `visit` with the runs that make up the channels from first to last: one
  /// for all of them where the sound has no others, else one a channel.
  template <typename Visit>
  void ForEachRun(uint64_t frame, uint64_t frames, uint16_t firstChannel, uint16_t lastChannel,
                  Visit visit) {
    VisitRuns(*this, frame, frames, firstChannel, lastChannel, visit);
  }
  template <typename Visit>
  void ForEachRun(uint64_t frame, uint64_t frames, uint16_t firstChannel, uint16_t lastChannel,
                  Visit visit) const {
    VisitRuns(*this, frame, frames, firstChannel, lastChannel, visit);
  }

 private:
  template <typename Self, typename Visit>
  static void VisitRuns(Self& self, uint64_t frame, uint64_t frames, uint16_t firstChannel,
                        uint16_t lastChannel, Visit visit) {
    if (firstChannel == 0 && lastChannel + 1u == self.channels_) {
      visit(self.AllChannels(frame, frames));
      return;
    }
    for (uint32_t c = firstChannel; c <= lastChannel; ++c) {
      visit(self.Channel(frame, frames, static_cast<uint16_t>(c)));
    }
  }

  /// Byte offset of a sample; false when it is not in the block.
  bool Locate(uint32_t frame, uint16_t channel, size_t& offset) const;
  void Drop();

  SampleFormat format_;
  std::byte* data_ = nullptr;
  bool external_ = false;
  const I_WavInfo* info_;
  uint16_t channels_ = 0;
  size_t size_ = 0;
  std::unique_ptr<std::byte[]> owned_;  ///< holds data_, which may start inside it
  std::unique_ptr<C_WavDataBufferIterator> lastIterator_;
};

}  // namespace velora
