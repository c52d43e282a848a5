// Splines and polylines: their levels against the plain way, and the list of
// points.
#include <algorithm>

#include "CurveTools.h"
#include "PlainSpline.h"
#include "curves/VLRPolylineCtrlCurve.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

template <typename Curve>
std::vector<uint16_t> LevelsThrough(const Points& points, uint32_t start, uint32_t end,
                                    bool inverted = false) {
  Curve curve(start, end, 0, points.data(), static_cast<uint16_t>(points.size()));
  curve.SetInverted(inverted ? 1 : 0);
  return LevelsOf(curve);
}

Points PointsOf(const C_VLRSplineCtrlCurve& curve) {
  Points points;
  for (int32_t i = 0; i < curve.Count(); ++i) points.push_back(curve.ValueAt(i));
  return points;
}

std::vector<uint32_t> IdsOf(const C_VLRSplineCtrlCurve& curve) {
  std::vector<uint32_t> ids;
  for (int32_t i = 0; i < curve.Count(); ++i) ids.push_back(curve.IDAt(i));
  return ids;
}

void ExpectPlainLevels(const Points& points, uint32_t start, uint32_t end) {
  for (const bool inverted : {false, true}) {
    EXPECT_EQ(LevelsThrough<C_VLRSplineCtrlCurve>(points, start, end, inverted),
              PlainSpline(points).Smooth(start, end, inverted));
    EXPECT_EQ(LevelsThrough<C_VLRPolylineCtrlCurve>(points, start, end, inverted),
              PlainSpline(points).Lines(start, end, inverted));
  }
}

/// Rising points; distances from 0 up to `spread` - 1, of which some are long.
Points RandomPoints(Random& random, uint32_t spread) {
  Points points;
  uint32_t sample = random.Below(50);
  const uint32_t count = 2 + random.Below(12);
  for (uint32_t i = 0; i < count; ++i) {
    points.push_back({sample, static_cast<uint8_t>(random.Below(4) ? random.Below(256)
                                                                   : 255 * random.Below(2))});
    sample += random.Below(5) ? random.Below(spread) : random.Below(spread * 20);
  }
  return points;
}

