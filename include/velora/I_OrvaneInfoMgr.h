// What a project's script asks of the chip.
#pragma once

#include <cstdint>

namespace velora {

/// Project interface 3. Counts and flags of the firmware that the host builds from the
/// project's script. Plain getters without failure; the names of the counts are those
/// of the pin classes that they ask for.
///
/// A hand-made pin map is a second interface of the same object, I_OrvaneInfoMgr2,
/// which the module finds by a dynamic_cast: a host whose object has no run-time type
/// information of this ABI in front of its table must not be handed in.
///
/// The order of the operations is the contract. Twelve raw slots; the table has no
/// destructor.
class I_OrvaneInfoMgr {
 public:
  virtual uint32_t GetOutputWord() = 0;  // 0, for the generator

  virtual int32_t GetMatrixCountA() = 0;     // 1, lines A of the key matrix
  virtual int32_t GetMatrixCountB() = 0;     // 2, lines B
  virtual int32_t GetSinglePinCount() = 0;   // 3
  virtual int32_t GetInputPinCount() = 0;    // 4
  virtual int32_t GetOutputCountA() = 0;     // 5
  virtual int32_t GetFixedPinCount() = 0;    // 6
  virtual int32_t GetOutputCountB() = 0;     // 7
  virtual uint32_t GetFeatureFlags() = 0;    // 8, a bit for each firmware feature in use
  virtual int32_t GetSecondLevelFlag() = 0;  // 9
  virtual int32_t GetFeatureKey() = 0;       // 10, key of the chip's feature block
  virtual int32_t GetEventCount() = 0;       // 11

 protected:
  ~I_OrvaneInfoMgr() = default;
};

}  // namespace velora
