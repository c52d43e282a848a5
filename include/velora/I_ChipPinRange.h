// A run of pins of one port.
#pragma once

#include <cstdint>

namespace velora {

/// Part of one port, first and last pin inclusive. A pin has a number within its
/// port and an index over all ports of the chip, counted from 0 in the order of
/// the port list. Both run from the first to the last; where the last is below
/// the first a walk over the range runs downwards.
///
/// Owned by the list that it stands in, which is the chip's. Nothing fails.
///
/// The order of the operations is the contract. Six raw slots; the table has no
/// destructor.
class I_ChipPinRange {
 public:
  /// Slot 0. The port's name; never null.
  virtual const char* GetName() = 0;

  /// Slots 1 and 2. Pin numbers within the port, in the low 8 bits; what stands
  /// above them has no meaning.
  virtual uint32_t GetFirstPin() = 0;
  virtual uint32_t GetLastPin() = 0;

  /// Slots 3 and 4. The same pins as indexes over the chip, in the low 16 bits.
  virtual uint32_t GetFirstIndex() = 0;
  virtual uint32_t GetLastIndex() = 0;

  /// Slot 5. 1 for a range that is filled before the others of its list.
  virtual int32_t IsPreferred() = 0;

 protected:
  ~I_ChipPinRange() = default;
};

}  // namespace velora
