// `velora info`.
#include <cstdio>

#include "ProgramTest.h"

namespace velora::test {
namespace {

class InfoCommand : public ProgramTest {};

/// A wave file that claims so many bytes of samples, all of them zeros that take
/// no room on the disk.
void WriteSparseWave(const std::string& path, uint32_t size) {
  std::string head = ChunkClaiming("RIFF", size + 36, "WAVE");
  head.append(Format(1, 8000, 16)).append(ChunkClaiming("data", size, ""));
  WriteText(path, head);
  std::filesystem::resize_file(path, head.size() + size);
}

/// CRC-32 bit by bit, over samples as signed 32-bit little-endian numbers.
std::string PlainCrc(const std::vector<int32_t>& samples) {
  uint32_t crc = 0xFFFFFFFF;
  for (const int32_t sample : samples) {
    for (int byte = 0; byte < 4; ++byte) {
      crc ^= static_cast<uint32_t>(sample) >> (8 * byte) & 0xFF;
      for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0);
    }
  }
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", ~crc);
  return digits;
}

TEST_F(InfoCommand, TellsAWaveOfAnotherProgram) {
  const std::string loops =
      Chunk("smpl", std::string(28, '\0') + U32(1) + U32(0) + U32(3) + U32(1) + U32(10) + U32(20) +
                        U32(0x80000000) + U32(4));
  WriteText(Path("a.wav"),
            Wave({100, -100, 32767, -32768, 0, 1, 2, 3},
                 Marks({{1, "(4100,7)"}, {2, "verse"}, {3, " silence ", 4}, {6, "[4048,2]"}}) +
                     loops + Chunk("bext", "x") + Chunk("KIOD", "abcde")));
  const Json info = Info(Path("a.wav"));
  EXPECT_EQ(info.at("path"), Path("a.wav"));
  EXPECT_EQ(info.at("format"), Json({{"id", 2}, {"name", "WAV"}, {"extension", ".WAV"}}));
  EXPECT_EQ(info.at("rate"), 8000);
  EXPECT_EQ(info.at("channels"), 1);
  EXPECT_EQ(info.at("frames"), 8);
  EXPECT_EQ(info.at("resolution"), 16);
  EXPECT_EQ(info.at("container"), 16);
  EXPECT_EQ(info.at("signed"), true);
  EXPECT_EQ(info.at("durationMs"), 1);
  EXPECT_EQ(info.at("samplesCrc32"), PlainCrc({100, -100, 32767, -32768, 0, 1, 2, 3}));
  const Json events =
      Json::array({{{"type", 4100}, {"sample", 1}, {"timeMs", 0}, {"param", 7}, {"text", ""}},
                   {{"type", 4048}, {"sample", 6}, {"timeMs", 0}, {"param", 2}, {"text", ""}}});
  EXPECT_EQ(info.at("events"), events);
  EXPECT_EQ(info.at("regions"), Json::array({{{"start", 3}, {"length", 4}}}));
  EXPECT_EQ(info.at("silence"), Json::array());
  EXPECT_EQ(info.at("cues").size(), 4u);
  EXPECT_EQ(info.at("labels").at(1), Json({{"id", 2}, {"text", "verse"}}));
  const Json loop = {
      {"id", 3},       {"type", 1}, {"start", 10}, {"end", 20}, {"fraction", 0x80000000u},
      {"playCount", 4}};
  EXPECT_EQ(info.at("loops"), Json::array({loop}));
  EXPECT_EQ(info.at("chunks"), Json::array({{{"tag", "KIOD"}, {"size", 5}}}));

  const std::string text = RunVelora({"info", Path("a.wav")}).out;
  for (const char* part : {"WAV (id 2)", "8000 Hz", "type 4100  param 7", "\"verse\"",
                           "10 to 20  plays 4", "\"KIOD\"  5 bytes"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
  }
}

TEST_F(InfoCommand, OffsetBinaryBytesCountAsSignedForTheCrc) {
  WriteText(Path("a.wav"),
            Riff(Format(1, 8000, 8) + Chunk("data", std::string("\x80\x00\xFF", 3))));
  const Json info = Info(Path("a.wav"));
  EXPECT_EQ(info.at("signed"), false);
  EXPECT_EQ(info.at("samplesCrc32"), PlainCrc({0, -128, 127}));
  EXPECT_EQ(Info(Path("a.wav"), {"--no-samples"}).at("samplesCrc32"), nullptr);
}

TEST_F(InfoCommand, ArrayKeepsTheOrderWhateverTheJobs) {
  std::vector<std::string> words = {"info", "--json", "--jobs", "4"};
  for (int i = 0; i < 40; ++i) {
    const std::string name = std::to_string(i) + ".wav";
    words.push_back(i % 7 == 3 ? Path(name) : MakeWave(name, 10 + 500 * (i % 5)));
  }
  const Outcome run = RunVelora(words);
  EXPECT_EQ(run.status, 3);
  const Json all = Json::parse(run.out);
  ASSERT_EQ(all.size(), 40u);
  for (size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(all.at(i).at("path"), words.at(i + 4));
    EXPECT_EQ(all.at(i).contains("error"), i % 7 == 3);
  }
  EXPECT_NE(run.err.find("6 of 40 files failed"), std::string::npos) << run.err;
}

TEST_F(InfoCommand, EmptyArrayAndTwoSpaceIndent) {
  EXPECT_EQ(RunVelora({"info", "--json", Path("none")}).out,
            "[\n  {\n    \"path\": \"" + Path("none") +
                "\",\n    \"error\": \"cannot examine: No such file or directory\"\n  }\n]\n");
}

TEST_F(InfoCommand, BytesThatAreNoUtf8BecomeReplacementCharacters) {
  MakeWave("a.wav", 100, Marks({{1, "caf\xE9 \xC3\xA9"}}));
  EXPECT_EQ(Info(Path("a.wav")).at("labels").at(0).at("text"), "caf\xEF\xBF\xBD \xC3\xA9");
}

TEST_F(InfoCommand, NoEscapeSequenceOfAFileReachesTheTerminal) {
  MakeWave("a.wav", 100, Marks({{1, "\x1b[31mred\n"}}));
  const Outcome text = RunVelora({"info", Path("a.wav")});
  EXPECT_EQ(text.out.find('\x1b'), std::string::npos);
  const Outcome missing = RunVelora({"info", "no\x1b[31m\nfile"});
  EXPECT_EQ(Lines(missing.err).size(), 1u);
  EXPECT_EQ(missing.err.find('\x1b'), std::string::npos);
}

TEST_F(InfoCommand, StandardInputIsAFileToo) {
  const std::string wave = MakeWave("a.wav", 500);
  Json fromFile = Info(wave);
  const Json fromPipe =
      Json::parse(RunVelora({"info", "--json", "-"}, {.input = ReadText(wave)}).out).at(0);
  fromFile["path"] = "-";
  EXPECT_EQ(fromPipe, fromFile);
}

TEST_F(InfoCommand, ADirectoryNeedsRecursive) {
  MakeWave("d/b/x.wav", 10);
  MakeWave("d/a.wav", 10);
  WriteText(Path("d/readme.txt"), "no sound");
  const Outcome refused = RunVelora({"info", Path("d")});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.err.find("is a directory"), std::string::npos) << refused.err;
  const Outcome taken = RunVelora({"info", "--json", "-r", Path("d")});
  EXPECT_EQ(taken.status, 0) << taken.err;
  const Json all = Json::parse(taken.out);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all.at(0).at("path"), Path("d/a.wav"));
  EXPECT_EQ(all.at(1).at("path"), Path("d/b/x.wav"));
}

