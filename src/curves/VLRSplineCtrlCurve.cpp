#include "curves/VLRSplineCtrlCurve.h"

#include <algorithm>
#include <array>

#include "curves/LevelMath.h"
#include "curves/LevelWriter.h"

namespace velora {
namespace {

/// Each segment between two points is drawn as this many straight pieces.
constexpr int32_t kSteps = 50;

/// The parameter at the steps and its powers. It is formed by adding, so that the
/// last one is not quite 1; the levels depend on that.
struct StepTable {
  std::array<double, kSteps> u{};
  std::array<double, kSteps> u2{};
  std::array<double, kSteps> u3{};
};

constexpr StepTable MakeStepTable() {
  StepTable table;
  double u = 0;
  for (size_t i = 0; i < kSteps; ++i) {
    u += 0.02;
    table.u[i] = u;
    table.u2[i] = u * u;
    table.u3[i] = u * u * u;
  }
  return table;
}

constexpr StepTable kStepTable = MakeStepTable();

/// Values of a segment's polynomial at the steps, each with the 0.5 that rounds.
using StepValues = std::array<double, kSteps>;

/// The Catmull-Rom polynomial from a1 to a2. The order of the sums is fixed.
void Evaluate(double a0, double a1, double a2, double a3, StepValues& values) {
  const double c0 = 2 * a1;
  const double c1 = a2 - a0;
  const double c2 = 2 * a0 - 5 * a1 + 4 * a2 - a3;
  const double c3 = 3 * (a1 - a2) - a0 + a3;
  for (size_t i = 0; i < kSteps; ++i) {
    const double sum = c0 + c1 * kStepTable.u[i] + c2 * kStepTable.u2[i] + c3 * kStepTable.u3[i];
    values[i] = 0.5 * sum + 0.5;
  }
}

using Point = tagVLRCurveCtrlPoint;

/// The straight pieces of a segment between two points. Piece k joins the ends k
/// and k + 1; a step that does not reach a new sample makes no piece.
class Segment {
 public:
  Segment(const Point& p0, const Point& p1, const Point& p2, const Point& p3) {
    StepValues positions;
    StepValues levels;
    Evaluate(p0.Sample, p1.Sample, p2.Sample, p3.Sample, positions);
    Evaluate(p0.Level, p1.Level, p2.Level, p3.Level, levels);
    x_[0] = p1.Sample;
    level_[0] = p1.Level;
    int64_t previous = p1.Sample;
    for (size_t i = 0; i < kSteps; ++i) {
      // Stored in any case and counted if it advances, which needs no branch.
      const int64_t x = std::min<int64_t>(static_cast<int64_t>(positions[i]), p2.Sample);
      x_[count_ + 1] = static_cast<double>(x);
      level_[count_ + 1] = static_cast<int32_t>(levels[i]);
      count_ += x > previous ? 1 : 0;
      previous = std::max(previous, x);
    }
  }

  size_t PieceCount() const { return count_; }
  int64_t LengthOf(size_t piece) const { return static_cast<int64_t>(x_[piece + 1] - x_[piece]); }
  double StepOf(size_t piece) const {
    return (level_[piece + 1] - level_[piece]) / (x_[piece + 1] - x_[piece]);
  }

  /// The first entry of a piece lies behind its first end.
  double FirstSumOf(size_t piece) const { return level_[piece] + StepOf(piece); }

