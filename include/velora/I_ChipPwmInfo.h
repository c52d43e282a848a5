// What a chip has for pulse width modulation.
#pragma once

#include <velora/I_CUList.h>
#include <velora/I_CUStringList.h>
#include <velora/I_ChipPinRange.h>

namespace velora {

/// Interface 7 of a chip. The lists belong to the chip and are never null; a
/// caller neither changes nor releases them.
///
/// The order of the operations is the contract. Two raw slots; the table has no
/// destructor.
class I_ChipPwmInfo {
 public:
  /// Slot 0. The pins with a hardware PWM; one range for each group of pins that
  /// share a clock source.
  virtual I_CUList<I_ChipPinRange>* GetPwmRanges() = 0;

  /// Slot 1. Names of the timers that firmware PWM can use.
  virtual I_CUStringList* GetTimerList() = 0;

 protected:
  ~I_ChipPwmInfo() = default;
};

}  // namespace velora
