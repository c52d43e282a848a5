// The pin map's section: keys, their order, defaults and old forms.
#include <gtest/gtest.h>

#include "foundation/IniFile.h"
#include "pinmap/FilledPinMap.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraPinMapInfoMgr.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

using Labels = std::vector<std::string>;

void Append(Labels& labels, const Labels& more) {
  labels.insert(labels.end(), more.begin(), more.end());
}

/// Labels `first`, number, `last` for numbers from 0.
void AppendNumbered(Labels& labels, const std::string& first, int count,
                    const std::string& last = "") {
  for (int i = 0; i < count; ++i) labels.push_back(first + std::to_string(i) + last);
}

void AppendPoints(Labels& labels, const std::string& first, int count) {
  labels.push_back(first + "Num");
  for (int p = 0; p < count; ++p) {
    Append(labels, {first + std::to_string(p) + "_X", first + std::to_string(p) + "_Y"});
  }
}

Labels PinLabels(int pin, int points) {
  Labels labels;
  const std::string start = "Pin" + std::to_string(pin) + "_";
  for (const char* name :
       {"Convert", "OutPortIndex", "OutPortPinIndex", "OutPinPWMType", "OutPinStopValue",
        "OutPinKeepLevel", "OutPinMultiPinValue", "MapEventIndex", "XResolution", "YResolution"}) {
    labels.push_back(start + name);
  }
  AppendPoints(labels, start + "AdjustCurveCtrlPoint", points);
  return labels;
}

Labels EventLabels(int e, const Labels& value) {
  Labels labels{"EventColorType" + std::to_string(e)};
  Append(labels, value);
  AppendNumbered(labels, "EventColorBindedPins" + std::to_string(e) + "_", 32);
  return labels;
}

Labels ExpanderLabels(const std::string& x) {
  Labels labels{"IOExpander" + x};
  for (const char* group : {"0", "1", "2"}) {
    for (const char* entry : {"0", "1", "2", "3", "4", "5", "6", "7"}) {
      const std::string indices = x + "." + group + "." + entry;
      Append(labels, {"IOExpander_ClkSource" + indices, "IOExpander_CurrentType" + indices});
    }
  }
  return labels;
}

const Labels kColorLed{"WavLenColorLEDMixEn", "LEDWaveLength_R", "LEDWaveLength_G",
                       "LEDWaveLength_B",     "LEDMaxLumen_R",   "LEDMaxLumen_G",
                       "LEDMaxLumen_B",       "LEDMixingScale",  "ColorLEDParamSource",
                       "ColorLEDRx",          "ColorLEDGx",      "ColorLEDBx",
                       "ColorLEDRy",          "ColorLEDGy",      "ColorLEDBy",
                       "ColorLEDRBigY",       "ColorLEDGBigY",   "ColorLEDBBigY",
                       "ColorLEDRComp",       "ColorLEDGComp",   "ColorLEDBComp"};

Labels SerialLedLabels() {
  Labels labels{"SerialLEDSampleFreq",
                "SerialLEDColorType",
                "SerialLEDScanType",
                "SerialLEDEnable",
                "SerialLEDCount",
                "SerialLEDWireMode",
                "SerialLEDHighLevel0Time",
                "SerialLEDHighLevel1Time",
                "SerialLEDLowLevel0Time",
                "SerialLEDLowLevel1Time",
                "SerialLEDHighLevel0Tick",
                "SerialLEDHighLevel1Tick",
                "SerialLEDLowLevel0Tick",
                "SerialLEDLevel1Tick",
                "BrightnessLevel",
                "ClockRateMode",
                "OrderBit",
                "IsSupportConvertVLR",
                "SWALEDSPIClock",
                "SLEDOneWireModeDeviceName",
                "SLEDTwoWireModeDeviceName"};
  for (const char* mode : {"0", "1", "2", "3"}) {
    Append(labels, {std::string("SerialLEDPinUse_Mode") + mode,
                    std::string("SerialLEDExtendPinInfo_Mode") + mode});
  }
  labels.push_back("VixenImportInterval");
  AppendPoints(labels, "SLED_AdjustCurveCtrlPoint", 4);
  return labels;
}

