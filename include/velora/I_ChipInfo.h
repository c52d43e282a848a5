// One chip of the catalogue.
#pragma once

#include <cstdint>

namespace velora {

/// The interfaces of a chip, for GetInterface.
enum ChipInterface : int32_t {
  kChipPorts = 3,      ///< I_ChipPorts
  kChipResources = 4,  ///< I_ChipResources
  kChipPwmInfo = 7,    ///< I_ChipPwmInfo
};

/// The bits of a chip code that name the family. The four bits above them do not.
inline constexpr uint32_t kChipFamilyMask = 0x0FFFF000;

/// A chip, owned by whoever got it from the catalogue.
///
/// The order of the operations is the contract. Three raw slots; the table has no
/// destructor.
class I_ChipInfo {
 public:
  /// Slot 0. Deletes the chip and everything it handed out. Called once.
  virtual void Release() = 0;

  /// Slot 1. Writes the interface of that ChipInterface to `out` and gives 1. It
  /// belongs to the chip and lives as long. 0 when the chip has no such interface;
  /// `out` is then null. 0 as well for a null `out`.
  virtual int32_t GetInterface(int32_t id, void** out) = 0;

  /// Slot 2. 32 bits that name the chip; see kChipFamilyMask.
  virtual uint32_t GetChipCode() = 0;

 protected:
  ~I_ChipInfo() = default;
};

}  // namespace velora
