// CopyFrom and IsDifferent, value by value.
#include <gtest/gtest.h>

#include "pinmap/FilledPinMap.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora::test {
namespace {

using Map = I_VeloraPinMapInfoMgr;

/// Sets pin 3 as it is, with changes.
template <typename Change>
void ChangePin(Map& map, Change change) {
  PinValues pin{};
  const PinRecord* record = map.GetPin(3, &pin.port, &pin.port_pin, &pin.pwm_type, &pin.stop_value,
                                       &pin.keep_level, &pin.multi_pin_value);
  pin.record = *record;
  std::vector<tagVLRCurveCtrlPoint> points(
      record->AdjustCurveCtrlPoints,
      record->AdjustCurveCtrlPoints + record->AdjustCurveCtrlPointNum);
  change(pin, points);
  pin.record.AdjustCurveCtrlPointNum = static_cast<uint32_t>(points.size());
  pin.record.AdjustCurveCtrlPoints = points.data();
  map.SetPin(3, pin.port, pin.port_pin, pin.pwm_type, pin.stop_value, pin.keep_level,
             pin.multi_pin_value, &pin.record);
}

using PointList = std::vector<tagVLRCurveCtrlPoint>;

/// What a change of one value must make of the comparison with and without events.
struct Case {
  const char* name;
  int32_t different;
  int32_t different_without_events;
  void (*change)(Map&);
};

const int32_t kOne[] = {1};

const Case kCases[] = {
    {"nothing", 0, 0, [](Map&) {}},
    // Pins
    {"port", 1, 1, [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.port++; }); }},
    {"port pin", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.port_pin++; }); }},
    {"type", 1, 1, [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.pwm_type++; }); }},
    {"stop", 1, 1, [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.stop_value++; }); }},
    {"keep", 1, 1, [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.keep_level++; }); }},
    {"high bit of multi pin", 1, 1,
     [](Map& m) {
       ChangePin(m, [](PinValues& p, PointList&) { p.multi_pin_value ^= uint64_t{1} << 63; });
     }},
    {"convert", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.Convert = 2; }); }},
    {"no longer converted", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.Convert = 0; }); }},
    {"event index", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.MapEventIndex++; }); }},
    {"x resolution", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.XResolution += 256; }); }},
    {"y resolution", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.YResolution++; }); }},
    {"output levels", 0, 0,
     [](Map& m) { ChangePin(m, [](PinValues& p, PointList&) { p.record.OutputLevels++; }); }},
    {"last level", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues&, PointList& l) { l[2].Level++; }); }},
    {"sample", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues&, PointList& l) { l[0].Sample += 1u << 24; }); }},
    {"fewer points", 1, 1,
     [](Map& m) { ChangePin(m, [](PinValues&, PointList& l) { l.pop_back(); }); }},
    // Events: each type has its value, types 1 and 5 their pins too
    {"event enable", 1, 0, [](Map& m) { m.SetEnableColorEvent(0); }},
    {"event count", 1, 0, [](Map& m) { m.SetEventColorCount(6); }},
    {"event type", 1, 0, [](Map& m) { m.SetEventType(2, 9); }},
    {"colour", 1, 0, [](Map& m) { m.SetEventColor(0, 1); }},
    {"curve set", 1, 0, [](Map& m) { m.SetEventCurveSet(1, kOne, 1); }},
    {"curve map", 1, 0, [](Map& m) { m.SetEventCurveMap(2, 1); }},
    {"speed", 1, 0, [](Map& m) { m.SetEventSpeed(3, 1.25f); }},
    {"level", 1, 0, [](Map& m) { m.SetEventLevel(4, 1); }},
    {"pins of a colour", 1, 0, [](Map& m) { m.SetEventBindedPins(0, kOne, 1); }},
    {"pins of a set", 0, 0, [](Map& m) { m.SetEventBindedPins(1, nullptr, 0); }},
    {"pins of a map", 0, 0, [](Map& m) { m.SetEventBindedPins(2, kOne, 1); }},
    {"pins of a speed", 0, 0, [](Map& m) { m.SetEventBindedPins(3, kOne, 1); }},
    {"pins of a level", 1, 0, [](Map& m) { m.SetEventBindedPins(4, kOne, 1); }},
    {"level of a colour", 0, 0, [](Map& m) { m.SetEventLevel(0, 1); }},
    {"colour of a level", 0, 0, [](Map& m) { m.SetEventColor(4, 1); }},
    // Firmware and clocks
    {"timer", 1, 1, [](Map& m) { m.SetFirmwarePWMTimer("TMG1"); }},
    {"longer timer", 1, 1, [](Map& m) { m.SetFirmwarePWMTimer("TMG00"); }},
    {"case of timer", 0, 0, [](Map& m) { m.SetFirmwarePWMTimer("tmg0"); }},
    {"frequency", 1, 1, [](Map& m) { m.SetFirmwarePWMFrequency(1); }},
    {"used ram", 1, 1, [](Map& m) { m.SetUsedRAMSize(1); }},
    {"used stack", 0, 0, [](Map& m) { m.SetUsedStackSize(1); }},
    {"method", 1, 1, [](Map& m) { m.SetConvertMethod(1); }},
    {"first clock", 1, 1, [](Map& m) { m.SetFirstHwPwmSourceClk(1); }},
    {"last clock", 1, 1, [](Map& m) { m.SetHwPwmSourceClk(2, 1); }},
    {"clock count", 1, 1, [](Map& m) { m.SetHwPwmSourceClkCount(2); }},
    // Expanders
    {"expander count", 1, 1, [](Map& m) { m.SetIOExpanderCount(3); }},
    {"expander name", 1, 1, [](Map& m) { m.SetIOExpanderName(1, "iox24"); }},
    {"expander clock", 1, 1, [](Map& m) { m.SetIOExpanderClkSource(1, 2, 7, 1); }},
    {"expander current", 1, 1, [](Map& m) { m.SetIOExpanderCurrentType(0, 0, 0, 1); }},
    {"user control", 1, 1, [](Map& m) { m.SetUserCtrlIOExpEnable(0); }},
    {"select pin", 1, 1, [](Map& m) { m.SetIoExpanderSelectPin(1, 9, 6); }},
    {"select port", 1, 1, [](Map& m) { m.SetIoExpanderSelectPin(1, 8, 7); }},
    {"select count", 1, 1, [](Map& m) { m.SetIoExpanderSelectPinCount(1); }},
    // Embedded managers
    {"serial led", 1, 1, [](Map& m) { m.GetSerialLEDMgr()->SetSPIClock(1); }},
    {"motor", 1, 1, [](Map& m) { m.GetMotorModeMgr()->SetEnableMotorMode(0); }},
    // Runtime envelope
    {"envelope", 1, 1, [](Map& m) { m.SetRuntimeEnvelopEnabled(0); }},
    {"envelope group", 1, 1, [](Map& m) { m.SetRuntimeEnvelopSamplePerGroup(1); }},
    {"envelope active", 1, 1, [](Map& m) { m.SetRuntimeEnvelopActiveHigh(1); }},
    {"envelope gamma", 1, 1,
     [](Map& m) { m.SetRuntimeEnvelopGammaCP(MakePoints(3, 51).data(), 3); }},
    // What no comparison looks at
    {"dynamic curve", 0, 0, [](Map& m) { m.SetDynamicCurveEnable(0); }},
    {"dynamic table", 0, 0, [](Map& m) { m.SetDynamicCurveTable(nullptr, 0); }},
    {"wave length", 0, 0, [](Map& m) { m.SetLEDWaveLength(1, 2, 3); }},
    {"scale", 0, 0, [](Map& m) { m.SetLEDMixingScale(9); }},
    {"colour led", 0, 0, [](Map& m) { m.SetColorLEDx(1, 2, 3); }},
    {"host value", 0, 0, [](Map& m) { m.SetHostValue5(9); }},
    {"host pin", 0, 0, [](Map& m) { m.SetHostPinValue(0, 9); }},
};

