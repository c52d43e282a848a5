// Colour groups, the curves of their pins, and tables of a channel.
#include <algorithm>

#include "CurveTools.h"
#include "curves/ColorMapGen.h"
#include "curves/VLRColorFlyerCtrlCurve.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

using Keys = std::vector<VLRColorKey>;
using Flyer = C_VLRGroupColorFlyerCtrlCurve;
using Envelop = C_VLRGroupColorEnvelopCtrlCurve;

constexpr uint8_t kPins[] = {7, 8, 9};

template <typename Group>
std::unique_ptr<Group> MakeGroup(uint32_t start, uint32_t end, const Keys& keys) {
  return std::make_unique<Group>(uint8_t{3}, kPins, start, end, keys.data(),
                                 static_cast<int32_t>(keys.size()));
}

Keys KeysOf(const Flyer& group) { return {group.Keys().begin(), group.Keys().end()}; }

std::vector<uint32_t> PositionsOf(const Flyer& group) {
  std::vector<uint32_t> positions;
  for (const VLRColorKey& key : group.Keys()) positions.push_back(key.Sample);
  return positions;
}

TEST(Groups, AreClonedByTheirKind) {
  const Keys keys = {{0, 0x123456, 1}, {50, 0xFFEEDD, 0}};
  auto envelop = MakeGroup<Envelop>(5, 60, keys);
  envelop->SetInverted(1);
  envelop->SetWindowSamples(33);
  const std::unique_ptr<C_VLRGroupUnitCtrlCurve> clone(envelop->Clone());
  ASSERT_EQ(clone->GetGroupType(), 2u);
  const auto& copy = static_cast<Envelop&>(*clone);
  EXPECT_EQ(KeysOf(copy), keys);
  EXPECT_EQ(copy.GetWindowSamples(), 33);
  EXPECT_EQ(copy.GetInverted(), 1);
  EXPECT_EQ(copy.GetPinCount(), 3);
  EXPECT_EQ(copy.GetPins()[2], 9);
  EXPECT_EQ(copy.GetStart(), 5u);
  EXPECT_EQ(copy.GetEnd(), 60u);

  const std::unique_ptr<C_VLRGroupUnitCtrlCurve> flyer(MakeGroup<Flyer>(5, 60, keys)->Clone());
  EXPECT_EQ(flyer->GetGroupType(), 1u);
  const C_VLRGroupUnknownCtrlCurve unknown(3, kPins, 5, 60);
  const std::unique_ptr<C_VLRGroupUnitCtrlCurve> other(unknown.Clone());
  EXPECT_EQ(other->GetGroupType(), 0u);
  EXPECT_EQ(other->GetPinCount(), 1);
  EXPECT_EQ(other->GetEnd(), 60u);

  for (const Keys& few : {Keys{}, Keys{{0, 1, 1}}}) {
    EXPECT_EQ(MakeGroup<Flyer>(5, 60, few)->Clone(), nullptr);
    EXPECT_EQ(MakeGroup<Envelop>(5, 60, few)->Clone(), nullptr);
  }
  envelop->SetKeys(0, keys.data());
  EXPECT_EQ(envelop->GetKeys(), nullptr);
}

TEST(Groups, ReadUsedPinsOnly) {
  const uint8_t pins[20] = {4, 5, 4, 6};
  C_VLRGroupUnknownCtrlCurve group(2, pins, 0, 9);
  EXPECT_EQ(group.FindChannel(4), 0);
  EXPECT_EQ(group.FindChannel(5), 1);
  EXPECT_EQ(group.FindChannel(0), -1);
  group.SetPins(20, pins);
  EXPECT_EQ(group.GetPinCount(), 16);
  EXPECT_EQ(group.FindChannel(6), -1) << "the fourth pin is no channel";
  group.SetPins(3, nullptr);
  EXPECT_EQ(group.GetPinCount(), 0);
}

TEST(Groups, ScaleTheirKeys) {
  auto group = MakeGroup<Flyer>(101, 1001, {{1000, 1, 1}, {1501, 2, 1}});
  group->ScaleTime(2);
  EXPECT_EQ(PositionsOf(*group), (std::vector<uint32_t>{2000, 3002}));
  group->ScaleTime(0.25);
  EXPECT_EQ(PositionsOf(*group), (std::vector<uint32_t>{500, 750}));
  EXPECT_EQ(group->GetStart(), 50u);
  EXPECT_EQ(group->GetEnd(), 500u);
}

