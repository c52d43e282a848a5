// A calendar time and its text.
#pragma once

#include <cstdint>
#include <ctime>

#include <velora/I_CUTime.h>
#include "foundation/CUString.h"
#include "foundation/FileHelpers.h"

namespace velora {

/// The numbers of a calendar time, as a plain record.
struct SystemTime {
  uint16_t Year = 0;
  uint16_t Month = 0;      ///< 1 to 12
  uint16_t DayOfWeek = 0;  ///< 0 is Sunday
  uint16_t Day = 0;
  uint16_t Hour = 0;  ///< 0 to 23
  uint16_t Minute = 0;
  uint16_t Second = 0;
  uint16_t Milliseconds = 0;
};
static_assert(sizeof(SystemTime) == 16);

/// The time behind I_CUTime. Setters keep what they are given, also where it is
/// no valid date.
class C_CUTime : public I_CUTime {
 public:
  C_CUTime() { SetFromSystemTime({}); }

  void SetFromFileTime(FileTime time);  ///< as UTC
  void SetFromSystemTime(const SystemTime& time);
  void SetFromTm(const std::tm& time);
  void SetFromTimeT(int64_t time);  ///< seconds since 1970, as UTC

  /// From the two words of a DOS directory entry; two-second steps. No day of
  /// the week.
  void SetFromDosTime(uint16_t date, uint16_t time);

  // The interface.
  uint16_t GetYear() override { return time_.Year; }
  uint16_t GetMonth() override { return time_.Month; }
  uint16_t GetDayOfWeek() override { return time_.DayOfWeek; }
  uint16_t GetDay() override { return time_.Day; }
  uint16_t GetHour() override { return time_.Hour; }
  uint16_t GetMinute() override { return time_.Minute; }
  uint16_t GetSecond() override { return time_.Second; }
  uint16_t GetMilliseconds() override { return time_.Milliseconds; }
  const char* GetText() override { return text_.c_str(); }

 private:
  SystemTime time_;
  C_CUString text_;
};

}  // namespace velora
