// Splines and polylines worked out the plain way: over a work array for the whole
// extent of the points, of which the range asked for is copied.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include <velora/VeloraTypes.h>

namespace velora::test {

using Points = std::vector<tagVLRCurveCtrlPoint>;

class PlainSpline {
 public:
  explicit PlainSpline(const Points& points)
      : points_(points),
        work_(static_cast<size_t>(points.back().Sample - points.front().Sample) + 1) {}

  std::vector<uint16_t> Smooth(uint32_t start, uint32_t end, bool inverted) {
    const size_t last = points_.size() - 1;
    if (points_.size() == 2) {
      Straight(points_[0], points_[1], points_[1].Sample - points_[0].Sample + 1);
    } else {
      for (size_t k = 0; k < last; ++k) {
        Segment({points_[k == 0 ? 0 : k - 1], points_[k], points_[k + 1],
                 points_[k + 1 == last ? last : k + 2]});
      }
    }
    work_.front() = points_.front().Level;
    work_.back() = points_.back().Level;
    return Copy(start, end, inverted);
  }

  std::vector<uint16_t> Lines(uint32_t start, uint32_t end, bool inverted) {
    for (size_t k = 0; k + 1 < points_.size(); ++k) {
      if (points_[k].Sample >= points_[k + 1].Sample) continue;
      Straight(points_[k], points_[k + 1], points_[k + 1].Sample - points_[k].Sample);
    }
    work_.back() = points_.back().Level;
    return Copy(start, end, inverted);
  }

 private:
  void Put(int level) {
    if (index_ < work_.size()) work_[index_] = static_cast<uint16_t>(level);
    ++index_;
  }

  void Straight(const tagVLRCurveCtrlPoint& a, const tagVLRCurveCtrlPoint& b, uint32_t count) {
    const double step = (int{b.Level} - int{a.Level}) / static_cast<double>(b.Sample - a.Sample);
    double sum = a.Level;
    for (uint32_t i = 0; i < count; ++i) {
      Put(static_cast<int>(sum + 0.5));
      sum += step;
    }
  }

  static double Cubic(double a0, double a1, double a2, double a3, double u) {
    const double square = u * u;
    const double cube = square * u;
    return 0.5 * (2 * a1 + (a2 - a0) * u + (2 * a0 - 5 * a1 + 4 * a2 - a3) * square +
                  (3 * (a1 - a2) - a0 + a3) * cube) +
           0.5;
  }

  void Segment(const std::vector<tagVLRCurveCtrlPoint>& p) {
    Put(p[1].Level);
    int64_t previousX = p[1].Sample;
    int previousLevel = p[1].Level;
    double u = 0;
    for (int i = 0; i < 50; ++i) {
      u += 0.02;
      const auto cubicX =
          static_cast<int64_t>(Cubic(p[0].Sample, p[1].Sample, p[2].Sample, p[3].Sample, u));
      const int64_t x = std::min<int64_t>(cubicX, p[2].Sample);
      if (x <= previousX) continue;
      const int level = static_cast<int>(Cubic(p[0].Level, p[1].Level, p[2].Level, p[3].Level, u));
      const double step = (level - previousLevel) / static_cast<double>(x - previousX);
      double sum = previousLevel + step;
      for (int64_t at = previousX + 1; at <= x; ++at) {
        Put(std::clamp(static_cast<int>(sum + 0.5), 0, 255));
        sum += step;
      }
      previousX = x;
      previousLevel = level;
    }
    --index_;
  }

  std::vector<uint16_t> Copy(uint32_t start, uint32_t end, bool inverted) const {
    std::vector<uint16_t> out;
    for (int64_t x = start; x <= end; ++x) {
      const int64_t index = std::clamp<int64_t>(x - points_.front().Sample, 0,
                                                static_cast<int64_t>(work_.size()) - 1);
      const uint16_t level = work_[static_cast<size_t>(index)];
      out.push_back(static_cast<uint16_t>(inverted ? 255 - level : level));
    }
    return out;
  }

  Points points_;
  std::vector<uint16_t> work_;
  size_t index_ = 0;
};

}  // namespace velora::test
