#include "curves/WaveformColumns.h"

#include <algorithm>

namespace velora {
namespace {

/// Half way from a sample to the value of a column beside it: cut toward zero, but
/// never the sample itself where there is a value between.
int32_t HalfStep(int32_t neighbour, int32_t value) {
  int32_t middle = (neighbour + value) / 2;
  if (middle == neighbour && middle != value) middle += neighbour < value ? 1 : -1;
  return middle;
}

/// Deals the samples out to columns: each takes those behind the one before it, N - 1
/// of them shared evenly among W - 1 columns by a running remainder.
class SampleDealer {
 public:
  SampleDealer(int64_t lastSample, int64_t lastColumn, int64_t first)
      : lastSample_(lastSample),
        lastColumn_(lastColumn),
        quotient_(lastSample / lastColumn),
        remainder_(lastSample % lastColumn),
        end_(quotient_ * first + remainder_ * first / lastColumn) {}

  /// As dealt from here on: what was left over so far is taken to be the whole
  /// number of samples that it has already brought.
  void BeginHere(int64_t first) {
    running_ = remainder_ * first / lastColumn_;
    upcoming_ = end_ - 1;
  }

  /// As dealt from column 0 on.
  void ContinueAt(int64_t first) {
    running_ = remainder_ * first % lastColumn_;
    upcoming_ = first == 0 ? -1 : end_;
  }

  void Next() {
    previous_ = upcoming_;
    running_ += remainder_;
    int64_t share = quotient_;
    if (running_ >= lastColumn_) {
      running_ -= lastColumn_;
      ++share;
    }
    end_ = std::min(end_ + share, lastSample_);
    upcoming_ = end_;
  }

  /// The last sample of the column before, -1 in front of the sound, and of this one.
  int64_t Previous() const { return previous_; }
  int64_t End() const { return end_; }

