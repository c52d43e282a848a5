// Stored levels, levels from point to point, and products of curves.
#include "CurveTools.h"
#include "curves/VLRAmplitudeModulationCurve.h"
#include "curves/VLRImageCtrlCurve.h"
#include "curves/VLRLevelCtrlCurve.h"
#include "curves/VLRNewImageCtrlCurve.h"
#include "curves/VLRSineCtrlCurve.h"
#include "curves/VLRSplineCtrlCurve.h"

namespace velora::test {
namespace {

using Points = std::vector<tagVLRCurveCtrlPoint>;

TEST(Image, DeliversItsTable) {
  const uint8_t table[] = {10, 20, 30};
  C_VLRImageCtrlCurve curve(100, 102, table);
  curve.SetLevelAt(1, 99);
  curve.SetLevelAt(3, 99);
  EXPECT_EQ(curve.GetLevelAt(3), 0);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{10, 99, 30}));
  curve.SetEnd(104);
  curve.SetInverted(1);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{245, 156, 225, 255, 255}));
  const std::unique_ptr<C_VLRUnitCtrlCurve> clone(curve.Clone());
  EXPECT_EQ(LevelsOf(*clone), LevelsOf(curve));
  curve.SetEnd(101);
  curve.SetInverted(0);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{10, 99}));
  curve.SetLevels(table);
  EXPECT_EQ(curve.GetLevelAt(2), 0) << "the table has the curve's length now";
  C_VLRImageCtrlCurve dark(5, 7);
  EXPECT_EQ(LevelsOf(dark), (std::vector<uint16_t>{0, 0, 0}));
}

C_VLRNewImageCtrlCurve& Fill(C_VLRNewImageCtrlCurve& curve, const Points& points) {
  for (const tagVLRCurveCtrlPoint& point : points) curve.AddPoint(point.Sample, point.Level);
  return curve;
}

TEST(NewImage, HoldsEachLevelToTheNextPoint) {
  C_VLRNewImageCtrlCurve curve(0, 300);
  Fill(curve, {{100, 7}, {200, 9}});
  std::vector<uint16_t> expected = Unwritten(301);
  std::fill(expected.begin() + 100, expected.begin() + 200, 7);
  std::fill(expected.begin() + 200, expected.end(), 9);
  EXPECT_EQ(LevelsOf(curve), expected);
}

TEST(NewImage, SearchesItsPointsFromTheLast) {
  Random random(5);
  for (int round = 0; round < 300; ++round) {
    Points points;
    const uint32_t count = random.Below(10);
    for (uint32_t i = 0; i < count; ++i) {
      points.push_back({random.Below(80), static_cast<uint8_t>(random.Below(256))});
    }
    C_VLRNewImageCtrlCurve curve(20, 60);
    Fill(curve, points).SetInverted(static_cast<uint8_t>(round % 2));
    std::vector<uint16_t> expected = Unwritten(41);
    for (uint32_t p = 20; p <= 60; ++p) {
      for (auto point = points.rbegin(); point != points.rend(); ++point) {
        if (point->Sample > p) continue;
        expected[p - 20] = round % 2 ? 255 - point->Level : point->Level;
        break;
      }
    }
    ASSERT_EQ(LevelsOf(curve), expected) << round;
  }
}

TEST(NewImage, MovesItsPoints) {
  struct Case {
    uint32_t start, newStart, limit;
    Points result;
  };
  for (const Case& c : {Case{100, 300, 900, {{280, 1}, {300, 2}, {350, 3}, {400, 4}}},
                        Case{100, 300, 350, {{280, 1}, {300, 2}}},
                        Case{100, 10, 900, {{80, 1}, {10, 2}, {60, 3}, {110, 4}}},
                        Case{100, 300, 300, {{80, 1}, {100, 2}, {150, 3}, {200, 4}}}}) {
    C_VLRNewImageCtrlCurve curve(c.start, 200);
    Fill(curve, {{80, 1}, {100, 2}, {150, 3}, {200, 4}});
    curve.Rebase(c.newStart, c.limit);
    EXPECT_EQ(curve.GetPoints(), c.result) << c.newStart;
  }
  C_VLRNewImageCtrlCurve curve(0, 9);
  Fill(curve, {{3, 1}, {9, 2}}).ScaleTime(0.5);
  EXPECT_EQ(curve.GetPoints(), (Points{{1, 1}, {4, 2}}));
  EXPECT_EQ(curve.GetEnd(), 4u);
}

