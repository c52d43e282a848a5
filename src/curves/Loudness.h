// The loudness of a sound, as the curves that follow it measure it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "curves/VLRSplineCtrlCurve.h"

namespace velora {

/// Levels of a full scale of 16-bit magnitudes: 255 / 32768.
inline constexpr double kLevelsPerMagnitude = 255.0 / 32768.0;

/// |sample|, which is 32768 for the lowest one.
inline uint32_t MagnitudeOf(int16_t sample) {
  return static_cast<uint32_t>(sample < 0 ? -int32_t{sample} : int32_t{sample});
}

/// The largest magnitude; 0 without samples.
uint32_t PeakMagnitude(std::span<const int16_t> samples);

/// The mean magnitude, cut to a whole one. There must be samples.
uint32_t MeanMagnitude(std::span<const int16_t> samples);

/// A level for each of 256 steps of loudness.
struct LoudnessMap {
  std::array<uint8_t, 256> levels{};
  double rounding = 0;  ///< added before a magnitude is cut to its step

  uint8_t LevelOf(uint32_t magnitude) const;
};

/// Adds to the curve the points of a loudness contour: one at the first sample,
/// one in the middle of each window of `window` samples, one for the rest before
/// the end, one at the last sample. `start` is the position of the first sample;
/// a window of 0 counts as 1; there must be samples.
void AddLoudnessPoints(std::span<const int16_t> samples, uint32_t start, uint16_t window,
                       uint32_t (*loudness)(std::span<const int16_t>), const LoudnessMap& map,
                       C_VLRSplineCtrlCurve& curve);

}  // namespace velora