 private:
  size_t count_ = 0;
  // Whole numbers, kept as what they are divided as.
  std::array<double, kSteps + 1> x_;
  std::array<double, kSteps + 1> level_;
};

/// Draws the pieces one after the other.
void DrawPieces(const Segment& segment, LevelWindow& window) {
  for (size_t i = 0; i < segment.PieceCount(); ++i) {
    window.Run(segment.FirstSumOf(i), segment.StepOf(i), segment.LengthOf(i), true);
  }
}

/// Entries of a piece that are worked out side by side with those of the others.
constexpr int64_t kHead = 4;

/// The first entries of all pieces of a segment: entry k of piece i is [k][i].
struct PieceHeads {
  explicit PieceHeads(const Segment& segment) {
    const size_t count = segment.PieceCount();
    for (size_t i = 0; i < count; ++i) {
      steps[i] = segment.StepOf(i);
      sums[i] = segment.FirstSumOf(i);
    }
    for (std::array<int16_t, kSteps>& entries : levels) {
      for (size_t i = 0; i < count; ++i) {
        entries[i] = static_cast<int16_t>(RoundToLevel(sums[i]));
        sums[i] += steps[i];
      }
      for (int16_t& level : entries) level = std::clamp<int16_t>(level, 0, kTopLevel);
    }
  }

  std::array<std::array<int16_t, kSteps>, kHead> levels{};
  std::array<double, kSteps> sums;  ///< behind the head
  std::array<double, kSteps> steps;
};

/// The same for a segment of which all is seen, to the entries behind its start.
void DrawPieces(const Segment& segment, std::span<uint16_t> out) {
  const PieceHeads heads(segment);
  uint16_t* at = out.data();
  const uint16_t* const end = at + out.size();
  for (size_t i = 0; i < segment.PieceCount(); ++i) {
    const int64_t length = segment.LengthOf(i);
    // The surplus of a short piece is overwritten by the next ones; at the end
    // there may be no room for it.
    const int64_t written = end - at >= kHead ? kHead : std::min(length, kHead);
    for (int64_t k = 0; k < written; ++k) {
      at[k] = static_cast<uint16_t>(heads.levels[static_cast<size_t>(k)][i]);
    }
    if (length > kHead) {
      WriteRun({at + kHead, static_cast<size_t>(length - kHead)}, heads.sums[i], heads.steps[i],
               true);
    }
    at += length;
  }
}

/// Draws the curve from p1 to p2, both inside. The window is left on the entry of
/// p2, where the next segment begins.
void WriteSegment(const Point& p0, const Point& p1, const Point& p2, const Point& p3,
                  LevelWindow& window) {
  const int64_t index = window.Index();
  const int64_t rise = std::max<int64_t>(int64_t{p2.Sample} - p1.Sample, 0);
  if (!window.IsOutside(rise + 1)) {
    window.Run(p1.Level, 0, 1);
    const Segment segment(p0, p1, p2, p3);
    const std::span<uint16_t> visible = window.Visible(rise);
    if (visible.empty()) {
      DrawPieces(segment, window);
    } else {
      DrawPieces(segment, visible);
    }
  }
  window.MoveTo(index + rise);
}

void WriteSegments(std::span<const C_VLRSplineCtrlCurve::Element> points, LevelWindow& window) {
  const size_t last = points.size() - 1;
  for (size_t i = 0; i < last; ++i) {
    WriteSegment(points[i > 0 ? i - 1 : 0].Value, points[i].Value, points[i + 1].Value,
                 points[std::min(i + 2, last)].Value, window);
  }
}

void WriteStraightLine(const Point& from, const Point& to, LevelWindow& window) {
  const int64_t distance = int64_t{to.Sample} - from.Sample;
  const double step =
      distance > 0 ? (int32_t{to.Level} - from.Level) / static_cast<double>(distance) : 0;
  window.Run(from.Level, step, distance + 1);
}

}  // namespace

C_VLRSplineCtrlCurve::C_VLRSplineCtrlCurve(uint32_t start, uint32_t end, uint32_t phase)
    : C_VLRUnitCtrlCurve(start, end, phase) {}

C_VLRSplineCtrlCurve::C_VLRSplineCtrlCurve(uint32_t start, uint32_t end, uint32_t,
                                           const tagVLRCurveCtrlPoint* points, uint16_t count)
    : C_VLRUnitCtrlCurve(start, end, 0) {
  C_VLRSplineCtrlCurve::SetPoints(points, count);
}

void C_VLRSplineCtrlCurve::SetPoints(const tagVLRCurveCtrlPoint* points, uint16_t count) {
  Clear();
  if (!points) return;
  Reserve(count);
  for (uint16_t i = 0; i < count; ++i) Add(points[i]);
}

bool C_VLRSplineCtrlCurve::RemapPoints(uint32_t sourceFirst, uint32_t sourceLast,
                                       uint32_t targetFirst, uint32_t targetLast) {
  const RangeMap map{sourceFirst, sourceLast, targetFirst, targetLast};
  if (!map.IsValid()) return false;
  const int32_t last = Count() - 1;
  for (int32_t i = 0; i <= last; ++i) {
    Point point = ValueAt(i);
    if (i == last) {
      point.Sample = targetLast;
    } else {
      point.Sample = i == 0 ? targetFirst : map.Map(point.Sample);
    }
    SetValueAt(i, point);
  }
  return true;
}

void C_VLRSplineCtrlCurve::GenerateSamples(uint16_t* out) {
  const std::span<const Element> points = Elements();
  if (points.size() < 2) return;
  const Point first = points.front().Value;
  const Point last = points.back().Value;
  if (last.Sample < first.Sample) return;

  const std::span<uint16_t> levels = OutputOf(out);
  LevelWindow window(levels, int64_t{GetStart()} - first.Sample,
                     int64_t{last.Sample} - first.Sample + 1);
  if (points.size() == 2) {
    WriteStraightLine(first, last, window);
  } else {
    WriteSegments(points, window);
  }
  window.SetFirst(first.Level);
  window.SetLast(last.Level);
  window.HoldEnds();
  if (IsInverted()) InvertLevels(levels);
}

C_VLRUnitCtrlCurve* C_VLRSplineCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = std::make_unique<C_VLRSplineCtrlCurve>(GetStart(), GetEnd(), GetPhase());
    CopyPointsTo(*clone);
    return clone;
  });
}

