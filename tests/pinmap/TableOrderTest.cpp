// The places of the operations in the three tables, reached as a host reaches them.
#include <gtest/gtest.h>

#include "pinmap/FilledPinMap.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraMotorModeMgr.h"
#include "pinmap/VeloraPinMapInfoMgr.h"
#include "pinmap/VeloraSerialLEDMgr.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

template <typename Interface, typename T>
struct PlainPair {
  size_t set_slot;
  size_t get_slot;
  void (Interface::*set)(T);
  T (Interface::*get)() const;
};

/// A pair is where it should be when each side of the table sees what the other stored.
template <typename Object, typename Interface, typename T>
void CheckPairs(std::initializer_list<PlainPair<Interface, T>> pairs) {
  for (const auto& pair : pairs) {
    SCOPED_TRACE(pair.set_slot);
    Object object;
    Interface* const interface = &object;
    const RawTable table(interface);
    table.Call<void>(pair.set_slot, T{3});
    EXPECT_EQ((interface->*pair.get)(), T{3});
    (interface->*pair.set)(T{2});
    EXPECT_EQ(table.Call<T>(pair.get_slot), T{2});
  }
}

/// The second destructor slot frees the object: its points are gone with it, which the
/// sanitizers see. Here it must do so exactly once.
template <typename Object, typename Interface>
void CheckDeletingDestructor(size_t slot) {
  Interface* const object = new Object;
  RawTable(object).Call<void>(slot);
}

using Map = I_VeloraPinMapInfoMgr;

TEST(PinMapTable, PlainPairs) {
  CheckPairs<C_VeloraPinMapInfoMgr, Map, int32_t>({
      {9, 10, &Map::SetFirmwarePWMFrequency, &Map::GetFirmwarePWMFrequency},
      {15, 16, &Map::SetHostValue1, &Map::GetHostValue1},
      {17, 18, &Map::SetHostValue2, &Map::GetHostValue2},
      {19, 20, &Map::SetHostValue3, &Map::GetHostValue3},
      {21, 22, &Map::SetHostValue4, &Map::GetHostValue4},
      {25, 26, &Map::SetHostValue5, &Map::GetHostValue5},
      {27, 28, &Map::SetHostValue6, &Map::GetHostValue6},
      {29, 30, &Map::SetHostValue7, &Map::GetHostValue7},
      {31, 32, &Map::SetHostValue8, &Map::GetHostValue8},
      {34, 33, &Map::SetConvertMethod, &Map::GetConvertMethod},
      {36, 38, &Map::SetFirstHwPwmSourceClk, &Map::GetFirstHwPwmSourceClk},
      {39, 40, &Map::SetEnableColorEvent, &Map::GetEnableColorEvent},
      {41, 42, &Map::SetEventColorCount, &Map::GetEventColorCount},
      {57, 58, &Map::SetIOExpanderCount, &Map::GetIOExpanderCount},
      {65, 66, &Map::SetIoExpanderSelectPinCount, &Map::GetIoExpanderSelectPinCount},
      {69, 70, &Map::SetHwPwmSourceClkCount, &Map::GetHwPwmSourceClkCount},
      {73, 74, &Map::SetDynamicCurveEnable, &Map::GetDynamicCurveEnable},
      {76, 75, &Map::SetDynamicCurveColorCount, &Map::GetDynamicCurveColorCount},
      {81, 82, &Map::SetDynamicCurveActiveHigh, &Map::GetDynamicCurveActiveHigh},
      {83, 84, &Map::SetDynamicCurveGroupNum, &Map::GetDynamicCurveGroupNum},
      {85, 86, &Map::SetWavLenColorLEDMixEn, &Map::GetWavLenColorLEDMixEn},
      {93, 94, &Map::SetColorLEDParamSource, &Map::GetColorLEDParamSource},
      {105, 106, &Map::SetUserCtrlIOExpEnable, &Map::GetUserCtrlIOExpEnable},
      {107, 108, &Map::SetRuntimeEnvelopEnabled, &Map::GetRuntimeEnvelopEnabled},
      {109, 110, &Map::SetRuntimeEnvelopSamplePerGroup, &Map::GetRuntimeEnvelopSamplePerGroup},
      {113, 114, &Map::SetRuntimeEnvelopActiveHigh, &Map::GetRuntimeEnvelopActiveHigh},
  });
  CheckPairs<C_VeloraPinMapInfoMgr, Map, uint16_t>({
      {11, 12, &Map::SetUsedRAMSize, &Map::GetUsedRAMSize},
      {13, 14, &Map::SetUsedStackSize, &Map::GetUsedStackSize},
  });
  CheckPairs<C_VeloraPinMapInfoMgr, Map, double>(
      {{91, 92, &Map::SetLEDMixingScale, &Map::GetLEDMixingScale}});
}

