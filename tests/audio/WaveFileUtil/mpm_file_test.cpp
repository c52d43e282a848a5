#include "audio/WaveFileUtil/MpmFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "audio/WaveFileUtil/WavFileFormat.h"
#include "support/MpmReader.h"
#include "support/Speech.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::MpmCommand;
using test::MpmContent;
using test::TempDir;

struct Event {
  uint32_t sample;
  int type;
  int param;
  bool operator==(const Event&) const = default;
};

struct Region {
  uint32_t start;
  uint32_t length;
  bool operator==(const Region&) const = default;
};

struct SoundPlan {
  std::vector<uint16_t> words;  // 12-bit offset binary
  std::vector<Event> events;
  std::vector<Region> regions;
  uint32_t codecParam = 0;
  uint32_t rate = 8000;
};

WavDataPtr MakeSound(const SoundPlan& plan) {
  WavDataPtr sound = C_WavData::Create();
  const auto bytes = static_cast<uint32_t>(plan.words.size() * 2);
  sound->SetFormat(plan.rate, bytes, 1, 12, 16, 0);
  sound->SetData(plan.words.data(), bytes);
  for (const Event& e : plan.events) {
    sound->GetEventMgr()->AddEventAtSample(e.type, e.sample, "", e.param);
  }
  for (const Region& r : plan.regions) sound->GetEventMgr()->AddSilenceRegion(r.start, r.length);
  sound->GetWriteParam()->SetCodecParam(plan.codecParam);
  return sound;
}

class MpmFile : public testing::Test {
 protected:
  Status Save(C_WavData& sound, const std::string& name = "x.MPM") {
    C_MpmFile file;
    file.AttachWavData(&sound);
    const Status status = file.SaveFile(Path::Native(dir_ / name));
    file.DetachWavData();
    return status;
  }

  MpmContent SaveAndRead(const SoundPlan& plan) {
    const WavDataPtr sound = MakeSound(plan);
    const Status status = Save(*sound);
    EXPECT_TRUE(status.Ok()) << status.Message();
    MpmContent content = test::ReadMpm(dir_ / "x.MPM");
    CheckStreamAgainstBlocks(content);
    return content;
  }

  /// What the stream plays is what the file says it plays, event by event.
  static void CheckStreamAgainstBlocks(const MpmContent& content) {
    ASSERT_EQ(content.played.size(), content.decoded.size());
    for (size_t i = 0; i < content.played.size(); ++i) {
      const uint16_t mask = content.playedRaw[i] ? 0x0FF0 : 0xFFFF;
      ASSERT_EQ(content.played[i], content.decoded[i] & mask) << "sample " << i;
    }
    for (const MpmCommand& c : content.commands) {
      ASSERT_GE(c.length, 2u) << "command at " << c.offset;
      if (c.code < 5) continue;
      const int before = c.position == 0 ? 2047 : content.decoded[c.position - 1];
      ASSERT_EQ(c.before, before >> 4) << "command at " << c.offset;
    }
  }

  static std::vector<MpmCommand> EventCommands(const MpmContent& content) {
    std::vector<MpmCommand> found;
    std::ranges::copy_if(content.commands, std::back_inserter(found), &MpmCommand::hasEvent);
    return found;
  }

  TempDir dir_;
};

std::vector<int> Codes(const MpmContent& content) {
  std::vector<int> codes;
  for (const MpmCommand& c : content.commands) codes.push_back(c.code);
  return codes;
}

