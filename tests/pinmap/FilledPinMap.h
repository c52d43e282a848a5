// A pin map in which every stored setting differs from a new manager's.
#pragma once

#include <velora/I_VeloraMotorModeMgr.h>
#include <velora/I_VeloraPinMapInfoMgr.h>
#include <velora/I_VeloraSerialLEDMgr.h>

#include <cstdint>
#include <vector>

namespace velora::test {

/// Values of pin `index` of a filled pin map.
struct PinValues {
  uint16_t port;
  uint8_t port_pin;
  uint8_t pwm_type;
  uint8_t stop_value;
  uint8_t keep_level;
  uint64_t multi_pin_value;
  PinRecord record;  ///< without points
};
PinValues FilledPin(uint32_t index);

/// `count` points that `seed` makes different from other lists.
std::vector<tagVLRCurveCtrlPoint> MakePoints(size_t count, uint32_t seed);

/// Fills a new manager: 32 converted pins with `points` points each, an event of each
/// type, two expanders, serial LED and motor settings. Doubles have six digits at most,
/// so that a store's text keeps them.
void FillPinMap(I_VeloraPinMapInfoMgr& manager, size_t points = 3);
void FillSerialLed(I_VeloraSerialLEDMgr& manager);
void FillMotor(I_VeloraMotorModeMgr& manager);

}  // namespace velora::test
