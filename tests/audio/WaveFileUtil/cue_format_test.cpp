#include "audio/WaveFileUtil/CueFormatConverter.h"

#include <gtest/gtest.h>

#include "audio/WaveFileUtil/WavFile.h"
#include "audio/wavedata/WavData.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::TempDir;

constexpr char kFormats[] =
    "[Regex]\n"
    "ExpList = {[Broken], [Marker], [Beat]}\n"
    "[Broken]\nRegex = M([0-9\nRepl = ($1,1)\n"
    "[Marker]\nRegex = M([0-9]+)=([0-9]+)\nRepl = ($1,$2)\n"
    "[Beat]\nRegex = beat +([0-9]+)\nRepl = (90,$1)\n";

std::vector<std::string> Converted(C_CueFormatConverter& converter, const char* text) {
  std::vector<std::string> strings;
  const bool matched = converter.Convert(text, strings);
  EXPECT_EQ(matched, !strings.empty());
  return strings;
}

TEST(CueFormats, MatchesBecomePairsAndBrokenExpressionsAreLeftOut) {
  TempDir dir;
  test::WriteText(dir / "CueFormatRegex.ini", kFormats);
  const auto table = LoadCueFormats(Path::Native(dir / "CueFormatRegex.ini"));
  ASSERT_TRUE(table);
  C_CueFormatConverter converter(table);
  using Strings = std::vector<std::string>;
  EXPECT_EQ(Converted(converter, "nothing"), Strings{});
  EXPECT_EQ(Converted(converter, "M7=1 and M8=22"), (Strings{"(7,1)", "(8,22)"}));
  EXPECT_EQ(Converted(converter, "beat 4"), Strings{"(90,4)"});
  // Both fit: the pair that matched last is asked first, in this object alone.
  EXPECT_EQ(Converted(converter, "M1=2 beat 5"), Strings{"(90,5)"});
  C_CueFormatConverter fresh(table);
  EXPECT_EQ(Converted(fresh, "M1=2 beat 5"), Strings{"(1,2)"});
}

TEST(CueFormats, NoFileAndAnEmptyListGiveNoTable) {
  TempDir dir;
  EXPECT_FALSE(LoadCueFormats(Path::Native(dir / "none.ini")));
  test::WriteText(dir / "empty.ini", "[Regex]\n");
  EXPECT_FALSE(LoadCueFormats(Path::Native(dir / "empty.ini")));
}

TEST(CueFormats, ForeignLabelsOfAWaveBecomeEvents) {
  TempDir dir;
  test::WriteText(dir / "CueFormatRegex.ini", kFormats);
  {
    C_WavFile file;
    C_WavData& sound = file.EnsureSound();
    const std::vector<int16_t> samples(100);
    sound.SetFormat(8000, 200, 1, 16, 16, 1);
    sound.SetData(samples.data(), 200);
    sound.GetEventMgr()->AddEventAtSample(1, 10, "", 2);
    ASSERT_TRUE(file.SaveFile(Path::Native(dir / "x.wav")).Ok());
  }
  // The label of the event in the form of another program, of the same length.
  std::string bytes = test::ReadText(dir / "x.wav");
  bytes.replace(bytes.find("(1,2)"), 5, "M12=3");
  test::WriteText(dir / "x.wav", bytes);

  C_WavFile file;
  file.SetLabelConverter(std::make_unique<C_CueFormatConverter>(
      LoadCueFormats(Path::Native(dir / "CueFormatRegex.ini"))));
  ASSERT_TRUE(file.LoadFile(Path::Native(dir / "x.wav")).Ok());
  const auto events = file.Sound()->EventMgr().Events();
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0]->GetType(), 12);
  EXPECT_EQ(events[0]->GetParam(), 3);
  EXPECT_EQ(events[0]->GetSample(), 10u);
}

}  // namespace
}  // namespace velora