Labels MotorLabels() {
  Labels labels{"EnableMotorMode", "MotorMode", "GPIOCount", "ADCSectorCount",
                "GPIOSectorInfoCount"};
  for (const std::string i : {"0", "1", "2"}) {
    const std::string start = "GPIOSectorInfo" + i;
    Append(labels, {start + "_SectorIndex", start + "_GPIOValue", start + "_AngleRangeStart",
                    start + "_AngleRangeEnd"});
  }
  labels.push_back("ADCSectorInfoCount");
  for (const std::string i : {"0", "1"}) {
    const std::string start = "ADCSectorInfo" + i;
    Append(labels, {start + "_SectorIndex", start + "_ADCRangeStart", start + "_ADCRangeEnd",
                    start + "_AngleRangeStart", start + "_AngleRangeEnd"});
  }
  labels.push_back("ServoModePinIndexCount");
  AppendNumbered(labels, "ServoMode", 3, "_PinIndex");
  return labels;
}

/// All labels that a filled pin map with three points a curve has, in the order of Save.
Labels FilledLabels() {
  Labels labels;
  for (int pin = 0; pin < 32; ++pin) Append(labels, PinLabels(pin, 3));
  Append(labels, {"FirmwarePWMTimer", "FirmwarePWMFrequency", "UsedRAMSize", "UsedStackSize",
                  "VLRConvertMethod", "MaxEventColorNumber", "EnableColorEvent"});
  Labels set;
  AppendNumbered(set, "EventColorCurveSet1_", 33);
  Append(labels, EventLabels(0, {"EventColor0"}));
  Append(labels, EventLabels(1, set));
  Append(labels, EventLabels(2, {"EventColorCurveMap2"}));
  Append(labels, EventLabels(3, {"EventColorSpeed3"}));
  Append(labels, EventLabels(4, {"EventColorLevel4"}));
  Append(labels, {"DynamicCurveEnable", "DynamicCurveNumber"});
  AppendNumbered(labels, "DynamicCurveColor", 2);
  AppendPoints(labels, "DynamicCurveTableCP", 3);
  Append(labels, {"DynamicCurveActiveHigh", "DynamicCurveGroupNum", "IOExpanderNum"});
  Append(labels, ExpanderLabels("0"));
  Append(labels, ExpanderLabels("1"));
  Append(labels, {"UserCtrlIOExpEnable", "IoExpanderSelectPinNum"});
  AppendNumbered(labels, "IoExpanderSelectPin", 2);
  labels.push_back("HwPwmSourceClkGrpNum");
  AppendNumbered(labels, "HwPwmSourceClk_", 3);
  Append(labels, kColorLed);
  Append(labels, SerialLedLabels());
  Append(labels, MotorLabels());
  AppendPoints(labels, "RuntimeEnvelopGammaCP", 3);
  Append(labels,
         {"RuntimeEnvelopSamplePerGroup", "RuntimeEnvelopEnabled", "RuntimeEnvelopActiveHigh"});
  return labels;
}

TEST(PinMapSave, WritesTheKeysInTheirOrder) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  RecordingStore store;
  ASSERT_EQ(manager.Save(&store), 1);
  EXPECT_EQ(store.LabelsOf("Set"), FilledLabels());
}

TEST(PinMapLoad, ReadsTheKeysInTheirOrder) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  RecordingStore store;
  manager.Save(&store);
  store.calls.clear();
  C_VeloraPinMapInfoMgr loaded;
  ASSERT_EQ(loaded.Load(&store), 1);
  Labels expected = FilledLabels();
  // The event count is read behind the flag, and a full set has no end to read.
  const auto count = std::find(expected.begin(), expected.end(), "MaxEventColorNumber");
  std::iter_swap(count, count + 1);
  expected.erase(std::find(expected.begin(), expected.end(), "EventColorCurveSet1_32"));
  EXPECT_EQ(store.LabelsOf("Get"), expected);
}

TEST(PinMapSave, ValuesTakeTheirForms) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  manager.SetEventColor(0, 0xFFFFFFFF);
  RecordingStore store;
  manager.Save(&store);
  for (const char* call : {
           "SetInt VeloraPinMapInfo/Pin31_MapEventIndex 222 1",
           "SetString VeloraPinMapInfo/Pin0_OutPinMultiPinValue -9223372036854775552 1 0 1",
           "SetInt VeloraPinMapInfo/UsedRAMSize 32769 1",
           "SetInt VeloraPinMapInfo/EventColor0 -1 1",
           "SetInt VeloraPinMapInfo/EventColorCurveSet1_31 0 1",
           "SetInt VeloraPinMapInfo/EventColorCurveSet1_32 -1 1",
           "SetDouble VeloraPinMapInfo/EventColorSpeed3 1.5 1",
           "SetString VeloraPinMapInfo/IOExpander1 IOX24 1 0 1",
           "SetInt VeloraPinMapInfo/IOExpander_CurrentType1.2.7 2127 1",
           "SetInt VeloraPinMapInfo/IoExpanderSelectPin1 2311 1",
           "SetInt VeloraPinMapInfo/SerialLEDLevel1Tick 14 1",
           "SetInt VLRMotorInfo/ADCSectorInfo1_ADCRangeEnd 4095 1",
           "SetInt VLRMotorInfo/ServoMode2_PinIndex 25 1",
       }) {
    EXPECT_NE(std::find(store.calls.begin(), store.calls.end(), call), store.calls.end()) << call;
  }
}