TEST(PinMapCompare, EachValueCountsOrDoesNot) {
  for (const Case& test : kCases) {
    SCOPED_TRACE(test.name);
    C_VeloraPinMapInfoMgr base, changed;
    FillPinMap(base);
    FillPinMap(changed);
    test.change(changed);
    EXPECT_EQ(base.IsDifferent(nullptr, &changed, 1), test.different);
    EXPECT_EQ(changed.IsDifferent(nullptr, &base, 1), test.different);
    EXPECT_EQ(base.IsDifferent(nullptr, &changed, 0), test.different_without_events);
  }
}

TEST(PinMapCompare, PinsThatNobodyConvertsAreStale) {
  C_VeloraPinMapInfoMgr a, b;
  PinRecord record{};
  record.XResolution = 500;
  a.SetPin(7, 1, 2, 2, 3, 4, 5, &record);
  EXPECT_EQ(a.IsDifferent(nullptr, &b, 1), 0);
  record.Convert = 1;
  a.SetPin(7, 1, 2, 2, 3, 4, 5, &record);
  EXPECT_EQ(a.IsDifferent(nullptr, &b, 1), 1);
  EXPECT_EQ(b.IsDifferent(nullptr, &a, 1), 1);
}

TEST(PinMapCompare, NullDiffersAndItselfDoesNot) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  EXPECT_EQ(manager.IsDifferent(nullptr, nullptr, 1), 1);
  EXPECT_EQ(manager.IsDifferent(nullptr, &manager, 1), 0);
}