TEST(PinMapTable, StoreAndPins) {
  C_VeloraPinMapInfoMgr manager;
  const RawTable table(static_cast<Map*>(&manager));
  RecordingStore store;
  EXPECT_EQ(table.Call<int32_t>(0, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.calls.front(), "SetInt VeloraPinMapInfo/Pin0_Convert 0 1");
  store.calls.clear();
  EXPECT_EQ(table.Call<int32_t>(1, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.calls.front(), "GetInt VeloraPinMapInfo/Pin0_Convert 0");

  PinRecord record{};
  record.Convert = 1;
  record.YResolution = 9;
  const auto* borrowed = const_cast<const PinRecord*>(&record);
  EXPECT_EQ(table.Call<int32_t>(2, uint32_t{4}, uint16_t{300}, uint8_t{1}, uint8_t{2}, uint8_t{3},
                                uint8_t{4}, uint64_t{0x8000000000000105}, borrowed),
            1);
  uint16_t port = 0;
  uint8_t portPin = 0, type = 0, stop = 0, keep = 0, narrow = 0;
  uint64_t wide = 0;
  const auto* stored =
      table.Call<const PinRecord*>(4, uint32_t{4}, &port, &portPin, &type, &stop, &keep, &wide);
  EXPECT_EQ(stored, manager.GetPin(4, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(std::tuple(port, portPin, type, stop, keep), std::tuple(300, 1, 2, 3, 4));
  EXPECT_EQ(wide, 0x8000000000000105u);
  EXPECT_EQ(
      table.Call<const PinRecord*>(5, uint32_t{4}, &port, &portPin, &type, &stop, &keep, &narrow),
      stored);
  EXPECT_EQ(narrow, 5);

  EXPECT_EQ(table.Call<int32_t>(3, uint32_t{4}, uint16_t{300}, uint8_t{1}, uint8_t{2}, uint8_t{3},
                                uint8_t{4}, uint8_t{0xFE}, borrowed),
            1);
  manager.GetPin(4, nullptr, nullptr, nullptr, nullptr, nullptr, &wide);
  EXPECT_EQ(wide, 0xFEu);
  EXPECT_EQ(table.Call<const PinRecord*>(6) + 4, stored);
  EXPECT_EQ(stored->OutputLevels, 9);
}

TEST(PinMapTable, TextsAndIndexedValues) {
  C_VeloraPinMapInfoMgr manager;
  const RawTable table(static_cast<Map*>(&manager));
  table.Call<void>(7, static_cast<const char*>("TMG1"));
  EXPECT_STREQ(table.Call<const char*>(8), "TMG1");
  table.Call<void>(23, uint32_t{31}, uint32_t{0xFFFFFFFF});
  EXPECT_EQ(table.Call<uint32_t>(24, uint32_t{31}), 0xFFFFFFFFu);
  manager.SetHwPwmSourceClkCount(2);
  table.Call<void>(35, int32_t{1}, int32_t{44});
  EXPECT_EQ(table.Call<int32_t>(37, int32_t{1}), 44);
  manager.SetIOExpanderCount(2);
  table.Call<void>(59, int32_t{1}, static_cast<const char*>("IOX"));
  EXPECT_STREQ(table.Call<const char*>(60, int32_t{1}), "IOX");
  table.Call<void>(61, int32_t{1}, int32_t{2}, int32_t{7}, int32_t{50});
  table.Call<void>(63, int32_t{1}, int32_t{2}, int32_t{7}, int32_t{51});
  EXPECT_EQ(table.Call<int32_t>(62, int32_t{1}, int32_t{2}, int32_t{7}), 50);
  EXPECT_EQ(table.Call<int32_t>(64, int32_t{1}, int32_t{2}, int32_t{7}), 51);
  EXPECT_EQ(manager.GetIOExpanderClkSource(1, 2, 7), 50);
  uint32_t port = 0, pin = 0;
  EXPECT_EQ(table.Call<int32_t>(67, int32_t{2}, uint32_t{9}, uint32_t{0x105}), 1);
  EXPECT_EQ(table.Call<int32_t>(68, int32_t{2}, &port, &pin), 1);
  EXPECT_EQ(std::pair(port, pin), std::pair(9u, 5u));
  manager.SetDynamicCurveColorCount(1);
  table.Call<void>(77, int32_t{0}, int32_t{61});
  EXPECT_EQ(table.Call<int32_t>(78, int32_t{0}), 61);
}

TEST(PinMapTable, Events) {
  C_VeloraPinMapInfoMgr manager;
  manager.SetEventColorCount(2);
  const RawTable table(static_cast<Map*>(&manager));
  const int32_t e = 1;
  const int32_t set[] = {6, 7};
  const int32_t pins[] = {8, 9, 10};
  int32_t count = 0;
  table.Call<void>(43, e, int32_t{2});
  table.Call<void>(46, e, uint32_t{0xABCDEF});
  table.Call<void>(48, e, int32_t{12});
  table.Call<void>(50, e, static_cast<const int32_t*>(set), int32_t{2});
  table.Call<void>(52, e, 2.5f);
  table.Call<void>(54, e, int32_t{13});
  table.Call<void>(56, e, static_cast<const int32_t*>(pins), int32_t{3});
  EXPECT_EQ(table.Call<int32_t>(44, e), 2);
  EXPECT_EQ(table.Call<uint32_t>(45, e), 0xABCDEFu);
  EXPECT_EQ(table.Call<int32_t>(47, e), 12);
  EXPECT_EQ(table.Call<const int32_t*>(49, e, &count)[0], 6);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(table.Call<float>(51, e), 2.5f);
  EXPECT_EQ(table.Call<int32_t>(53, e), 13);
  EXPECT_EQ(table.Call<const int32_t*>(55, e, &count)[0], 8);
  EXPECT_EQ(count, 3);
}

TEST(PinMapTable, CopyCurvesColoursAndEmbeddedManagers) {
  C_VeloraPinMapInfoMgr manager, other;
  const RawTable table(static_cast<Map*>(&manager));
  other.SetUsedRAMSize(5);
  void* const unused = nullptr;
  EXPECT_EQ(table.Call<int32_t>(72, unused, static_cast<Map*>(&other), int32_t{1}), 1);
  table.Call<void>(71, unused, static_cast<Map*>(&other), int32_t{1});
  EXPECT_EQ(manager.GetUsedRAMSize(), 5);
  EXPECT_EQ(table.Call<int32_t>(72, unused, static_cast<Map*>(&other), int32_t{1}), 0);

  using Point = tagVLRCurveCtrlPoint;
  const Point points[] = {{1, 2}, {3, 4}};
  int32_t count = 0;
  table.Call<void>(79, static_cast<const Point*>(points), int32_t{1});
  table.Call<void>(111, static_cast<const Point*>(points), int32_t{2});
  EXPECT_EQ(table.Call<const Point*>(80, &count)[0], points[0]);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(table.Call<const Point*>(112, &count)[1], points[1]);
  EXPECT_EQ(count, 2);

  for (const size_t slot : {87, 89}) {
    const auto value = static_cast<int32_t>(slot);
    table.Call<void>(slot, value, value + 1, value + 2);
  }
  for (const size_t slot : {88, 90}) {
    int32_t rgb[3] = {};
    table.Call<void>(slot, &rgb[0], &rgb[1], &rgb[2]);
    EXPECT_EQ(std::tuple(rgb[0], rgb[1], rgb[2]), std::tuple(slot - 1, slot, slot + 1));
  }
  int32_t red = 0;
  manager.GetLEDMaxLumen(&red, nullptr, nullptr);
  EXPECT_EQ(red, 89);
  for (const size_t slot : {95, 97, 99, 101}) {
    const auto value = static_cast<double>(slot);
    table.Call<void>(slot, value, value + 1, value + 2);
  }
  for (const size_t slot : {96, 98, 100, 102}) {
    double rgb[3] = {};
    table.Call<void>(slot, &rgb[0], &rgb[1], &rgb[2]);
    EXPECT_EQ(std::tuple(rgb[0], rgb[1], rgb[2]), std::tuple(slot - 1., slot, slot + 1.));
  }
  double big = 0;
  manager.GetColorLEDBigY(&big, nullptr, nullptr);
  EXPECT_EQ(big, 99);

  EXPECT_EQ(table.Call<I_VeloraSerialLEDMgr*>(103), manager.GetSerialLEDMgr());
  EXPECT_EQ(table.Call<I_VeloraMotorModeMgr*>(104), manager.GetMotorModeMgr());
  CheckDeletingDestructor<C_VeloraPinMapInfoMgr, Map>(116);
}

using Led = I_VeloraSerialLEDMgr;

TEST(SerialLedTable, PlainPairs) {
  CheckPairs<C_VeloraSerialLEDMgr, Led, uint8_t>({
      {6, 7, &Led::SetColorType, &Led::GetColorType},
      {8, 9, &Led::SetScanType, &Led::GetScanType},
      {26, 27, &Led::SetHighLevel0Tick, &Led::GetHighLevel0Tick},
      {28, 29, &Led::SetHighLevel1Tick, &Led::GetHighLevel1Tick},
      {30, 31, &Led::SetLowLevel0Tick, &Led::GetLowLevel0Tick},
      {32, 33, &Led::SetLowLevel1Tick, &Led::GetLowLevel1Tick},
      {38, 39, &Led::SetOrderBit, &Led::GetOrderBit},
  });
  CheckPairs<C_VeloraSerialLEDMgr, Led, int32_t>({
      {10, 11, &Led::SetEnable, &Led::GetEnable},
      {12, 13, &Led::SetCount, &Led::GetCount},
      {14, 15, &Led::SetWireMode, &Led::GetWireMode},
      {40, 41, &Led::SetIsSupportConvert, &Led::GetIsSupportConvert},
      {43, 44, &Led::SetSPIClock, &Led::GetSPIClock},
      {51, 52, &Led::SetVixenImportInterval, &Led::GetVixenImportInterval},
  });
  CheckPairs<C_VeloraSerialLEDMgr, Led, double>({
      {18, 19, &Led::SetHighLevel0Time, &Led::GetHighLevel0Time},
      {20, 21, &Led::SetHighLevel1Time, &Led::GetHighLevel1Time},
      {22, 23, &Led::SetLowLevel0Time, &Led::GetLowLevel0Time},
      {24, 25, &Led::SetLowLevel1Time, &Led::GetLowLevel1Time},
  });
}

TEST(SerialLedTable, TheOthers) {
  C_VeloraSerialLEDMgr manager, other;
  const RawTable table(static_cast<Led*>(&manager));
  const Led* const source = &other;
  other.SetOrderBit(0);
  EXPECT_EQ(table.Call<int32_t>(1, source), 0);
  table.Call<void>(0, source);
  EXPECT_EQ(table.Call<int32_t>(1, source), 1);
  RecordingStore store;
  EXPECT_EQ(table.Call<int32_t>(2, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.LabelsOf("Set").front(), "SerialLEDSampleFreq");
  EXPECT_EQ(table.Call<int32_t>(3, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.LabelsOf("Get").front(), "SerialLEDSampleFreq");

  table.Call<void>(4, int32_t{99});
  EXPECT_EQ(table.Call<uint8_t>(5), 99);
  table.Call<void>(34, int32_t{9});
  EXPECT_EQ(table.Call<uint8_t>(35), 9);
  table.Call<void>(36, int32_t{3});
  EXPECT_EQ(table.Call<uint8_t>(37), 3);
  EXPECT_EQ(manager.GetClockRateMode(), 3);
  table.Call<void>(16, uint8_t{77}, uint32_t{3});
  EXPECT_EQ(table.Call<uint8_t>(17, uint32_t{3}), 77);
  manager.SetWireMode(0);
  manager.SetColorType(4);
  EXPECT_EQ(table.Call<int32_t>(42), 2);
  table.Call<void>(45, static_cast<const char*>("one"));
  table.Call<void>(47, static_cast<const char*>("two"));
  table.Call<void>(49, uint32_t{2}, static_cast<const char*>("pin"));
  EXPECT_STREQ(table.Call<const char*>(46), "one");
  EXPECT_STREQ(table.Call<const char*>(48), "two");
  EXPECT_STREQ(table.Call<const char*>(50, uint32_t{2}), "pin");
  EXPECT_STREQ(manager.GetTwoWireDeviceName(), "two");
  const tagVLRCurveCtrlPoint point{5, 6};
  int32_t count = 0;
  table.Call<void>(53, &point, int32_t{1});
  EXPECT_EQ(*table.Call<const tagVLRCurveCtrlPoint*>(54, &count), point);
  EXPECT_EQ(count, 1);
  CheckDeletingDestructor<C_VeloraSerialLEDMgr, Led>(56);
}

using Motor = I_VeloraMotorModeMgr;

TEST(MotorTable, ValuesAndStore) {
  C_VeloraMotorModeMgr manager, other;
  const RawTable table(static_cast<Motor*>(&manager));
  const Motor* const source = &other;
  CheckPairs<C_VeloraMotorModeMgr, Motor, int32_t>(
      {{4, 5, &Motor::SetEnableMotorMode, &Motor::GetEnableMotorMode}});
  other.SetEnableMotorMode(1);
  EXPECT_EQ(table.Call<int32_t>(1, source), 0);
  table.Call<void>(0, source);
  EXPECT_EQ(table.Call<int32_t>(1, source), 1);
  RecordingStore store;
  EXPECT_EQ(table.Call<int32_t>(2, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.calls.front(), "DeleteSection VLRMotorInfo");
  EXPECT_EQ(table.Call<int32_t>(3, static_cast<I_CUIniFile*>(&store)), 1);
  EXPECT_EQ(store.LabelsOf("Get").front(), "EnableMotorMode");
  const uint32_t mode = 2;
  const int32_t gpios = 4;
  const int32_t sectors = 5;
  table.Call<void>(6, &mode);
  table.Call<void>(8, &gpios);
  table.Call<void>(10, &sectors);
  EXPECT_EQ(table.Call<uint32_t>(7), 2u);
  EXPECT_EQ(table.Call<int32_t>(9), 4);
  EXPECT_EQ(table.Call<int32_t>(11), 5);
  const int32_t angle = 180;
  EXPECT_EQ(table.Call<uint8_t>(31, &angle), 25);
  CheckDeletingDestructor<C_VeloraMotorModeMgr, Motor>(33);
}

/// The operations of a sector table: slots from `get` on are get, at, find, add, clear,
/// sort; `build` comes before.
template <typename Sector>
void CheckSectorSlots(const RawTable& table, size_t get, const Sector& late, const Sector& early) {
  int32_t count = 0;
  EXPECT_EQ(table.Call<int32_t>(get + 3, &late), 1);
  EXPECT_EQ(table.Call<int32_t>(get + 3, &early), 1);
  EXPECT_EQ(table.Call<int32_t>(get + 3, &early), 0);
  EXPECT_EQ(table.Call<const Sector*>(get, &count)[0], late);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(table.Call<int32_t>(get + 5), 1);
  const int32_t first = 0;
  EXPECT_EQ(*table.Call<const Sector*>(get + 1, &first), early);
  EXPECT_EQ(*table.Call<const Sector*>(get + 2, &late.AngleRangeEnd), late);
  EXPECT_EQ(table.Call<int32_t>(get + 4), 1);
  EXPECT_EQ(table.Call<const Sector*>(get, &count), nullptr);
}

TEST(MotorTable, Sectors) {
  C_VeloraMotorModeMgr manager;
  const RawTable table(static_cast<Motor*>(&manager));
  const int32_t lines = 1;
  const int32_t sectors = 3;
  const int32_t range = 30;
  int32_t count = 0;
  EXPECT_EQ(table.Call<const GPIOSectorInfo*>(12, &lines, &count)[1],
            (GPIOSectorInfo{1, 1, 181, 360}));
  EXPECT_EQ(count, 2);
  EXPECT_EQ(table.Call<const ADCSectorInfo*>(19, &sectors, &range, &count)[2],
            (ADCSectorInfo{2, 21, 30, 241, 360}));
  EXPECT_EQ(count, 3);
  CheckSectorSlots<GPIOSectorInfo>(table, 13, {9, 1, 100, 200}, {4, 2, 0, 99});
  CheckSectorSlots<ADCSectorInfo>(table, 20, {9, 1, 2, 100, 200}, {4, 2, 3, 0, 99});

  const int32_t late = 9;
  const int32_t early = 4;
  EXPECT_EQ(table.Call<int32_t>(28, &late), 1);
  EXPECT_EQ(table.Call<int32_t>(28, &early), 1);
  EXPECT_EQ(table.Call<int32_t>(27, &early), 1);
  EXPECT_EQ(table.Call<int32_t>(30), 1);
  EXPECT_EQ(table.Call<const int32_t*>(26, &count)[0], 4);
  EXPECT_EQ(table.Call<int32_t>(29), 1);
  EXPECT_EQ(table.Call<int32_t>(27, &early), 0);
}

}  // namespace
}  // namespace velora::test
