// Stores that claim more than they hold.
#include <gtest/gtest.h>

#include <limits>

#include "pinmap/ProjectSection.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora::test {
namespace {

constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();

struct List {
  const char* section;
  const char* count_key;
  size_t entry_bytes;
  int32_t (*size)(I_VeloraPinMapInfoMgr&);
};

using Map = I_VeloraPinMapInfoMgr;

template <auto Get>
int32_t PointsOf(Map& map) {
  int32_t count = 0;
  (map.*Get)(&count);
  return count;
}

const List kLists[] = {
    {"VeloraPinMapInfo", "MaxEventColorNumber", sizeof(EventColorInfo),
     [](Map& m) { return m.GetEventColorCount(); }},
    {"VeloraPinMapInfo", "DynamicCurveNumber", 4,
     [](Map& m) { return m.GetDynamicCurveColorCount(); }},
    {"VeloraPinMapInfo", "DynamicCurveTableCPNum", 5, &PointsOf<&Map::GetDynamicCurveTable>},
    {"VeloraPinMapInfo", "IOExpanderNum", sizeof(IOExpanderInfo),
     [](Map& m) { return m.GetIOExpanderCount(); }},
    {"VeloraPinMapInfo", "IoExpanderSelectPinNum", 4,
     [](Map& m) { return m.GetIoExpanderSelectPinCount(); }},
    {"VeloraPinMapInfo", "HwPwmSourceClkGrpNum", 4,
     [](Map& m) { return m.GetHwPwmSourceClkCount(); }},
    {"VeloraPinMapInfo", "RuntimeEnvelopGammaCPNum", 5, &PointsOf<&Map::GetRuntimeEnvelopGammaCP>},
    {"VeloraPinMapInfo", "SLED_AdjustCurveCtrlPointNum", 5,
     [](Map& m) {
       int32_t count = 0;
       m.GetSerialLEDMgr()->GetAdjustCurve(&count);
       return count;
     }},
};

/// These tests make many calls and look at none.
struct QuietStore : RecordingStore {
  QuietStore() { records_calls = false; }
};

TEST(HostileStore, NegativeCountsAreNone) {
  for (const List& list : kLists) {
    for (const char* claim : {"-1", "-2147483648"}) {
      SCOPED_TRACE(list.count_key);
      QuietStore store;
      store.values[std::string(list.section) + '/' + list.count_key] = claim;
      C_VeloraPinMapInfoMgr manager;
      EXPECT_EQ(manager.Load(&store), 1);
      EXPECT_EQ(list.size(manager), 0);
    }
  }
}

TEST(HostileStore, AClaimWithoutLabelsTakesOneMegabyte) {
  for (const List& list : kLists) {
    SCOPED_TRACE(list.count_key);
    QuietStore store;
    store.values[std::string(list.section) + '/' + list.count_key] = std::to_string(kLargest);
    C_VeloraPinMapInfoMgr manager;
    EXPECT_EQ(manager.Load(&store), 1);
    EXPECT_GT(list.size(manager), 1000);
    EXPECT_LE(static_cast<size_t>(list.size(manager)) * list.entry_bytes, size_t{1} << 20);
  }
}

TEST(HostileStore, AllClaimsTogetherTakeOneMegabyte) {
  QuietStore store;
  for (const List& list : kLists) {
    store.values[std::string(list.section) + '/' + list.count_key] = std::to_string(kLargest);
  }
  for (int pin = 0; pin < 32; ++pin) {
    store.values["VeloraPinMapInfo/Pin" + std::to_string(pin) + "_AdjustCurveCtrlPointNum"] =
        "65535";
  }
  C_VeloraPinMapInfoMgr manager;
  EXPECT_EQ(manager.Load(&store), 1);
  size_t bytes = 0;
  for (uint32_t pin = 0; pin < 32; ++pin) {
    const auto* record = manager.GetPin(pin, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    bytes += size_t{record->AdjustCurveCtrlPointNum} * 5;
  }
  for (const List& list : kLists) {
    bytes += static_cast<size_t>(list.size(manager)) * list.entry_bytes;
  }
  // Twice: the serial LEDs read on their own. Every list may still have what the few
  // labels of this store could make up.
  EXPECT_LE(bytes, (size_t{2} << 20) + 40 * store.values.size() * sizeof(IOExpanderInfo));
}

TEST(HostileStore, MotorTablesAreBounded) {
  QuietStore store;
  for (const char* key : {"GPIOSectorInfoCount", "ADCSectorInfoCount", "ServoModePinIndexCount"}) {
    store.values[std::string("VLRMotorInfo/") + key] = std::to_string(kLargest);
  }
  C_VeloraMotorModeMgr manager;
  EXPECT_EQ(manager.Load(&store), 1);
  int32_t count = 0;
  manager.GetGPIOSectors(&count);
  EXPECT_EQ(count, 1);  // entries without keys are all 0, and of those one stays
}

TEST(HostileStore, LabelsBackALongList) {
  QuietStore store;
  constexpr int kPoints = 300000;  // past what is free
  store.values["VeloraPinMapInfo/RuntimeEnvelopGammaCPNum"] = std::to_string(kPoints);
  for (int p = 0; p < kPoints; ++p) {
    const std::string start = "VeloraPinMapInfo/RuntimeEnvelopGammaCP" + std::to_string(p);
    store.values.emplace(start + "_X", std::to_string(p));
    store.values.emplace(start + "_Y", "7");
  }
  C_VeloraPinMapInfoMgr manager;
  manager.Load(&store);
  int32_t count = 0;
  const auto* points = manager.GetRuntimeEnvelopGammaCP(&count);
  ASSERT_EQ(count, kPoints);
  EXPECT_EQ(points[kPoints - 1], (tagVLRCurveCtrlPoint{kPoints - 1, 7}));
}

TEST(KeyText, ExpandsItsIndicesAndNeverOverruns) {
  EXPECT_STREQ(KeyText("Plain").c_str(), "Plain");
  EXPECT_STREQ(KeyText("A%d.%d_%d", 0, -2147483647 - 1, 42).c_str(), "A0.-2147483648_42");
  EXPECT_STREQ(KeyText("100%", 1).c_str(), "100%");
  const std::string tooLong(200, 'x');
  EXPECT_STREQ(KeyText(tooLong.c_str()).c_str(), tooLong.c_str() + 200 - 79);
}

}  // namespace
}  // namespace velora::test
