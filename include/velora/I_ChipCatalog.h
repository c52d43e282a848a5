// The catalogue of chips, as the module PartCatalog offers it.
#pragma once

#include <cstdint>

namespace velora {

class I_ChipInfo;

/// The number by which CreateServiceInstance of PartCatalog hands out a catalogue.
inline constexpr int32_t kChipCatalogService = 1;

/// The form of CreateServiceInstance. 1 and the object in `out`; for any other
/// id 0, and `out` is left as it is.
using ChipCatalogFactory = int32_t (*)(int32_t id, void** out);

/// What is known of each part number. Made by CreateServiceInstance and owned by
/// whoever asked for it.
///
/// The order of the operations is the contract. Four raw slots; the table has no
/// destructor.
class I_ChipCatalog {
 public:
  /// Slot 0. Of no use to a caller. In a build that counts its objects: how many
  /// I_ChipInfo of the module live; otherwise 0.
  virtual int32_t GetLiveChipCount() = 0;

  /// Slot 1. Deletes the catalogue. Called once, before the module goes, and
  /// after the last chip was released.
  virtual void Destroy() = 0;

  /// Slot 2. Reads the catalogue file; the path is one of the system's own. What
  /// was read before is replaced when this succeeds and stays otherwise. 1, or 0
  /// when the file cannot be read or names no part.
  virtual int32_t Load(const char* path) = 0;

  /// Slot 3. A new object, to be released by the caller; it may outlive a further
  /// Load, but neither the catalogue nor the module. Part numbers compare without
  /// regard to case. Null for an unknown part, for an empty or a null number, and
  /// for a part whose entry is faulty.
  virtual I_ChipInfo* GetChip(const char* partNumber) = 0;

 protected:
  ~I_ChipCatalog() = default;
};

}  // namespace velora
