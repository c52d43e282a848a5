#include "curves/Loudness.h"

#include <algorithm>

#include "curves/LevelMath.h"

namespace velora {

// Both loops stay in 16 and 32 bits, so that the compiler takes eight samples at
// once.

uint32_t PeakMagnitude(std::span<const int16_t> samples) {
  int16_t lowest = 0;
  int16_t highest = 0;
  for (const int16_t sample : samples) {
    lowest = std::min(lowest, sample);
    highest = std::max(highest, sample);
  }
  return std::max(MagnitudeOf(lowest), MagnitudeOf(highest));
}

uint32_t MeanMagnitude(std::span<const int16_t> samples) {
  constexpr size_t kBlock = 65536;  // magnitudes whose sum fits 32 bits
  uint64_t sum = 0;
  for (size_t from = 0; from < samples.size(); from += kBlock) {
    const auto block = samples.subspan(from, std::min(kBlock, samples.size() - from));
    uint32_t blockSum = 0;
    for (const int16_t sample : block) blockSum += MagnitudeOf(sample);
    sum += blockSum;
  }
  return static_cast<uint32_t>(sum / samples.size());
}

uint8_t LoudnessMap::LevelOf(uint32_t magnitude) const {
  const auto step = static_cast<size_t>(magnitude * kLevelsPerMagnitude + rounding);
  return levels[std::min(step, levels.size() - 1)];
}

void AddLoudnessPoints(std::span<const int16_t> samples, uint32_t start, uint16_t window,
                       uint32_t (*loudness)(std::span<const int16_t>), const LoudnessMap& map,
                       C_VLRSplineCtrlCurve& curve) {
  // Positions are counted from the first sample.
  const auto last = static_cast<int64_t>(samples.size()) - 1;
  const int64_t width = std::max<int64_t>(window, 1);
  const auto add = [&](int64_t position, uint32_t magnitude) {
    curve.Add({static_cast<uint32_t>(start + position), map.LevelOf(magnitude)}, nullptr);
  };
  const auto loudnessOf = [&](int64_t from, int64_t count) {
    return loudness(samples.subspan(static_cast<size_t>(from), static_cast<size_t>(count)));
  };

  curve.Reserve(samples.size() / static_cast<size_t>(width) + 3);
  add(0, MagnitudeOf(samples.front()));
  int64_t i = 1;
  for (; i <= last - width - 1; i += width) add(i + width / 2, loudnessOf(i, width));
  if (i < last - 1) {
    const int64_t rest = last - i + 1;
    add(last - rest / 2 - 1, loudnessOf(i, rest));
  }
  add(last, MagnitudeOf(samples.back()));
}

}  // namespace velora
