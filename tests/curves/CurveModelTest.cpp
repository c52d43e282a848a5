// The base of the curves: range, moving, point block, clones, order of the table.
#include <array>
#include <limits>

#include "CurveTools.h"
#include "curves/VLRAmplitudeModulationCurve.h"
#include "curves/VLRColorEnvelopCtrlCurve.h"
#include "curves/VLREnergyCtrlCurve.h"
#include "curves/VLREnvelopCtrlCurve.h"
#include "curves/VLRFlashCtrlCurve.h"
#include "curves/VLRImageCtrlCurve.h"
#include "curves/VLRLevelCtrlCurve.h"
#include "curves/VLRNewImageCtrlCurve.h"
#include "curves/VLRPolylineCtrlCurve.h"
#include "curves/VLRRampCtrlCurve.h"
#include "curves/VLRSineCtrlCurve.h"
#include "curves/VLRTriangleCtrlCurve.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

constexpr uint32_t kMax = 0xFFFFFFFF;

TEST(CurveModel, CountsItsSamples) {
  struct Case {
    uint32_t start, end, count;
    bool valid;
  };
  for (const Case& c : {Case{10, 19, 10, true}, Case{10, 11, 2, true}, Case{10, 10, 1, false},
                        Case{10, 9, 1, false}, Case{kMax, 0, 1, false}, Case{0, kMax, 0, false},
                        Case{1, kMax, kMax, true}}) {
    const C_VLRLevelCtrlCurve curve(c.start, c.end, 1);
    EXPECT_EQ(curve.GetSampleCount(), c.count) << c.start << ".." << c.end;
    EXPECT_EQ(curve.IsValid(), c.valid) << c.start << ".." << c.end;
  }
}

TEST(CurveModel, ScalesItsBounds) {
  struct Case {
    uint32_t start, end;
    double ratio;
    uint32_t newStart, newEnd;
  };
  const Case cases[] = {
      {1001, 2001, 0.5, 500, 1000},
      {1, 3, 0.34, 0, 1},
      {10, 20, -1.5, 0, 0},
      {10, 0xC0000000, 4, 40, kMax},
      {10, 20, std::numeric_limits<double>::quiet_NaN(), 0, 0},
      {10, 20, std::numeric_limits<double>::infinity(), kMax, kMax},
  };
  for (const Case& c : cases) {
    C_VLRLevelCtrlCurve curve(c.start, c.end, 1);
    curve.ScaleTime(c.ratio);
    EXPECT_EQ(curve.GetStart(), c.newStart) << c.ratio;
    EXPECT_EQ(curve.GetEnd(), c.newEnd) << c.ratio;
  }
}

TEST(CurveModel, RebasesWithinTheLimit) {
  struct Case {
    uint32_t start, end, newStart, limit, resultStart, resultEnd;
  };
  const Case cases[] = {
      {0, 100, 100, 150, 100, 150},
      {0, 100, 100, 200, 100, 200},
      {0, 100, 100, 1000, 100, 200},
      {7, 107, 150, 150, 7, 107},
      {7, 107, 151, 150, 7, 107},
      {50, 20, 10, 15, 10, 10},
      {0, 100, kMax - 5, kMax, kMax - 5, kMax},
      {0, kMax, 5, 900, 5, 900},
  };
  for (const Case& c : cases) {
    C_VLRLevelCtrlCurve curve(c.start, c.end, 1);
    curve.Rebase(c.newStart, c.limit);
    EXPECT_EQ(curve.GetStart(), c.resultStart) << c.newStart << " of " << c.limit;
    EXPECT_EQ(curve.GetEnd(), c.resultEnd) << c.newStart << " of " << c.limit;
  }
}

TEST(CurveModel, OffsetsWrap) {
  const C_VLRLevelCtrlCurve a(100, 200, 1);
  const C_VLRLevelCtrlCurve b(50, 230, 1);
  EXPECT_EQ(a.OffsetStartToStart(&b), static_cast<uint32_t>(-50));
  EXPECT_EQ(a.OffsetStartToEnd(&b), 130u);
  EXPECT_EQ(a.OffsetEndToStart(&b), static_cast<uint32_t>(-150));
  EXPECT_EQ(a.OffsetEndToEnd(&b), 30u);
}

