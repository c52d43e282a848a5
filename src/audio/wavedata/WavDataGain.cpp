// Level: gain, normalising, DC offset.

#include <algorithm>
#include <utility>

#include "audio/wavedata/ProgressCallbackAgent.h"
#include "audio/wavedata/WavData.h"

namespace velora {
namespace {

constexpr uint64_t kBlockFrames = 1024;

}  // namespace

int32_t C_WavData::ApplyGain(double start, double end, I_ProgressCallback* progress) {
  // Of an empty sound both last ones wrap, and the range is refused.
  return ApplyGainRange(start, end, 0, info_.GetFrameCount() - 1, 0,
                        static_cast<uint16_t>(info_.GetChannels() - 1), progress);
}

int32_t C_WavData::ApplyGainRange(double start, double end, uint32_t first, uint32_t last,
                                  uint16_t firstChannel, uint16_t lastChannel,
                                  I_ProgressCallback* progress) {
  if (last >= info_.GetFrameCount() || lastChannel >= info_.GetChannels()) return 0;
  const uint64_t frames = first <= last ? uint64_t{last} - first + 1 : 0;
  const double step = frames > 1 ? (end - start) / (last - first) : 0;
  ProgressMeter meter(progress, (frames + kBlockFrames - 1) / kBlockFrames);
  // The gain of a block is the same in every channel: they go side by side.
  double gain = start;
  for (uint64_t done = 0; done < frames; done += kBlockFrames) {
    const uint64_t count = std::min(kBlockFrames, frames - done);
    buffer_.ForEachRun(first + done, count, firstChannel, lastChannel,
                       [&](Samples run) { ScaleBlock(run, buffer_.Format(), gain); });
    gain += step;
    meter.Advance();
  }
  return 1;
}

int32_t C_WavData::Normalize() {
  return NormalizeRange(0, info_.GetFrameCount() - 1, 0,
                        static_cast<uint16_t>(info_.GetChannels() - 1));
}

int32_t C_WavData::NormalizeRange(uint32_t first, uint32_t last, uint16_t firstChannel,
                                  uint16_t lastChannel) {
  const int64_t peak = buffer_.GetPeak(first, last, firstChannel, lastChannel);
  if (peak < 0) return 0;
  if (peak == 0) return 1;
  const double gain = static_cast<double>(buffer_.Format().signBit) / static_cast<double>(peak);
  return ApplyGainRange(gain, gain, first, last, firstChannel, lastChannel, nullptr);
}

int32_t C_WavData::GetDCOffset() {
  const ConstSamples samples = std::as_const(buffer_).Channel(0, FrameCount(), 0);
  if (samples.count == 0) return 0;
  const int64_t sum = SumOfBlock(samples, buffer_.Format());
  return static_cast<int32_t>(sum / static_cast<int64_t>(samples.count));
}

void C_WavData::RemoveDCOffset() {
  OffsetBlock(buffer_.AllChannels(0, FrameCount()), buffer_.Format(), GetDCOffset());
}

}  // namespace velora
