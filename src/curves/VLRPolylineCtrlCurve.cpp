#include "curves/VLRPolylineCtrlCurve.h"

#include "curves/LevelWriter.h"

namespace velora {

void C_VLRPolylineCtrlCurve::GenerateSamples(uint16_t* out) {
  const std::span<const Element> points = Elements();
  if (points.size() < 2) return;
  const tagVLRCurveCtrlPoint first = points.front().Value;
  const tagVLRCurveCtrlPoint last = points.back().Value;
  if (last.Sample < first.Sample) return;

  const std::span<uint16_t> levels = OutputOf(out);
  LevelWindow window(levels, int64_t{GetStart()} - first.Sample,
                     int64_t{last.Sample} - first.Sample + 1);
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const tagVLRCurveCtrlPoint from = points[i].Value;
    const tagVLRCurveCtrlPoint to = points[i + 1].Value;
    if (from.Sample >= to.Sample) continue;
    const int64_t count = int64_t{to.Sample} - from.Sample;
    window.Run(from.Level, (int32_t{to.Level} - from.Level) / static_cast<double>(count), count);
  }
  window.SetLast(last.Level);
  window.HoldEnds();
  if (IsInverted()) InvertLevels(levels);
}

C_VLRUnitCtrlCurve* C_VLRPolylineCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = std::make_unique<C_VLRPolylineCtrlCurve>(GetStart(), GetEnd(), GetPhase());
    CopyPointsTo(*clone);
    return clone;
  });
}

}  // namespace velora
