// `velora convert`.
#include <signal.h>

#include <chrono>
#include <thread>

#include "ProgramTest.h"

namespace velora::test {
namespace {

namespace fs = std::filesystem;

class ConvertCommand : public ProgramTest {
 protected:
  static Outcome Convert(std::vector<std::string> words) {
    words.insert(words.begin(), {"convert", "--no-flush"});
    return RunVelora(words);
  }
  static std::string Crc(const std::string& path, const std::vector<std::string>& options = {}) {
    return Info(path, options).at("samplesCrc32").get<std::string>();
  }
};

TEST_F(ConvertCommand, ChipFileKeepsSourceAndEvents) {
  const std::string wave =
      MakeWave("a.wav", 5000, Marks({{800, "(12,5)"}, {2000, "SILENCE", 300}}));
  ASSERT_EQ(Convert({wave, "-o", Path("a.MPM")}).status, 0);
  ASSERT_EQ(Convert({"--source", Path("a.MPM"), "-o", Path("source.wav")}).status, 0);
  ASSERT_EQ(Convert({Path("a.MPM"), "-o", Path("heard.wav")}).status, 0);
  const Json chip = Info(Path("a.MPM"));
  EXPECT_EQ(chip.at("frames"), 5000);
  EXPECT_EQ(chip.at("events").at(0).at("sample"), 800);
  EXPECT_EQ(chip.at("silence"), Json::array({{{"start", 2000}, {"end", 2299}}}));
  EXPECT_EQ(Info(Path("heard.wav")).at("events"), chip.at("events"));
  // The source comes back as its 12-bit form widened to 16.
  std::vector<int16_t> expected = MakeSpeech(5000, 5000);
  for (int16_t& sample : expected) {
    const int magnitude = std::abs(int{sample}) >> 4 << 4;
    sample = static_cast<int16_t>(sample < 0 ? -magnitude : magnitude);
  }
  WriteText(Path("expected.wav"), Wave(expected));
  EXPECT_EQ(Crc(Path("source.wav")), Crc(Path("expected.wav")));
  EXPECT_NE(Crc(Path("heard.wav")), Crc(Path("source.wav")));
}

TEST_F(ConvertCommand, FromChipToChipNothingIsCodedTwice) {
  MakeChip("a.MPM", 6000, Marks({{800, "(12,5)"}}));
  ASSERT_EQ(Convert({Path("a.MPM"), "-o", Path("b.MPM")}).status, 0);
  EXPECT_EQ(Crc(Path("b.MPM"), {"--source"}), Crc(Path("a.MPM"), {"--source"}));
}

TEST_F(ConvertCommand, FormatIsSpelledInAnyOfThreeWays) {
  const std::string wave = MakeWave("a.wav", 300);
  for (const auto& [format, name] :
       std::vector<std::pair<std::string, std::string>>{{"MPM", "a.MPM"},
                                                        {"mpm", "a.mpm"},
                                                        {"id:6", "a.MPM"},
                                                        {"id:13", "a.SRC"},
                                                        {"kio", "a.kio"}}) {
    const std::string out = Path("out-" + format);
    ASSERT_EQ(Convert({wave, "-d", out, "--to", format}).status, 0) << format;
    EXPECT_TRUE(fs::exists(out + "/" + name)) << format;
  }
  EXPECT_EQ(Info(Path("out-id:13") + "/a.SRC").at("format").at("id"), 13);
}

TEST_F(ConvertCommand, FoldersBelowEachArgumentAreKept) {
  MakeWave("in/a.wav", 100);
  MakeWave("in/deep/er/a.wav", 200);
  MakeWave("other/b.wav", 100);
  const Outcome run = Convert({"-r", Path("in"), Path("other"), "-d", Path("out"), "--to", "MPM"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(Info(Path("out/a.MPM")).at("frames"), 100);
  EXPECT_EQ(Info(Path("out/deep/er/a.MPM")).at("frames"), 200);
  EXPECT_TRUE(fs::exists(Path("out/b.MPM")));
}

TEST_F(ConvertCommand, TwoInputsForOneOutputAreRefusedBeforeAnythingIsWritten) {
  MakeWave("x/a.wav", 100);
  MakeWave("y/a.wav", 100);
  MakeWave("y/b.wav", 100);
  fs::create_directories(Path("real/sub"));
  fs::create_directory_symlink(Path("real/sub"), Path("real/link"));
  MakeWave("z/sub/a.wav", 100);
  MakeWave("z/link/a.wav", 100);
  const std::vector<std::vector<std::string>> lines = {
      {Path("y/b.wav"), Path("x/a.wav"), Path("y/a.wav"), "-d", Path("out"), "--to", "MPM"},
      {"-r", Path("x"), Path("y"), "-d", Path("out"), "--to", "MPM"},
      {"-r", Path("z"), "-d", Path("real"), "--to", "MPM"},  // one by a link
      {"-r", Path("y"), "-d", Path("out"), "--to", "MPM", Path("x/../y/a.wav")},
  };
  for (const auto& words : lines) {
    const Outcome run = Convert(words);
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_NE(run.err.find("would both become"), std::string::npos) << run.err;
  }
  EXPECT_FALSE(fs::exists(Path("out")));
  EXPECT_FALSE(fs::exists(Path("real/sub/a.MPM")));
}

TEST_F(ConvertCommand, AnOutputThatIsTheInputOfAnotherIsRefused) {
  MakeWave("d/a.wav", 100);
  MakeWave("d/sub/a.wav", 200);
  const Outcome run = Convert({"-f", "-r", Path("d"), "-d", Path("d/sub"), "--to", "wav"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("is an input too"), std::string::npos) << run.err;
  EXPECT_EQ(Info(Path("d/sub/a.wav")).at("frames"), 200);
}

TEST_F(ConvertCommand, NothingThatExistsIsOverwrittenWithoutForce) {
  const std::string wave = MakeWave("a.wav", 100);
  WriteText(Path("a.MPM"), "mine");
  const Outcome refused = Convert({wave, "-o", Path("a.MPM")});
  EXPECT_EQ(refused.status, 4);
  EXPECT_EQ(refused.err, "velora: " + Path("a.MPM") + ": exists already; --force overwrites it\n");
  EXPECT_EQ(ReadText(Path("a.MPM")), "mine");
  EXPECT_EQ(Convert({wave, "-o", Path("a.MPM"), "--force"}).status, 0);
  EXPECT_EQ(Info(Path("a.MPM")).at("frames"), 100);
  EXPECT_EQ(Convert({wave, "-o", "/dev/null", "--to", "MPM"}).status, 0);
}

TEST_F(ConvertCommand, OutputMayBeTheInputByAnyName) {
  const std::string crc = Crc(MakeWave("a.wav", 2000));
  const std::string link = Path("link.wav");
  const std::string hard = Path("hard.wav");
  fs::create_symlink(Path("a.wav"), link);
  fs::create_hard_link(Path("a.wav"), hard);
  for (const auto& [in, out] :
       std::vector<std::pair<std::string, std::string>>{{Path("a.wav"), Path("a.wav")},
                                                        {Path("a.wav"), link},
                                                        {link, Path("a.wav")},
                                                        {hard, Path("a.wav")},
                                                        {Path("a.wav"), Path("./x/../a.wav")}}) {
    fs::create_directories(Path("x"));
    const Outcome run = Convert({in, "-o", out, "--force"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Crc(Path("a.wav")), crc);
    EXPECT_TRUE(fs::is_symlink(link));
  }
}

TEST_F(ConvertCommand, DryRunWritesNothing) {
  const std::string wave = MakeWave("a.wav", 100);
  const Outcome run = Convert({wave, "-d", Path("out"), "--to", "MPM", "--dry-run"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, wave + " -> " + Path("out/a.MPM") + "\n");
  EXPECT_FALSE(fs::exists(Path("out")));
}

TEST_F(ConvertCommand, OneBrokenFileDoesNotStopTheOthers) {
  for (int i = 0; i < 12; ++i) MakeWave("in/w" + std::to_string(i) + ".wav", 400);
  WriteText(Path("in/w5.wav"), "RIFF....broken");
  const Outcome run = Convert({"-r", Path("in"), "-d", Path("out"), "--to", "MPM"});
  EXPECT_EQ(run.status, 3);
  const auto lines = Lines(run.err);
  ASSERT_EQ(lines.size(), 2u) << run.err;
  EXPECT_TRUE(lines[0].starts_with("velora: " + Path("in/w5.wav") + ": ")) << lines[0];
  EXPECT_EQ(lines[1], "velora: convert: 1 of 12 files failed: " + Path("in/w5.wav"));
  EXPECT_EQ(std::distance(fs::directory_iterator(Path("out")), {}), 11);
}

TEST_F(ConvertCommand, WhatAFormatCannotHoldIsRefusedWithTheReason) {
  WriteText(Path("stereo.wav"), Riff(Format(2, 8000, 16) + DataChunk(MakeSpeech(400, 1))));
  WriteText(Path("fast.wav"), Riff(Format(1, 96000, 16) + DataChunk(MakeSpeech(400, 1))));
  WriteText(Path("empty.wav"), Wave({}));
  for (const auto& [name, reason] : std::vector<std::pair<std::string, std::string>>{
           {"stereo.wav", "channel"}, {"fast.wav", "96000"}, {"empty.wav", "no samples"}}) {
    const Outcome run = Convert({Path(name), "-o", Path("x.MPM")});
    EXPECT_EQ(run.status, 4) << name;
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
    EXPECT_FALSE(fs::exists(Path("x.MPM")));
  }
  EXPECT_EQ(Convert({Path("stereo.wav"), "--mono", "-o", Path("x.MPM")}).status, 0);
  EXPECT_EQ(Info(Path("x.MPM")).at("frames"), 200);
}

TEST_F(ConvertCommand, WhatIsDroppedIsTold) {
  const std::string loops = Chunk("smpl", std::string(28, '\0') + U32(1) + U32(0) + U32(1) +
                                              U32(0) + U32(10) + U32(20) + U32(0) + U32(0));
  const std::string wave = MakeWave(
      "a.wav", 1000,
      Marks({{10, "(4100,7)"}, {20, "(12,300)"}, {30, "verse"}}) + loops + Chunk("bext", "x"));
  const Outcome run = Convert({wave, "-o", Path("a.MPM")});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* part : {"type 257 and above", "low 8 bits", "1 label", "1 loop", "\"bext\""}) {
    EXPECT_NE(run.err.find(part), std::string::npos) << part << " in\n" << run.err;
  }
  EXPECT_EQ(Convert({wave, "-o", Path("b.MPM"), "--strict"}).status, 1);
  EXPECT_TRUE(fs::exists(Path("b.MPM")));
  EXPECT_EQ(Convert({wave, "-o", Path("c.MPM"), "-q"}).err, "");
}

TEST_F(ConvertCommand, PipesCarrySounds) {
  const std::string wave = MakeWave("a.wav", 700);
  const Outcome out =
      RunVelora({"convert", "-", "-o", "-", "--to", "MPM"}, {.input = ReadText(wave)});
  ASSERT_EQ(out.status, 0) << out.err;
  ASSERT_EQ(Convert({wave, "-o", Path("a.MPM")}).status, 0);
  EXPECT_EQ(out.out, ReadText(Path("a.MPM")));
}

TEST_F(ConvertCommand, SettingsReachTheFile) {
  const std::string wave = MakeWave("a.wav", 4000);
  ASSERT_EQ(Convert({wave, "-o", Path("raw.MPM"), "--raw"}).status, 0);
  const std::string dump = RunVelora({"dump", Path("raw.MPM")}).out;
  EXPECT_EQ(dump.find("frame"), std::string::npos);
  EXPECT_NE(dump.find("raw"), std::string::npos);
  ASSERT_EQ(
      Convert({wave, "-o", Path("b.MPM"), "--silence-length", "4000", "--silence-threshold", "0"})
          .status,
      0);
  const std::string b = ReadText(Path("b.MPM"));
  EXPECT_EQ(b.substr(58, 2), U16(4000 * 8000 / 1000 & 0xFFFF));
  ASSERT_EQ(Convert({wave, "-o", Path("eight.wav"), "--bits", "8"}).status, 0);
  EXPECT_EQ(Info(Path("eight.wav")).at("resolution"), 8);
}

TEST_F(ConvertCommand, UnwritablePlacesAreOutputErrors) {
  const std::string wave = MakeWave("a.wav", 100);
  WriteText(Path("file"), "");
  fs::create_directories(Path("dir.MPM"));
  for (const std::string& target : {Path("file/a.MPM"), Path("dir.MPM")}) {
    const Outcome run = Convert({wave, "-o", target});
    EXPECT_EQ(run.status, 4) << target;
    EXPECT_TRUE(run.err.starts_with("velora: " + target + ": ")) << run.err;
  }
}

TEST_F(ConvertCommand, InterruptLeavesWholeFilesOnly) {
  for (int i = 0; i < 300; ++i) MakeWave("in/w" + std::to_string(i) + ".wav", 20000);
  RunningVelora running({"convert", "-r", Path("in"), "-d", Path("out"), "--to", "MPM"});
  // Stopped as soon as it has finished some files.
  const auto finished = [this] {
    std::error_code none;
    int count = 0;
    for (const auto& entry : fs::directory_iterator(Path("out"), none)) {
      count += entry.path().extension() == ".MPM";
    }
    return count;
  };
  while (running.IsRunning() && finished() < 3) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  running.Signal(SIGINT);
  EXPECT_EQ(running.Wait(), 130);
  const auto files = finished();
  EXPECT_GE(files, 3);
  EXPECT_LT(files, 300);
  for (const auto& entry : fs::directory_iterator(Path("out"))) {
    EXPECT_EQ(entry.path().extension(), ".MPM") << entry.path();
  }
  EXPECT_EQ(RunVelora({"verify", "-q", "-r", Path("out")}).status, 0);
}

}  // namespace
}  // namespace velora::test
