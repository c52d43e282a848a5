// What the system takes of a chip's RAM.
#pragma once

#include <cstdint>

namespace velora {

/// Belongs to the chip. Both figures are bytes, fixed, and never free for a
/// project. Nothing fails.
///
/// The order of the operations is the contract. Two raw slots; the table has no
/// destructor.
class I_ChipMemoryModel {
 public:
  /// Slot 0. Taken by the firmware's kernel.
  virtual int32_t GetSystemRam() = 0;

  /// Slot 1. Taken by whatever else is always there.
  virtual int32_t GetOtherRam() = 0;

 protected:
  ~I_ChipMemoryModel() = default;
};

}  // namespace velora