TEST(PinMapSave, APinThatIsNotConvertedWritesOneKey) {
  C_VeloraPinMapInfoMgr manager;
  PinRecord record{};
  record.XResolution = 9;
  manager.SetPin(5, 3, 4, 2, 1, 1, 7, &record);
  RecordingStore store;
  manager.Save(&store);
  const Labels labels = store.LabelsOf("Set");
  EXPECT_EQ(labels[5], "Pin5_Convert");
  EXPECT_EQ(labels[6], "Pin6_Convert");
  C_VeloraPinMapInfoMgr loaded;
  FillPinMap(loaded);
  loaded.Load(&store);
  uint16_t port = 9;
  uint8_t portPin = 9, type = 9, stop = 9, keep = 9;
  uint64_t multi = 9;
  const auto* pin = loaded.GetPin(5, &port, &portPin, &type, &stop, &keep, &multi);
  EXPECT_EQ(std::tuple(port, portPin, type, stop, keep), std::tuple(0, 0, 0, 0, 0));
  EXPECT_EQ(multi, 0u);
  EXPECT_EQ(uint16_t{pin->XResolution}, 0);
  EXPECT_FALSE(pin->AdjustCurveCtrlPoints);
}

TEST(PinMapSave, AnEarlyWriteThatFailsEndsIt) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  const Labels labels = FilledLabels();
  const auto last = std::find(labels.begin(), labels.end(), "MaxEventColorNumber");
  const auto checked = static_cast<size_t>(last - labels.begin()) + 1;
  for (const size_t good : {size_t{0}, size_t{6}, size_t{100}, checked - 1}) {
    SCOPED_TRACE(good);
    RecordingStore store;
    store.writes_that_succeed = good;
    EXPECT_EQ(manager.Save(&store), 0);
    EXPECT_EQ(store.LabelsOf("Set").size(), good + 1);  // the failing one is the last
    EXPECT_EQ(store.values.size(), good);
  }
  RecordingStore store;
  store.writes_that_succeed = checked;
  EXPECT_EQ(manager.Save(&store), 1);
  EXPECT_EQ(store.LabelsOf("Set"), labels);  // from there on failures don't matter
}

TEST(PinMapSave, SetsEndWithAMark) {
  C_VeloraPinMapInfoMgr manager;
  manager.SetEventColorCount(2);
  manager.SetEventType(0, kEventCurveSet);
  manager.SetEventType(1, 77);  // unknown: type and pins alone
  const int32_t set[] = {5, 6};
  manager.SetEventCurveSet(0, set, 2);
  RecordingStore store;
  manager.Save(&store);
  EXPECT_EQ(store.PinMapValue("EventColorCurveSet0_1"), "6");
  EXPECT_EQ(store.PinMapValue("EventColorCurveSet0_2"), "-1");
  EXPECT_EQ(store.PinMapValue("EventColorCurveSet0_3"), "(none)");
  const Labels labels = store.LabelsOf("Set");
  const auto type = std::find(labels.begin(), labels.end(), "EventColorType1");
  EXPECT_EQ(type[1], "EventColorBindedPins1_0");
  EXPECT_EQ(type[33], "DynamicCurveEnable");
}

