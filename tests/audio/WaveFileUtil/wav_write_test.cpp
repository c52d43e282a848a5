#include <algorithm>
#include <chrono>
#include <random>

#include "wave_bytes.h"
#include "wave_fixture.h"

namespace velora {
namespace {

using namespace test;

using WavWriteTest = WaveFixture;

/// Loads what was saved under the name.
WavDataPtr Reload(const Path& path) {
  C_WavFile file;
  const Status status = file.LoadFile(path);
  EXPECT_TRUE(status) << status.Message();
  if (!status) return nullptr;
  file.Sound()->AddRef();
  return WavDataPtr(file.Sound());
}

/// A label as it is written: the size counts the pad byte too.
std::string WrittenLabel(uint32_t id, std::string text) {
  text.resize((text.size() + 2) / 2 * 2, '\0');
  return Chunk("labl", U32(id) + text);
}

struct FormCase {
  const char* name;
  uint16_t resolution, container;
  bool isSigned;
  std::string samples;
  std::vector<int> target;  ///< resolution, container, signed; empty: none is set
  std::string file;
};

class WavForms : public WaveFixture, public testing::WithParamInterface<FormCase> {};

TEST_P(WavForms, AreWritten) {
  const FormCase& c = GetParam();
  C_WavFile file;
  C_WavData& sound = file.EnsureSound();
  Fill(sound, 8000, 1, c.resolution, c.container, c.isSigned, c.samples);
  if (!c.target.empty()) {
    sound.GetWriteParam()->SetTargetFormat(static_cast<uint16_t>(c.target[0]),
                                           static_cast<uint16_t>(c.target[1]),
                                           static_cast<uint32_t>(c.target[2]));
  }
  const Status status = file.SaveFile(At("out.wav"));
  ASSERT_TRUE(status) << status.Message();
  EXPECT_EQ(Read("out.wav"), c.file);
  EXPECT_EQ(BytesOf(sound), c.samples) << "the sound itself stays";
}

/// A wave file whose "fmt " chunk states `bits` in containers of `container` bits.
std::string Wave(uint32_t bits, uint32_t container, const std::string& samples) {
  const uint32_t align = container / 8;
  return Riff(
      Chunk("fmt ", U16(1) + U16(1) + U32(8000) + U32(8000 * align) + U16(align) + U16(bits)) +
      Chunk("data", samples));
}

INSTANTIATE_TEST_SUITE_P(
    Targets, WavForms,
    testing::Values(
        FormCase{
            "as_it_is", 16, 16, true, U16(1) + U16(0x8000), {}, Wave(16, 16, U16(1) + U16(0x8000))},
        FormCase{"odd_size", 8, 8, false, "abc", {}, Wave(8, 8, "abc")},
        FormCase{"no_samples", 16, 16, true, "", {}, Wave(16, 16, "")},
        FormCase{"signed_12_bits_widen",
                 12,
                 16,
                 true,
                 U16(0x0001) + U16(0x07FF) + U16(0x0800),
                 {},
                 Wave(16, 16, U16(0x0010) + U16(0x7FF0) + U16(0x8000))},
        FormCase{"offset_12_bits_widen",
                 12,
                 16,
                 false,
                 U16(0x0801) + U16(0x0000),
                 {},
                 Wave(16, 16, U16(0x0010) + U16(0x8000))},
        FormCase{"signed_8_bits_stay", 8, 8, true, "\x80\x7F", {}, Wave(8, 8, "\x80\x7F")},
        FormCase{"target_equal_to_12_bits",
                 12,
                 16,
                 false,
                 U16(0x0801),
                 {12, 16, 0},
                 Wave(12, 16, U16(0x0801))},
        FormCase{
            "signed_flag_is_a_boolean", 16, 16, true, U16(7), {16, 16, 5}, Wave(16, 16, U16(7))},
        FormCase{"target_8_bits",
                 16,
                 16,
                 true,
                 U16(0x7F00) + U16(0xFFFF),
                 {8, 8, 0},
                 Wave(8, 8, "\xFF\x80")}),
    [](const auto& test) { return test.param.name; });

TEST_F(WavWriteTest, FailsWithoutATrace) {
  C_WavFile file;
  EXPECT_FALSE(file.SaveFile(At("out.wav")));
  EXPECT_EQ(file.Save((dir_ / "out.wav").c_str()), 0);
  // Twelve bits in a container of twelve cannot be converted.
  Fill(file.EnsureSound(), 8000, 1, 12, 12, true, "abcd");
  const Status status = file.SaveFile(At("out.wav"));
  ASSERT_FALSE(status);
  EXPECT_NE(status.Message().find("cannot be converted"), std::string::npos);
  EXPECT_TRUE(dir_.Entries().empty());
}

TEST_F(WavWriteTest, WritesEventsAsLabels) {
  C_WavFile file;
  C_WavData& sound = file.EnsureSound();
  Fill(sound, 8000, 1, 8, 8, false, "ab");
  sound.GetEventMgr()->AddEventAtSample(4048, 900, "", 2);
  sound.GetEventMgr()->AddEventAtMs(4100, 100, "text is lost", 7);
  sound.GetEventMgr()->AddSilenceRegion(300, 50);
  ASSERT_TRUE(file.SaveFile(At("out.wav")));
  EXPECT_EQ(Read("out.wav"),
            Riff(Format(1, 8000, 8) + Chunk("data", "ab") +
                 Chunk("cue ", U32(3) + CueRecord(1, 800) + CueRecord(2, 900) + CueRecord(3, 300)) +
                 Chunk("LIST", "adtl" + WrittenLabel(1, "(4100,7)") + WrittenLabel(2, "[4048,2]") +
                                   WrittenLabel(3, "SILENCE") + Length(3, 50))));
}

TEST_F(WavWriteTest, UpdatesCuePointsInTheirPlace) {
  C_WavFile file;
  C_WavData& sound = file.EnsureSound();
  Fill(sound, 8000, 1, 8, 8, false, "ab");
  for (const uint32_t id : {9u, 2u, 0u, 2u}) {
    sound.CueInfo().SetPoint(id, 1000 + id, "mark", 4, 5, 6);
  }
  sound.ListInfo().AddLabel(9, "a note");
  for (const uint32_t sample : {10u, 20u, 30u}) {
    sound.GetEventMgr()->AddEventAtSample(1, sample, "", 0);
  }
  ASSERT_TRUE(file.SaveFile(At("out.wav")));

  const WavDataPtr saved = Reload(At("out.wav"));
  std::string cues;
  for (const auto* point : saved->CueInfo().Points()) {
    cues += std::to_string(point->GetId()) + '@' + std::to_string(point->GetPosition()) + ' ';
  }
  EXPECT_EQ(cues, "9@1009 2@20 0@1000 1@10 3@30 ");
  EXPECT_EQ(saved->ListInfo().GetLabelCount(), 3u);
  EXPECT_STREQ(saved->CueInfo().FindById(9)->GetChunkTag(), "mark");
  EXPECT_EQ(saved->CueInfo().FindById(9)->GetSampleOffset(), 6u);
}

TEST_F(WavWriteTest, KeepsLoopsAndPrivateChunks) {
  const std::string sampler = std::string(28, '\x01') + U32(1) + U32(2) + U32(4) + U32(1) +
                              U32(10) + U32(20) + U32(0) + U32(3);
  const std::string format = Format(1, 8000, 8);
  const std::string data = Chunk("data", "abc");
  const std::string file1 =
      Riff(Chunk("KIOD", "first") + format + Chunk("kiod", "2nd") + data + Chunk("VLRW", "") +
           Chunk("MIOW", "odd") + Chunk("smpl", sampler + "xx") + Chunk("xtra", "gone") +
           Chunk("KIOD", "third") + Chunk("LIST", "INFOabcd"));
  C_WavFile file;
  ASSERT_TRUE(Load(file, file1));
  ASSERT_EQ(file.Sound()->ExtraChunks().AddFromBytes("mine", "bytes", 5), 1);
  ASSERT_TRUE(file.SaveFile(At("out.wav")));
  EXPECT_EQ(Read("out.wav"),
            Riff(format + data + Chunk("smpl", sampler + std::string(2, '\0')) +
                 Chunk("KIOD", "first") + Chunk("kiod", "2nd") + Chunk("MIOW", "odd") +
                 Chunk("KIOD", "third") + Chunk("mine", "bytes")));
}

TEST_F(WavWriteTest, AConversionKeepsEventsOnly) {
  C_WavFile file;
  C_WavData& sound = file.EnsureSound();
  Fill(sound, 8000, 1, 12, 16, true, U16(1));
  sound.GetEventMgr()->AddEventAtSample(5, 1, "", 6);
  sound.CueInfo().SetPoint(50, 7, "data", 0, 0, 7);
  sound.ListInfo().AddLabel(50, "a note");
  sound.SamplerInfo().AddLoop(1, 0, 0, 1, 0, 0);
  sound.ExtraChunks().AddFromBytes("VLRW", "x", 1);
  ASSERT_TRUE(file.SaveFile(At("out.wav")));
  EXPECT_EQ(Read("out.wav"), Riff(Format(1, 8000, 16) + Chunk("data", U16(16)) +
                                  Chunk("cue ", U32(1) + CueRecord(1, 1)) +
                                  Chunk("LIST", "adtl" + WrittenLabel(1, "(5,6)"))));
  // The sound's own lists are as before.
  EXPECT_EQ(sound.CueInfo().GetCount(), 1u);
  EXPECT_EQ(sound.ListInfo().GetLabelCount(), 1u);
}

TEST_F(WavWriteTest, ListsWhatASaveLeavesOut) {
  C_WavFile file;
  C_WavData& sound = file.EnsureSound();
  Fill(sound, 8000, 1, 16, 16, true, U16(1));
  sound.GetEventMgr()->AddEventAtSample(5, 1, "", 6);
  sound.SamplerInfo().AddLoop(1, 0, 0, 1, 0, 0);
  sound.ExtraChunks().AddFromBytes("VLRW", "x", 1);
  sound.ListInfo().AddLabel(1, "(5,6)");
  EXPECT_TRUE(file.ListLosses(sound).empty());

  sound.GetEventMgr()->AddEventAtSample(5, 1, "text", 6);
  sound.ListInfo().AddLabel(2, "a note");
  sound.GetWriteParam()->SetTargetFormat(8, 8, 0);
  EXPECT_EQ(file.ListLosses(sound).size(), 4u);
}

TEST_F(WavWriteTest, TheBoundarySavesToo) {
  C_WavFile file;
  Fill(file.EnsureSound(), 8000, 1, 16, 16, true, "abcd");
  EXPECT_EQ(file.Save((dir_ / "a.wav").c_str()), 1);
  EXPECT_EQ(file.SaveAs(2, (dir_ / "b.wav").c_str()), 1);
  EXPECT_EQ(Read("a.wav"), Read("b.wav"));
  EXPECT_EQ(file.SaveAs(9, (dir_ / "c.mid").c_str()), 0);
  EXPECT_EQ(file.SaveAs(0, (dir_ / "c.mid").c_str()), 0);
  EXPECT_EQ(dir_.Entries().size(), 2u);
  C_WavFile empty;
  empty.EnsureSound().SetFormat(8000, 0, 1, 16, 16, 1);
  EXPECT_EQ(empty.SaveAs(2, (dir_ / "c.wav").c_str()), 0);
  EXPECT_EQ(empty.Save((dir_ / "c.wav").c_str()), 1);
}

TEST_F(WavWriteTest, SavesOverTheFileItWasLoadedFrom) {
  C_WavFile file;
  ASSERT_TRUE(Load(file, Riff(Format(1, 8000, 16) + Chunk("data", "abcdefgh"))));
  file.Sound()->GetEventMgr()->AddEventAtSample(1, 2, "", 3);
  ASSERT_TRUE(file.SaveFile(At("in.wav")));
  const WavDataPtr saved = Reload(At("in.wav"));
  EXPECT_EQ(BytesOf(*saved), "abcdefgh");
  EXPECT_EQ(EventListing(*saved), "1@2=3");
}

/// Random events and regions, some of them at one place and in square brackets, come
/// back as they were, and a second save gives the same bytes.
TEST_F(WavWriteTest, AnyNumberOfEventsSurvives) {
  std::mt19937 random(42);
  for (const int count : {0, 1, 10, 3000, 65000}) {
    C_WavFile file;
    C_WavData& sound = file.EnsureSound();
    Fill(sound, 8000, 1, 16, 16, true, "abcdefgh");
    uint32_t sample = 0;
    for (int i = 0; i < count; ++i) {
      sample += random() % 3;
      const int32_t type =
          i % 5 == 0 ? 4048 + static_cast<int32_t>(random() % 2) : static_cast<int32_t>(random());
      sound.GetEventMgr()->AddEventAtSample(type, sample, "", static_cast<int32_t>(random()));
      if (i % 7 == 0) sound.GetEventMgr()->AddSilenceRegion(sample, random());
    }
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(file.SaveFile(At("first.wav")));
    C_WavFile again;
    ASSERT_TRUE(again.LoadFile(At("first.wav")));
    ASSERT_TRUE(again.SaveFile(At("second.wav")));
    ASSERT_TRUE(file.SaveFile(At("third.wav")));
    // Seconds on the slowest of machines; a quadratic step takes minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_EQ(EventListing(*again.Sound()), EventListing(sound));
    EXPECT_EQ(RegionListing(*again.Sound()), RegionListing(sound));
    EXPECT_EQ(sound.EventMgr().Events().size(), static_cast<size_t>(count));
    EXPECT_TRUE(Read("first.wav") == Read("second.wav"));
    EXPECT_TRUE(Read("first.wav") == Read("third.wav"));
  }
}

}  // namespace
}  // namespace velora
