// A stretch of silence in a sound.
#pragma once

#include <cstdint>

namespace velora {

/// A growing list of segments, see src: what operations that fill a list of the
/// caller's take. Only lists that this library made can be filled.
class C_SilenceSegmentList;

/// Frames from the start to the end, both belonging to the silence.
///
/// Owned by the list it stands in. The order of the operations is the contract.
/// Four raw slots.
class I_SilenceSegment {
 public:
  /// Slot 0. The first silent frame.
  virtual uint32_t GetStart() const = 0;

  /// Slot 1. The last silent frame.
  virtual uint32_t GetEnd() const = 0;

  /// Slot 2. Frames: end - start + 1.
  virtual uint32_t GetLength() const = 0;

  /// Slot 3. Both ends inclusive; nothing is checked.
  virtual void Set(uint32_t start, uint32_t end) = 0;

 protected:
  ~I_SilenceSegment() = default;
};

}  // namespace velora