TEST(CurveModel, KeepsACopyOfThePointBlock) {
  C_VLRLevelCtrlCurve curve(3, 5, 1);
  std::array<std::byte, 15> bytes{};
  bytes[0] = std::byte{1};
  bytes[14] = std::byte{2};
  EXPECT_EQ(curve.GetPointBlock(), nullptr);
  EXPECT_EQ(curve.SetPointBlock(nullptr, 3, 5), 2);
  EXPECT_EQ(curve.SetPointBlock(bytes.data(), -1, INT32_MAX), 2) << "2^31 + 1 elements";
  EXPECT_EQ(curve.SetPointBlock(bytes.data(), INT32_MIN, INT32_MAX), 2) << "2^32 elements";
  EXPECT_EQ(curve.GetPointBlock(), nullptr);

  ASSERT_EQ(curve.SetPointBlock(bytes.data(), 9, 7), 0);
  EXPECT_EQ(curve.GetPointBlockStart(), 7u);
  EXPECT_EQ(curve.GetPointBlockEnd(), 9u);
  std::byte* const block = curve.GetPointBlock();
  ASSERT_NE(block, nullptr);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), block));

  // The same count uses the same block, which may even be its own source.
  ASSERT_EQ(curve.SetPointBlock(block, -1, 1), 0);
  EXPECT_EQ(curve.GetPointBlock(), block);
  EXPECT_EQ(curve.GetPointBlockStart(), kMax);
  EXPECT_EQ(curve.GetPointBlockEnd(), 1u);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), block));

  // Another count takes another block, also out of the old one.
  ASSERT_EQ(curve.SetPointBlock(block, 4, 4), 0);
  EXPECT_EQ(curve.GetPointBlockEnd(), 4u);
  EXPECT_EQ(curve.GetPointBlock()[0], std::byte{1});
}

/// One curve of each class, in the order of the codes.
std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>> OneOfEach(const GroupList* groups,
                                                           const int16_t* samples) {
  static constexpr tagVLRCurveCtrlPoint kPoints[] = {{5, 0}, {20, 200}, {60, 30}};
  static constexpr uint8_t kLevels[60] = {1, 2, 3};
  std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>> curves;
  curves.push_back(std::make_unique<C_VLRLevelCtrlCurve>(5, 64, 9));
  curves.push_back(
      std::make_unique<C_VLRFlashCtrlCurve>(5, 64, 3, 800, 100, 40, 200, 10, 5, 1, 200, 7));
  curves.push_back(std::make_unique<C_VLRRampCtrlCurve>(5, 64, 3, 20, 220));
  curves.push_back(std::make_unique<C_VLREnvelopCtrlCurve>(5, 64, 0, 7, samples, 3, kPoints));
  curves.push_back(std::make_unique<C_VLRSplineCtrlCurve>(5, 64, 0, kPoints, 3));
  curves.push_back(std::make_unique<C_VLRPolylineCtrlCurve>(5, 64, 0, kPoints, 3));
  curves.push_back(std::make_unique<C_VLRImageCtrlCurve>(5, 64, kLevels));
  curves.push_back(std::make_unique<C_VLRSineCtrlCurve>(5, 64, 3, 800, 200, 10, 100, 5, 1, 200, 7));
  curves.push_back(
      std::make_unique<C_VLRTriangleCtrlCurve>(5, 64, 3, 30, 800, 200, 10, 50, 5, 1, 70, 7));
  auto image = std::make_unique<C_VLRNewImageCtrlCurve>(5, 64);
  image->AddPoint(0, 7);
  image->AddPoint(30, 70);
  curves.push_back(std::move(image));
  curves.push_back(std::make_unique<C_VLREnergyCtrlCurve>(5, 64, 6, 10, 200, 500, samples));
  auto product = std::make_unique<C_VLRAmplitudeModulationCurve>(5, 64);
  product->AddCurve(std::make_unique<C_VLRRampCtrlCurve>(0, 40, 0, 0, 255));
  product->AddCurve(std::make_unique<C_VLRLevelCtrlCurve>(0, 70, 128));
  curves.push_back(std::move(product));
  curves.push_back(std::make_unique<C_VLRColorFlyerCtrlCurve>(5, 64, 0, 2, 0, groups));
  curves.push_back(std::make_unique<C_VLRColorEnvelopCtrlCurve>(5, 64, 0, 2, 0, groups, samples));
  return curves;
}