TEST(Groups, RemapTheirKeys) {
  const Keys keys = {{100, 1, 1}, {101, 2, 1}, {150, 3, 1}, {199, 4, 1}};
  auto group = MakeGroup<Flyer>(0, 9, keys);
  EXPECT_EQ(group->RemapKeys(100, 199, 5, 5), 0);
  EXPECT_EQ(KeysOf(*group), keys);
  EXPECT_EQ(group->RemapKeys(100, 199, 5, 14), 1);
  EXPECT_EQ(PositionsOf(*group), (std::vector<uint32_t>{5, 6, 10, 14}));
  EXPECT_EQ(MakeGroup<Flyer>(0, 9, {})->RemapKeys(0, 9, 5, 14), 1);
  auto one = MakeGroup<Flyer>(0, 9, {{3, 1, 1}});
  EXPECT_EQ(one->RemapKeys(0, 9, 5, 14), 1);
  EXPECT_EQ(PositionsOf(*one), std::vector<uint32_t>{14});
}

struct RebaseCase {
  uint32_t start, end, newStart, limit;
  int32_t done;
  uint32_t resultEnd;
  std::vector<uint32_t> positions;
};

template <typename Group>
void ExpectRebased(const RebaseCase& c) {
  SCOPED_TRACE(testing::Message() << c.newStart << " of " << c.limit);
  auto group = MakeGroup<Group>(c.start, c.end, {{0, 0, 1}, {50, 0, 1}, {100, 0, 1}});
  EXPECT_EQ(group->Rebase(c.newStart, c.limit), c.done);
  EXPECT_EQ(group->GetEnd(), c.resultEnd);
  EXPECT_EQ(PositionsOf(*group), c.positions);
}

TEST(Groups, OfFlyersAreCutAtTheLimit) {
  for (const RebaseCase& c : {RebaseCase{0, 100, 60, 120, 1, 120, {60, 110, 120}},
                              RebaseCase{0, 100, 60, 100, 1, 100, {60, 100}},
                              RebaseCase{0, 100, 60, 160, 1, 160, {60, 110, 160}},
                              RebaseCase{0, 200, 60, 170, 1, 170, {60, 110, 160}},
                              RebaseCase{0, 100, 120, 120, 0, 100, {0, 50, 100}},
                              RebaseCase{0, 100, 0, 0, 0, 100, {0, 50, 100}},
                              RebaseCase{60, 160, 20, 900, 1, 120, {4294967256, 10, 60}}}) {
    ExpectRebased<Flyer>(c);
  }
}

TEST(Groups, OfEnvelopsAreSqueezedAtTheLimit) {
  for (const RebaseCase& c : {RebaseCase{0, 100, 60, 120, 1, 120, {60, 90, 120}},
                              RebaseCase{0, 100, 60, 160, 1, 160, {60, 110, 160}},
                              RebaseCase{0, 100, 60, 61, 1, 61, {60, 60, 61}},
                              RebaseCase{0, 100, 120, 120, 0, 100, {0, 50, 100}}}) {
    ExpectRebased<Envelop>(c);
  }
}

TEST(Groups, MixTheColorOfACutKey) {
  auto group = MakeGroup<Flyer>(0, 100, {{0, 0, 1}, {50, 0x0A64C8, 0}, {100, 0xAB6E0064, 5}});
  ASSERT_EQ(group->Rebase(60, 120), 1);
  // A fifth of the way: 200 - 20 and 100 - 20, 10 + 20; the fourth byte stays.
  EXPECT_EQ(KeysOf(*group).back(), (VLRColorKey{120, 0xAB1E50B4, 5}));
  // Keys that never reached the limit in order.
  auto wild = MakeGroup<Flyer>(0, 100, {{90, 0xFFFFFF, 1}, {90, 0, 1}, {20, 0, 1}});
  EXPECT_EQ(wild->Rebase(60, 120), 1);
  EXPECT_EQ(PositionsOf(*wild), (std::vector<uint32_t>{150, 120}));
  EXPECT_EQ(KeysOf(*wild).back().Color, 0xFFFFFFu) << "no way from the first, so its color";
}

TEST(Groups, HaveTheirOperationsInOrder) {
  auto flyer = MakeGroup<Flyer>(10, 20, {{10, 1, 1}, {20, 2, 1}});
  const RawTable table(static_cast<C_VLRGroupUnitCtrlCurve*>(flyer.get()));
  EXPECT_EQ(table.Call<uint32_t>(2), 1u);
  auto* const clone = table.Call<C_VLRGroupUnitCtrlCurve*>(3);
  EXPECT_EQ(clone->GetEnd(), 20u);
  RawTable(clone).Call<void>(1);
  table.Call<void>(4, uint32_t{100});
  table.Call<void>(5, uint32_t{200});
  table.Call<void>(6, 0.5);
  EXPECT_EQ(flyer->GetStart(), 50u);
  EXPECT_EQ(flyer->GetEnd(), 100u);
  table.Call<void>(7, uint32_t{0});
  table.Call<void>(8, uint32_t{40});
  EXPECT_EQ(flyer->GetEnd(), 40u);
  EXPECT_EQ(table.Call<int32_t>(9, uint32_t{5}, uint32_t{10}, uint32_t{0}, uint32_t{40}), 1);
  EXPECT_EQ(table.Call<int32_t>(10, uint32_t{100}, uint32_t{1000}), 1);
  EXPECT_EQ(PositionsOf(*flyer), (std::vector<uint32_t>{100, 140}));
}

