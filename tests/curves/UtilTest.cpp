// Gamma tables and command classes.
#include <stdexcept>

#include "CurveTools.h"
#include "PlainSpline.h"
#include "curves/CommandClass.h"
#include "curves/VLRUtil.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

class Channels final : public I_VLRGammaChannels {
 public:
  const VLRGammaChannel* GetChannels() override { return records; }

  void Enable(int index, uint8_t steps, uint8_t topLevel, const Points& points) {
    records[index] = {1,  {},           steps, topLevel, static_cast<uint16_t>(points.size()),
                      {}, points.data()};
  }

  VLRGammaChannel records[kGammaChannels] = {};
};

const Points kIdentity = {{0, 0}, {255, 255}};

std::vector<uint8_t> MapsOf(Channels& channels) {
  C_VLRUtil util;
  uint32_t size = 99;
  util.BuildMaps(&channels, &size);
  EXPECT_EQ(size, util.GetMaps().size());
  return {util.GetMaps().begin(), util.GetMaps().end()};
}

TEST(GammaMaps, ReachToTheLastEnabledChannel) {
  Channels channels;
  EXPECT_TRUE(MapsOf(channels).empty());
  channels.Enable(1, 255, 255, kIdentity);
  auto maps = MapsOf(channels);
  ASSERT_EQ(maps.size(), 512u);
  for (size_t i = 0; i < 256; ++i) {
    EXPECT_EQ(maps[i], 0);
    EXPECT_EQ(maps[256 + i], i);
  }
  channels.Enable(0, 255, 255, kIdentity);
  channels.records[1].Enabled = 0;
  EXPECT_EQ(MapsOf(channels).size(), 256u);

  C_VLRUtil util;
  uint32_t size = 99;
  util.BuildMaps(nullptr, &size);
  EXPECT_EQ(size, 0u);
}

TEST(GammaMaps, SnapToTheSteps) {
  struct Case {
    uint8_t steps, top;
  };
  const Points bent = {{0, 0}, {100, 30}, {255, 255}};
  const auto curve = PlainSpline(bent).Smooth(0, 255, false);
  for (const Case& c : {Case{1, 255}, Case{2, 255}, Case{3, 100}, Case{7, 255}, Case{16, 31},
                        Case{254, 255}, Case{255, 128}, Case{255, 0}}) {
    Channels channels;
    channels.Enable(0, c.steps, c.top, bent);
    const auto map = MapsOf(channels);
    for (size_t x = 0; x < 256; ++x) {
      // The step whose centre is nearest, found by looking at all of them.
      const double width = 255.0 / c.steps;
      double centre = 0;
      for (int j = 0; j < c.steps && curve[x] > static_cast<int>(width * 0.5 + centre); ++j) {
        centre += width;
      }
      const int level = static_cast<int>(static_cast<int>(centre + 0.5) * (c.top / 255.0) + 0.5);
      ASSERT_EQ(map[x], level) << x << " of " << int{c.steps};
    }
  }
  Channels channels;
  channels.Enable(0, 1, 255, kIdentity);
  const auto map = MapsOf(channels);
  EXPECT_EQ(map[127], 0);
  EXPECT_EQ(map[128], 255);
}

TEST(GammaMaps, OfNoStepsOrPointsAreFlat) {
  Channels channels;
  channels.Enable(0, 0, 255, kIdentity);
  channels.Enable(1, 4, 255, {});
  const Points one = {{0, 200}};
  channels.Enable(2, 4, 255, one);
  EXPECT_EQ(MapsOf(channels), std::vector<uint8_t>(768, 0));
}

TEST(GammaMaps, TakeTheirChannelsThroughOneSlot) {
  Channels channels;
  const RawTable table(static_cast<I_VLRGammaChannels*>(&channels));
  EXPECT_EQ(table.Call<const VLRGammaChannel*>(0), channels.records);
}

TEST(Commands, AreTheIndicesOfTheirClass) {
  const auto isCommand = [](uint32_t i) {
    return (i >= 130 && i <= 200) || (i >= 204 && i <= 206) || (i >= 208 && i <= 253);
  };
  for (uint32_t i = 0; i < 600; ++i) {
    EXPECT_EQ(IsCommandIndex(i), isCommand(i)) << i;
    if (isCommand(i)) {
      EXPECT_EQ(GetCommand(i), 0);
    } else {
      EXPECT_THROW(GetCommand(i), std::runtime_error);
    }
  }
  EXPECT_EQ(CommandClassOf(127), 5);
  EXPECT_EQ(CommandClassOf(128), 4);
  EXPECT_EQ(CommandClassOf(203), 3);
  EXPECT_EQ(CommandClassOf(207), 2);
  EXPECT_EQ(CommandClassOf(255), 0);
}

TEST(Commands, AreFoundByTheirFirstIndex) {
  EXPECT_EQ(FindCommandIndex(0), 0u);
  try {
    FindCommandIndex(9);
    FAIL() << "there is no such command";
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "Wrong Command Index");
  }
}

}  // namespace
}  // namespace velora::test