void C_VLRSplineCtrlCurve::CopyPointsTo(C_VLRSplineCtrlCurve& clone) const {
  clone.Reserve(Elements().size());
  for (const Element& element : Elements()) clone.Add(element.Value);
}

void C_VLRSplineCtrlCurve::ScaleTime(double ratio) {
  C_VLRUnitCtrlCurve::ScaleTime(ratio);
  for (int32_t i = 0; i < Count(); ++i) {
    Point point = ValueAt(i);
    const uint32_t end = CutToPosition((point.Sample + 1.0) * ratio + 0.5);
    point.Sample = end > 0 ? end - 1 : 0;
    SetValueAt(i, point);
  }
}

void C_VLRSplineCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return;
  const int64_t delta = int64_t{newStart} - GetStart();
  C_VLRUnitCtrlCurve::Rebase(newStart, limit);
  int64_t previousX = limit;
  int32_t previousLevel = 0;
  for (int32_t i = 0; i < Count(); ++i) {
    Point point = ValueAt(i);
    const int64_t x = point.Sample + delta;
    if (x > limit) {
      if (i > 0) {
        point.Level = static_cast<uint8_t>((int32_t{point.Level} - previousLevel) *
                                               static_cast<double>(limit - previousX) /
                                               static_cast<double>(x - previousX) +
                                           previousLevel);
      }
      point.Sample = limit;
      SetValueAt(i, point);
      while (Count() > i + 1) RemoveAt(Count() - 1);
      return;
    }
    point.Sample = static_cast<uint32_t>(x);
    SetValueAt(i, point);
    previousX = x;
    previousLevel = point.Level;
  }
}

void C_VLRSplineCtrlCurve::InsertCopies(int32_t index, uint32_t sample, uint8_t level, int32_t n) {
  if (index < 0) return;
  while (Count() < index) Add({sample, level}, nullptr);
  for (int32_t i = 0; i < n; ++i) InsertAt(index, {sample, level});
}

bool C_VLRSplineCtrlCurve::MovePoint(int32_t from, int32_t to) {
  if (!IsIndex(from) || !InsertAt(to, ValueAt(from))) return false;
  return RemoveAt(from > to ? from + 1 : from);
}

}  // namespace velora