/// The levels of one pin, over a work array for the whole run.
std::vector<uint16_t> PlainColors(const Keys& keys, int channel, uint32_t start, uint32_t end) {
  const auto levelOf = [channel](const VLRColorKey& key) {
    return channel > 2 ? 0 : static_cast<int>(key.Color >> (8 * channel) & 0xFF);
  };
  const VLRColorKey& last = keys.back();
  std::vector<uint16_t> work;
  const auto draw = [&](const VLRColorKey& from, const VLRColorKey& to, uint32_t count) {
    const double step = from.Gradient ? (levelOf(to) - levelOf(from)) / double(count) : 0;
    double sum = levelOf(from);
    for (uint32_t i = 0; i < count; ++i, sum += step) {
      work.push_back(static_cast<uint16_t>(static_cast<int>(sum + 0.5)));
    }
  };
  for (size_t i = 0; i + 1 < keys.size(); ++i) {
    if (keys[i + 1].Sample > keys[i].Sample) {
      draw(keys[i], keys[i + 1], keys[i + 1].Sample - keys[i].Sample);
    }
  }
  if (end > last.Sample) {
    draw(last, keys.front(), end - last.Sample);
    work.push_back(work.back());
  } else {
    const VLRColorKey& before = keys.size() > 1 ? keys[keys.size() - 2] : last;
    work.push_back(static_cast<uint16_t>(levelOf(before.Gradient ? last : before)));
  }
  std::vector<uint16_t> out;
  for (int64_t p = start; p <= end; ++p) {
    out.push_back(work[static_cast<size_t>(
        std::clamp<int64_t>(p - keys.front().Sample, 0, static_cast<int64_t>(work.size()) - 1))]);
  }
  return out;
}

TEST(ColorFlyer, IsThatOfThePlainLoops) {
  Random random(9);
  for (int round = 0; round < 400; ++round) {
    Keys keys;
    uint32_t sample = random.Below(30);
    const uint32_t count = 1 + random.Below(5);
    for (uint32_t i = 0; i < count; ++i) {
      keys.push_back({sample, random.Below(0x1000000), random.Below(2)});
      sample += random.Below(60);
    }
    const uint32_t start = random.Below(60);
    const uint32_t end = start + random.Below(200);
    const auto channel = static_cast<uint8_t>(random.Below(4));
    const bool inverted = random.Below(2) == 1;
    SCOPED_TRACE(testing::Message() << round << ": " << start << ".." << end);

    GroupList groups;
    auto group = MakeGroup<Flyer>(start, end, keys);
    group->SetInverted(inverted ? 1 : 0);
    groups.Add(std::move(group));
    C_VLRColorFlyerCtrlCurve curve(start, end, 0, static_cast<uint8_t>(kPins[0] + channel), 0,
                                   &groups);
    curve.SetInverted(1);  // has no effect
    auto expected = PlainColors(keys, channel, start, end);
    if (inverted) expected = Inverse(expected);
    ASSERT_EQ(LevelsOf(curve), expected);
  }
}

TEST(ColorFlyer, ComesBackToItsFirstColor) {
  GroupList groups;
  groups.Add(MakeGroup<Flyer>(0, 8, {{0, 100, 0}, {4, 20, 1}}));
  C_VLRColorFlyerCtrlCurve curve(0, 8, 0, kPins[0], 0, &groups);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{100, 100, 100, 100, 20, 40, 60, 80, 80}));
}

TEST(ColorFlyer, ReachesItsLastKeyByAGradientOnly) {
  GroupList groups;
  groups.Add(MakeGroup<Flyer>(0, 4, {{0, 100, 0}, {4, 20, 1}}));
  groups.Add(MakeGroup<Flyer>(0, 4, {{0, 100, 1}, {4, 20, 1}}));
  C_VLRColorFlyerCtrlCurve curve(0, 4, 0, kPins[0], 0, &groups);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{100, 100, 100, 100, 100}));
  curve.SetGroupIndex(1);
  EXPECT_EQ(LevelsOf(curve), (std::vector<uint16_t>{100, 80, 60, 40, 20}));
}

