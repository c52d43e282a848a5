// How levels get into the array of a curve.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velora {

/// Writes the levels of a straight run: `sum` rounded, then `step` added, for each
/// entry. The sum runs, since its rounding errors are part of the result; the sum
/// behind the last entry is returned. Sums stay within 16 bits; with `clamp` the
/// levels are held to 0 to 255, the sum is not.
double WriteRun(std::span<uint16_t> out, double sum, double step, bool clamp = false);

/// 255 - level for each entry.
void InvertLevels(std::span<uint16_t> levels);

/// Repeats the first `period` entries, which are there, to the end.
void RepeatPeriod(std::span<uint16_t> levels, size_t period);

/// The part of a long row of levels that a curve delivers.
///
/// The levels of a curve through points reach from the first point to the last
/// one, which may be far more than the range that is asked for. A window takes
/// them in order as if the whole row were written, and keeps what lies in the
/// range; runs outside it cost nothing. Outside the row its end levels hold.
///
/// What is written behind the end of the row is dropped.
class LevelWindow {
 public:
  /// `out` shows the row from index `first` on, which may be negative or behind
  /// the row. `length` is the row's, at least 1.
  LevelWindow(std::span<uint16_t> out, int64_t first, int64_t length)
      : out_(out), first_(first), length_(length) {}

  /// Index at which the next run begins.
  int64_t Index() const { return index_; }
  void MoveTo(int64_t index) { index_ = index; }

  /// True when none of `count` entries from Index() on would be seen.
  bool IsOutside(int64_t count) const;

  /// The entries of the array for `count` entries from Index() on; empty unless all
  /// of them are seen. Whoever writes them moves on by MoveTo.
  std::span<uint16_t> Visible(int64_t count) const;

  /// Writes a straight run of `count` entries and moves on behind it.
  void Run(double sum, double step, int64_t count, bool clamp = false);

  /// The same, and the level of the last entry of the run, seen or not.
  uint16_t RunToLevel(double sum, double step, int64_t count);

  void SetFirst(uint16_t level);
  void SetLast(uint16_t level);

  /// Extends the end levels over the entries outside the row.
  void HoldEnds();

 private:
  int64_t OutEnd() const { return first_ + static_cast<int64_t>(out_.size()); }
  void Set(int64_t index, uint16_t level);

  std::span<uint16_t> out_;
  int64_t first_;
  int64_t length_;
  int64_t index_ = 0;
  uint16_t head_ = 0;
  uint16_t tail_ = 0;
};

}  // namespace velora
