#include <gtest/gtest.h>

#include <limits>

#include "foundation/IniFile.h"
#include "pinmap/FilledPinMap.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraSerialLEDMgr.h"

namespace velora::test {
namespace {

using Led = I_VeloraSerialLEDMgr;

TEST(SerialLedMgr, SettersHoldTheirRanges) {
  constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
  C_VeloraSerialLEDMgr led;
  const auto check = [&led](auto set, auto get, std::initializer_list<std::pair<int, int>> cases) {
    for (const auto& test : cases) {
      (led.*set)(test.first);
      EXPECT_EQ((led.*get)(), test.second) << test.first;
    }
  };
  check(&Led::SetSampleFreq, &Led::GetSampleFreq,
        {{0, 30}, {1, 1}, {100, 100}, {101, 30}, {256 + 50, 30}, {-1, 30}});
  check(&Led::SetCount, &Led::GetCount,
        {{65025, 65025}, {65026, 64}, {1, 1}, {0, 64}, {kLargest, 64}});
  check(&Led::SetBrightnessLevel, &Led::GetBrightnessLevel,
        {{1, 1}, {0, 31}, {31, 31}, {5, 5}, {32, 31}, {256 + 5, 31}});
  check(&Led::SetClockRateMode, &Led::GetClockRateMode, {{3, 3}, {4, 0}, {1, 1}, {-1, 0}});
}

TEST(SerialLedMgr, ModesPastTheLast) {
  C_VeloraSerialLEDMgr led;
  led.SetPinUse(5, 4);
  led.SetExtendPinInfo(4, "x");
  EXPECT_EQ(led.GetPinUse(4), 0xFF);
  EXPECT_STREQ(led.GetExtendPinInfo(4), "");
  for (uint32_t mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(led.GetPinUse(mode), 0);
    EXPECT_STREQ(led.GetExtendPinInfo(mode), "");
  }
}

TEST(SerialLedMgr, ColorChannelCount) {
  C_VeloraSerialLEDMgr led;
  EXPECT_EQ(led.GetColorChannelCount(), 0);  // no wire mode yet
  const int channels[] = {3, 3, 3, 2, 2, 0};
  for (const int wire : {-1, 0, 3, 4}) {
    for (uint8_t type = 0; type < 6; ++type) {
      led.SetWireMode(wire);
      led.SetColorType(type);
      const bool wired = wire == 0 || wire == 3;
      EXPECT_EQ(led.GetColorChannelCount(), wired ? channels[type] : 0) << wire << " " << +type;
    }
  }
}

/// One change each that a comparison must see.
const struct {
  const char* name;
  void (*change)(Led&);
} kChanges[] = {
    {"sample frequency", [](Led& l) { l.SetSampleFreq(61); }},
    {"colour type", [](Led& l) { l.SetColorType(4); }},
    {"scan type", [](Led& l) { l.SetScanType(3); }},
    {"enable", [](Led& l) { l.SetEnable(0); }},
    {"count", [](Led& l) { l.SetCount(301); }},
    {"wire mode", [](Led& l) { l.SetWireMode(3); }},
    {"high 0 time", [](Led& l) { l.SetHighLevel0Time(0.26); }},
    {"high 1 time", [](Led& l) { l.SetHighLevel1Time(0.51); }},
    {"low 0 time", [](Led& l) { l.SetLowLevel0Time(0.76); }},
    {"low 1 time", [](Led& l) { l.SetLowLevel1Time(1.26); }},
    {"high 0 tick", [](Led& l) { l.SetHighLevel0Tick(8); }},
    {"high 1 tick", [](Led& l) { l.SetHighLevel1Tick(8); }},
    {"low 0 tick", [](Led& l) { l.SetLowLevel0Tick(8); }},
    {"low 1 tick", [](Led& l) { l.SetLowLevel1Tick(8); }},
    {"brightness", [](Led& l) { l.SetBrightnessLevel(16); }},
    {"clock rate", [](Led& l) { l.SetClockRateMode(3); }},
    {"order bit", [](Led& l) { l.SetOrderBit(1); }},
    {"pin use", [](Led& l) { l.SetPinUse(99, 3); }},
    {"spi clock", [](Led& l) { l.SetSPIClock(9); }},
    {"convert", [](Led& l) { l.SetIsSupportConvert(1); }},
    {"interval", [](Led& l) { l.SetVixenImportInterval(51); }},
    {"case of one wire name", [](Led& l) { l.SetOneWireDeviceName("ws1"); }},
    {"two wire name", [](Led& l) { l.SetTwoWireDeviceName(nullptr); }},
    {"extend pin info", [](Led& l) { l.SetExtendPinInfo(3, "BP0.1 "); }},
    {"a point", [](Led& l) { l.SetAdjustCurve(MakePoints(4, 7).data(), 4); }},
    {"fewer points", [](Led& l) { l.SetAdjustCurve(MakePoints(4, 6).data(), 3); }},
};

TEST(SerialLedMgr, EveryValueCountsAndIsCopied) {
  for (const auto& test : kChanges) {
    SCOPED_TRACE(test.name);
    C_VeloraSerialLEDMgr base, changed;
    FillSerialLed(base);
    FillSerialLed(changed);
    EXPECT_EQ(base.IsSame(&changed), 1);
    test.change(changed);
    EXPECT_EQ(base.IsSame(&changed), 0);
    base.CopyFrom(&changed);
    EXPECT_EQ(base.IsSame(&changed), 1);
  }
}

TEST(SerialLedMgr, NullIsTheSameAndCopiesNothing) {
  C_VeloraSerialLEDMgr led, filled;
  FillSerialLed(led);
  FillSerialLed(filled);
  EXPECT_EQ(led.IsSame(nullptr), 1);
  led.CopyFrom(nullptr);
  led.CopyFrom(&led);
  EXPECT_EQ(led.IsSame(&filled), 1);
}

TEST(SerialLedMgr, AnEmptyStoreKeepsNumbersAndEmptiesTextsAndCurve) {
  C_VeloraSerialLEDMgr led, expected;
  FillSerialLed(led);
  FillSerialLed(expected);
  C_CUIniFile empty;
  EXPECT_EQ(led.Load(&empty), 1);
  expected.SetOneWireDeviceName("");
  expected.SetTwoWireDeviceName("");
  for (uint32_t mode = 0; mode < 4; ++mode) expected.SetExtendPinInfo(mode, "");
  expected.SetAdjustCurve(nullptr, 0);
  EXPECT_EQ(led.IsSame(&expected), 1);

  C_VeloraSerialLEDMgr fresh, untouched;
  fresh.Load(&empty);
  EXPECT_EQ(fresh.IsSame(&untouched), 1);
  EXPECT_EQ(fresh.GetHighLevel0Time(), 0.35);
  EXPECT_EQ(fresh.GetLowLevel1Tick(), 12);
  EXPECT_EQ(fresh.GetWireMode(), -1);
  EXPECT_EQ(fresh.GetVixenImportInterval(), 25);
}

TEST(SerialLedMgr, LoadTakesWhatIsStored) {
  RecordingStore store;
  const auto put = [&store](const char* label, const char* value) {
    store.values[std::string("VeloraPinMapInfo/") + label] = value;
  };
  put("SerialLEDCount", "0");
  put("BrightnessLevel", "200");
  put("SerialLEDSampleFreq", "306");
  put("SerialLEDLowLevel1Tick", "99");  // not the name of its key
  put("SerialLEDLowLevel0Tick", "98");
  C_VeloraSerialLEDMgr led, copy;
  led.Load(&store);
  EXPECT_EQ(led.GetCount(), 0);
  EXPECT_EQ(led.GetBrightnessLevel(), 200);
  EXPECT_EQ(led.GetSampleFreq(), 50);  // cut to 8 bits
  EXPECT_EQ(led.GetLowLevel1Tick(), 12);
  EXPECT_EQ(led.GetLowLevel0Tick(), 98);
  copy.CopyFrom(&led);
  EXPECT_EQ(copy.GetCount(), 64);  // a copy goes through the ranges
  EXPECT_EQ(copy.GetBrightnessLevel(), 31);
}

TEST(SerialLedMgr, RoundTrip) {
  C_VeloraSerialLEDMgr led, loaded;
  FillSerialLed(led);
  loaded.SetAdjustCurve(MakePoints(9, 1).data(), 9);
  C_CUIniFile store;
  EXPECT_EQ(led.Save(&store), 1);
  EXPECT_EQ(loaded.Load(&store), 1);
  EXPECT_EQ(loaded.IsSame(&led), 1);
  EXPECT_EQ(led.Save(nullptr), 0);
  EXPECT_EQ(led.Load(nullptr), 0);
}

}  // namespace
}  // namespace velora::test
