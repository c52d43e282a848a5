// How many pins a chip has, and how they hang together.
#pragma once

#include <cstdint>

namespace velora {

/// Interface 3 of a chip; belongs to the chip. Nothing fails.
///
/// The order of the operations is the contract. Five raw slots; the table has no
/// destructor.
class I_ChipPorts {
 public:
  /// Slots 0 to 2. Pins that go both ways, that are inputs only, that are outputs
  /// only. Their sum is the number of pins, one more than the highest pin index.
  virtual int32_t GetPinCount0() = 0;
  virtual int32_t GetPinCount1() = 0;
  virtual int32_t GetPinCount2() = 0;

  /// Slot 3. Pins in a group, which share one direction of use; at least 1.
  virtual int32_t GetGroupSize() = 0;

  /// Slot 4. The same for the outputs of the firmware.
  virtual int32_t GetOutputGroupSize() = 0;

 protected:
  ~I_ChipPorts() = default;
};

}  // namespace velora
