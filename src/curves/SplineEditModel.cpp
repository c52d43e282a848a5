#include "curves/SplineEditModel.h"

#include <algorithm>
#include <new>

namespace velora {
namespace {

constexpr uint32_t kBufferRate = 8000;

}  // namespace

// --- Setting up --------------------------------------------------------------

void SplineEditModel::SetSampleRange(uint32_t minSample, uint32_t maxSample) {
  minSample_ = minSample;
  maxSample_ = maxSample;
}

void SplineEditModel::SetClientSize(int32_t width, int32_t height) {
  clientWidth_ = width;
  clientHeight_ = height;
  geometry_ = SplineEditGeometry(width, height, geometry_.MinSample(), geometry_.MaxSample());
  if (HasCurves()) FitView();
  repaint_ = true;
}

bool SplineEditModel::InitCurves(uint8_t firstLevel, uint8_t lastLevel) {
  DropCurves();
  geometry_ = SplineEditGeometry(clientWidth_, clientHeight_, minSample_, maxSample_);
  if (maxSample_ <= minSample_ || !CreateBuffer()) return false;
  const tagVLRCurveCtrlPoint ends[] = {{minSample_, firstLevel}, {maxSample_, lastLevel}};
  try {
    spline_ = std::make_unique<C_VLRSplineCtrlCurve>(minSample_, maxSample_, 0, ends, 2);
    polyline_ = std::make_unique<C_VLRPolylineCtrlCurve>(minSample_, maxSample_, 0, ends, 2);
  } catch (const std::bad_alloc&) {
    DropCurves();
    return false;
  }
  waveform_.Attach(buffer_.get());
  waveform_.SetPrecomputed(1);
  FitView();
  OnPointsChanged();
  return true;
}

void SplineEditModel::DropCurves() {
  dragIndex_ = kNoPoint;
  pointerValue_.reset();
  spline_.reset();
  polyline_.reset();
  waveform_.Attach(nullptr);
  buffer_.reset();
  repaint_ = true;
}

/// One 16-bit sample for each position of the axis.
bool SplineEditModel::CreateBuffer() {
  const uint64_t samples = uint64_t{maxSample_ - minSample_} + 1;
  const uint64_t size = samples * sizeof(int16_t);
  if (size > UINT32_MAX) return false;
  const auto bytes = static_cast<uint32_t>(size);
  C_WavInfo format;
  format.Set(kBufferRate, bytes, 1, 16, 16, 1);
  if (format.GetFrameCount() != samples) return false;  // more than the format can count
  buffer_ = C_WavData::Create();
  if (!buffer_ || !buffer_->AllocData(bytes)) return false;
  buffer_->SetWavInfo(&format);
  std::ranges::fill(buffer_->Words(), uint16_t{0});
  return true;
}

void SplineEditModel::FitView() {
  waveform_.SetViewWidth(static_cast<int32_t>(std::max<int64_t>(geometry_.Width(), 0)));
  waveform_.ZoomFit();
}

// --- Points ------------------------------------------------------------------

void SplineEditModel::OnPointsChanged() {
  bufferIsStale_ = true;
  repaint_ = true;
}

template <typename Change>
void SplineEditModel::ChangeBoth(Change change) {
  change(*spline_);
  change(*polyline_);
  OnPointsChanged();
}

void SplineEditModel::SetPoints(std::span<const tagVLRCurveCtrlPoint> points) {
  if (!HasCurves()) return;
  ChangeBoth([points](C_VLRSplineCtrlCurve& curve) {
    curve.Clear();
    for (const tagVLRCurveCtrlPoint& point : points) curve.Add(point, nullptr);
  });
}

void SplineEditModel::SetPoints(std::span<const StoredPoint> points) {
  // A copy first: the points may be those of a curve that is cleared here.
  std::vector<tagVLRCurveCtrlPoint> plain;
  plain.reserve(points.size());
  for (const StoredPoint& point : points) plain.push_back(point.Value);
  SetPoints(std::span<const tagVLRCurveCtrlPoint>(plain));
}

std::span<const tagVLRCurveCtrlPoint> SplineEditModel::GetPoints() {
  if (!HasCurves() || spline_->Count() < 2) return {};
  pointBuffer_.clear();
  for (const StoredPoint& point : Points()) pointBuffer_.push_back(point.Value);
  return pointBuffer_;
}

void SplineEditModel::ResetPoints() {
  if (!HasCurves()) return;
  ChangeBoth([](C_VLRSplineCtrlCurve& curve) {
    for (int32_t index = curve.Count() - 2; index > 0; --index) curve.RemoveAt(index);
  });
}

std::span<const SplineEditModel::StoredPoint> SplineEditModel::Points() const {
  return HasCurves() ? spline_->Elements() : std::span<const StoredPoint>();
}

// --- Mouse -------------------------------------------------------------------

void SplineEditModel::OnLeftDown(SplineEditPixel pixel) {
  dragIndex_ = kNoPoint;
  if (!HasCurves()) return;
  std::optional<tagVLRCurveCtrlPoint> value;
  if (geometry_.Contains(pixel)) value = geometry_.ValueAt(pixel);

  int32_t index = PointHit(pixel);
  if (index == kNoPoint && value) index = PointWithSample(value->Sample);
  if (index != kNoPoint) {
    dragIndex_ = index;
    if (value) DragTo(*value);
  } else if (value) {
    AddPoint(*value);
  }
}

void SplineEditModel::OnMouseMove(SplineEditPixel pixel) {
  if (!HasCurves()) return;
  repaint_ = true;
  const std::optional<tagVLRCurveCtrlPoint> nearest = geometry_.ValueAt(pixel);
  pointerValue_.reset();
  if (geometry_.Contains(pixel)) pointerValue_ = nearest;
  if (sink_) {
    if (pointerValue_) {
      sink_->OnMouseOverValue(pointerValue_->Sample, pointerValue_->Level);
    } else {
      sink_->OnMouseLeavePlot();
    }
  }
  if (IsDragging() && nearest) DragTo(*nearest);
}

void SplineEditModel::OnRightDown(SplineEditPixel pixel) {
  if (!HasCurves() || IsDragging()) return;
  const int32_t index = PointHit(pixel);
  if (!IsInner(index)) return;
  const tagVLRCurveCtrlPoint point = spline_->ValueAt(index);
  ChangeBoth([index](C_VLRSplineCtrlCurve& curve) { curve.RemoveAt(index); });
  if (sink_) sink_->OnPointRemoved(point.Sample, point.Level);
}

int32_t SplineEditModel::PointHit(SplineEditPixel pixel) const {
  const auto points = Points();
  const auto hit = std::ranges::find_if(points, [this, pixel](const StoredPoint& point) {
    return geometry_.Hits(pixel, point.Value);
  });
  return hit == points.end() ? kNoPoint : static_cast<int32_t>(hit - points.begin());
}

int32_t SplineEditModel::PointWithSample(uint32_t sample) const {
  const auto points = Points();
  const auto twin = std::ranges::find_if(
      points, [sample](const StoredPoint& point) { return point.Value.Sample == sample; });
  return twin == points.end() ? kNoPoint : static_cast<int32_t>(twin - points.begin());
}

/// Index of the first point behind the sample, or the number of points.
int32_t SplineEditModel::PlaceFor(uint32_t sample) const {
  const auto points = Points();
  const auto behind = std::ranges::find_if(
      points, [sample](const StoredPoint& point) { return point.Value.Sample > sample; });
  return static_cast<int32_t>(behind - points.begin());
}

void SplineEditModel::AddPoint(tagVLRCurveCtrlPoint point) {
  const int32_t place = PlaceFor(point.Sample);
  ChangeBoth([place, point](C_VLRSplineCtrlCurve& curve) {
    curve.InsertAt(place, point.Sample, point.Level, nullptr);
  });
  dragIndex_ = place;
  if (sink_) sink_->OnPointAdded(point.Sample, point.Level);
}

bool SplineEditModel::IsInner(int32_t index) const {
  return index > 0 && index < spline_->Count() - 1;
}

/// Where a point may really go: the ends keep their sample, and the others stay
/// between the ends of the axis.
tagVLRCurveCtrlPoint SplineEditModel::WithinLimits(int32_t index,
                                                   tagVLRCurveCtrlPoint wanted) const {
  if (!IsInner(index)) return {spline_->ValueAt(index).Sample, wanted.Level};
  if (wanted.Sample == geometry_.MinSample()) return {wanted.Sample + 1, wanted.Level};
  if (wanted.Sample == geometry_.MaxSample()) return {wanted.Sample - 1, wanted.Level};
  return wanted;
}

void SplineEditModel::DragTo(tagVLRCurveCtrlPoint wanted) {
  // The sink may have replaced points or curves since the point was taken hold of.
  if (!HasCurves() || !spline_->IsIndex(dragIndex_)) return;
  const int32_t index = dragIndex_;
  const tagVLRCurveCtrlPoint old = spline_->ValueAt(index);
  const tagVLRCurveCtrlPoint now = WithinLimits(index, wanted);
  ChangeBoth([index, now](C_VLRSplineCtrlCurve& curve) { curve.SetValueAt(index, now); });
  if (IsInner(index)) KeepOrder();
  if (sink_) sink_->OnPointMoved(old.Sample, old.Level, now.Sample, now.Level);
}

/// Moves the point that is held to its place among the inner points, which is in
/// front of the first one behind it.
void SplineEditModel::KeepOrder() {
  const int32_t from = dragIndex_;
  const uint32_t sample = spline_->ValueAt(from).Sample;
  const int32_t last = spline_->Count() - 1;
  int32_t place = 1;
  while (place < last && spline_->ValueAt(place).Sample <= sample) ++place;
  if (place == from + 1) return;
  ChangeBoth([from, place](C_VLRSplineCtrlCurve& curve) { curve.MovePoint(from, place); });
  dragIndex_ = from < place ? place - 1 : place;
}

// --- Picture -----------------------------------------------------------------

void SplineEditModel::SetUseSpline(int32_t flag) {
  useSpline_ = flag;
  OnPointsChanged();
}

void SplineEditModel::SetShowGrid(int32_t flag) {
  showGrid_ = flag;
  repaint_ = true;
}

bool SplineEditModel::TakeRepaint() {
  const bool repaint = repaint_;
  repaint_ = false;
  return repaint;
}

std::span<const WaveformColumn> SplineEditModel::Columns() {
  if (!HasCurves() || !geometry_.HasPlot()) return {};
  if (bufferIsStale_) {
    const std::span<uint16_t> levels = buffer_->Words();
    std::ranges::fill(levels, uint16_t{0});  // a curve without levels writes none
    C_VLRSplineCtrlCurve& shown = useSpline_ ? *spline_ : *polyline_;
    shown.GenerateSamples(levels.data());
    waveform_.SamplesChanged();
    bufferIsStale_ = false;
  }
  const WaveformColumn* const columns = waveform_.GetColumns(0);
  if (!columns) return {};
  return {columns, static_cast<size_t>(waveform_.GetViewWidth())};
}

std::string SplineEditModel::PointerText() const {
  if (!pointerValue_) return {};
  return "(" + std::to_string(pointerValue_->Sample) + ", " + std::to_string(pointerValue_->Level) +
         ")";
}

}  // namespace velora