class EachClass : public testing::Test {
 protected:
  EachClass() {
    for (size_t i = 0; i < sound_.size(); ++i) sound_[i] = static_cast<int16_t>((i * 977) % 30000);
    constexpr uint8_t kPins[] = {1, 2, 3};
    constexpr VLRColorKey kKeys[] = {{0, 0x112233, 1}, {30, 0xFFEEDD, 1}, {60, 0x808080, 0}};
    auto group = std::make_unique<C_VLRGroupColorEnvelopCtrlCurve>(3, kPins, 0, 64, kKeys, 3);
    group->SetWindowSamples(5);
    groups_.Add(std::move(group));
    curves_ = OneOfEach(&groups_, sound_.data());
  }

  BoxCatcher boxes_;
  std::array<int16_t, 65> sound_{};
  GroupList groups_;
  std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>> curves_;
};

TEST_F(EachClass, HasItsCode) {
  std::vector<uint32_t> codes;
  for (const auto& curve : curves_) codes.push_back(curve->GetType());
  EXPECT_EQ(codes, (std::vector<uint32_t>{1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 0x81, 0x82}));
}

TEST_F(EachClass, IsClonedWithItsValues) {
  for (const auto& curve : curves_) {
    SCOPED_TRACE(curve->GetType());
    curve->SetUserValue(7);
    curve->SetInverted(1);
    const std::byte block[5 * 60] = {};
    ASSERT_EQ(curve->SetPointBlock(block, 5, 64), 0);

    const std::unique_ptr<C_VLRUnitCtrlCurve> clone(curve->Clone());
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->GetType(), curve->GetType());
    EXPECT_EQ(clone->GetStart(), 5u);
    EXPECT_EQ(clone->GetEnd(), 64u);
    EXPECT_EQ(clone->GetInverted(), 1);
    EXPECT_EQ(clone->GetUserValue(), 0u);
    EXPECT_EQ(clone->GetPointBlock(), nullptr);
    const std::vector<uint16_t> levels = LevelsOf(*clone);
    EXPECT_EQ(levels, LevelsOf(*curve));
    EXPECT_EQ(std::ranges::count(levels, kUnwritten), 0);
  }
}

TEST_F(EachClass, KeepsThePhaseInItsCloneIfItHasOne) {
  for (const auto& curve : curves_) {
    curve->SetPhase(2);
    const std::unique_ptr<C_VLRUnitCtrlCurve> clone(curve->Clone());
    const uint32_t type = curve->GetType();
    const bool keeps = type == kCurveFlash || type == kCurveSine || type == kCurveTriangle ||
                       type == kCurveSpline || type == kCurvePolyline;
    EXPECT_EQ(clone->GetPhase(), keeps ? 2u : 0u) << type;
  }
}

TEST_F(EachClass, SurvivesEveryRange) {
  const uint32_t bounds[][2] = {{0, 0}, {5, 4}, {64, 0}, {0, kMax}, {kMax, kMax}, {40, 400}};
  for (const auto& curve : curves_) {
    for (const auto& [start, end] : bounds) {
      SCOPED_TRACE(testing::Message() << curve->GetType() << " " << start << ".." << end);
      curve->SetStart(start);
      curve->SetEnd(end);
      curve->AttachSound(800, sound_);
      LevelsOf(*curve);
    }
  }
}

TEST_F(EachClass, NeedsASoundOnlyWhereItFollowsOne) {
  for (const auto& curve : curves_) {
    curve->AttachWave(800, nullptr);
    const uint32_t type = curve->GetType();
    const bool follows =
        type == kCurveEnvelop || type == kCurveEnergy || type == kCurveColorEnvelop;
    EXPECT_EQ(LevelsOf(*curve) == Unwritten(60), follows) << type;
  }
}

