// A pin map that the project fixes by hand.
#pragma once

#include <cstdint>

namespace velora {

/// The second interface of the object behind I_OrvaneInfoMgr, of projects with a
/// hand-made pin map. A port is a position in the chip's port map, a pin a number
/// within the port. Each operation fills its outputs, none of which may be null, and
/// gives 1; 0, with the outputs untouched, for an entry that there is not.
///
/// The order of the operations is the contract. Five raw slots; the table has no
/// destructor.
class I_OrvaneInfoMgr2 {
 public:
  /// Slot 0. A cell of the key matrix: cell = line B x number of lines A + line A. The
  /// low halves of `ports` and `pins` are line A, the high halves line B.
  virtual int32_t GetUserMatrixCell(int32_t cell, uint32_t* key, uint32_t* ports,
                                    uint32_t* pins) = 0;

  /// Slots 1 to 4, `n` from 0 on. Outputs of kind B follow those of kind A.
  virtual int32_t GetUserInputPin(int32_t n, uint32_t* port, uint32_t* pin) = 0;
  virtual int32_t GetUserSinglePin(int32_t n, uint32_t* port, uint32_t* pin) = 0;
  virtual int32_t GetUserOutputPin(int32_t n, uint32_t* port, uint32_t* pin) = 0;
  virtual int32_t GetUserFixedPin(int32_t n, uint32_t* port, uint32_t* pin) = 0;

 protected:
  ~I_OrvaneInfoMgr2() = default;
};

}  // namespace velora