TEST(PinMapCompare, ValuesBehindTheEndOfAListDoNotCount) {
  C_VeloraPinMapInfoMgr a, b;
  const int32_t full[] = {1, 2, 3, 4};
  for (Map* map : {static_cast<Map*>(&a), static_cast<Map*>(&b)}) {
    map->SetEventColorCount(1);
    map->SetEventType(0, kEventCurveSet);
  }
  a.SetEventCurveSet(0, full, 4);
  a.SetEventCurveSet(0, full, 1);
  b.SetEventCurveSet(0, full, 1);
  EXPECT_EQ(a.IsDifferent(nullptr, &b, 1), 0);
}

/// What a manager saves, one line a key.
std::map<std::string, std::string> Saved(Map& map) {
  RecordingStore store;
  EXPECT_EQ(map.Save(&store), 1);
  return store.values;
}

TEST(PinMapCopy, CopiesWhatTheProjectStoresButSelectPinsAndUserControl) {
  C_VeloraPinMapInfoMgr source, copy;
  FillPinMap(source);
  source.SetHostValue1(5);
  copy.CopyFrom(nullptr, &source, 1);
  EXPECT_EQ(copy.GetUserCtrlIOExpEnable(), 0);
  EXPECT_EQ(copy.GetIoExpanderSelectPinCount(), 0);
  EXPECT_EQ(copy.GetHostValue1(), 0);
  EXPECT_EQ(copy.IsDifferent(nullptr, &source, 1), 1);

  copy.SetUserCtrlIOExpEnable(1);
  copy.SetIoExpanderSelectPin(0, 8, 3);
  copy.SetIoExpanderSelectPin(1, 9, 7);
  EXPECT_EQ(copy.IsDifferent(nullptr, &source, 1), 0);
  EXPECT_EQ(Saved(copy), Saved(source));
}

TEST(PinMapCopy, EventsOnlyIfAsked) {
  C_VeloraPinMapInfoMgr source, copy;
  FillPinMap(source);
  copy.SetEventColorCount(1);
  copy.SetEventLevel(0, 44);
  copy.CopyFrom(nullptr, &source, 0);
  EXPECT_EQ(copy.GetEventColorCount(), 1);
  EXPECT_EQ(copy.GetEventLevel(0), 44);
  EXPECT_EQ(copy.GetFirmwarePWMFrequency(), 120);
}

TEST(PinMapCopy, ReplacesLongerListsAndStandsAlone) {
  C_VeloraPinMapInfoMgr source, copy;
  FillPinMap(copy);
  copy.CopyFrom(nullptr, &source, 1);
  EXPECT_EQ(copy.GetHwPwmSourceClkCount(), 0);
  EXPECT_EQ(copy.GetIOExpanderCount(), 0);
  EXPECT_EQ(copy.GetEventColorCount(), 0);
  EXPECT_EQ(copy.GetDynamicCurveTable(nullptr), nullptr);
  int32_t count = 9;
  EXPECT_EQ(copy.GetMotorModeMgr()->GetServoPins(&count), nullptr);
  EXPECT_EQ(count, 0);
  const auto points = MakePoints(2, 3);
  PinRecord record{};
  record.Convert = 1;
  record.AdjustCurveCtrlPointNum = 2;
  record.AdjustCurveCtrlPoints = points.data();
  source.SetPin(0, 0, 0, 0, 0, 0, 0, &record);
  copy.CopyFrom(nullptr, &source, 1);
  source.SetPin(0, 0, 0, 0, 0, 0, 0, &(record = PinRecord{}));
  const auto* copied = copy.GetPin(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  ASSERT_EQ(uint32_t{copied->AdjustCurveCtrlPointNum}, 2u);
  EXPECT_EQ(copied->AdjustCurveCtrlPoints[1], points[1]);
}

TEST(PinMapCopy, NullAndItselfChangeNothing) {
  C_VeloraPinMapInfoMgr manager;
  FillPinMap(manager);
  const auto before = Saved(manager);
  manager.CopyFrom(nullptr, nullptr, 1);
  manager.CopyFrom(nullptr, &manager, 1);
  EXPECT_EQ(Saved(manager), before);
}

}  // namespace
}  // namespace velora::test