TEST_F(EachClass, TakesWhatIsBehindTheSoundAsSilence) {
  std::vector<int16_t> padded(200, 0);
  std::ranges::copy(sound_, padded.begin());
  for (const auto& curve : curves_) {
    SCOPED_TRACE(curve->GetType());
    for (const uint32_t start : {20u, 64u, 65u, 100u}) {
      curve->SetStart(start);
      curve->SetEnd(150);
      curve->AttachSound(800, sound_);
      const std::unique_ptr<C_VLRUnitCtrlCurve> clone(curve->Clone());
      const std::vector<uint16_t> bounded = LevelsOf(*curve);
      EXPECT_EQ(LevelsOf(*clone), bounded) << "the clone knows the length, too";
      curve->AttachWave(800, padded.data());
      EXPECT_EQ(LevelsOf(*curve), bounded) << start;
    }
  }
}

TEST(CurveModel, HasItsOperationsInOrder) {
  C_VLRRampCtrlCurve ramp(10, 109, 0, 1, 2);
  C_VLRUnitCtrlCurve* const curve = &ramp;
  const RawTable table(curve);
  EXPECT_EQ(table.Call<uint32_t>(2), uint32_t{kCurveRamp});
  std::vector<uint16_t> levels(100);
  table.Call<void>(3, levels.data());
  EXPECT_EQ(levels.back(), 2);
  auto* const clone = table.Call<C_VLRUnitCtrlCurve*>(4);
  EXPECT_EQ(clone->GetEnd(), 109u);
  RawTable(clone).Call<void>(1);
  EXPECT_TRUE(table.Call<bool>(5));
  table.Call<void>(6, uint32_t{20});
  table.Call<void>(7, uint32_t{119});
  EXPECT_EQ(ramp.GetStart(), 20u);
  EXPECT_EQ(ramp.GetEnd(), 119u);
  table.Call<void>(8, 2.0);
  EXPECT_EQ(ramp.GetEnd(), 238u);
  table.Call<void>(9, uint32_t{8000}, static_cast<const int16_t*>(nullptr));
  table.Call<void>(10, uint32_t{30});
  EXPECT_EQ(table.Call<uint32_t>(11), 30u);
  table.Call<void>(12, uint32_t{130});
  EXPECT_EQ(table.Call<uint32_t>(13), 130u);
  table.Call<void>(14, uint32_t{4});
  EXPECT_EQ(table.Call<uint32_t>(15), 4u);
  EXPECT_EQ(table.Call<uint32_t>(16), 101u);
  table.Call<void>(23, uint8_t{3});
  EXPECT_EQ(table.Call<uint8_t>(17), 3);
  const C_VLRLevelCtrlCurve level(100, 207, 0);
  const C_VLRUnitCtrlCurve* const other = &level;
  EXPECT_EQ(table.Call<uint32_t>(18, other), 70u);
  EXPECT_EQ(table.Call<uint32_t>(19, other), 177u);
  EXPECT_EQ(table.Call<uint32_t>(20, other), static_cast<uint32_t>(-30));
  EXPECT_EQ(table.Call<uint32_t>(21, other), 77u);
  table.Call<void>(22, uint32_t{40}, uint32_t{1000});
  EXPECT_EQ(ramp.GetEnd(), 140u);
  table.Call<void>(25, uint32_t{99});
  EXPECT_EQ(table.Call<uint32_t>(24), 99u);
  const std::byte block[10] = {};
  EXPECT_EQ(table.Call<int32_t>(29, static_cast<const std::byte*>(block), 8, 7), 0);
  EXPECT_EQ(table.Call<uint32_t>(26), 7u);
  EXPECT_EQ(table.Call<uint32_t>(27), 8u);
  EXPECT_EQ(table.Call<std::byte*>(28), ramp.GetPointBlock());
}

}  // namespace
}  // namespace velora::test
