// Memory, ports and pin ranges of a chip.
#pragma once

#include <cstdint>

#include <velora/I_CUList.h>
#include <velora/I_CUStringList.h>
#include <velora/I_ChipFeature.h>
#include <velora/I_ChipMemoryModel.h>
#include <velora/I_ChipPinRange.h>

namespace velora {

class I_ProjectHost;

/// Interface 4 of a chip.
///
/// Lists and objects that are handed out belong to the chip and live as long; a
/// caller neither changes nor releases them. Only the operations that say so give
/// null. Sizes are bytes of RAM. The operations that give a number cannot fail.
///
/// The order of the operations is the contract. 23 raw slots; the table has no
/// destructor.
class I_ChipResources {
 public:
  using RangeList = I_CUList<I_ChipPinRange>;

  /// Slot 0. All RAM of the chip.
  virtual int32_t GetRamSize() = 0;

  /// Slot 1. What the system takes. The project may choose among several models;
  /// null is allowed. Null when the chip has none.
  virtual I_ChipMemoryModel* GetMemoryModel(I_ProjectHost* project) = 0;

  /// Slot 2. The ports in their order, which numbers the ports; each with all of
  /// its pins.
  virtual RangeList* GetPortList() = 0;

  /// Slot 3. Pins that the project's options can take away from the outputs. The
  /// place in the list tells by which option.
  virtual RangeList* GetReservedRanges() = 0;

  /// Slot 4. The extensions, each with its dot, of the resource files that the
  /// chip takes: of its resource set `index`, of the chip as a whole for an index
  /// below 0. Any output may be null. 1, or 0 for a set that the chip lacks, and
  /// the outputs are left as they are.
  virtual int32_t GetResourceLists(int32_t index, I_CUStringList** audio, I_CUStringList** music,
                                   I_CUStringList** image) = 0;

  // --- Where the functions of the firmware may lie ---------------------------

  virtual RangeList* GetMatrixRangesA() = 0;  // 5
  virtual RangeList* GetMatrixRangesB() = 0;  // 6
  virtual RangeList* GetFixedRanges() = 0;    // 7
  virtual RangeList* GetInputRanges() = 0;    // 8
  virtual RangeList* GetOutputRanges() = 0;   // 9

  /// Slot 10. Pins that the project's options take from the firmware; may be null.
  virtual RangeList* GetOptionRanges() = 0;

  /// Slot 11. Spare pins; may be null.
  virtual RangeList* GetSharedRanges() = 0;

  /// Slot 12. Pins that a second level takes; may be null.
  virtual RangeList* GetSpecialRanges() = 0;

  // --- RAM of the firmware's functions ---------------------------------------

  virtual int32_t GetStackBase() = 0;      // 13
  virtual int32_t GetPortScanBase() = 0;   // 14
  virtual int32_t GetScanRamA() = 0;       // 15
  virtual int32_t GetScanRamB() = 0;       // 16
  virtual int32_t GetMatrixBase() = 0;     // 17
  virtual int32_t GetMatrixPerLine() = 0;  // 18
  virtual int32_t GetEventRam() = 0;       // 19

  /// Slots 20 and 21. The feature table; null for an index beyond it.
  virtual int32_t GetFeatureCount() = 0;
  virtual I_ChipFeature* GetFeature(int32_t index) = 0;

  /// Slot 22. The block of that key; null when the chip has none.
  virtual I_ChipFeatureBlock* GetFeatureBlock(int32_t key) = 0;

 protected:
  ~I_ChipResources() = default;
};

}  // namespace velora
