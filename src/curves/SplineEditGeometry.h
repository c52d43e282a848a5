// Pixels and values of the curve editor.
#pragma once

#include <cstdint>
#include <optional>

#include <velora/VeloraTypes.h>

namespace velora {

/// A pixel of the editor's client area; (0, 0) is its upper left one.
struct SplineEditPixel {
  int32_t x = 0;
  int32_t y = 0;

  bool operator==(const SplineEditPixel&) const = default;
};

/// The plot: the client area less 3 pixels at the left and right and 7 above and
/// below, and one more above when it would be of odd height. Right and bottom are
/// the first pixels outside.
///
/// A width or height below 2 leaves no plot: no pixel then has a value.
class SplineEditGeometry {
 public:
  SplineEditGeometry() = default;

  /// `minSample` is the x axis at the left pixel of the plot and `maxSample`, which
  /// must be above it, at the last one.
  SplineEditGeometry(int32_t clientWidth, int32_t clientHeight, uint32_t minSample,
                     uint32_t maxSample)
      : clientWidth_(clientWidth),
        clientHeight_(clientHeight),
        minSample_(minSample),
        maxSample_(maxSample) {}

  uint32_t MinSample() const { return minSample_; }
  uint32_t MaxSample() const { return maxSample_; }

  int64_t Left() const { return kMarginX; }
  int64_t Top() const { return kMarginY + OddRow(); }
  int64_t Right() const { return int64_t{clientWidth_} - kMarginX; }
  int64_t Bottom() const { return int64_t{clientHeight_} - kMarginY; }
  int64_t Width() const { return Right() - Left(); }
  int64_t Height() const { return Bottom() - Top(); }

  bool HasPlot() const { return Width() >= 2 && Height() >= 2; }

  /// Whether the pixel is in the plot and has a value.
  bool Contains(SplineEditPixel pixel) const;

  /// The value at a pixel, which is moved into the plot first; none without a plot.
  std::optional<tagVLRCurveCtrlPoint> ValueAt(SplineEditPixel pixel) const;

  /// Whether a click at the pixel takes hold of the point: 5 pixels from its
  /// middle, each way. In a client area of odd height the middle is held to lie a
  /// row below the one that ValueAt maps to the point's level. A point left of the
  /// axis cannot be hit.
  bool Hits(SplineEditPixel pixel, tagVLRCurveCtrlPoint point) const;

  /// Where a value is drawn: the pixel whose ValueAt is nearest to it. Samples off
  /// the axis are held to its ends. Only with a plot and a rising axis.
  SplineEditPixel PixelOf(tagVLRCurveCtrlPoint point) const;

  /// The row of a level from 0 to 255. Only with a plot.
  int32_t RowOf(int32_t level) const;

 private:
  static constexpr int32_t kMarginX = 3;
  static constexpr int32_t kMarginY = 7;

  int32_t OddRow() const { return clientHeight_ & 1; }
  double ColumnOffset(uint32_t sample) const;

  int32_t clientWidth_ = 0;
  int32_t clientHeight_ = 0;
  uint32_t minSample_ = 0;
  uint32_t maxSample_ = 0;
};

}  // namespace velora