TEST_F(MpmFile, CommandsOfSmallSounds) {
  const auto loud = [](size_t n) {
    std::vector<uint16_t> words(n);
    for (size_t i = 0; i < n; ++i)
      words[i] = static_cast<uint16_t>(2048 + (i % 2 == 0 ? 300 : -300));
    return words;
  };
  struct Case {
    const char* what;
    SoundPlan plan;
    std::vector<int> codes;
    size_t decoded;
  };
  const Case cases[] = {
      {"one sample is stretched to two", {loud(1), {}, {}, 0, 8000}, {3}, 2},
      {"a short frame exactly", {loud(16), {}, {}, 0, 8000}, {5}, 16},
      {"long, short and raw", {loud(64 + 16 + 3), {}, {}, 0, 8000}, {7, 5, 3}, 83},
      {"a rest of one becomes two", {loud(65), {}, {}, 0, 8000}, {7, 3}, 66},
      {"an event closes the frames before it",
       {loud(200), {{79, 5, 1}}, {}, 0, 8000},
       {7, 6, 7, 5, 5, 5, 3},
       200},
      {"an event within a short frame's reach is raw",
       {loud(64), {{4, 5, 1}}, {}, 0, 8000},
       {4, 5, 5, 5, 3},
       64},
      {"two events on one sample",
       {loud(64), {{4, 5, 1}, {4, 6, 1}}, {}, 0, 8000},
       {4, 4, 5, 5, 5, 3},
       64},
      {"all silence", {loud(100), {}, {{0, 100}}, 0, 8000}, {1}, 100},
      {"silence to the end", {loud(100), {}, {{16, 84}}, 0, 8000}, {5, 1}, 100},
      {"odd silence takes one of the next", {loud(100), {}, {{0, 51}}, 0, 8000}, {1, 5, 5, 5}, 100},
      {"a gap of one sample is passed over", {loud(100), {}, {{1, 99}}, 0, 8000}, {1}, 99},
      {"an event in silence splits it evenly",
       {loud(100), {{40, 9, 9}}, {{0, 100}}, 0, 8000},
       {2, 1},
       100},
      {"raw throughout", {loud(100), {{50, 1, 1}}, {}, 1, 8000}, {3}, 100},
      {"raw with silence", {loud(100), {}, {{20, 10}}, 1, 8000}, {3, 1, 3}, 100},
      {"a last raw sample alone is dropped", {loud(100), {}, {{0, 99}}, 1, 8000}, {1, 3}, 101},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const MpmContent content = SaveAndRead(c.plan);
    if (c.what == std::string("a last raw sample alone is dropped")) {
      // 99 samples of silence are odd and take the last one along.
      EXPECT_EQ(Codes(content), std::vector<int>{1});
      EXPECT_EQ(content.decoded.size(), 100u);
      continue;
    }
    EXPECT_EQ(Codes(content), c.codes);
    EXPECT_EQ(content.decoded.size(), c.decoded);
    EXPECT_EQ(content.samples, c.plan.words);
  }
}

TEST_F(MpmFile, TheSoundComesHomeToSilenceBehindItsEnd) {
  const MpmContent content = SaveAndRead({{3001}, {}, {}, 0, 8000});
  EXPECT_EQ(content.decoded, (std::vector<uint16_t>{3001, (3001 + 2047) / 2}));
}

TEST_F(MpmFile, HeaderStatesWhatTheSaveWasAskedFor) {
  const WavDataPtr sound = MakeSound({test::MakeSpeech12(2000, 1), {}, {}, 0, 11025});
  sound->GetWriteParam()->SetSilenceParams(100, 7);
  ASSERT_TRUE(Save(*sound).Ok());
  MpmContent content = test::ReadMpm(dir_ / "x.MPM");
  const std::pair<int, uint32_t> expected[] = {{4, 0x0110}, {6, 62},    {8, 1},     {10, 5},
                                               {12, 11025}, {14, 4685}, {28, 62},   {36, 12},
                                               {46, 12},    {56, 7},    {58, 1102}, {60, 4}};
  for (const auto& [offset, value] : expected) EXPECT_EQ(content.header[offset], value) << offset;

  sound->GetWriteParam()->SetCodecParam(1);
  ASSERT_TRUE(Save(*sound).Ok());
  EXPECT_EQ(test::ReadMpm(dir_ / "x.MPM").header[60], 5u);
}

TEST_F(MpmFile, SilenceAndEventsMeet) {
  std::vector<uint16_t> words = test::MakeSpeech12(1000, 2);
  // The event on the region's last sample takes that sample out of it.
  MpmContent content = SaveAndRead({words, {{499, 3, 3}}, {{300, 200}}, 0, 8000});
  EXPECT_EQ(content.silence, (std::vector<std::pair<uint32_t, uint32_t>>{{300, 498}}));
  // A region of that one sample goes altogether.
  content = SaveAndRead({words, {{499, 3, 3}}, {{499, 1}, {600, 20}}, 0, 8000});
  EXPECT_EQ(content.silence, (std::vector<std::pair<uint32_t, uint32_t>>{{600, 619}}));
  // Regions that touch are one, and what passes the end is cut.
  content = SaveAndRead({words, {}, {{300, 10}, {310, 10}, {990, 500}, {2000, 5}}, 0, 8000});
  EXPECT_EQ(content.silence, (std::vector<std::pair<uint32_t, uint32_t>>{{300, 319}, {990, 999}}));
}

TEST_F(MpmFile, SilenceIsDetectedWhereNobodyMarkedIt) {
  std::vector<uint16_t> words = test::MakeSpeech12(3000, 3);
  std::fill(words.begin() + 1000, words.begin() + 1200, uint16_t{2048});
  words[999] = words[1200] = 2200;
  const WavDataPtr sound = MakeSound({words, {}, {}, 0, 8000});
  sound->GetWriteParam()->SetSilenceParams(150, 1);
  ASSERT_TRUE(Save(*sound).Ok());
  const MpmContent content = test::ReadMpm(dir_ / "x.MPM");
  EXPECT_NE(std::ranges::find(content.silence, std::pair<uint32_t, uint32_t>{1000, 1199}),
            content.silence.end());
}

