#include "audio/wavedata/WavDataBuffer.h"

#include <algorithm>
#include <new>

namespace velora {
namespace {

constexpr uint64_t kPage = 4096;

}  // namespace

C_WavDataBufferIterator::C_WavDataBufferIterator(C_WavDataBuffer& buffer, uint32_t frame,
                                                 uint16_t channel)
    : buffer_(&buffer),
      channel_(channel),
      stride_(static_cast<int64_t>(buffer.FrameBytes())),
      format_(buffer.Format()) {
  Seek(frame);
}

void C_WavDataBufferIterator::Seek(uint32_t frame) {
  offset_ = stride_ * frame + int64_t{channel_} * format_.bytes;
}

bool C_WavDataBufferIterator::IsInside() const {
  return offset_ >= 0 && format_.bytes > 0 &&
         static_cast<uint64_t>(offset_) + format_.bytes <= buffer_->Bytes().size();
}

int32_t C_WavDataBufferIterator::Get() const {
  if (!IsInside()) return 0;
  return format_.Decode(format_.Load(buffer_->Bytes().data() + offset_));
}

void C_WavDataBufferIterator::Set(int32_t value) {
  if (!IsInside()) return;
  format_.Store(buffer_->Bytes().data() + offset_, format_.Encode(format_.Clamp(value)));
}

C_WavDataBuffer::C_WavDataBuffer(const I_WavInfo* info) : info_(info) {}

C_WavDataBuffer::~C_WavDataBuffer() = default;

bool C_WavDataBuffer::Locate(uint32_t frame, uint16_t channel, size_t& offset) const {
  offset = (uint64_t{channels_} * frame + channel) * format_.bytes;
  return format_.bytes > 0 && offset + format_.bytes <= size_;
}

int32_t C_WavDataBuffer::GetSample(uint32_t frame, uint16_t channel) const {
  size_t offset = 0;
  if (!Locate(frame, channel, offset)) return 0;
  return format_.Decode(format_.Load(data_ + offset));
}

void C_WavDataBuffer::SetSample(uint32_t frame, int32_t value, uint16_t channel) {
  size_t offset = 0;
  if (!Locate(frame, channel, offset)) return;
  format_.Store(data_ + offset, format_.Encode(value));
}

int64_t C_WavDataBuffer::GetPeak(uint32_t from, uint32_t to, uint16_t firstChannel,
                                 uint16_t lastChannel) const {
  if (to >= info_->GetFrameCount() || lastChannel >= channels_) return -1;
  if (from >= to) return 0;
  int64_t peak = 0;
  ForEachRun(from, to - from, firstChannel, lastChannel,
             [&](ConstSamples run) { peak = std::max(peak, PeakOfBlock(run, format_)); });
  return peak;
}

C_WavDataBufferIterator* C_WavDataBuffer::CreateIterator(uint32_t frame, uint16_t channel) {
  lastIterator_.reset(new (std::nothrow) C_WavDataBufferIterator(*this, frame, channel));
  return lastIterator_.get();
}

void C_WavDataBuffer::Bind() {
  format_ = SampleFormat(*info_);
  channels_ = info_->GetChannels();
}

void C_WavDataBuffer::Drop() {
  owned_.reset();
  data_ = nullptr;
  size_ = 0;
  external_ = false;
}

bool C_WavDataBuffer::Allocate(uint64_t size) {
  Drop();
  if (size > SIZE_MAX) return false;
  owned_.reset(new (std::nothrow) std::byte[static_cast<size_t>(size)]);
  if (!owned_) return false;
  data_ = owned_.get();
  size_ = static_cast<size_t>(size);
  return true;
}

bool C_WavDataBuffer::AllocateAt(uint64_t size, unsigned pagePhase) {
  if (size > SIZE_MAX - kPage || !Allocate(size + kPage)) {
    Drop();
    return false;
  }
  data_ += (pagePhase - reinterpret_cast<uintptr_t>(data_)) % kPage;
  size_ = static_cast<size_t>(size);
  return true;
}

void C_WavDataBuffer::Attach(std::byte* bytes, uint64_t size) {
  Drop();
  data_ = bytes;
  size_ = bytes ? static_cast<size_t>(size) : 0;
  external_ = true;
}

std::byte* C_WavDataBuffer::Detach() {
  if (!external_) return nullptr;
  std::byte* const bytes = data_;
  Drop();
  return bytes;
}

void C_WavDataBuffer::TakeBlock(C_WavDataBuffer& other) {
  owned_ = std::move(other.owned_);
  data_ = other.data_;
  size_ = other.size_;
  external_ = other.external_;
  other.Drop();
}

uint64_t C_WavDataBuffer::FramesInBlock() const { return FrameBytes() ? size_ / FrameBytes() : 0; }

Samples C_WavDataBuffer::Channel(uint64_t frame, uint64_t frames, uint16_t channel) {
  const uint64_t there = FramesInBlock();
  if (frame >= there || channel >= channels_) return {};
  const size_t offset = static_cast<size_t>(frame * FrameBytes() + channel * format_.bytes);
  return {data_ + offset, FrameBytes(), static_cast<size_t>(std::min(frames, there - frame))};
}

Samples C_WavDataBuffer::AllChannels(uint64_t frame, uint64_t frames) {
  Samples run = Channel(frame, frames, 0);
  run.stride = format_.bytes;
  run.count *= channels_;
  return run;
}

ConstSamples C_WavDataBuffer::Channel(uint64_t frame, uint64_t frames, uint16_t channel) const {
  return const_cast<C_WavDataBuffer*>(this)->Channel(frame, frames, channel);
}

ConstSamples C_WavDataBuffer::AllChannels(uint64_t frame, uint64_t frames) const {
  return const_cast<C_WavDataBuffer*>(this)->AllChannels(frame, frames);
}

}  // namespace velora