TEST_F(InfoCommand, ASoundWhoseFramesCannotBeCountedIsRefused) {
  WriteSparseWave(Path("big.wav"), uint32_t{1} << 29);  // 512 MB
  for (const auto& words :
       {std::vector<std::string>{"info", Path("big.wav")},
        std::vector<std::string>{"info", "--json", Path("big.wav")},
        std::vector<std::string>{"convert", Path("big.wav"), "-o", Path("x.MPM")},
        std::vector<std::string>{"events", Path("big.wav")}}) {
    const Outcome run = RunVelora(words);
    EXPECT_EQ(run.status, 3) << words[0];
    EXPECT_NE(run.err.find("512 MB"), std::string::npos) << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(Path("x.MPM")));
}

TEST_F(InfoCommand, TextReadsNoSamples) {
  WriteSparseWave(Path("long.wav"), (uint32_t{1} << 29) - 2);
  // With 300 MB of memory the samples would not fit.
  const Outcome run = RunProgram(
      {"sh", "-c", "ulimit -v 300000; exec \"$0\" info \"$1\"", VeloraProgram(), Path("long.wav")});
  if (run.err.find("Sanitizer") != std::string::npos) {
    GTEST_SKIP() << "a sanitizer wants more memory than that";
  }
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("frames    268435455 "), std::string::npos) << run.out;
}

TEST_F(InfoCommand, ExplainCoversTheFileAndGoesOnWhereReadersGiveUp) {
  const std::string chip = MakeChip("a.MPM");
  const Outcome run = RunVelora({"info", "--explain", "--json", chip});
  ASSERT_EQ(run.status, 0) << run.err;
  const Json log = Json::parse(run.out).at(0);
  const std::string bytes = ReadText(chip);
  EXPECT_EQ(log.at("fileSize"), bytes.size());
  // Blocks of the file lie end to end.
  uint64_t reached = 0;
  for (const Json& entry : log.at("entries")) {
    if (entry.at("depth") != 0) continue;
    EXPECT_EQ(entry.at("offset"), reached) << entry;
    reached = entry.at("offset").get<uint64_t>() + entry.at("size").get<uint64_t>();
  }
  EXPECT_EQ(reached, bytes.size());

  WriteText(Path("junk.bin"), "this is no sound");
  const Outcome junk = RunVelora({"info", "--explain", Path("junk.bin")});
  EXPECT_EQ(junk.status, 0) << junk.err;
  EXPECT_NE(junk.out.find("unknown format"), std::string::npos) << junk.out;
}

}  // namespace
}  // namespace velora::test