TEST(Spline, IsThatOfThePlainWay) {
  Random random(1);
  for (int round = 0; round < 600; ++round) {
    const Points points = RandomPoints(random, round % 3 == 0 ? 8 : 150);
    SCOPED_TRACE(round);
    ExpectPlainLevels(points, points.front().Sample, points.back().Sample);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(Spline, ShowsAnyPartOfTheWholeRow) {
  Random random(2);
  for (int round = 0; round < 600; ++round) {
    const Points points = RandomPoints(random, 60);
    const uint32_t start = random.Below(points.back().Sample + 40);
    const uint32_t end = start + random.Below(300);
    SCOPED_TRACE(testing::Message() << round << ": " << start << ".." << end);
    ExpectPlainLevels(points, start, end);
    if (testing::Test::HasFailure()) return;
  }
}

TEST(Spline, TakesPointsThatFallBackAsThePlainWayDoes) {
  ExpectPlainLevels({{0, 10}, {20, 200}, {12, 100}, {40, 0}, {50, 90}}, 0, 60);
  ExpectPlainLevels({{0, 10}, {20, 200}, {12, 100}, {14, 7}}, 0, 20);
}

TEST(Spline, OfFewOrFallingPointsIsNotWritten) {
  for (const Points& points :
       {Points{}, Points{{5, 7}}, Points{{9, 0}, {5, 7}}, Points{{9, 0}, {20, 5}, {8, 7}}}) {
    EXPECT_EQ(LevelsThrough<C_VLRSplineCtrlCurve>(points, 0, 30), Unwritten(31));
    EXPECT_EQ(LevelsThrough<C_VLRPolylineCtrlCurve>(points, 0, 30), Unwritten(31));
  }
}

TEST(Spline, GoesStraightBetweenTwoPoints) {
  std::vector<uint16_t> identity;
  for (uint16_t i = 0; i <= 100; ++i) identity.push_back(i);
  const Points points = {{0, 0}, {100, 100}};
  EXPECT_EQ(LevelsThrough<C_VLRSplineCtrlCurve>(points, 0, 100), identity);
  EXPECT_EQ(LevelsThrough<C_VLRSplineCtrlCurve>(points, 0, 100, true), Inverse(identity));
  EXPECT_EQ(LevelsThrough<C_VLRSplineCtrlCurve>({{7, 40}, {7, 60}}, 6, 8),
            (std::vector<uint16_t>{60, 60, 60}));
}

TEST(Spline, StaysWithinTheLevels) {
  // A steep rise between two plateaus makes the curve swing past both.
  const Points points = {{0, 0}, {10, 0}, {30, 0}, {32, 255}, {52, 255}, {60, 255}};
  const auto levels = LevelsThrough<C_VLRSplineCtrlCurve>(points, 0, 60);
  EXPECT_LE(*std::ranges::max_element(levels), 255);
  EXPECT_EQ(levels[25], 0) << "below";
  EXPECT_EQ(levels[40], 255) << "above";
}

TEST(Spline, OfAHugeRowTakesNoMemoryForIt) {
  const Points points = {{0, 0}, {1000, 255}, {2000, 100}, {0xFFFFFFFF, 100}};
  const auto levels = LevelsThrough<C_VLRSplineCtrlCurve>(points, 0, 2000);
  EXPECT_EQ(levels[1000], 255);
  EXPECT_EQ(LevelsThrough<C_VLRPolylineCtrlCurve>(points, 0xFFFFFFF0, 0xFFFFFFFF),
            std::vector<uint16_t>(16, 100));
}

TEST(Polyline, PassesOverPairsThatDoNotRise) {
  EXPECT_EQ(LevelsThrough<C_VLRPolylineCtrlCurve>({{0, 0}, {0, 250}, {5, 0}}, 0, 5),
            (std::vector<uint16_t>{250, 200, 150, 100, 50, 0}));
}

TEST(SplinePoints, AreScaledAsEndsOfTheirSamples) {
  struct Case {
    double ratio;
    Points result;
  };
  for (const Case& c : {Case{2, {{1, 1}, {21, 2}, {201, 3}}}, Case{0.4, {{0, 1}, {3, 2}, {39, 3}}},
                        Case{1e9, {{999999999, 1}, {0xFFFFFFFE, 2}, {0xFFFFFFFE, 3}}},
                        Case{-1, {{0, 1}, {0, 2}, {0, 3}}}}) {
    const Points points = {{0, 1}, {10, 2}, {100, 3}};
    C_VLRSplineCtrlCurve curve(0, 100, 0, points.data(), 3);
    curve.ScaleTime(c.ratio);
    EXPECT_EQ(PointsOf(curve), c.result) << c.ratio;
  }
}

TEST(SplinePoints, AreRemapped) {
  struct Case {
    Points points;
    uint32_t a, b, c, d;
    bool done;
    Points result;
  };
  const Points three = {{100, 1}, {150, 2}, {199, 3}};
  const Case cases[] = {
      {three, 100, 199, 0, 9, true, {{0, 1}, {5, 2}, {9, 3}}},
      {three, 100, 199, 1000, 1999, true, {{1000, 1}, {1500, 2}, {1999, 3}}},
      {{{100, 1}, {101, 2}, {199, 3}}, 100, 199, 7, 16, true, {{7, 1}, {8, 2}, {16, 3}}},
      {{{100, 1}, {50, 2}, {199, 3}}, 100, 199, 0, 99, true, {{0, 1}, {50, 2}, {99, 3}}},
      {three, 100, 100, 0, 9, false, three},
      {three, 199, 100, 0, 9, false, three},
      {three, 100, 199, 9, 9, false, three},
      {{}, 100, 199, 0, 9, true, {}},
      {{{100, 1}}, 100, 199, 0, 9, true, {{9, 1}}},
      {three, 0, 0xFFFFFFFF, 0, 0xFFFFFFFF, true, {{0, 1}, {150, 2}, {0xFFFFFFFF, 3}}},
  };
  for (const Case& c : cases) {
    C_VLRPolylineCtrlCurve curve(5, 6, 0, c.points.data(), static_cast<uint16_t>(c.points.size()));
    EXPECT_EQ(curve.RemapPoints(c.a, c.b, c.c, c.d), c.done) << &c - cases;
    EXPECT_EQ(PointsOf(curve), c.result) << &c - cases;
    EXPECT_EQ(curve.GetStart(), 5u);
  }
}

TEST(SplinePoints, AreCutAtTheLimit) {
  struct Case {
    uint32_t start;
    Points points;
    uint32_t newStart, limit;
    Points result;
  };
  const Case cases[] = {
      {0, {{0, 0}, {100, 100}}, 0, 50, {{0, 0}, {50, 50}}},
      {0, {{0, 0}, {50, 10}, {100, 100}, {120, 5}}, 10, 80, {{10, 0}, {60, 10}, {80, 46}}},
      {0, {{0, 0}, {50, 10}, {100, 100}}, 10, 500, {{10, 0}, {60, 10}, {110, 100}}},
      {0, {{0, 200}, {100, 0}}, 0, 33, {{0, 200}, {33, 134}}},
      {0, {{0, 7}, {40, 9}, {60, 200}}, 10, 50, {{10, 7}, {50, 9}, {50, 9}}},
      {0, {{90, 7}, {100, 100}}, 10, 50, {{50, 7}}},
      {50, {{20, 1}, {60, 2}}, 10, 100, {{0xFFFFFFEC, 1}, {20, 2}}},
      {0, {{0, 1}, {60, 2}}, 50, 50, {{0, 1}, {60, 2}}},
  };
  for (const Case& c : cases) {
    C_VLRSplineCtrlCurve curve(c.start, c.start + 100, 0, c.points.data(),
                               static_cast<uint16_t>(c.points.size()));
    curve.Rebase(c.newStart, c.limit);
    EXPECT_EQ(PointsOf(curve), c.result) << &c - cases;
  }
}

TEST(SplinePoints, GiveTheirIdsBackFromTheLast) {
  const Points points = {{0, 0}, {10, 0}, {20, 0}, {30, 0}, {40, 0}};
  C_VLRSplineCtrlCurve curve(0, 40, 0, points.data(), 5);
  curve.Rebase(0, 15);
  EXPECT_EQ(IdsOf(curve), (std::vector<uint32_t>{1, 2, 3}));
  curve.Add({50, 0}, nullptr);
  curve.Add({60, 0}, nullptr);
  EXPECT_EQ(IdsOf(curve), (std::vector<uint32_t>{1, 2, 3, 4, 5}));
}

TEST(SplinePoints, AreMovedWithANewId) {
  struct Case {
    int32_t from, to;
    bool done;
    std::vector<uint32_t> samples, ids;
  };
  for (const Case& c :
       {Case{0, 2, true, {1, 0, 2}, {2, 4, 3}}, Case{2, 0, true, {2, 0, 1}, {4, 1, 2}},
        Case{0, 3, true, {1, 2, 0}, {2, 3, 4}}, Case{1, 1, true, {0, 1, 2}, {1, 2, 3}},
        Case{0, 4, false, {0, 1, 2}, {1, 2, 3}}, Case{3, 0, false, {0, 1, 2}, {1, 2, 3}},
        Case{-1, 0, false, {0, 1, 2}, {1, 2, 3}}, Case{0, -1, false, {0, 1, 2}, {1, 2, 3}}}) {
    const Points points = {{0, 5}, {1, 6}, {2, 7}};
    C_VLRSplineCtrlCurve curve(0, 2, 0, points.data(), 3);
    EXPECT_EQ(curve.MovePoint(c.from, c.to), c.done);
    std::vector<uint32_t> samples;
    for (const auto& element : curve) {
      const uint32_t sample = element.Value.Sample;
      samples.push_back(sample);
      EXPECT_EQ(element.Value.Level, element.Value.Sample + 5);
    }
    EXPECT_EQ(samples, c.samples) << c.from << " to " << c.to;
    EXPECT_EQ(IdsOf(curve), c.ids) << c.from << " to " << c.to;
    uint32_t next = 0;
    curve.Add(9, 9, &next);
    EXPECT_EQ(next, c.done && c.from != c.to ? static_cast<uint32_t>(c.from + 1) : 4u);
  }
}

TEST(SplinePoints, AreCopiedIntoPlace) {
  C_VLRSplineCtrlCurve curve(0, 9, 0);
  curve.InsertCopies(2, 5, 50, 3);
  EXPECT_EQ(PointsOf(curve), Points(5, {5, 50}));
  EXPECT_EQ(IdsOf(curve), (std::vector<uint32_t>{1, 2, 5, 4, 3}));
  curve.InsertCopies(1, 4, 40, 1);
  EXPECT_EQ(PointsOf(curve)[1], (tagVLRCurveCtrlPoint{4, 40}));
  curve.InsertCopies(-1, 4, 40, 1);
  curve.InsertCopies(0, 4, 40, -1);
  EXPECT_EQ(curve.GetPointCount(), 6);
  EXPECT_FALSE(curve.InsertAt(7, 1, 1, nullptr));
}

TEST(SplinePoints, HaveTheListTableFirst) {
  const Points points = {{0, 5}, {10, 6}};
  C_VLRPolylineCtrlCurve curve(0, 20, 3);
  const RawTable table(static_cast<C_VLRSplineCtrlCurve*>(&curve));
  table.Call<void>(11, points.data(), uint16_t{2});
  EXPECT_EQ(table.Call<uint16_t>(10), 2);
  EXPECT_EQ(table.Call<int32_t>(0), 2);
  tagVLRCurveCtrlPoint point{};
  uint32_t id = 0;
  EXPECT_EQ(table.Call<int32_t>(5, int32_t{1}, &point, &id), 1);
  EXPECT_EQ(point, points[1]);
  EXPECT_EQ(id, 2u);
  EXPECT_TRUE(table.Call<bool>(12, uint32_t{0}, uint32_t{10}, uint32_t{0}, uint32_t{20}));
  EXPECT_EQ(PointsOf(curve)[1], (tagVLRCurveCtrlPoint{20, 6}));

  const RawTable curveTable(static_cast<C_VLRUnitCtrlCurve*>(&curve));
  EXPECT_EQ(curveTable.Call<uint32_t>(2), uint32_t{kCurvePolyline});
  EXPECT_EQ(curveTable.Call<uint32_t>(15), 3u);
}

}  // namespace
}  // namespace velora::test
