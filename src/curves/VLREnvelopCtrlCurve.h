// A level that follows the peaks of the sound.
#pragma once

#include <vector>

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// The peak of each window of samples becomes a point of a spline. The level map
/// bends it before: points from loudness 0 to 255 (full scale) to a level.
class C_VLREnvelopCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// `samples` is borrowed, see AttachWave. Without map points the map leaves the
  /// loudness as it is.
  C_VLREnvelopCtrlCurve(uint32_t start, uint32_t end, uint32_t ignored, uint16_t windowSamples,
                        const int16_t* samples, uint16_t pointCount,
                        const tagVLRCurveCtrlPoint* points);

  uint32_t GetType() const override { return kCurveEnvelop; }

  /// Nothing without samples.
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Takes the samples.
  void AttachWave(uint32_t sampleRate, const int16_t* samples) override;

  const int16_t* GetSamples() const { return samples_; }
  void SetSamples(const int16_t* samples) { AttachWave(0, samples); }

  /// 0 counts as 1.
  uint16_t GetWindowSamples() const { return windowSamples_; }
  void SetWindowSamples(uint16_t count) { windowSamples_ = count; }

  /// The map, borrowed; a map of fewer than two points gives level 0.
  std::span<const tagVLRCurveCtrlPoint> GetLevelMap() const { return levelMap_; }
  void SetLevelMap(std::span<const tagVLRCurveCtrlPoint> points) {
    levelMap_.assign(points.begin(), points.end());
  }

 private:
  const int16_t* samples_;
  uint16_t windowSamples_;
  std::vector<tagVLRCurveCtrlPoint> levelMap_;
};

}  // namespace velora
