// Small arithmetic that the curve classes share: how real numbers become stored
// positions and levels, and how positions are mapped.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace velora {

/// Highest level of an output.
inline constexpr int32_t kTopLevel = 255;

/// Cut toward zero and held to 0 .. 2^32 - 1; NaN gives 0.
inline uint32_t CutToPosition(double value) {
  if (!(value > 0)) return 0;
  return value >= 4294967295.0 ? 0xFFFFFFFFu : static_cast<uint32_t>(value);
}

/// Cut toward zero, of which the low 32 bits are stored; 0 for what has no
/// 64-bit integer.
inline uint32_t CutToLowBits(double value) {
  if (!(value > -9.2e18 && value < 9.2e18)) return 0;
  return static_cast<uint32_t>(static_cast<int64_t>(value));
}

/// A level nearest to the value, halves up. The value is one of 0 to 255 within
/// rounding, or of any other range that 32 bits hold.
inline int32_t RoundToLevel(double value) { return static_cast<int32_t>(value + 0.5); }

/// The level as an output with the flag receives it.
inline uint16_t Deliver(int32_t level, bool inverted) {
  return static_cast<uint16_t>(inverted ? kTopLevel - level : level);
}

/// Two ranges of positions, both bounds inside, that points are mapped between.
struct RangeMap {
  uint32_t sourceFirst;
  uint32_t sourceLast;
  uint32_t targetFirst;
  uint32_t targetLast;

  int64_t SourceLength() const { return int64_t{sourceLast} - sourceFirst + 1; }
  int64_t TargetLength() const { return int64_t{targetLast} - targetFirst + 1; }

  /// Both ranges need two positions for their ends; a falling range has none.
  bool IsValid() const { return SourceLength() >= 2 && TargetLength() >= 2; }

  /// Where a point between the ends goes: never onto the first position, which
  /// is the first point's.
  uint32_t Map(uint32_t position) const {
    const double distance = static_cast<double>(std::llabs(int64_t{position} - sourceFirst));
    const double mapped =
        distance / static_cast<double>(SourceLength()) * static_cast<double>(TargetLength()) +
        targetFirst;
    const int64_t cut = static_cast<int64_t>(mapped);
    return static_cast<uint32_t>(cut - targetFirst < 1 ? int64_t{targetFirst} + 1 : cut);
  }
};

}  // namespace velora
