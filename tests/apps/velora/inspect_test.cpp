// `velora verify` and `velora dump`, and both over a folder of recorded prompts.
#include <algorithm>

#include "ProgramTest.h"

namespace velora::test {
namespace {

class InspectCommands : public ProgramTest {};

TEST_F(InspectCommands, VerifyTellsGoodFromBad) {
  const std::string good = MakeChip("good.MPM", 5000, Marks({{800, "(12,5)"}}));
  const Outcome fine = RunVelora({"verify", good});
  EXPECT_EQ(fine.status, 0) << fine.out;
  EXPECT_TRUE(fine.out.starts_with(good + ": ok, MPM, 5000 samples")) << fine.out;

  const std::string bytes = ReadText(good);
  struct Damage {
    const char* name;
    std::string bytes;
  };
  std::string size = bytes;
  ++size[16];
  std::string stream = bytes;
  stream[200] = static_cast<char>(stream[200] ^ 0x21);
  const Damage damages[] = {
      {"size.MPM", size}, {"stream.MPM", stream}, {"cut.MPM", bytes.substr(0, bytes.size() - 3)}};
  for (const Damage& damage : damages) {
    WriteText(Path(damage.name), damage.bytes);
    const Outcome run = RunVelora({"verify", Path(damage.name)});
    EXPECT_EQ(run.status, 1) << damage.name << run.err;
    EXPECT_NE(run.out.find(Path(damage.name) + ": fault at "), std::string::npos) << run.out;
  }
  const Json report = Json::parse(RunVelora({"verify", "--json", Path("size.MPM")}).out).at(0);
  EXPECT_EQ(report.at("good"), false);
  EXPECT_EQ(report.at("faults").at(0).at("offset"), 16);
  EXPECT_EQ(report.at("faults").at(0).at("expected"), std::to_string(bytes.size()));

  WriteText(Path("junk.MPM"), "no sound at all");
  const Outcome all = RunVelora({"verify", "-q", good, Path("size.MPM"), Path("junk.MPM")});
  EXPECT_EQ(all.status, 3);
  EXPECT_EQ(all.out.find("ok"), std::string::npos);
}

TEST_F(InspectCommands, VerifyChecksWaves) {
  const std::string good = MakeWave("good.wav", 300, Marks({{5, "(1,2)"}, {9, "SILENCE", 20}}));
  EXPECT_EQ(RunVelora({"verify", good}).status, 0);
  const std::string bytes = ReadText(good);
  std::string rate = bytes;
  ++rate[28];  // bytes per second
  WriteText(Path("rate.wav"), rate);
  WriteText(Path("cut.wav"), bytes.substr(0, 500));
  EXPECT_EQ(RunVelora({"verify", Path("rate.wav")}).status, 1);
  EXPECT_EQ(RunVelora({"verify", Path("cut.wav")}).status, 1);
}

TEST_F(InspectCommands, DumpTilesStreamAndSound) {
  const std::string chip =
      MakeChip("a.MPM", 7000, Marks({{800, "(12,5)"}, {3000, "(200,64)"}, {5000, "SILENCE", 900}}));
  const Outcome run = RunVelora({"dump", "--json", chip});
  ASSERT_EQ(run.status, 0) << run.err;
  const Json dump = Json::parse(run.out);
  uint64_t offset = dump.at("stream").at("offset");
  uint64_t position = 0;
  std::vector<std::pair<int, int>> events;
  for (const Json& command : dump.at("commands")) {
    EXPECT_EQ(command.at("offset"), offset);
    EXPECT_EQ(command.at("position"), position);
    offset += command.at("size").get<uint64_t>();
    position += command.at("length").get<uint64_t>();
    EXPECT_EQ(command.at("row").is_null(),
              command.at("kind").get<std::string>().find("frame") == std::string::npos);
    if (command.at("event").is_null()) continue;
    events.emplace_back(command.at("event").at("action"), command.at("event").at("parameter"));
  }
  EXPECT_EQ(dump.at("commands").back().at("kind"), "end");
  EXPECT_EQ(offset, dump.at("stream").at("offset").get<uint64_t>() +
                        dump.at("stream").at("size").get<uint64_t>());
  EXPECT_EQ(position, 7000u);
  EXPECT_EQ(events, (std::vector<std::pair<int, int>>{{12, 5}, {200, 64}}));

  const auto lines = Lines(RunVelora({"dump", chip}).out);
  EXPECT_EQ(lines.size(), dump.at("commands").size() + 1);
  const auto withEvent = [](const std::string& line) {
    return line.find("event 12 (5)") != std::string::npos;
  };
  EXPECT_EQ(std::ranges::count_if(lines, withEvent), 1);
}

TEST_F(InspectCommands, DumpSaysWhereAStreamBreaks) {
  std::string bytes = ReadText(MakeChip("a.MPM", 3000));
  bytes[76] = 0x0F;  // the first command
  WriteText(Path("bad.MPM"), bytes);
  const Outcome run = RunVelora({"dump", Path("bad.MPM")});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("breaks at offset 76"), std::string::npos) << run.err;
  EXPECT_EQ(RunVelora({"dump", MakeWave("w.wav", 10)}).status, 3);
}

TEST_F(InspectCommands, RecordedPromptsConvertAndVerify) {
  const auto prompts = RecordedPrompts();
  if (prompts.empty()) GTEST_SKIP() << "no recorded prompts on this machine";
  // Two folders that share names, and a broken file among them.
  std::filesystem::create_directories(Path("in/digits"));
  size_t count = 0;
  for (size_t i = 0; i < prompts.size() && count < 80; i += 7, ++count) {
    const std::string folder = count % 2 ? "in/digits/" : "in/";
    std::filesystem::copy_file(prompts[i], Path(folder + "p" + std::to_string(count / 2) + ".wav"));
  }
  WriteText(Path("in/zzz.wav"), "RIFF\x04");
  const Outcome converted =
      RunVelora({"convert", "--no-flush", "-r", Path("in"), "-d", Path("out"), "--to", "MPM"});
  EXPECT_EQ(converted.status, 3);
  EXPECT_NE(converted.err.find("1 of " + std::to_string(count + 1) +
                               " files failed: " + Path("in/zzz.wav")),
            std::string::npos)
      << converted.err;
  const Outcome verified = RunVelora({"verify", "--json", "--recursive", Path("out")});
  EXPECT_EQ(verified.status, 0) << verified.err;
  const Json reports = Json::parse(verified.out);
  EXPECT_EQ(reports.size(), count);
  for (const Json& report : reports) EXPECT_EQ(report.at("faultCount"), 0) << report.at("path");
}

}  // namespace
}  // namespace velora::test
