// Detected silence, and regions and segments made of each other.
#include <gtest/gtest.h>

#include "audio/wavedata/SoundKit.h"

namespace velora::test {
namespace {

/// Loud everywhere but in these stretches.
std::vector<int16_t> LoudBut(size_t frames, const Segments& silences) {
  std::vector<int16_t> samples(frames, 1000);
  for (const auto& [start, end] : silences) {
    std::fill(samples.begin() + start, samples.begin() + end + 1, int16_t{0});
  }
  return samples;
}

TEST(Silence, LengthCountsExceptAtTheEnd) {
  const struct {
    Segments silences, found;
  } cases[] = {
      {{{100, 163}}, {{100, 163}}},
      {{{100, 162}}, {}},
      {{{0, 63}, {200, 299}}, {{0, 63}, {200, 299}}},
      {{{298, 299}}, {{298, 299}}},  // at the end two frames are enough
      {{{299, 299}}, {}},
  };
  for (const auto& c : cases) {
    C_WavData sound;
    Fill16(sound, 1, LoudBut(300, c.silences));
    ASSERT_NE(sound.DetectSilence(1, 64, nullptr), nullptr);
    EXPECT_EQ(Read(sound.SilenceSegments()), c.found);
  }
}

TEST(Silence, TheBandIsOneWiderBelow) {
  const struct {
    uint16_t resolution;
    uint32_t threshold;
    int32_t inside, outside;  // magnitudes above 0
  } cases[] = {{16, 1, 16, 17}, {12, 1, 1, 2}, {13, 3, 6, 7}, {10, 7, 1, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.resolution);
    for (const int32_t extra : {0, 1}) {
      const int32_t high = c.inside + extra;
      const int32_t low = -c.inside - 1 - extra;
      const std::vector<int16_t> samples{static_cast<int16_t>(high), static_cast<int16_t>(high),
                                         static_cast<int16_t>(low), static_cast<int16_t>(low)};
      C_WavData sound;
      Fill(sound, {1, c.resolution, 16, 1}, std::as_bytes(std::span(samples)));
      sound.DetectSilence(c.threshold, 1, nullptr);
      EXPECT_EQ(Read(sound.SilenceSegments()), extra ? Segments{} : (Segments{{0, 3}}));
    }
  }
}

TEST(Silence, OppositeChannelsCancel) {
  C_WavData sound;
  Fill16(sound, 2, {5000, -5000, 5000, -5000, 5000, -5000});
  EXPECT_EQ(sound.DetectSilence(0, 1, nullptr)->GetCount(), 1);
  EXPECT_EQ(sound.DetectSilenceRange(0, 1, 0, 2, 1, 1, nullptr)->GetCount(), 0);
}

TEST(Silence, RefusalsLeaveTheList) {
  C_WavData sound;
  Fill16(sound, 1, LoudBut(100, {{90, 99}}));
  ASSERT_NE(sound.DetectSilence(1, 1, nullptr), nullptr);
  ProgressLog log;
  EXPECT_EQ(sound.DetectSilence(2048, 1, &log), nullptr);
  EXPECT_EQ(sound.DetectSilenceRange(1, 1, 5, 5, 0, 0, &log), nullptr);
  EXPECT_EQ(sound.DetectSilenceRange(1, 1, 0, 100, 0, 0, &log), nullptr);
  EXPECT_EQ(sound.DetectSilenceRange(1, 1, 0, 99, 0, 1, &log), nullptr);
  EXPECT_EQ(sound.DetectSilenceRange(1, 1, 0, 99, 1, 0, &log), nullptr);
  EXPECT_TRUE(log.calls.empty());
  EXPECT_EQ(Read(sound.SilenceSegments()), (Segments{{90, 99}}));
  EXPECT_NE(sound.DetectSilence(2047, 1, nullptr), nullptr);
  EXPECT_EQ(C_WavData().DetectSilence(1, 1, nullptr), nullptr);
  Fill16(sound, 1, {0});
  EXPECT_EQ(sound.DetectSilence(1, 1, nullptr), nullptr);
}

TEST(Silence, ClearSilenceIsClippedToTheSound) {
  C_WavData sound;
  const std::vector<std::byte> bytes(4, std::byte{0xFF});
  Fill(sound, {1, 8, 8, 0}, bytes);
  C_SilenceSegmentList list;
  list.Append(2, UINT32_MAX);
  list.Append(7, 9);
  sound.SetSilenceSegments(&list);
  sound.ClearSilence();
  EXPECT_EQ(Decoded(sound), (std::vector<int32_t>{127, 127, 0, 0}));
}

TEST(Silence, BuildSegments) {
  using Regions = std::vector<std::pair<uint32_t, uint32_t>>;  // start, length
  const struct {
    Regions regions;
    Segments merged, apart;
  } cases[] = {
      {{{0, 10}, {10, 5}, {50, 0}}, {{0, 14}, {50, 50}}, {{0, 9}, {10, 14}, {50, 50}}},
      {{{0, 10}, {11, 5}}, {{0, 9}, {11, 15}}, {{0, 9}, {11, 15}}},
      {{{0, 50}, {10, 5}}, {{0, 49}}, {{0, 49}, {10, 14}}},
      {{{90, 50}}, {{90, 99}}, {{90, 99}}},            // past the end
      {{{100, 5}, {UINT32_MAX, UINT32_MAX}}, {}, {}},  // behind the end
      {{{5, UINT32_MAX}}, {{5, 99}}, {{5, 99}}},
  };
  for (const auto& c : cases) {
    C_WavData sound;
    Fill16(sound, 1, std::vector<int16_t>(100));
    C_ActionEventMgr& events = *sound.GetEventMgr();
    for (const auto& [start, length] : c.regions) events.AddSilenceRegion(start, length);
    ASSERT_NE(sound.MergeSilenceRegions(), nullptr);
    EXPECT_EQ(Read(sound.MergeSilenceRegions()->Items()), c.merged);
    C_SilenceSegmentList apart;
    sound.BuildSegments(events.Regions(), apart, false);
    EXPECT_EQ(Read(apart.Items()), c.apart);
  }
}

TEST(Silence, MergingNothingLeavesTheMergedList) {
  C_WavData sound;
  Fill16(sound, 1, std::vector<int16_t>(100));
  sound.GetEventMgr()->AddSilenceRegion(3, 4);
  C_SilenceSegmentList* merged = sound.MergeSilenceRegions();
  sound.GetEventMgr()->ClearSilenceRegions();
  EXPECT_EQ(sound.MergeSilenceRegions(), nullptr);
  EXPECT_EQ(Read(merged->Items()), (Segments{{3, 6}}));
}

TEST(Silence, MergeSegmentLists) {
  C_WavData sound;
  Fill16(sound, 1, std::vector<int16_t>(100));
  C_SilenceSegmentList a, b, target;
  a.Append(50, 60);
  a.Append(0, 4);
  b.Append(5, 9);
  target.Append(77, 78);
  sound.MergeSegmentLists(&a, &b, &target, 0);
  sound.MergeSegmentLists(nullptr, nullptr, &target, 1);
  EXPECT_EQ(Read(target.Items()), (Segments{{77, 78}}));
  sound.MergeSegmentLists(&a, &b, &target, 1);
  EXPECT_EQ(Read(target.Items()), (Segments{{0, 9}, {50, 60}}));
  sound.MergeSegmentLists(nullptr, &b, &b, 1);  // a list may be its own target
  EXPECT_EQ(Read(b.Items()), (Segments{{5, 9}}));
}

TEST(Silence, ListsAreCopied) {
  C_WavData sound;
  Fill16(sound, 1, std::vector<int16_t>(100));
  C_SilenceSegmentList list;
  list.Append(1, 2);
  list.Append(5, 9);
  sound.SetSilenceSegments(&list);
  sound.SetSilenceSegments(sound.GetSilenceSegments());
  EXPECT_EQ(Read(sound.SilenceSegments()), (Segments{{1, 2}, {5, 9}}));
  sound.CopySegments(sound.GetSilenceSegments(), &list);
  EXPECT_EQ(Read(list.Items()), (Segments{{1, 2}, {5, 9}, {1, 2}, {5, 9}}));
  sound.GetEventMgr()->AddSilenceRegion(70, 7);
  sound.SetSilenceRegions(sound.GetSilenceSegments());
  ASSERT_EQ(sound.GetSilenceRegionCount(), 2u);
  EXPECT_EQ(sound.EventMgr().Regions()[1]->GetStart(), 5u);
  EXPECT_EQ(sound.EventMgr().Regions()[1]->GetLength(), 5u);
  sound.SetSilenceSegments(nullptr);
  EXPECT_TRUE(sound.SilenceSegments().empty());
}

}  // namespace
}  // namespace velora::test
