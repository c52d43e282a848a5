// What a feature of the firmware costs on a chip.
#pragma once

#include <cstdint>

namespace velora {

/// How the RAM of a feature is counted.
enum ChipFeatureKind : int32_t {
  kFeatureFramework = 1,  ///< with the framework; some names have a rule of their own
  kFeatureModule = 2,     ///< with the modules of the chip
};

/// A feature that a project can switch on. Belongs to the chip. Nothing fails.
///
/// The order of the operations is the contract. Four raw slots; the table has no
/// destructor.
class I_ChipFeature {
 public:
  /// Slot 0. For people, and for the rules that go by its beginning; never null.
  virtual const char* GetName() = 0;

  /// Slot 1. On when the project's feature flags have one of these bits.
  virtual uint32_t GetMask() = 0;

  /// Slot 2. Bytes.
  virtual int32_t GetRam() = 0;

  /// Slot 3. A ChipFeatureKind; features of other kinds cost nothing.
  virtual int32_t GetKind() = 0;

 protected:
  ~I_ChipFeature() = default;
};

/// A block of RAM that a project takes by its feature key. Belongs to the chip.
///
/// The order of the operations is the contract. One raw slot; the table has no
/// destructor.
class I_ChipFeatureBlock {
 public:
  /// Slot 0. Bytes.
  virtual int32_t GetBlockRam() = 0;

 protected:
  ~I_ChipFeatureBlock() = default;
};

}  // namespace velora
