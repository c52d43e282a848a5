// A calendar time across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// Eight numbers as they were given, without a time zone, and a text made from
/// them. A time that was never set is all zeros.
///
/// The order of the operations is the contract. Ten operations, eleven raw
/// slots: the destructor takes two.
class I_CUTime {
 public:
  virtual uint16_t GetYear() = 0;          ///< slot 0
  virtual uint16_t GetMonth() = 0;         ///< slot 1; 1 to 12
  virtual uint16_t GetDayOfWeek() = 0;     ///< slot 2; 0 is Sunday
  virtual uint16_t GetDay() = 0;           ///< slot 3; 1 to 31
  virtual uint16_t GetHour() = 0;          ///< slot 4; 0 to 23
  virtual uint16_t GetMinute() = 0;        ///< slot 5
  virtual uint16_t GetSecond() = 0;        ///< slot 6
  virtual uint16_t GetMilliseconds() = 0;  ///< slot 7

  /// Slot 8. "2024/01/31 PM 01:05"; valid until the time is set anew.
  virtual const char* GetText() = 0;

  /// Slots 9 and 10.
  virtual ~I_CUTime() = default;
};

}  // namespace velora
