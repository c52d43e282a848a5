// Taking channels out, putting them in, mixing and spreading them.

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr size_t kBlockFrames = 1024;

template <typename Container>
void CopyAs(const ConstSamples& source, const Samples& target) {
  for (size_t i = 0; i < source.count; ++i) {
    Container container;
    std::memcpy(&container, source.data + i * source.stride, sizeof container);
    std::memcpy(target.data + i * target.stride, &container, sizeof container);
  }
}

/// Copies containers of so many bytes as they are.
void CopyContainers(const ConstSamples& source, const Samples& target, unsigned bytes) {
  switch (bytes) {
    case 1:
      return CopyAs<std::array<std::byte, 1>>(source, target);
    case 2:
      return CopyAs<std::array<std::byte, 2>>(source, target);
    case 3:
      return CopyAs<std::array<std::byte, 3>>(source, target);
    case 4:
      return CopyAs<std::array<std::byte, 4>>(source, target);
    default:
      return;
  }
}

/// How ExtractChannel and PasteChannel see a sound: mono, or two channels side by
/// side whatever there are.
struct ChannelLayout {
  size_t stride;  ///< bytes
  size_t offset;  ///< of the channel's first sample
  size_t frames;  ///< whole ones in the data

  ChannelLayout(size_t size, uint16_t channels, size_t containerBytes, uint16_t channel)
      : stride(containerBytes * (channels == 1 ? 1 : 2)),
        offset(channels == 1 || channel == 0 ? 0 : containerBytes),
        frames(stride ? size / stride : 0) {}

  bool Holds(uint64_t first, uint64_t count) const { return first + count <= frames; }
};

void AddTo(std::span<int64_t> sums, std::span<const int32_t> values) {
  for (size_t i = 0; i < sums.size(); ++i) sums[i] += values[i];
}

}  // namespace

C_WavData* C_WavData::ExtractChannel(uint16_t channel, uint32_t first, uint32_t frames) {
  const uint16_t bytes = buffer_.Format().bytes;
  const ChannelLayout layout(Bytes().size(), info_.GetChannels(), bytes, channel);
  if (channel >= info_.GetChannels() || !layout.Holds(first, frames)) return nullptr;
  const uint64_t size = uint64_t{frames} * bytes;
  WavDataPtr mono = Create();
  if (!mono || !mono->AllocData(static_cast<uint32_t>(size))) return nullptr;
  mono->SetFormat(info_.GetSampleRate(), static_cast<uint32_t>(size), 1, info_.GetResolutionBits(),
                  info_.GetContainerBits(), info_.IsSigned());
  if (frames > 0) {
    const std::byte* const from = Bytes().data() + first * layout.stride + layout.offset;
    CopyContainers({from, layout.stride, frames}, {mono->GetData(), bytes, frames}, bytes);
  }
  return mono.release();
}

int32_t C_WavData::PasteChannel(I_WavData* mono, uint16_t channel, uint32_t first, uint32_t) {
  if (!mono || channel >= info_.GetChannels()) return 0;
  const uint16_t bytes = buffer_.Format().bytes;
  const I_WavInfo& info = *mono->GetWavInfo();
  if (info.GetChannels() != 1 || info.GetContainerBytes() != bytes || bytes == 0) return 0;
  const size_t frames = mono->GetData() ? mono->GetDataSize() / bytes : 0;
  const ChannelLayout layout(Bytes().size(), info_.GetChannels(), bytes, channel);
  if (!layout.Holds(first, frames)) return 0;
  if (frames > 0) {
    std::byte* const to = Bytes().data() + first * layout.stride + layout.offset;
    CopyContainers({mono->GetData(), bytes, frames}, {to, layout.stride, frames}, bytes);
  }
  return 1;
}

void C_WavData::MixToMono() {
  const uint16_t channels = info_.GetChannels();
  const SampleFormat& format = buffer_.Format();
  if (channels < 2 || buffer_.IsExternal()) return;
  const uint64_t frames = buffer_.FramesInBlock();
  C_WavDataBuffer mixed(&info_);
  if (!mixed.Allocate(frames * format.bytes)) return;

  std::array<int32_t, kBlockFrames> values;
  std::array<int64_t, kBlockFrames> sums;
  for (uint64_t frame = 0; frame < frames; frame += kBlockFrames) {
    const size_t count = static_cast<size_t>(std::min<uint64_t>(kBlockFrames, frames - frame));
    std::fill_n(sums.begin(), count, 0);
    for (uint16_t c = 0; c < channels; ++c) {
      DecodeBlock(std::as_const(buffer_).Channel(frame, count, c), format, values.data());
      AddTo({sums.data(), count}, {values.data(), count});
    }
    std::transform(sums.begin(), sums.begin() + count, values.begin(), [&](int64_t sum) {
      const int64_t mean = sum / channels;
      return static_cast<int32_t>(std::clamp<int64_t>(mean, format.minValue, format.maxValue));
    });
    std::byte* const to = mixed.Bytes().data() + frame * format.bytes;
    EncodeBlock(values.data(), {to, format.bytes, count}, format);
  }
  TakeBlock(mixed, 1);
}

void C_WavData::MakeStereo(ConstSamples left, ConstSamples right) {
  const SampleFormat& format = buffer_.Format();
  const size_t frames = std::max(left.count, right.count);
  const uint64_t size = uint64_t{frames} * 2 * format.bytes;
  C_WavDataBuffer stereo(&info_);
  if (buffer_.IsExternal() || size > UINT32_MAX || !stereo.Allocate(size)) return;
  const auto put = [&](const ConstSamples& source, size_t channel) {
    const Samples target{stereo.Bytes().data() + channel * format.bytes, size_t{2} * format.bytes,
                         frames};
    if (source.data) {
      CopyContainers(source, target, format.bytes);
    } else {
      FillBlock(target, format, 0);
    }
  };
  put(left, 0);
  put(right, 1);
  TakeBlock(stereo, 2);
}

void C_WavData::ToStereo() {
  const uint16_t channels = info_.GetChannels();
  if (channels == 0 || channels == 2) return;
  const uint64_t frames = buffer_.FramesInBlock();
  const auto& buffer = std::as_const(buffer_);
  MakeStereo(buffer.Channel(0, frames, 0), buffer.Channel(0, frames, channels == 1 ? 0 : 1));
}

void C_WavData::ToStereoOneSide(int32_t side) {
  const uint16_t channels = info_.GetChannels();
  if (channels == 0) return;
  const uint16_t channel = channels == 1 || side == 0 ? 0 : 1;
  const ConstSamples source = std::as_const(buffer_).Channel(0, buffer_.FramesInBlock(), channel);
  if (side == 0) {
    MakeStereo(source, {});
  } else {
    MakeStereo({}, source);
  }
}

}  // namespace velora