TEST_F(MpmFile, LongSilenceIsCutIntoRuns) {
  const std::vector<uint16_t> quiet(200'001, 2048);
  const MpmContent content = SaveAndRead({quiet, {{150'000, 1, 2}}, {{0, 200'001}}, 0, 8000});
  std::vector<size_t> lengths;
  for (const MpmCommand& c : content.commands) lengths.push_back(c.length);
  EXPECT_EQ(lengths, (std::vector<size_t>{65535, 65535, 150'002 - 131'070, 200'001 - 150'002}));
  EXPECT_LT(content.stream.size(), 20u);
}

// Frames carry an event up to a short frame early; raw runs and silence are exact but
// for the evenness of silence; and whatever crowds in moves back.
TEST_F(MpmFile, EveryEventIsInTheStreamInOrderAndNearItsPlace) {
  for (const unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u}) {
    std::mt19937 random(seed);
    const auto below = [&random](size_t n) { return static_cast<uint32_t>(random() % n); };
    SoundPlan plan;
    plan.words = test::MakeSpeech12(20'000, seed);
    for (unsigned i = 0; i < 6; ++i) plan.regions.push_back({below(20'000), 1 + below(1500)});
    const size_t events[] = {0, 1, 10, 100, 300, 3'000, 65'000, 30};
    for (size_t i = 0; i < events[seed - 1]; ++i) {
      plan.events.push_back(
          {below(20'000), static_cast<int>(below(256)), static_cast<int>(below(256))});
    }
    SCOPED_TRACE(seed);
    const MpmContent content = SaveAndRead(plan);
    ASSERT_EQ(content.events.size(), plan.events.size());
    const std::vector<MpmCommand> inStream = EventCommands(content);
    ASSERT_EQ(inStream.size(), plan.events.size());
    for (size_t i = 0; i < inStream.size(); ++i) {
      ASSERT_EQ(inStream[i].action, content.events[i].action) << i;
      ASSERT_EQ(inStream[i].parameter, content.events[i].parameter) << i;
      const auto last = static_cast<double>(inStream[i].position + inStream[i].length - 1);
      const double off = last - content.events[i].position;
      const double gaps = 7;  // samples between regions that no command covers
      ASSERT_GE(off, -15 - gaps) << i;
      if (plan.events.size() <= 100) {
        ASSERT_LE(off, 20) << i;
      }
    }
  }
}

TEST_F(MpmFile, LoadsWhatItSaved) {
  const SoundPlan plan{test::MakeSpeech12(9'000, 4),
                       {{10, 4, 200}, {10, 5, 1}, {4'000, 255, 0}, {8'999, 1, 255}},
                       {{2'000, 500}, {6'000, 301}},
                       0,
                       16'000};
  const WavDataPtr sound = MakeSound(plan);
  ASSERT_TRUE(Save(*sound).Ok());
  const MpmContent content = test::ReadMpm(dir_ / "x.MPM");

  for (const SampleView view : {SampleView::kDecoded, SampleView::kSource}) {
    C_MpmFile file;
    file.SetSampleView(view);
    const Status status = file.LoadFile(Path::Native(dir_ / "x.MPM"));
    ASSERT_TRUE(status.Ok()) << status.Message();
    EXPECT_EQ(file.GetSourceKind(), 6u);
    EXPECT_EQ(file.GetTargetKind(), 1u);
    const C_WavInfo& info = file.Sound()->Info();
    EXPECT_EQ(info.GetSampleRate(), 16'000u);
    EXPECT_EQ(info.GetResolutionBits(), 12);
    EXPECT_FALSE(info.IsSigned());
    const auto& expected = view == SampleView::kDecoded ? content.decoded : content.samples;
    EXPECT_TRUE(std::ranges::equal(file.Sound()->Words(), expected));
    EXPECT_EQ(file.GetCompressedData().size(), content.stream.size());

    std::vector<Event> events;
    for (const C_ActionEvent* e : file.Sound()->EventMgr().Events()) {
      events.push_back({e->GetSample(), e->GetType(), e->GetParam()});
    }
    EXPECT_EQ(events, plan.events);
    std::vector<Region> regions;
    for (const C_ActionSilenceRegion* r : file.Sound()->EventMgr().Regions()) {
      regions.push_back({r->GetStart(), r->GetLength()});
    }
    EXPECT_EQ(regions, plan.regions);
  }
}

TEST_F(MpmFile, SavedAgainFromItsSourceItStaysTheSameFile) {
  const WavDataPtr sound = MakeSound({test::MakeSpeech12(30'000, 5), {{77, 1, 2}}, {}, 0, 8000});
  ASSERT_TRUE(Save(*sound).Ok());
  const std::vector<std::byte> first = test::ReadBytes(dir_ / "x.MPM");
  for (int round = 0; round < 10; ++round) {
    C_MpmFile file;
    file.SetSampleView(SampleView::kSource);
    ASSERT_TRUE(file.LoadFile(Path::Native(dir_ / "x.MPM")).Ok());
    ASSERT_TRUE(file.SaveFile(Path::Native(dir_ / "x.MPM")).Ok());
  }
  EXPECT_EQ(test::ReadBytes(dir_ / "x.MPM"), first);
}

TEST_F(MpmFile, RecordsHoldTypesAndParametersOfEightBits) {
  MpmContent content = SaveAndRead(
      {test::MakeSpeech12(500, 6), {{100, 256, 300}, {200, 257, 1}, {300, -1, -1}}, {}, 0, 8000});
  ASSERT_EQ(content.events.size(), 2u);
  EXPECT_EQ(content.events[0].action, 0);
  EXPECT_EQ(content.events[0].parameter, 300 & 255);
  EXPECT_EQ(content.events[1].action, 255);
  EXPECT_EQ(content.events[1].parameter, 255);

  const WavDataPtr sound =
      MakeSound({{}, {{100, 256, 300}, {200, 257, 1}, {300, 5, 5}}, {}, 0, 8000});
  EXPECT_EQ(C_MpmFile().ListLosses(*sound),
            (std::vector<std::string>{"1 events of type 257 and above",
                                      "all but the low 8 bits of type and parameter of 1 events"}));
}

TEST_F(MpmFile, EventsBehindTheSoundAreKeptInTheTableAlone) {
  const MpmContent content = SaveAndRead({test::MakeSpeech12(500, 6), {{500, 1, 1}}, {}, 0, 8000});
  EXPECT_EQ(content.events.size(), 1u);
  EXPECT_TRUE(EventCommands(content).empty());
}

TEST_F(MpmFile, WordsBeyondTwelveBitsAreHeld) {
  std::vector<uint16_t> words(300, 0xFFFF);
  words[7] = 4096;
  words[8] = 1;
  const MpmContent content = SaveAndRead({words, {}, {{290, 10}}, 0, 8000});
  EXPECT_EQ(content.samples[7], 4095);
  EXPECT_EQ(content.samples[8], 1);
}

TEST_F(MpmFile, WhatTheFormatCannotHoldIsRefusedWithAReason) {
  struct Case {
    uint32_t rate;
    uint16_t channels;
    size_t frames;
    const char* reason;
  };
  const Case cases[] = {
      {8000, 2, 100, "the format holds 1 channel(s), the sound has 2"},
      {96000, 1, 100, "the format states rates from 1 to 65535 Hz, the sound has 96000"},
      {8000, 1, 0, "there are no samples"}};
  for (const Case& c : cases) {
    const WavDataPtr sound = C_WavData::Create();
    const auto bytes = static_cast<uint32_t>(c.frames * 2 * c.channels);
    sound->SetFormat(c.rate, bytes, c.channels, 16, 16, 1);
    sound->SetData(std::vector<std::byte>(bytes).data(), bytes);
    EXPECT_EQ(Save(*sound, "refused.MPM").Message(), c.reason);
  }
  EXPECT_TRUE(dir_.Entries().empty());
}

TEST_F(MpmFile, DamagedFilesNeverHarmTheReader) {
  const WavDataPtr sound =
      MakeSound({test::MakeSpeech12(400, 7), {{10, 1, 1}, {300, 2, 2}}, {{100, 50}}, 0, 8000});
  ASSERT_TRUE(Save(*sound).Ok());
  const std::vector<std::byte> good = test::ReadBytes(dir_ / "x.MPM");
  const auto load = [&](std::span<const std::byte> bytes) {
    test::WriteBytes(dir_ / "bad.MPM", bytes);
    C_MpmFile file;
    const Status status = file.LoadFile(Path::Native(dir_ / "bad.MPM"));
    // Whatever was read came out of the file.
    if (file.Sound()) {
      EXPECT_LE(file.Sound()->Bytes().size(), bytes.size());
    }
    EXPECT_LE(file.GetCompressedData().size(), bytes.size());
    return status;
  };
  for (size_t length = 0; length < good.size(); ++length) {
    const Status status = load(std::span(good).first(length));
    const bool eventBlockThere = length >= good.size() - 16 - 8 - 2 * 6;
    EXPECT_EQ(status.Ok(), eventBlockThere) << length << ": " << status.Message();
  }
  std::vector<std::byte> flipped = good;
  for (size_t bit = 0; bit < 76 * 8; ++bit) {
    const std::byte mask{static_cast<unsigned char>(1u << bit % 8)};
    flipped[bit / 8] ^= mask;
    const Status ignored = load(flipped);
    flipped[bit / 8] ^= mask;
  }
  EXPECT_EQ(load(good).Message(), "");
}

}  // namespace
}  // namespace velora
