#include "curves/LevelWriter.h"

#include <algorithm>

#include "curves/LevelMath.h"

namespace velora {
namespace {

/// Entries that are copied at once when a period is repeated: few enough to be
/// read from the cache.
constexpr size_t kRepeatBlock = 8192;

/// The sum after `count` steps. There is no shorter way to the same roundings.
double SumAfter(double sum, double step, int64_t count) {
  if (step == 0) return sum;
  for (int64_t i = 0; i < count; ++i) sum += step;
  return sum;
}

}  // namespace

double WriteRun(std::span<uint16_t> out, double sum, double step, bool clamp) {
  if (step == 0) {
    const int32_t level = RoundToLevel(sum);
    std::ranges::fill(out, static_cast<uint16_t>(clamp ? std::clamp(level, 0, kTopLevel) : level));
    return sum;
  }
  if (clamp) {
    for (uint16_t& level : out) {
      level = static_cast<uint16_t>(std::clamp(RoundToLevel(sum), 0, kTopLevel));
      sum += step;
    }
    return sum;
  }
  for (uint16_t& level : out) {
    level = static_cast<uint16_t>(RoundToLevel(sum));
    sum += step;
  }
  return sum;
}

void InvertLevels(std::span<uint16_t> levels) {
  for (uint16_t& level : levels) level = static_cast<uint16_t>(kTopLevel - level);
}

void RepeatPeriod(std::span<uint16_t> levels, size_t period) {
  size_t block = period;
  for (size_t done = period; done < levels.size();) {
    const size_t count = std::min(block, levels.size() - done);
    std::copy_n(levels.data(), count, levels.data() + done);
    done += count;
    if (block < kRepeatBlock) block = done;
  }
}

bool LevelWindow::IsOutside(int64_t count) const {
  // The entry at 0 counts as seen, since it may hold before the row.
  return index_ != 0 && (index_ + count <= first_ || index_ >= OutEnd());
}

std::span<uint16_t> LevelWindow::Visible(int64_t count) const {
  const int64_t end = index_ + count;
  if (count <= 0 || index_ < first_ || end > OutEnd() || end > length_) return {};
  return out_.subspan(static_cast<size_t>(index_ - first_), static_cast<size_t>(count));
}

void LevelWindow::Run(double sum, double step, int64_t count, bool clamp) {
  const int64_t from = index_;
  index_ += count;
  if (count <= 0) return;
  if (from == 0) {
    const int32_t level = RoundToLevel(sum);
    head_ = static_cast<uint16_t>(clamp ? std::clamp(level, 0, kTopLevel) : level);
  }
  const int64_t begin = std::max(from, first_);
  const int64_t end = std::min({from + count, length_, OutEnd()});
  if (begin >= end) return;
  sum = SumAfter(sum, step, begin - from);
  WriteRun(out_.subspan(static_cast<size_t>(begin - first_), static_cast<size_t>(end - begin)), sum,
           step, clamp);
}

uint16_t LevelWindow::RunToLevel(double sum, double step, int64_t count) {
  Run(sum, step, count);
  const int64_t last = index_ - 1;
  if (last >= first_ && last < OutEnd()) return out_[static_cast<size_t>(last - first_)];
  return static_cast<uint16_t>(RoundToLevel(SumAfter(sum, step, count - 1)));
}

void LevelWindow::SetFirst(uint16_t level) {
  head_ = level;
  Set(0, level);
}

void LevelWindow::SetLast(uint16_t level) {
  tail_ = level;
  if (length_ == 1) head_ = level;
  Set(length_ - 1, level);
}

void LevelWindow::HoldEnds() {
  const int64_t size = static_cast<int64_t>(out_.size());
  const auto before = static_cast<size_t>(std::clamp<int64_t>(-first_, 0, size));
  const auto within = static_cast<size_t>(std::clamp<int64_t>(length_ - first_, 0, size));
  std::ranges::fill(out_.first(before), head_);
  std::ranges::fill(out_.subspan(within), tail_);
}

void LevelWindow::Set(int64_t index, uint16_t level) {
  if (index >= first_ && index < OutEnd()) out_[static_cast<size_t>(index - first_)] = level;
}

}  // namespace velora