TEST(PinMapLoad, AnEmptyStoreGivesTheDefaultsOfTheKeys) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  manager.SetUserCtrlIOExpEnable(6);
  C_CUIniFile empty;
  ASSERT_EQ(manager.Load(&empty), 1);

  uint16_t port = 9;
  uint8_t portPin = 9;
  const auto* pin = manager.GetPin(0, &port, &portPin, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(std::tuple(port, portPin, pin->Convert), std::tuple(0, 0, 0));
  EXPECT_EQ(uint32_t{pin->AdjustCurveCtrlPointNum}, 0u);
  EXPECT_STREQ(manager.GetFirmwarePWMTimer(), "");
  EXPECT_EQ(manager.GetConvertMethod(), kConvertPwm);
  EXPECT_EQ(manager.GetEventColorCount(), 0);
  EXPECT_EQ(manager.GetIOExpanderCount(), 0);
  EXPECT_EQ(manager.GetHwPwmSourceClkCount(), 0);
  EXPECT_EQ(manager.GetDynamicCurveTable(nullptr), nullptr);
  int32_t red = 0, green = 0, blue = 0;
  manager.GetLEDMaxLumen(&red, &green, &blue);
  EXPECT_EQ(std::tuple(red, green, blue), std::tuple(255, 255, 255));
  manager.GetLEDWaveLength(&red, &green, &blue);
  EXPECT_EQ(std::tuple(red, green, blue), std::tuple(610, 540, 470));
  double x = 0, y = 0, big = 0, comp = 9;
  manager.GetColorLEDx(nullptr, nullptr, &x);
  manager.GetColorLEDy(&y, nullptr, nullptr);
  manager.GetColorLEDBigY(nullptr, &big, nullptr);
  manager.GetColorLEDComp(&comp, nullptr, nullptr);
  EXPECT_EQ(std::tuple(x, y, big, comp), std::tuple(0.126662160307, 0.33722098144, 128.0, 0.0));
  // These keep their present value.
  EXPECT_EQ(manager.GetUserCtrlIOExpEnable(), 6);
  EXPECT_EQ(manager.GetRuntimeEnvelopEnabled(), 1);
  EXPECT_EQ(manager.GetRuntimeEnvelopSamplePerGroup(), 128);
  EXPECT_EQ(manager.GetRuntimeEnvelopActiveHigh(), 0);
  EXPECT_EQ(manager.GetRuntimeEnvelopGammaCP(nullptr), nullptr);
}

/// A pin map loaded from text.
void LoadText(C_VeloraPinMapInfoMgr& manager, const std::string& lines) {
  C_CUIniFile store;
  store.LoadText("[VeloraPinMapInfo]\n" + lines);
  EXPECT_EQ(manager.Load(&store), 1);
}

TEST(PinMapLoad, TheSingleClockOfOldProjects) {
  const struct {
    const char* lines;
    std::vector<int32_t> clocks;
  } cases[] = {
      {"HWPwmClockSource = 3\n", {3}},
      {"HWPwmClockSource = 0\n", {0}},
      {"HWPwmClockSource = -1\n", {}},
      {"HwPwmSourceClkGrpNum = 0\nHWPwmClockSource = 3\n", {3}},
      {"HwPwmSourceClkGrpNum = -2\nHWPwmClockSource = 3\n", {3}},
      {"HwPwmSourceClkGrpNum = 2\nHwPwmSourceClk_1 = 8\nHWPwmClockSource = 3\n", {0, 8}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.lines);
    C_VeloraPinMapInfoMgr manager;
    FillPinMap(manager);
    LoadText(manager, test.lines);
    std::vector<int32_t> clocks;
    for (int32_t i = 0; i < manager.GetHwPwmSourceClkCount(); ++i) {
      clocks.push_back(manager.GetHwPwmSourceClk(i));
    }
    EXPECT_EQ(clocks, test.clocks);
  }
  C_VeloraPinMapInfoMgr manager;
  LoadText(manager, "HWPwmClockSource = 3\n");
  RecordingStore store;
  manager.Save(&store);
  EXPECT_EQ(store.PinMapValue("HwPwmSourceClkGrpNum"), "1");
  EXPECT_EQ(store.PinMapValue("HwPwmSourceClk_0"), "3");
  EXPECT_EQ(store.PinMapValue("HWPwmClockSource"), "(none)");
}

TEST(PinMapLoad, MultiPinValues) {
  const struct {
    const char* text;
    uint64_t value;
  } cases[] = {
      {"-1", 0xFFFFFFFFFFFFFFFF},
      {"-9223372036854775808", 0x8000000000000000},
      {"9223372036854775807", 0x7FFFFFFFFFFFFFFF},
      {"18446744073709551615", 0x7FFFFFFFFFFFFFFF},  // held at the limit
      {"4294967296", 0x100000000},
      {"none", 0},
      {"", 0},
  };
  for (const auto& test : cases) {
    C_VeloraPinMapInfoMgr manager;
    LoadText(manager, std::string("Pin3_OutPinMultiPinValue = ") + test.text + "\n");
    uint64_t value = 9;
    manager.GetPin(3, nullptr, nullptr, nullptr, nullptr, nullptr, &value);
    EXPECT_EQ(value, test.value) << test.text;
  }
}

