#include "foundation/CUTime.h"

#include "platform/System.h"

namespace velora {
namespace {

SystemTime ToSystemTime(const std::tm& time) {
  SystemTime result;
  result.Year = static_cast<uint16_t>(time.tm_year + 1900);
  result.Month = static_cast<uint16_t>(time.tm_mon + 1);
  result.DayOfWeek = static_cast<uint16_t>(time.tm_wday);
  result.Day = static_cast<uint16_t>(time.tm_mday);
  result.Hour = static_cast<uint16_t>(time.tm_hour);
  result.Minute = static_cast<uint16_t>(time.tm_min);
  result.Second = static_cast<uint16_t>(time.tm_sec);
  return result;
}

}  // namespace

void C_CUTime::SetFromFileTime(FileTime time) {
  constexpr FileTime kStepsPerMillisecond = 10000;
  const FileTime milliseconds = time / kStepsPerMillisecond;
  const auto seconds = static_cast<int64_t>(milliseconds / 1000);
  SystemTime result = ToSystemTime(GetUtcTime(seconds - kSecondsFrom1601To1970));
  result.Milliseconds = static_cast<uint16_t>(milliseconds % 1000);
  SetFromSystemTime(result);
}

void C_CUTime::SetFromSystemTime(const SystemTime& time) {
  time_ = time;
  const int hour = time.Hour > 12 ? time.Hour - 12 : time.Hour;
  text_.Format("%04d/%02d/%02d %s %02d:%02d", time.Year, time.Month, time.Day,
               time.Hour < 12 ? "AM" : "PM", hour, time.Minute);
}

void C_CUTime::SetFromTm(const std::tm& time) { SetFromSystemTime(ToSystemTime(time)); }

void C_CUTime::SetFromTimeT(int64_t time) { SetFromTm(GetUtcTime(time)); }

void C_CUTime::SetFromDosTime(uint16_t date, uint16_t time) {
  SystemTime result;
  result.Year = static_cast<uint16_t>((date >> 9) + 1980);
  result.Month = (date >> 5) & 0x0F;
  result.Day = date & 0x1F;
  result.Hour = time >> 11;
  result.Minute = (time >> 5) & 0x3F;
  result.Second = static_cast<uint16_t>((time & 0x1F) * 2);
  SetFromSystemTime(result);
}

}  // namespace velora