TEST(NewImage, OpensAGap) {
  struct Case {
    uint32_t a, b;
    uint32_t end;
    Points points, result;
  };
  const Points three = {{10, 1}, {50, 2}, {60, 3}};
  const Case cases[] = {
      {50, 59, 110, three, {{10, 1}, {50, 0}, {60, 2}, {70, 3}}},
      {40, 59, 120, three, {{10, 1}, {40, 0}, {70, 2}, {80, 3}}},
      {61, 61, 101, three, three},                           // no point there
      {10, 10, 101, {{0, 5}, {10, 1}}, {{10, 0}, {11, 1}}},  // 0 is lost
      {20, 29, 110, {{0, 5}}, {}},
      {9, 20, 100, three, three},     // in front of Start
      {100, 110, 100, three, three},  // End itself
      {60, 59, 100, three, three},    // no length
  };
  for (const Case& c : cases) {
    C_VLRNewImageCtrlCurve curve(10, 100);
    Fill(curve, c.points).InsertGap(c.a, c.b);
    EXPECT_EQ(curve.GetEnd(), c.end) << &c - cases;
    EXPECT_EQ(curve.GetPoints(), c.result) << &c - cases;
  }
}

std::unique_ptr<C_VLRUnitCtrlCurve> Level(uint32_t count, uint8_t level) {
  return std::make_unique<C_VLRLevelCtrlCurve>(500, 499 + count, level);
}

TEST(AmplitudeModulation, MultipliesItsCurves) {
  struct Case {
    uint8_t first, second;
    std::vector<uint16_t> levels;
  };
  for (const Case& c :
       {Case{255, 128, {128, 128, 128, 128, 255}}, Case{128, 128, {64, 64, 128, 128, 255}},
        Case{0, 200, {0, 0, 200, 200, 255}}}) {
    C_VLRAmplitudeModulationCurve curve(10, 14);
    EXPECT_TRUE(curve.AddCurve(Level(2, c.first)));
    EXPECT_EQ(LevelsOf(curve), Unwritten(5)) << "one curve is not enough";
    EXPECT_TRUE(curve.AddCurve(Level(4, c.second)));
    curve.SetInverted(1);  // has no effect
    EXPECT_EQ(LevelsOf(curve), c.levels);
  }
}

TEST(AmplitudeModulation, IsTheCutProductForAllLevels) {
  C_VLRAmplitudeModulationCurve curve(0, 255);
  const tagVLRCurveCtrlPoint points[] = {{0, 0}, {255, 255}};
  curve.AddCurve(std::make_unique<C_VLRSplineCtrlCurve>(0, 255, 0, points, 2));
  curve.AddCurve(Level(256, 0));
  auto& factor = static_cast<C_VLRLevelCtrlCurve&>(*curve.GetCurve(1));
  for (int level = 0; level < 256; ++level) {
    factor.SetLevel(static_cast<uint8_t>(level));
    const auto levels = LevelsOf(curve);
    for (int i = 0; i < 256; ++i) {
      ASSERT_EQ(levels[static_cast<size_t>(i)],
                static_cast<int>(i / 255.0 * (level / 255.0) * 255.0));
    }
  }
}

TEST(AmplitudeModulation, RefusesAThirdCurve) {
  C_VLRAmplitudeModulationCurve curve(10, 14);
  EXPECT_FALSE(curve.AddCurve(nullptr));
  EXPECT_TRUE(curve.AddCurve(Level(2, 1)));
  EXPECT_TRUE(curve.AddCurve(Level(2, 2)));
  auto third = Level(2, 3);
  EXPECT_FALSE(curve.AddCurve(std::move(third)));
  EXPECT_NE(third, nullptr) << "it stays the caller's";
  EXPECT_EQ(curve.GetCurve(2), nullptr);
  EXPECT_EQ(curve.GetCurve(-1), nullptr);
}

TEST(AmplitudeModulation, TakesACurveThatGivesNothingAsZero) {
  C_VLRAmplitudeModulationCurve curve(0, 4);
  curve.AddCurve(Level(5, 200));
  curve.AddCurve(std::make_unique<C_VLRSineCtrlCurve>(0, 2, 0, 0, 255, 0, 10, 0, 0, 0, 0));
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{0, 0, 0, 200, 200}));
}

}  // namespace
}  // namespace velora::test
