#include "curves/SplineEditGeometry.h"

#include <algorithm>
#include <cmath>

namespace velora {
namespace {

constexpr double kTopLevel = 255.0;

/// Reach of a click around the middle of a point, in pixels each way.
constexpr int32_t kReach = 5;

}  // namespace

bool SplineEditGeometry::Contains(SplineEditPixel pixel) const {
  return HasPlot() && pixel.x >= Left() && pixel.x < Right() && pixel.y >= Top() &&
         pixel.y < Bottom();
}

std::optional<tagVLRCurveCtrlPoint> SplineEditGeometry::ValueAt(SplineEditPixel pixel) const {
  if (!HasPlot()) return std::nullopt;
  const int64_t column = std::clamp<int64_t>(pixel.x, Left(), Right() - 1) - Left();
  const int64_t row = std::clamp<int64_t>(pixel.y, Top(), Bottom() - 1) - Top();

  const double samplesPerColumn =
      static_cast<double>(maxSample_ - minSample_) / static_cast<double>(Width() - 1);
  const auto offset = static_cast<int64_t>(samplesPerColumn * static_cast<double>(column) + 0.5);
  const int64_t sample = std::clamp<int64_t>(offset + minSample_, 0, maxSample_);

  const auto below = static_cast<int64_t>(
      static_cast<double>(row) * kTopLevel / static_cast<double>(Height() - 1) + 0.5);
  const int64_t level = std::clamp<int64_t>(255 - below, 0, 255);
  return tagVLRCurveCtrlPoint{static_cast<uint32_t>(sample), static_cast<uint8_t>(level)};
}

/// Columns from the left end of the axis to the sample.
double SplineEditGeometry::ColumnOffset(uint32_t sample) const {
  return std::trunc(static_cast<double>(sample - minSample_) * static_cast<double>(Width() - 1) /
                        static_cast<double>(maxSample_ - minSample_) +
                    0.5);
}

bool SplineEditGeometry::Hits(SplineEditPixel pixel, tagVLRCurveCtrlPoint point) const {
  if (point.Sample < minSample_ || maxSample_ <= minSample_) return false;
  const double middleX = ColumnOffset(point.Sample) + kMarginX;
  const double rise = static_cast<double>(Height() - 1);
  const double middleY = static_cast<double>(Bottom() - 1 + OddRow()) -
                         std::trunc(point.Level * rise / kTopLevel + 0.5);
  return std::abs(pixel.x - middleX) <= kReach && std::abs(pixel.y - middleY) <= kReach;
}

int32_t SplineEditGeometry::RowOf(int32_t level) const {
  const double rise = static_cast<double>(Height() - 1);
  return static_cast<int32_t>(Bottom() - 1 - static_cast<int64_t>(level * rise / kTopLevel + 0.5));
}

SplineEditPixel SplineEditGeometry::PixelOf(tagVLRCurveCtrlPoint point) const {
  const uint32_t sample = std::clamp(uint32_t{point.Sample}, minSample_, maxSample_);
  return {static_cast<int32_t>(static_cast<double>(Left()) + ColumnOffset(sample)),
          RowOf(point.Level)};
}

}  // namespace velora