TEST(PinMapLoad, ValuesAreCutToTheirFields) {
  C_VeloraPinMapInfoMgr manager;
  LoadText(manager,
           "Pin0_OutPortIndex = 65537\nPin0_OutPinStopValue = -1\nPin0_XResolution = -2\n"
           "Pin0_AdjustCurveCtrlPointNum = 65537\nPin0_AdjustCurveCtrlPoint0_X = -3\n"
           "Pin0_AdjustCurveCtrlPoint0_Y = 257\nPin1_AdjustCurveCtrlPointNum = -1\n"
           "DynamicCurveTableCPNum = 65537\nUsedRAMSize = 65538\n");
  uint16_t port = 0;
  uint8_t stop = 0;
  const auto* pin = manager.GetPin(0, &port, nullptr, nullptr, &stop, nullptr, nullptr);
  EXPECT_EQ(std::tuple(port, stop, uint16_t{pin->XResolution}), std::tuple(1, 255, 0xFFFE));
  ASSERT_EQ(uint32_t{pin->AdjustCurveCtrlPointNum}, 1u);
  EXPECT_EQ(pin->AdjustCurveCtrlPoints[0], (tagVLRCurveCtrlPoint{0xFFFFFFFD, 1}));
  EXPECT_EQ(uint32_t{pin[1].AdjustCurveCtrlPointNum}, 0u);
  int32_t count = 0;
  manager.GetDynamicCurveTable(&count);
  EXPECT_EQ(count, 65537);
  EXPECT_EQ(manager.GetUsedRAMSize(), 2);
}

TEST(PinMapLoad, EventsKeepWhatTheirTypeDoesNotRead) {
  C_VeloraPinMapInfoMgr manager;
  const int32_t set[] = {7, 8, 9};
  manager.SetEventColorCount(2);
  manager.SetEventCurveSet(0, set, 3);
  manager.SetEventLevel(0, 44);
  manager.SetEventColor(1, 5);
  LoadText(manager,
           "MaxEventColorNumber = 2\nEventColorType0 = 2\nEventColorCurveSet0_0 = 3\n"
           "EventColorCurveSet0_1 = -8\nEventColorBindedPins0_1 = 6\nEventColorType1 = 1\n");
  int32_t count = 0;
  const int32_t* loaded = manager.GetEventCurveSet(0, &count);
  EXPECT_EQ(std::vector<int32_t>(loaded, loaded + 3), (std::vector<int32_t>{3, -1, 9}));
  EXPECT_EQ(count, 1);
  EXPECT_EQ(manager.GetEventLevel(0), 44);
  EXPECT_EQ(manager.GetEventBindedPins(0, &count)[1], 6);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(manager.GetEventColor(1), 0xFFFFFFu);
}

TEST(PinMapLoad, AnExpanderWithoutItsNameKeepsTheOldOneAndIsReported) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  RecordingStore store;
  store.values["VeloraPinMapInfo/IOExpanderNum"] = "1";
  manager.Load(&store);
  EXPECT_STREQ(manager.GetIOExpanderName(0), "IOX8");
  EXPECT_EQ(manager.GetIOExpanderClkSource(0, 0, 1), 0);
  EXPECT_EQ(std::count(store.calls.begin(), store.calls.end(),
                       "GetString VeloraPinMapInfo/IOExpander0 0 1"),
            1);
}

TEST(PinMapRoundTrip, ThroughAFile) {
  TempDir folder;
  C_VeloraPinMapInfoMgr manager, loaded;
  FillPinMap(manager, 40);
  C_CUIniFile file(Path::Native(folder / "project.ini"));
  ASSERT_EQ(manager.Save(&file), 1);
  ASSERT_TRUE(file.Save());
  C_CUIniFile read(Path::Native(folder / "project.ini"));
  ASSERT_TRUE(read.Load()) << read.GetFailureText();
  ASSERT_EQ(loaded.Load(&read), 1);
  EXPECT_EQ(manager.IsDifferent(nullptr, &loaded, 1), 0);
  // Also what the comparison leaves out.
  RecordingStore before, after;
  manager.Save(&before);
  loaded.Save(&after);
  EXPECT_EQ(before.values, after.values);
  EXPECT_EQ(before.values.size(), before.LabelsOf("Set").size());  // no label twice
}

TEST(PinMapRoundTrip, DoublesKeepSixDigits) {
  C_VeloraPinMapInfoMgr manager, loaded;
  C_CUIniFile file;
  manager.Save(&file);
  loaded.Load(&file);
  double x = 0;
  loaded.GetColorLEDx(&x, nullptr, nullptr);
  EXPECT_EQ(x, 6.625282e-01);
}

TEST(PinMapRoundTrip, NoStore) {
  C_VeloraPinMapInfoMgr manager;
  EXPECT_EQ(manager.Save(nullptr), 0);
  EXPECT_EQ(manager.Load(nullptr), 0);
}

}  // namespace
}  // namespace velora::test
