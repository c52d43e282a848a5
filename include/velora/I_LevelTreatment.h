// The two treatments that rewrite samples on their way into a compressed file.
#pragma once

#include <cstdint>

namespace velora {

/// Level shaping: a filter, then a gain that follows the signal.
///
/// The order of the operations is the contract. Two operations, three raw slots:
/// the destructor takes two.
class I_LSCMgr {
 public:
  /// Slots 0 and 1.
  virtual ~I_LSCMgr() = default;

  /// Slot 2. Works in place. `form` is 1 for 12-bit offset binary in 16-bit words
  /// and 2 for 16-bit signed samples; a block of any other form is left alone.
  virtual void Process(uint32_t form, void* samples, uint32_t frames, uint16_t index,
                       uint16_t table) = 0;
};

/// Level enhancement: a recursive filter held below full scale, and a gain that
/// makes good the loss.
///
/// The order of the operations is the contract. Two operations, three raw slots:
/// the destructor takes two.
class I_LVEMgr {
 public:
  /// Slots 0 and 1.
  virtual ~I_LVEMgr() = default;

  /// Slot 2. Works in place on 16-bit words: 12-bit offset binary with flag 1,
  /// 16-bit signed with any other. The three percents are results and must not
  /// be null.
  virtual void Process(void* samples, uint32_t frames, uint32_t rate, uint16_t mode,
                       uint16_t* percent1, uint16_t* percent2, uint16_t* percent3,
                       int32_t flag) = 0;
};

}  // namespace velora
