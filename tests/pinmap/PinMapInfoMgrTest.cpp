// Setters, getters and their limits.
#include <gtest/gtest.h>

#include <limits>

#include "pinmap/FilledPinMap.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora::test {
namespace {

constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
constexpr int32_t kLimit = 0x100000;

const PinRecord* RecordOf(const I_VeloraPinMapInfoMgr& manager, uint32_t pin) {
  return manager.GetPin(pin, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

void SetPin(I_VeloraPinMapInfoMgr& manager, uint32_t pin, uint8_t pwmType, uint8_t convert,
            uint8_t yResolution) {
  PinRecord record{};
  record.Convert = convert;
  record.YResolution = yResolution;
  record.OutputLevels = 77;
  manager.SetPin(pin, 0, 0, pwmType, 0, 0, 0, &record);
}

TEST(PinMapInfoMgr, ANewManagerHoldsItsDefaults) {
  C_VeloraPinMapInfoMgr manager;
  uint16_t port = 0;
  uint8_t portPin = 0, type = 9, stop = 9, keep = 9;
  uint64_t multi = 9;
  const PinRecord* record = manager.GetPin(31, &port, &portPin, &type, &stop, &keep, &multi);
  EXPECT_EQ(std::tuple(port, portPin, type, stop, keep), std::tuple(0xFFFF, 0xFF, 0, 0, 0));
  EXPECT_EQ(multi, 0u);
  EXPECT_EQ(record->Convert, 0);
  EXPECT_FALSE(record->AdjustCurveCtrlPoints);
  EXPECT_STREQ(manager.GetFirmwarePWMTimer(), "");
  EXPECT_EQ(manager.GetConvertMethod(), kConvertPwm);
  EXPECT_EQ(manager.GetHostValue1(), 0);
  EXPECT_EQ(manager.GetHostValue5(), 1);
  EXPECT_EQ(manager.GetHostValue7(), 1);
  EXPECT_EQ(manager.GetHostValue8(), 2);
  int32_t red = 0, green = 0, blue = 0;
  manager.GetLEDWaveLength(&red, &green, &blue);
  EXPECT_EQ(std::tuple(red, green, blue), std::tuple(610, 540, 470));
  manager.GetLEDMaxLumen(&red, &green, &blue);
  EXPECT_EQ(std::tuple(red, green, blue), std::tuple(700, 700, 700));
  double x = 0, y = 0, big = 0;
  manager.GetColorLEDx(nullptr, &x, nullptr);
  manager.GetColorLEDy(nullptr, nullptr, &y);
  manager.GetColorLEDBigY(&big, nullptr, nullptr);
  EXPECT_EQ(std::tuple(x, y, big), std::tuple(0.222336598546, 0.053425919494, 128.0));
  EXPECT_EQ(manager.GetLEDMixingScale(), 1.0);
  EXPECT_EQ(manager.GetRuntimeEnvelopSamplePerGroup(), 256);
  EXPECT_EQ(manager.GetRuntimeEnvelopActiveHigh(), 1);
}

TEST(PinMapInfoMgr, APinPastTheLastChangesNothing) {
  C_VeloraPinMapInfoMgr manager;
  PinRecord record{};
  uint16_t port = 0x1234;
  uint8_t byte = 0x56;
  uint64_t multi = 0x78;
  EXPECT_EQ(manager.GetPin(32, &port, &byte, &byte, &byte, &byte, &multi), nullptr);
  EXPECT_EQ(manager.GetPin8(32, &port, &byte, &byte, &byte, &byte, &byte), nullptr);
  EXPECT_EQ(std::tuple(port, byte, multi), std::tuple(0x1234, 0x56, 0x78u));
  EXPECT_EQ(manager.SetPin(32, 1, 1, 1, 1, 1, 1, &record), 0);
  EXPECT_EQ(manager.SetPin(0, 1, 1, 1, 1, 1, 1, nullptr), 0);
  manager.GetPin(0, &port, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(port, 0xFFFF);
  manager.SetHostPinValue(32, 5);
  EXPECT_EQ(manager.GetHostPinValue(32), 0u);
}

TEST(PinMapInfoMgr, APinOwnsACopyOfItsPoints) {
  C_VeloraPinMapInfoMgr manager;
  auto points = MakePoints(3, 1);
  const auto kept = points;
  PinRecord record{};
  record.AdjustCurveCtrlPointNum = 3;
  record.AdjustCurveCtrlPoints = points.data();
  manager.SetPin(2, 0, 0, 0, 0, 0, 0, &record);
  points.assign(3, {});
  const PinRecord* stored = RecordOf(manager, 2);
  ASSERT_EQ(uint32_t{stored->AdjustCurveCtrlPointNum}, 3u);
  EXPECT_TRUE(std::equal(kept.begin(), kept.end(), stored->AdjustCurveCtrlPoints));

  manager.SetPin(2, 7, 0, 0, 0, 0, 0, stored);  // its own record
  ASSERT_EQ(uint32_t{stored->AdjustCurveCtrlPointNum}, 3u);
  EXPECT_TRUE(std::equal(kept.begin(), kept.end(), stored->AdjustCurveCtrlPoints));

  record.AdjustCurveCtrlPoints = nullptr;  // a number without points is none
  manager.SetPin(2, 0, 0, 0, 0, 0, 0, &record);
  EXPECT_EQ(uint32_t{stored->AdjustCurveCtrlPointNum}, 0u);
  EXPECT_FALSE(stored->AdjustCurveCtrlPoints);
}

TEST(PinMapInfoMgr, ComputeOutputLevels) {
  C_VeloraPinMapInfoMgr manager;
  SetPin(manager, 1, kPwmFirmware, 0, 200);  // not converted: doesn't count, but is set
  SetPin(manager, 2, kPwmHardware, 1, 255);
  SetPin(manager, 3, kPwmIoExpander, 1, 255);
  EXPECT_EQ(manager.ComputeOutputLevels()[1].OutputLevels, 0);
  SetPin(manager, 4, kPwmFirmware, 1, 31);
  SetPin(manager, 5, kPwmFirmware, 1, 64);
  const PinRecord* records = manager.ComputeOutputLevels();
  const int levels[] = {1, 64, 255, 77, 64, 64, 1};
  for (int pin = 0; pin < 7; ++pin) EXPECT_EQ(records[pin].OutputLevels, levels[pin]) << pin;
}

struct IndexListCase {
  std::vector<int32_t> values;
  int32_t count;  // as passed
  int32_t kept;   // as read back
  int32_t end;    // what stands behind the kept ones; -2 for nothing to look at
};

TEST(PinMapInfoMgr, CurveSetsAndBoundPins) {
  std::vector<int32_t> many(40);
  for (size_t i = 0; i < many.size(); ++i) many[i] = static_cast<int32_t>(100 + i);
  const IndexListCase cases[] = {
      {{5, 6, 7}, 3, 3, -1}, {{5, -7, 8}, 3, 1, -7}, {{-1}, 1, 0, -1},
      {{5}, 0, 0, -1},       {{5}, -4, 0, -1},       {many, 31, 31, -1},
      {many, 32, 32, -2},    {many, 40, 32, -2},     {many, kLargest, 32, -2},
  };
  for (const IndexListCase& test : cases) {
    SCOPED_TRACE(test.count);
    C_VeloraPinMapInfoMgr manager;
    manager.SetEventColorCount(1);
    int32_t count = -9;
    EXPECT_EQ(manager.GetEventCurveSet(0, &count)[0], 0);  // all 0 before it is set
    EXPECT_EQ(count, 32);
    manager.SetEventCurveSet(0, test.values.data(), test.count);
    manager.SetEventBindedPins(0, test.values.data(), test.count);
    for (const auto get :
         {&I_VeloraPinMapInfoMgr::GetEventCurveSet, &I_VeloraPinMapInfoMgr::GetEventBindedPins}) {
      const int32_t* list = (manager.*get)(0, &count);
      ASSERT_NE(list, nullptr);
      ASSERT_EQ(count, test.kept);
      EXPECT_TRUE(std::equal(list, list + count, test.values.begin()));
      if (test.end != -2) {
        EXPECT_EQ(list[count], test.end);
      }
    }
  }
}

TEST(PinMapInfoMgr, IndicesOutsideAListReadNothingAndWriteNothing) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  C_VeloraPinMapInfoMgr untouched;
  FillPinMap(untouched);
  const int32_t value[] = {1};
  int32_t count = 9;
  uint32_t word = 9;
  for (const int32_t index : {-1, 5, kLargest, std::numeric_limits<int32_t>::min()}) {
    SCOPED_TRACE(index);
    manager.SetEventType(index, 1);
    manager.SetEventColor(index, 1);
    manager.SetEventSpeed(index, 1);
    manager.SetEventCurveSet(index, value, 1);
    manager.SetEventBindedPins(index, value, 1);
    manager.SetIOExpanderName(index, "x");
    manager.SetIOExpanderClkSource(index, 0, 0, 1);
    manager.SetIOExpanderClkSource(0, index, 0, 1);
    manager.SetIOExpanderCurrentType(0, 3, 0, 1);
    manager.SetIOExpanderCurrentType(0, 0, 8, 1);
    manager.SetHwPwmSourceClk(index, 1);
    manager.SetDynamicCurveColor(index, 1);
    EXPECT_EQ(manager.GetEventColor(index), 0u);
    EXPECT_EQ(manager.GetEventSpeed(index), 0.0f);
    EXPECT_EQ(manager.GetEventCurveSet(index, &count), nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(manager.GetIOExpanderName(index), nullptr);
    EXPECT_EQ(manager.GetIOExpanderClkSource(index, 0, 0), 0);
    EXPECT_EQ(manager.GetIOExpanderCurrentType(0, index, 0), 0);
    EXPECT_EQ(manager.GetHwPwmSourceClk(index), 0);
    EXPECT_EQ(manager.GetDynamicCurveColor(index), 0);
    EXPECT_EQ(manager.GetIoExpanderSelectPin(index, &word, &word), 0);
  }
  EXPECT_EQ(word, 9u);
  EXPECT_EQ(manager.IsDifferent(nullptr, &untouched, 1), 0);
}

TEST(PinMapInfoMgr, CountsAreHeldToTheirLimits) {
  using Map = I_VeloraPinMapInfoMgr;
  struct {
    void (Map::*set)(int32_t);
    int32_t (Map::*get)() const;
  } const counts[] = {
      {&Map::SetEventColorCount, &Map::GetEventColorCount},
      {&Map::SetIOExpanderCount, &Map::GetIOExpanderCount},
      {&Map::SetIoExpanderSelectPinCount, &Map::GetIoExpanderSelectPinCount},
      {&Map::SetHwPwmSourceClkCount, &Map::GetHwPwmSourceClkCount},
      {&Map::SetDynamicCurveColorCount, &Map::GetDynamicCurveColorCount},
  };
  for (const auto& count : counts) {
    C_VeloraPinMapInfoMgr manager;
    (manager.*count.set)(3);
    (manager.*count.set)(-1);
    EXPECT_EQ((manager.*count.get)(), 0);
    (manager.*count.set)(kLargest);
    EXPECT_EQ((manager.*count.get)(), kLimit);
  }
}

TEST(PinMapInfoMgr, AResizeKeepsTheEntriesThatStay) {
  C_VeloraPinMapInfoMgr manager;
  manager.SetEventColorCount(3);
  manager.SetEventLevel(0, 11);
  manager.SetEventLevel(2, 33);
  manager.SetEventColorCount(1);
  manager.SetEventColorCount(3);
  EXPECT_EQ(manager.GetEventLevel(0), 11);
  EXPECT_EQ(manager.GetEventLevel(2), 0);
}

TEST(PinMapInfoMgr, SelectPinsGrowAsFarAsTheIndex) {
  C_VeloraPinMapInfoMgr manager;
  EXPECT_EQ(manager.SetIoExpanderSelectPin(-1, 1, 1), 0);
  EXPECT_EQ(manager.SetIoExpanderSelectPin(kLimit, 1, 1), 0);
  EXPECT_EQ(manager.GetIoExpanderSelectPinCount(), 0);
  EXPECT_EQ(manager.SetIoExpanderSelectPin(3, 12, 7), 1);
  EXPECT_EQ(manager.GetIoExpanderSelectPinCount(), 4);
  EXPECT_EQ(manager.SetIoExpanderSelectPin(1, 13, 0x1FF), 1);
  EXPECT_EQ(manager.GetIoExpanderSelectPinCount(), 4);
  uint32_t port = 0, pin = 0;
  EXPECT_EQ(manager.GetIoExpanderSelectPin(1, &port, &pin), 1);
  EXPECT_EQ(std::pair(port, pin), std::pair(13u, 0xFFu));
  EXPECT_EQ(manager.GetIoExpanderSelectPin(3, &port, &pin), 1);
  EXPECT_EQ(std::pair(port, pin), std::pair(12u, 7u));
}

TEST(PinMapInfoMgr, TheFirstClockMakesRoomForItself) {
  C_VeloraPinMapInfoMgr manager;
  EXPECT_EQ(manager.GetFirstHwPwmSourceClk(), 0);
  manager.SetHwPwmSourceClk(0, 5);
  EXPECT_EQ(manager.GetHwPwmSourceClkCount(), 0);
  manager.SetFirstHwPwmSourceClk(6);
  EXPECT_EQ(manager.GetHwPwmSourceClkCount(), 1);
  manager.SetHwPwmSourceClkCount(3);
  manager.SetFirstHwPwmSourceClk(7);
  EXPECT_EQ(manager.GetHwPwmSourceClkCount(), 3);
  EXPECT_EQ(manager.GetHwPwmSourceClk(0), 7);
}

TEST(PinMapInfoMgr, ListsAndTextsMayBeTheManagersOwn) {
  C_VeloraPinMapInfoMgr manager;
  const auto points = MakePoints(5, 9);
  int32_t count = 0;
  manager.SetDynamicCurveTable(points.data(), 5);
  manager.SetDynamicCurveTable(manager.GetDynamicCurveTable(&count) + 1, 4);
  const tagVLRCurveCtrlPoint* table = manager.GetDynamicCurveTable(&count);
  ASSERT_EQ(count, 4);
  EXPECT_TRUE(std::equal(table, table + 4, points.begin() + 1));
  manager.SetDynamicCurveTable(table, 0);
  EXPECT_EQ(manager.GetDynamicCurveTable(&count), nullptr);
  EXPECT_EQ(count, 0);
  manager.SetRuntimeEnvelopGammaCP(points.data(), -1);
  EXPECT_EQ(manager.GetRuntimeEnvelopGammaCP(nullptr), nullptr);
  manager.SetFirmwarePWMTimer("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  manager.SetFirmwarePWMTimer(manager.GetFirmwarePWMTimer() + 20);
  EXPECT_STREQ(manager.GetFirmwarePWMTimer(), "UVWXYZ");
  manager.SetFirmwarePWMTimer(nullptr);
  EXPECT_STREQ(manager.GetFirmwarePWMTimer(), "");
}

}  // namespace
}  // namespace velora::test