 private:
  int64_t lastSample_;
  int64_t lastColumn_;
  int64_t quotient_;
  int64_t remainder_;
  int64_t end_;
  int64_t running_ = 0;
  int64_t previous_ = -1;
  int64_t upcoming_ = -1;  ///< the next column's previous_
};

/// The column of the samples behind `previous` up to `end`, with half a step to the
/// samples outside on either side.
WaveformColumn ColumnOf(const WaveformPyramid& sound, int64_t previous, int64_t end) {
  const std::span<const int16_t> s = sound.Samples();
  const auto count = static_cast<int64_t>(s.size());
  const auto at = [&s](int64_t index) { return int32_t{s[static_cast<size_t>(index)]}; };
  const int64_t before = std::min(previous, count - 2);
  const int64_t last = std::max(std::min(end, count - 1), before + 1);

  const WaveformPyramid::Range range =
      sound.RangeOf(static_cast<size_t>(before + 1), static_cast<size_t>(last));
  int32_t low = range.low;
  int32_t high = range.high;
  const auto reach = [&low, &high](int32_t value) {
    low = std::min(low, value);
    high = std::max(high, value);
  };
  if (before >= 0) reach(HalfStep(at(before), at(before + 1)));
  if (last + 1 < count) reach(HalfStep(at(last + 1), at(last)));
  return {static_cast<int16_t>(low), static_cast<int16_t>(high), kMarkNone};
}

void FillShared(const WaveformPyramid& sound, int32_t width, int32_t first, SampleDealer dealer,
                std::span<WaveformColumn> out) {
  int64_t number = first;
  for (WaveformColumn& column : out) {
    dealer.Next();
    column = ColumnOf(sound, dealer.Previous(), dealer.End());
    if (number >= width - 1) column.Low = column.High = sound.Samples().back();
    ++number;
  }
}

/// The column of a sample that has it for itself: from half way to the left
/// neighbour to half way to the right one. The two sides round differently.
void FillSingle(std::span<const int16_t> s, size_t index, bool useLeft, WaveformColumn& column) {
  const int32_t value = s[index];
  int32_t low = value;
  int32_t high = value;
  if (useLeft) {
    const int32_t middle = (s[index - 1] + value) / 2;
    if (middle - 1 > value) {
      high = middle - 1;
    } else if (middle + 1 < value) {
      low = middle + 1;
    }
  }
  if (index + 1 < s.size()) {
    const int32_t middle = (value + s[index + 1]) / 2;
    if (middle > high) {
      high = middle;
    } else if (middle < low) {
      low = middle + 1;
    }
  }
  column.Low = static_cast<int16_t>(low);
  column.High = static_cast<int16_t>(high);
}

void FillOneToOne(std::span<const int16_t> s, int32_t first, std::span<WaveformColumn> out) {
  size_t index = static_cast<size_t>(first);
  for (size_t c = 0; c < out.size(); ++c, ++index) {
    const size_t held = std::min(index, s.size() - 1);
    FillSingle(s, held, c > 0 && held > 0, out[c]);
  }
}

/// Joins a column to the value of the one before it without sharing that value.
WaveformColumn Joined(int32_t previous, int32_t value, uint8_t mark) {
  WaveformColumn column = {static_cast<int16_t>(value), static_cast<int16_t>(value), mark};
  if (previous < value) {
    column.Low = static_cast<int16_t>(previous + 1);
    if (mark == kMarkSample) column.Mark = kMarkRisingSample;
  } else if (previous > value) {
    column.High = static_cast<int16_t>(previous - 1);
  }
  return column;
}

}  // namespace

void FillColumns(const WaveformPyramid& sound, int32_t width, int32_t first,
                 std::span<WaveformColumn> out) {
  const std::span<const int16_t> s = sound.Samples();
  const auto lastSample = static_cast<int64_t>(s.size()) - 1;
  if (lastSample == width - 1) {
    FillOneToOne(s, first, out);
    return;
  }
  SampleDealer dealer(lastSample, width - 1, first);
  dealer.BeginHere(first);
  FillShared(sound, width, first, dealer, out);
}

void FillColumnsOfWhole(const WaveformPyramid& sound, int32_t width, int32_t first,
                        std::span<WaveformColumn> out) {
  SampleDealer dealer(static_cast<int64_t>(sound.Samples().size()) - 1, width - 1, first);
  dealer.ContinueAt(first);
  FillShared(sound, width, first, dealer, out);
}

void InterpolateColumns(const WaveformPyramid& sound, int32_t width, int32_t first,
                        std::span<WaveformColumn> out) {
  const std::span<const int16_t> s = sound.Samples();
  const auto lastSample = static_cast<int64_t>(s.size()) - 1;
  const int64_t lastColumn = int64_t{width} - 1;
  const uint8_t sampleMark = 4 * lastSample < lastColumn ? kMarkSample : kMarkNone;
  const auto at = [&](int64_t index) {
    return int32_t{s[static_cast<size_t>(std::min(index, lastSample))]};
  };

  // The sample at or behind the column, and how far behind the one before it the
  // column lies, in units of 1 / lastColumn samples.
  int64_t next = lastSample * first / lastColumn;
  int64_t way = lastSample * first % lastColumn;
  if (way == 0) {
    way = lastColumn;
  } else {
    ++next;
  }

  int32_t previous = 0;
  for (size_t c = 0; c < out.size(); ++c) {
    int32_t value = 0;
    uint8_t mark = kMarkNone;
    if (way >= lastColumn) {
      mark = sampleMark;
      value = at(next);
      ++next;
      way -= lastColumn;
    } else if (next > lastSample) {
      value = at(lastSample);
    } else {
      const double t = static_cast<double>(way) / static_cast<double>(lastColumn);
      value = static_cast<int32_t>(at(next - 1) * (1 - t) + at(next) * t + 0.5);
    }
    out[c] = Joined(c == 0 ? value : previous, value, mark);
    way += lastSample;
    previous = value;
  }
}

}  // namespace velora
