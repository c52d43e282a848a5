// The operations of a sound as their definitions read: one sample after the other,
// through the buffer's own access. The fast paths must give the same.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "audio/wavedata/SoundKit.h"

namespace velora::test {

inline int32_t ClampTo(const SampleFormat& format, double value) {
  if (value < format.minValue) return format.minValue;
  if (value > format.maxValue) return format.maxValue;
  return static_cast<int32_t>(value);
}

inline void PlainConvert(C_WavData& source, const Form& to, C_WavData& target) {
  const C_WavInfo& info = source.Info();
  const auto frames = static_cast<uint32_t>(source.FrameCount());
  const uint32_t size = frames * info.GetChannels() * to.container / 8;
  target.AllocData(size);
  target.SetFormat(info.GetSampleRate(), size, info.GetChannels(), to.resolution, to.container,
                   to.isSigned);
  const int down = info.GetResolutionBits() - to.resolution;
  for (uint16_t c = 0; c < info.GetChannels(); ++c) {
    for (uint32_t i = 0; i < frames; ++i) {
      const int64_t value = source.GetBuffer()->GetSample(i, c);
      int64_t magnitude = std::llabs(value);
      magnitude = down > 0 ? magnitude >> down : magnitude << -down;
      const auto shifted = static_cast<double>(value < 0 ? -magnitude : magnitude);
      target.GetBuffer()->SetSample(i, ClampTo(target.GetBuffer()->Format(), shifted), c);
    }
  }
}

inline void PlainGain(C_WavData& sound, double start, double end, uint32_t first, uint32_t last,
                      uint16_t firstChannel, uint16_t lastChannel) {
  for (uint32_t c = firstChannel; c <= lastChannel; ++c) {
    double gain = start;
    uint32_t inBlock = 0;
    for (uint32_t i = first; i <= last; ++i) {
      const auto channel = static_cast<uint16_t>(c);
      const double product = sound.GetBuffer()->GetSample(i, channel) * gain;
      const int32_t scaled = ClampTo(sound.GetBuffer()->Format(), std::trunc(product));
      sound.GetBuffer()->SetSample(i, scaled, channel);
      if (++inBlock == 1024) {
        gain += (end - start) / (last - first);
        inBlock = 0;
      }
    }
  }
}

inline int64_t PlainPeak(C_WavData& sound, uint32_t from, uint32_t to, uint16_t firstChannel,
                         uint16_t lastChannel) {
  int64_t peak = 0;
  for (uint32_t i = from; i < to; ++i) {
    for (uint32_t c = firstChannel; c <= lastChannel; ++c) {
      peak = std::max<int64_t>(
          peak, std::llabs(sound.GetBuffer()->GetSample(i, static_cast<uint16_t>(c))));
    }
  }
  return peak;
}

inline void PlainRemoveOffset(C_WavData& sound) {
  const auto frames = static_cast<uint32_t>(sound.FrameCount());
  int64_t sum = 0;
  for (uint32_t i = 0; i < frames; ++i) sum += sound.GetBuffer()->GetSample(i, 0);
  const int64_t offset = frames ? sum / frames : 0;
  for (uint32_t i = 0; i < frames; ++i) {
    for (uint16_t c = 0; c < sound.Info().GetChannels(); ++c) {
      const auto moved = static_cast<double>(sound.GetBuffer()->GetSample(i, c) - offset);
      sound.GetBuffer()->SetSample(i, ClampTo(sound.GetBuffer()->Format(), moved), c);
    }
  }
}

struct DetectRange {
  uint32_t threshold, minLength, first, last;
  uint16_t firstChannel, lastChannel;
};

inline Segments PlainDetect(C_WavData& sound, const DetectRange& range, ProgressLog& log) {
  const uint16_t resolution = sound.Info().GetResolutionBits();
  int64_t threshold = range.threshold;
  if (resolution >= 13) threshold <<= resolution - 12;
  if (resolution < 12) threshold >>= 12 - resolution;
  Segments found;
  bool silent = false;
  uint32_t begin = 0;
  double done = 0;
  int32_t reported = 0;
  log.Begin();
  for (uint32_t i = range.first; i <= range.last; ++i) {
    int64_t sum = 0;
    for (uint32_t c = range.firstChannel; c <= range.lastChannel; ++c) {
      sum += sound.GetBuffer()->GetSample(i, static_cast<uint16_t>(c));
    }
    const int64_t mean = sum / (range.lastChannel - range.firstChannel + 1);
    if (mean > threshold || mean < -threshold - 1) {
      if (silent && i - begin >= range.minLength) found.emplace_back(begin, i - 1);
      silent = false;
    } else {
      if (!silent) begin = i;
      silent = true;
    }
    done += 100.0 / (range.last - range.first + 1);
    if (static_cast<int32_t>(done) > reported) log.Report(reported = static_cast<int32_t>(done));
  }
  log.Report(100);
  if (silent && begin < range.last) found.emplace_back(begin, range.last);
  log.End();
  return found;
}

}  // namespace velora::test
