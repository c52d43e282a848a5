#include "curves/VLREnvelopCtrlCurve.h"

#include <algorithm>
#include <array>

#include "curves/Loudness.h"
#include "curves/VLRSplineCtrlCurve.h"

namespace velora {
namespace {

/// The map that leaves the loudness as it is.
constexpr std::array<tagVLRCurveCtrlPoint, 2> kIdentity = {{{0, 0}, {255, 255}}};

/// The level of each of the 256 steps of loudness.
LoudnessMap MapOf(std::span<const tagVLRCurveCtrlPoint> points) {
  C_VLRSplineCtrlCurve spline(0, 255, 0);
  for (const tagVLRCurveCtrlPoint& point : points) spline.Add(point, nullptr);
  std::array<uint16_t, 256> levels{};
  spline.GenerateSamples(levels.data());

  LoudnessMap map;
  map.rounding = 0.5;
  std::ranges::transform(levels, map.levels.begin(),
                         [](uint16_t level) { return static_cast<uint8_t>(level); });
  return map;
}

}  // namespace

C_VLREnvelopCtrlCurve::C_VLREnvelopCtrlCurve(uint32_t start, uint32_t end, uint32_t,
                                             uint16_t windowSamples, const int16_t* samples,
                                             uint16_t pointCount,
                                             const tagVLRCurveCtrlPoint* points)
    : C_VLRUnitCtrlCurve(start, end, 0), samples_(samples), windowSamples_(windowSamples) {
  if (pointCount > 0 && points) {
    levelMap_.assign(points, points + pointCount);
  } else {
    levelMap_.assign(kIdentity.begin(), kIdentity.end());
  }
}

void C_VLREnvelopCtrlCurve::AttachWave(uint32_t sampleRate, const int16_t* samples) {
  C_VLRUnitCtrlCurve::AttachWave(sampleRate, samples);
  samples_ = samples;
}

void C_VLREnvelopCtrlCurve::GenerateSamples(uint16_t* out) {
  if (!samples_ || GetSampleCount() == 0) return;
  GenerateIfMemory([&] {
    std::vector<int16_t> silenced;
    const std::span<const int16_t> sound = SoundInRange(samples_, silenced);
    C_VLRSplineCtrlCurve contour(GetStart(), LastPosition(), 0);
    contour.SetInverted(GetInverted());
    AddLoudnessPoints(sound, GetStart(), windowSamples_, PeakMagnitude, MapOf(levelMap_), contour);
    contour.GenerateSamples(out);
  });
}

C_VLRUnitCtrlCurve* C_VLREnvelopCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = std::make_unique<C_VLREnvelopCtrlCurve>(GetStart(), GetEnd(), 0, windowSamples_,
                                                         samples_, uint16_t{0}, nullptr);
    clone->SetLevelMap(levelMap_);
    return clone;
  });
}

}  // namespace velora
