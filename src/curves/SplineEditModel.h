// The curve editor without its window.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <velora/I_SplineCtrlEditWndEvent.h>
#include <velora/VeloraTypes.h>
#include "audio/wavedata/WavData.h"
#include "curves/SplineEditGeometry.h"
#include "curves/VLRPolylineCtrlCurve.h"
#include "curves/VLRSplineCtrlCurve.h"
#include "curves/WaveformPresentationData.h"

namespace velora {

/// Shapes a curve with the mouse: takes pixels and buttons, gives events and
/// points. The same points stand in a spline and a polyline, one of which is
/// shown. A window lays itself over the model so:
///
///   model.SetSampleRange(0, 255);
///   model.SetClientSize(width, height);
///   model.InitCurves(0, 255);
///   ... on mouse input OnLeftDown and so on; then
///   if (model.TakeRepaint()) repaint();
///   keepMouse(model.IsDragging());
///   ... on painting: Columns(), Points() with Geometry().PixelOf, PointerText()
///
/// The first and the last point keep their sample and cannot be removed by mouse;
/// the others move freely between the ends of the axis, past each other too. There
/// is no undo: who wants one keeps what GetPoints gives.
///
/// Without curves, that is before InitCurves or after it failed, the mouse does
/// nothing and there are no points.
class SplineEditModel {
 public:
  /// What SetPoints takes from a curve.
  using StoredPoint = C_VLRSplineCtrlCurve::Element;

  /// Levels between two lines of the grid, of which the first is at 0.
  static constexpr int32_t kGridLevels = 64;

  /// Side of the square that marks a point.
  static constexpr int32_t kPointSize = 6;

  SplineEditModel() = default;
  SplineEditModel(const SplineEditModel&) = delete;
  SplineEditModel& operator=(const SplineEditModel&) = delete;

  /// The x axis, both ends inside; used by the next InitCurves.
  void SetSampleRange(uint32_t minSample, uint32_t maxSample);

  /// Pixels of the client area. The curve follows.
  void SetClientSize(int32_t width, int32_t height);

  /// New curves from end to end of the axis, with a point at each end. Ends a
  /// drag. False, with no curves left, when the axis is not rising or has more
  /// samples than a sound can hold, and when memory is short.
  bool InitCurves(uint8_t firstLevel, uint8_t lastLevel);

  /// Replace all points, whose samples must rise.
  void SetPoints(std::span<const tagVLRCurveCtrlPoint> points);
  void SetPoints(std::span<const StoredPoint> points);

  /// All points, valid until the next call; empty when there are fewer than two.
  std::span<const tagVLRCurveCtrlPoint> GetPoints();

  /// Removes all points but the first and the last.
  void ResetPoints();

  /// Borrowed; null for none.
  void SetSink(I_SplineCtrlEditWndEvent* sink) { sink_ = sink; }

  /// Non-zero: the spline is shown; 0, as it is at first: the polyline.
  void SetUseSpline(int32_t flag);
  int32_t GetUseSpline() const { return useSpline_; }

  /// Non-zero: a grid is drawn; 0 at first.
  void SetShowGrid(int32_t flag);
  int32_t GetShowGrid() const { return showGrid_; }

  /// Takes hold of the point there, or of the one with the sample there, and moves
  /// it to the pixel; where there is none, adds one and takes hold of that. Outside
  /// the plot a point can be taken hold of, but does not move.
  void OnLeftDown(SplineEditPixel pixel);

  /// Tells the sink where the pointer is, and moves a point that is held.
  void OnMouseMove(SplineEditPixel pixel);

  /// Lets go.
  void OnLeftUp() { dragIndex_ = kNoPoint; }

  /// Removes the point there, unless it is the first or the last, or one is held.
  void OnRightDown(SplineEditPixel pixel);

  /// While this is so the mouse should be captured.
  bool IsDragging() const { return dragIndex_ != kNoPoint; }

  /// Index of the point held; -1 for none.
  int32_t GetDragIndex() const { return dragIndex_; }

  /// Whether the picture has changed since the last call.
  bool TakeRepaint();

  /// The shown curve, one column for each pixel of the plot from its left on; a
  /// Low and a High are levels. Empty without curves or a plot.
  std::span<const WaveformColumn> Columns();

  /// The control points in order; see Geometry().PixelOf.
  std::span<const StoredPoint> Points() const;

  /// "(sample, level)" under the pointer; empty outside the plot.
  std::string PointerText() const;

  const SplineEditGeometry& Geometry() const { return geometry_; }

 private:
  static constexpr int32_t kNoPoint = -1;

  bool HasCurves() const { return spline_ && polyline_; }
  bool CreateBuffer();
  void DropCurves();
  void FitView();
  void OnPointsChanged();

  template <typename Change>
  void ChangeBoth(Change change);
  void AddToBoth(tagVLRCurveCtrlPoint point);

  int32_t PointHit(SplineEditPixel pixel) const;
  int32_t PointWithSample(uint32_t sample) const;
  int32_t PlaceFor(uint32_t sample) const;
  bool IsInner(int32_t index) const;
  tagVLRCurveCtrlPoint WithinLimits(int32_t index, tagVLRCurveCtrlPoint wanted) const;
  void AddPoint(tagVLRCurveCtrlPoint point);
  void DragTo(tagVLRCurveCtrlPoint wanted);
  void KeepOrder();

  uint32_t minSample_ = 0;
  uint32_t maxSample_ = 0;
  int32_t clientWidth_ = 0;
  int32_t clientHeight_ = 0;
  int32_t useSpline_ = 0;
  int32_t showGrid_ = 0;
  int32_t dragIndex_ = kNoPoint;
  I_SplineCtrlEditWndEvent* sink_ = nullptr;

  SplineEditGeometry geometry_;
  std::unique_ptr<C_VLRSplineCtrlCurve> spline_;
  std::unique_ptr<C_VLRPolylineCtrlCurve> polyline_;
  std::vector<tagVLRCurveCtrlPoint> pointBuffer_;
  std::optional<tagVLRCurveCtrlPoint> pointerValue_;

  WavDataPtr buffer_;  ///< levels of the shown curve, as samples
  C_VLRWaveformPresentationData waveform_;
  bool bufferIsStale_ = true;
  bool repaint_ = false;
};

}  // namespace velora