TEST(ColorFlyer, NeedsAColorGroup) {
  GroupList groups;
  groups.Add(std::make_unique<C_VLRGroupUnknownCtrlCurve>(3, kPins, 0, 9));
  groups.Add(MakeGroup<Flyer>(0, 9, {}));
  groups.Add(MakeGroup<Envelop>(0, 9, {{0, 5, 0}, {20, 5, 0}}));
  groups.Add(MakeGroup<Flyer>(0, 9, {{20, 5, 0}, {8, 5, 0}}));  // keys that fall back
  const std::vector<uint16_t> five(10, 5);
  for (int32_t index = -1; index <= 4; ++index) {
    C_VLRColorFlyerCtrlCurve curve(0, 9, 0, kPins[0], index, &groups);
    EXPECT_EQ(LevelsOf(curve), index == 2 ? five : Unwritten(10)) << index;
    EXPECT_EQ(curve.IsValid(), index >= 0 && index < 4) << index;
    curve.SetEnd(0);
    EXPECT_FALSE(curve.IsValid());
  }
}

std::vector<int> MapOf(const Keys& keys, uint8_t channel, int32_t levels) {
  std::vector<uint8_t> map(static_cast<size_t>(levels));
  const C_ColorMapGen generator(keys.data(), static_cast<int32_t>(keys.size()));
  EXPECT_TRUE(generator.Generate(channel, 0, map.data(), levels));
  return {map.begin(), map.end()};
}

TEST(ColorMapGen, WalksThroughItsKeys) {
  struct Case {
    const char* what;
    Keys keys;
    uint8_t channel;
    std::vector<int> map;
  };
  const Case cases[] = {
      {"gradient", {{0, 0, 1}, {7, 70, 0}}, 0, {0, 10, 20, 30, 40, 50, 60, 70}},
      {"held", {{0, 9, 0}, {7, 70, 0}}, 0, {9, 9, 9, 9, 9, 9, 9, 9}},
      {"falling", {{0, 70, 1}, {8, 0, 0}}, 0, {70, 61, 52, 43, 35, 26, 17, 8}},
      {"no channel", {{0, 0xFFFFFF, 1}, {7, 0xFFFFFF, 0}}, 3, {0, 0, 0, 0, 0, 0, 0, 0}},
      {"blue", {{0, 0x050000, 1}, {7, 0x0C00FF, 0}}, 2, {5, 6, 7, 8, 9, 10, 11, 12}},
      {"three keys", {{8, 0, 1}, {16, 80, 0}, {23, 7, 1}}, 0, {0, 20, 40, 60, 80, 80, 80, 80}},
      {"short span", {{5, 40, 1}, {8, 200, 0}}, 0, {40, 40, 40, 40, 40, 40, 40, 40}},
      {"twins", {{0, 1, 1}, {0, 2, 1}, {0, 3, 1}}, 0, {2, 2, 2, 2, 2, 2, 2, 2}},
      {"end twins",
       {{0, 0, 1}, {4, 40, 1}, {8, 80, 1}, {8, 5, 1}},
       0,
       {0, 10, 20, 30, 40, 50, 60, 70}},
      {"whole range", {{0, 0, 1}, {0xFFFFFFFF, 200, 0}}, 0, {0, 0, 0, 0, 0, 0, 0, 0}},
      {"falling keys", {{9, 10, 1}, {3, 200, 1}}, 0, {10, 10, 10, 10, 10, 10, 10, 10}},
  };
  for (const Case& c : cases) {
    if (c.what == std::string("falling keys")) {
      MapOf(c.keys, c.channel, 8);  // of no meaning, but harmless
      continue;
    }
    EXPECT_EQ(MapOf(c.keys, c.channel, 8), c.map) << c.what;
  }
}

TEST(ColorMapGen, IsTheIdentityOverItsFullScale) {
  const auto map = MapOf({{0, 0, 1}, {255, 255, 0}}, 0, 255);
  for (int i = 0; i < 255; ++i) EXPECT_EQ(map[static_cast<size_t>(i)], i);
}

TEST(ColorMapGen, RefusesWhatGivesNoTable) {
  const VLRColorKey keys[] = {{0, 1, 1}, {9, 2, 1}};
  uint8_t out[1] = {77};
  EXPECT_FALSE(C_ColorMapGen(nullptr, 2).Generate(0, 0, out, 1));
  EXPECT_FALSE(C_ColorMapGen(keys, 0).Generate(0, 0, out, 1));
  EXPECT_FALSE(C_ColorMapGen(keys, 1).Generate(0, 0, out, 1));
  EXPECT_FALSE(C_ColorMapGen(keys, 2).Generate(0, 0, out, 0));
  EXPECT_FALSE(C_ColorMapGen(keys, 2).Generate(0, 0, out, -5));
  EXPECT_EQ(out[0], 77);
  EXPECT_TRUE(C_ColorMapGen(keys, 2).Generate(0, 0, out, 1));
  EXPECT_EQ(out[0], 1);
}

}  // namespace
}  // namespace velora::test
