// The calendar time.
#include <gtest/gtest.h>

#include "foundation/CUTime.h"

namespace velora {
namespace {

std::vector<int> NumbersOf(I_CUTime& time) {
  return {time.GetYear(), time.GetMonth(),  time.GetDayOfWeek(), time.GetDay(),
          time.GetHour(), time.GetMinute(), time.GetSecond(),    time.GetMilliseconds()};
}

TEST(CUTimeTest, ANewTimeIsZeroWithText) {
  C_CUTime time;
  EXPECT_EQ(NumbersOf(time), std::vector<int>(8, 0));
  EXPECT_STREQ(time.GetText(), "0000/00/00 AM 00:00");
}

TEST(CUTimeTest, NoonAndMidnight) {
  const std::pair<uint16_t, const char*> cases[] = {
      {0, "2024/01/31 AM 00:07"},  {11, "2024/01/31 AM 11:07"}, {12, "2024/01/31 PM 12:07"},
      {13, "2024/01/31 PM 01:07"}, {23, "2024/01/31 PM 11:07"},
  };
  for (const auto& [hour, text] : cases) {
    C_CUTime time;
    time.SetFromSystemTime({2024, 1, 3, 31, hour, 7, 59, 999});
    EXPECT_STREQ(time.GetText(), text);
    EXPECT_EQ(NumbersOf(time), (std::vector<int>{2024, 1, 3, 31, hour, 7, 59, 999}));
  }
}

TEST(CUTimeTest, Sources) {
  C_CUTime time;
  time.SetFromTimeT(981173106);  // a Saturday
  EXPECT_EQ(NumbersOf(time), (std::vector<int>{2001, 2, 6, 3, 4, 5, 6, 0}));

  time.SetFromFileTime(126256467067890000);
  EXPECT_EQ(NumbersOf(time), (std::vector<int>{2001, 2, 6, 3, 4, 5, 6, 789}));
  time.SetFromFileTime(0);
  EXPECT_EQ(NumbersOf(time), (std::vector<int>{1601, 1, 1, 1, 0, 0, 0, 0}));

  std::tm broken{};
  broken.tm_year = 124;
  broken.tm_mon = 11;
  broken.tm_mday = 25;
  broken.tm_wday = 3;
  broken.tm_hour = 18;
  time.SetFromTm(broken);
  EXPECT_EQ(NumbersOf(time), (std::vector<int>{2024, 12, 3, 25, 18, 0, 0, 0}));

  // 2107-12-31 23:59:58 has all bits that a date uses set.
  time.SetFromDosTime((127 << 9) | (12 << 5) | 31, (23 << 11) | (59 << 5) | 29);
  EXPECT_EQ(NumbersOf(time), (std::vector<int>{2107, 12, 0, 31, 23, 59, 58, 0}));
  EXPECT_STREQ(time.GetText(), "2107/12/31 PM 11:59");
}

}  // namespace
}  // namespace velora
