// Changing how samples are stored.

#include <utility>

#include "audio/wavedata/ProgressCallbackAgent.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr size_t kBlockSamples = 1024;

bool IsConvertible(uint16_t resolution, uint16_t container) {
  return (container == 8 || container == 16 || container == 32) && resolution > 0 &&
         resolution <= container;
}

Samples Piece(const Samples& samples, size_t from) {
  return {samples.data + from * samples.stride, samples.stride,
          std::min(kBlockSamples, samples.count - from)};
}

ConstSamples Piece(const ConstSamples& samples, size_t from) {
  return {samples.data + from * samples.stride, samples.stride,
          std::min(kBlockSamples, samples.count - from)};
}

}  // namespace

C_WavData* C_WavData::CreateConverted(uint16_t resolution, uint16_t container, int32_t isSigned,
                                      I_ProgressCallback* progress) {
  if (!IsConvertible(resolution, container) ||
      !IsConvertible(info_.GetResolutionBits(), info_.GetContainerBits())) {
    return nullptr;
  }
  const ConstSamples source = std::as_const(buffer_).AllChannels(0, FrameCount());
  const uint64_t size = uint64_t{source.count} * container / 8;
  WavDataPtr converted = Create();
  if (!converted || size > UINT32_MAX || !converted->AllocData(static_cast<uint32_t>(size))) {
    return nullptr;
  }
  converted->SetFormat(info_.GetSampleRate(), static_cast<uint32_t>(size), info_.GetChannels(),
                       resolution, container, isSigned);
  converted->CopyWriteParam(this);

  // The samples of all channels lie side by side and a sample does not know its
  // channel, so that all of them are one run.
  const Samples target = converted->buffer_.AllChannels(0, FrameCount());
  ProgressMeter meter(progress, (source.count + kBlockSamples - 1) / kBlockSamples);
  for (size_t i = 0; i < source.count; i += kBlockSamples) {
    ConvertBlock(Piece(source, i), buffer_.Format(), Piece(target, i), converted->buffer_.Format());
    meter.Advance();
  }
  return converted.release();
}

int32_t C_WavData::ChangeFormat(uint16_t resolution, uint16_t container, int32_t isSigned,
                                I_ProgressCallback* progress) {
  if (resolution == info_.GetResolutionBits() && container == info_.GetContainerBits() &&
      (isSigned != 0) == (info_.IsSigned() != 0)) {
    return 1;
  }
  if (buffer_.IsExternal()) return 0;
  const WavDataPtr converted(CreateConverted(resolution, container, isSigned, progress));
  if (!converted) return 0;
  TakeBlock(converted->buffer_, info_.GetChannels());
  SetWavInfo(&converted->info_);
  return 1;
}

}  // namespace velora
