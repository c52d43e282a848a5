#include <gtest/gtest.h>

#include "foundation/IniFile.h"
#include "pinmap/FilledPinMap.h"
#include "pinmap/RecordingStore.h"
#include "pinmap/VeloraMotorModeMgr.h"

namespace velora::test {
namespace {

std::vector<GPIOSectorInfo> BuildGpio(int32_t lines) {
  C_VeloraMotorModeMgr motor;
  int32_t count = -1;
  const GPIOSectorInfo* sectors = motor.BuildGPIOSectors(&lines, &count);
  EXPECT_EQ(sectors == nullptr, count == 0);
  return {sectors, sectors + count};
}

std::vector<ADCSectorInfo> BuildAdc(int32_t sectorCount, int32_t range) {
  C_VeloraMotorModeMgr motor;
  int32_t count = -1;
  const ADCSectorInfo* sectors = motor.BuildADCSectors(&sectorCount, &range, &count);
  EXPECT_EQ(sectors == nullptr, count == 0);
  return {sectors, sectors + count};
}

TEST(MotorSectors, Gpio) {
  EXPECT_EQ(BuildGpio(2), (std::vector<GPIOSectorInfo>{
                              {0, 0, 0, 90}, {1, 1, 91, 180}, {2, 2, 181, 270}, {3, 3, 271, 360}}));
  EXPECT_TRUE(BuildGpio(0).empty());
  EXPECT_TRUE(BuildGpio(-3).empty());
  EXPECT_TRUE(BuildGpio(31).empty());
  EXPECT_TRUE(BuildGpio(2147483647).empty());
  const auto fine = BuildGpio(9);  // 512 sectors of less than a degree
  ASSERT_EQ(fine.size(), 512u);
  EXPECT_EQ(fine[1], (GPIOSectorInfo{1, 1, 1, 1}));
  EXPECT_EQ(fine[2], (GPIOSectorInfo{2, 2, 2, 2}));
  EXPECT_EQ(fine[511].AngleRangeEnd, 360);
  // A sector between two whole degrees begins past its own end.
  const auto finer = BuildGpio(10);
  EXPECT_EQ(finer[1], (GPIOSectorInfo{1, 1, 1, 0}));
}

TEST(MotorSectors, Adc) {
  EXPECT_EQ(BuildAdc(3, 4095),
            (std::vector<ADCSectorInfo>{
                {0, 0, 1365, 0, 120}, {1, 1366, 2730, 121, 240}, {2, 2731, 4095, 241, 360}}));
  EXPECT_EQ(BuildAdc(1, 100), (std::vector<ADCSectorInfo>{{0, 0, 100, 0, 360}}));
  const auto seven = BuildAdc(7, 1000);
  EXPECT_EQ(seven[3], (ADCSectorInfo{3, 429, 571, 155, 205}));
  EXPECT_EQ(seven[6].ADCRangeEnd, 1000);
  // Rounding may leave the last angle below 360; the last reading is exact.
  const auto many = BuildAdc(49, 1023);
  EXPECT_EQ(many[48].ADCRangeEnd, 1023);
  EXPECT_EQ(many[48].AngleRangeEnd, static_cast<int32_t>(49 * (360.0 / 49)));
  EXPECT_TRUE(BuildAdc(0, 4095).empty());
  EXPECT_TRUE(BuildAdc(-1, 4095).empty());
  EXPECT_TRUE(BuildAdc(2147483647, 4095).empty());
}

TEST(MotorSectors, EachPointOfTheCircleHasOneSector) {
  for (int32_t sectors = 1; sectors <= 360; ++sectors) {
    const auto built = BuildAdc(sectors, 4095);
    for (size_t i = 1; i < built.size(); ++i) {
      ASSERT_EQ(built[i].AngleRangeStart, built[i - 1].AngleRangeEnd + 1) << sectors << " " << i;
      ASSERT_EQ(built[i].ADCRangeStart, built[i - 1].ADCRangeEnd + 1) << sectors << " " << i;
    }
  }
}

TEST(MotorMode, ModesFromThreeOnAreIgnored) {
  C_VeloraMotorModeMgr motor;
  for (const uint32_t mode : {2u, 3u, 0xFFFFFFFFu}) motor.SetMotorMode(&mode);
  EXPECT_EQ(motor.GetMotorMode(), 2u);
}

TEST(MotorMode, FindTakesTheFirstWithInclusiveEnds) {
  C_VeloraMotorModeMgr motor;
  const GPIOSectorInfo sectors[] = {{5, 0, 10, 20}, {1, 0, 20, 30}};
  for (const auto& sector : sectors) motor.AddGPIOSector(&sector);
  const auto find = [&motor](int32_t angle) {
    const auto* found = motor.FindGPIOSectorByAngle(&angle);
    return found ? found->SectorIndex : -1;
  };
  EXPECT_EQ(find(9), -1);
  EXPECT_EQ(find(10), 5);
  EXPECT_EQ(find(20), 5);
  EXPECT_EQ(find(21), 1);
  EXPECT_EQ(find(30), 1);
  EXPECT_EQ(find(31), -1);
  const int32_t outside[] = {-1, 2};
  EXPECT_EQ(motor.GetGPIOSectorAt(&outside[0]), nullptr);
  EXPECT_EQ(motor.GetGPIOSectorAt(&outside[1]), nullptr);
}

TEST(MotorMode, IndicesAndPinsAreUnique) {
  C_VeloraMotorModeMgr motor;
  const GPIOSectorInfo sector{1, 2, 3, 4};
  const GPIOSectorInfo again{1, 9, 9, 9};
  EXPECT_EQ(motor.AddGPIOSector(&sector), 1);
  EXPECT_EQ(motor.AddGPIOSector(&again), 0);
  int32_t count = 0;
  EXPECT_EQ(motor.GetGPIOSectors(&count)[0], sector);
  EXPECT_EQ(count, 1);
  motor.ClearGPIOSectors();
  EXPECT_EQ(motor.AddGPIOSector(&again), 1);
  const int32_t pin = -4;
  EXPECT_EQ(motor.HasServoPin(&pin), 0);
  EXPECT_EQ(motor.AddServoPin(&pin), 1);
  EXPECT_EQ(motor.AddServoPin(&pin), 0);
  EXPECT_EQ(motor.HasServoPin(&pin), 1);
}

TEST(MotorMode, NullArguments) {
  C_VeloraMotorModeMgr motor;
  int32_t count = 9;
  motor.SetMotorMode(nullptr);
  motor.SetGPIOCount(nullptr);
  EXPECT_EQ(motor.BuildGPIOSectors(nullptr, &count), nullptr);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(motor.BuildADCSectors(&count, nullptr, nullptr), nullptr);
  EXPECT_EQ(motor.AddADCSector(nullptr), 0);
  EXPECT_EQ(motor.FindADCSectorByAngle(nullptr), nullptr);
  EXPECT_EQ(motor.GetADCSectorAt(nullptr), nullptr);
  EXPECT_EQ(motor.AddServoPin(nullptr), 0);
  EXPECT_EQ(motor.GetServoPins(nullptr), nullptr);
}

TEST(MotorMode, AngleToServoLevel) {
  C_VeloraMotorModeMgr motor;
  const std::pair<int32_t, int> levels[] = {{0, 12},   {90, 19},   {180, 25},
                                            {360, 38}, {361, 255}, {-1, 255}};
  for (const auto& level : levels) {
    EXPECT_EQ(motor.AngleToServoLevel(&level.first), level.second) << level.first;
  }
}

const struct {
  const char* name;
  void (*change)(I_VeloraMotorModeMgr&);
} kChanges[] = {
    {"enable", [](I_VeloraMotorModeMgr& m) { m.SetEnableMotorMode(0); }},
    {"mode",
     [](I_VeloraMotorModeMgr& m) {
       const uint32_t v = 1;
       m.SetMotorMode(&v);
     }},
    {"gpio count",
     [](I_VeloraMotorModeMgr& m) {
       const int32_t v = 9;
       m.SetGPIOCount(&v);
     }},
    {"adc count",
     [](I_VeloraMotorModeMgr& m) {
       const int32_t v = 9;
       m.SetADCSectorCount(&v);
     }},
    {"one more gpio sector",
     [](I_VeloraMotorModeMgr& m) {
       const GPIOSectorInfo s{7, 0, 0, 0};
       m.AddGPIOSector(&s);
     }},
    {"one more adc sector",
     [](I_VeloraMotorModeMgr& m) {
       const ADCSectorInfo s{7, 0, 0, 0, 0};
       m.AddADCSector(&s);
     }},
    {"no adc sectors", [](I_VeloraMotorModeMgr& m) { m.ClearADCSectors(); }},
    {"one more pin",
     [](I_VeloraMotorModeMgr& m) {
       const int32_t v = 1;
       m.AddServoPin(&v);
     }},
    {"order of pins",
     [](I_VeloraMotorModeMgr& m) {
       m.ClearServoPins();
       for (const int32_t pin : {14, 3, 25}) m.AddServoPin(&pin);
     }},
};

TEST(MotorMode, EveryValueCountsAndIsCopied) {
  for (const auto& test : kChanges) {
    SCOPED_TRACE(test.name);
    C_VeloraMotorModeMgr base, changed;
    FillMotor(base);
    FillMotor(changed);
    EXPECT_EQ(base.IsSame(&changed), 1);
    test.change(changed);
    EXPECT_EQ(base.IsSame(&changed), 0);
    base.CopyFrom(&changed);
    EXPECT_EQ(base.IsSame(&changed), 1);
  }
  C_VeloraMotorModeMgr motor, filled;
  FillMotor(motor);
  FillMotor(filled);
  EXPECT_EQ(motor.IsSame(nullptr), 1);
  motor.CopyFrom(nullptr);
  motor.CopyFrom(&motor);
  EXPECT_EQ(motor.IsSame(&filled), 1);
}

TEST(MotorMode, EachFieldOfASectorCounts) {
  const ADCSectorInfo base{1, 2, 3, 4, 5};
  for (const auto field :
       {&ADCSectorInfo::SectorIndex, &ADCSectorInfo::ADCRangeStart, &ADCSectorInfo::ADCRangeEnd,
        &ADCSectorInfo::AngleRangeStart, &ADCSectorInfo::AngleRangeEnd}) {
    C_VeloraMotorModeMgr a, b;
    ADCSectorInfo changed = base;
    changed.*field += 1;
    a.AddADCSector(&base);
    b.AddADCSector(&changed);
    EXPECT_EQ(a.IsSame(&b), 0);
  }
}

TEST(MotorStore, SaveSortsAndReplacesALongerTable) {
  C_VeloraMotorModeMgr motor;
  FillMotor(motor);
  C_CUIniFile store;
  motor.Save(&store);
  C_VeloraMotorModeMgr small;
  for (const int32_t index : {8, 2}) {
    const GPIOSectorInfo sector{index, 1, 2, 3};
    small.AddGPIOSector(&sector);
    small.AddServoPin(&index);
  }
  EXPECT_EQ(small.Save(&store), 1);
  EXPECT_EQ(store.GetInt("VLRMotorInfo", "GPIOSectorInfo0_SectorIndex", -1), 2);
  EXPECT_EQ(store.GetInt("VLRMotorInfo", "ServoMode1_PinIndex", -1), 8);
  EXPECT_EQ(store.GetInt("VLRMotorInfo", "GPIOSectorInfo2_SectorIndex", -1), -1);
  EXPECT_EQ(store.GetInt("VLRMotorInfo", "ADCSectorInfo0_SectorIndex", -1), -1);
  int32_t count = 0;
  EXPECT_EQ(small.GetGPIOSectors(&count)[0].SectorIndex, 2);
  EXPECT_EQ(small.GetServoPins(&count)[0], 2);
}

TEST(MotorStore, RoundTripReplacesTheTables) {
  C_VeloraMotorModeMgr motor, loaded;
  FillMotor(motor);
  C_CUIniFile store;
  EXPECT_EQ(motor.Save(&store), 1);
  const GPIOSectorInfo other{77, 1, 2, 3};
  loaded.AddGPIOSector(&other);
  EXPECT_EQ(loaded.Load(&store), 1);
  EXPECT_EQ(loaded.IsSame(&motor), 1);
  EXPECT_EQ(motor.Save(nullptr), 0);
  EXPECT_EQ(motor.Load(nullptr), 0);
}

TEST(MotorStore, LoadDropsRepeatedIndicesAndBadModes) {
  C_CUIniFile store;
  store.LoadText(
      "[VLRMotorInfo]\nMotorMode = 3\nGPIOSectorInfoCount = 3\n"
      "GPIOSectorInfo0_SectorIndex = 4\nGPIOSectorInfo0_GPIOValue = 1\n"
      "GPIOSectorInfo1_SectorIndex = 4\nGPIOSectorInfo1_GPIOValue = 2\n"
      "ServoModePinIndexCount = 2\nServoMode0_PinIndex = 5\nServoMode1_PinIndex = 5\n");
  C_VeloraMotorModeMgr motor;
  const uint32_t mode = 1;
  motor.SetMotorMode(&mode);
  motor.SetEnableMotorMode(8);
  motor.Load(&store);
  EXPECT_EQ(motor.GetMotorMode(), 1u);
  EXPECT_EQ(motor.GetEnableMotorMode(), 8);
  int32_t count = 0;
  const GPIOSectorInfo* sectors = motor.GetGPIOSectors(&count);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(sectors[0], (GPIOSectorInfo{4, 1, 0, 0}));
  EXPECT_EQ(sectors[1], (GPIOSectorInfo{0, 0, 0, 0}));
  motor.GetServoPins(&count);
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace velora::test
