#include "curves/WaveformPyramid.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace velora {
namespace {

/// Values of one level that make a value of the next.
constexpr size_t kFan = 64;

constexpr WaveformPyramid::Range kNothing = {std::numeric_limits<int16_t>::max(),
                                             std::numeric_limits<int16_t>::min()};

/// Widens the range by values `from` up to, not including, `to`.
void Extend(WaveformPyramid::Range& range, const int16_t* low, const int16_t* high, size_t from,
            size_t to) {
  int16_t lowest = range.low;
  int16_t highest = range.high;
  for (size_t i = from; i < to; ++i) {
    lowest = std::min(lowest, low[i]);
    highest = std::max(highest, high[i]);
  }
  range = {lowest, highest};
}

}  // namespace

void WaveformPyramid::Build(std::span<const int16_t> samples) {
  samples_ = samples;
  try {
    BuildLevels();
  } catch (const std::bad_alloc&) {
    levels_.clear();
  }
}

void WaveformPyramid::BuildLevels() {
  size_t depth = 0;
  for (size_t below = samples_.size(); below > kFan; ++depth) {
    const size_t count = (below + kFan - 1) / kFan;
    if (depth == levels_.size()) levels_.emplace_back();
    Level& level = levels_[depth];
    level.low.resize(count);
    level.high.resize(count);
    const int16_t* const low = depth ? levels_[depth - 1].low.data() : samples_.data();
    const int16_t* const high = depth ? levels_[depth - 1].high.data() : samples_.data();
    for (size_t i = 0; i < count; ++i) {
      Range range = kNothing;
      Extend(range, low, high, i * kFan, std::min(below, (i + 1) * kFan));
      level.low[i] = range.low;
      level.high[i] = range.high;
    }
    below = count;
  }
  levels_.resize(depth);
}

WaveformPyramid::Range WaveformPyramid::RangeOf(size_t first, size_t last) const {
  Range range = kNothing;
  const int16_t* low = samples_.data();
  const int16_t* high = samples_.data();
  size_t from = first;
  size_t to = last + 1;
  for (const Level& level : levels_) {
    const size_t wholeFrom = (from + kFan - 1) / kFan;
    const size_t wholeTo = to / kFan;
    if (wholeFrom >= wholeTo) break;
    Extend(range, low, high, from, wholeFrom * kFan);
    Extend(range, low, high, wholeTo * kFan, to);
    low = level.low.data();
    high = level.high.data();
    from = wholeFrom;
    to = wholeTo;
  }
  Extend(range, low, high, from, to);
  return range;
}

}  // namespace velora
