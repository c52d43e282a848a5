#include "curves/VLRNewImageCtrlCurve.h"

#include <algorithm>

#include "curves/LevelMath.h"

namespace velora {

void C_VLRNewImageCtrlCurve::GenerateSamples(uint16_t* out) {
  const std::span<uint16_t> levels = OutputOf(out);
  const int64_t start = GetStart();
  // Backwards, so that each point has the samples that no later one has taken.
  auto end = start + static_cast<int64_t>(levels.size());
  for (auto point = points_.rbegin(); point != points_.rend() && end > start; ++point) {
    const int64_t begin = std::max<int64_t>(point->Sample, start);
    if (begin >= end) continue;
    std::fill(levels.begin() + (begin - start), levels.begin() + (end - start),
              Deliver(point->Level, IsInverted()));
    end = begin;
  }
}

C_VLRUnitCtrlCurve* C_VLRNewImageCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = std::make_unique<C_VLRNewImageCtrlCurve>(GetStart(), GetEnd());
    clone->points_ = points_;
    return clone;
  });
}

void C_VLRNewImageCtrlCurve::ScaleTime(double ratio) {
  C_VLRUnitCtrlCurve::ScaleTime(ratio);
  for (tagVLRCurveCtrlPoint& point : points_) point.Sample = CutToPosition(point.Sample * ratio);
}

void C_VLRNewImageCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return;
  const int64_t delta = int64_t{newStart} - GetStart();
  C_VLRUnitCtrlCurve::Rebase(newStart, limit);
  for (auto point = points_.begin(); point != points_.end(); ++point) {
    const int64_t moved = point->Sample + delta;
    if (moved >= limit) {
      points_.erase(point, points_.end());
      return;
    }
    if (moved >= 0) point->Sample = static_cast<uint32_t>(moved);
  }
}

void C_VLRNewImageCtrlCurve::InsertGap(uint32_t a, uint32_t b) {
  if (a < GetStart() || a >= GetEnd() || b < a) return;
  const uint32_t length = b - a + 1;
  SetEnd(GetEnd() + length);
  std::erase_if(points_, [](const tagVLRCurveCtrlPoint& point) { return point.Sample == 0; });
  const auto first = std::ranges::find_if(
      points_, [a](const tagVLRCurveCtrlPoint& point) { return point.Sample >= a; });
  if (first == points_.end()) return;
  for (auto point = first; point != points_.end(); ++point) point->Sample += length;
  points_.insert(first, {a, 0});
}

}  // namespace velora
