// The lowest and highest sample of any stretch of a sound, fast.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velora {

/// Minima and maxima of blocks of samples, of blocks of those, and so on. A
/// stretch is then put together from few whole blocks and the single samples at
/// its two ends, and the answer is that of a walk over all its samples.
///
/// The samples are borrowed: they must stay where they are, and after a change to
/// them Build must be called again. The summary takes about a sixteenth of them;
/// when there is no memory for it, every question walks the samples.
class WaveformPyramid {
 public:
  /// Both ends are values that occur.
  struct Range {
    int16_t low;
    int16_t high;
  };

  WaveformPyramid() = default;
  explicit WaveformPyramid(std::span<const int16_t> samples) { Build(samples); }

  void Build(std::span<const int16_t> samples);

  std::span<const int16_t> Samples() const { return samples_; }

  /// Of the samples `first` to `last`, both inside the stretch, which must lie in
  /// the sound and not be empty.
  Range RangeOf(size_t first, size_t last) const;

 private:
  /// Values of one size of block, lowest first in the sound.
  struct Level {
    std::vector<int16_t> low;
    std::vector<int16_t> high;
  };

  void BuildLevels();

  std::span<const int16_t> samples_;
  std::vector<Level> levels_;
};

}  // namespace velora
