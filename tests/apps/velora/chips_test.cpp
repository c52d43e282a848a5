// `velora chips` as a person meets it.
#include <filesystem>

#include "ProgramTest.h"

namespace velora::test {
namespace {

namespace fs = std::filesystem;

class Chips : public ProgramTest {
 protected:
  /// A copy of the shipped files, to be spoilt.
  void CopyData() {
    const fs::path data = fs::path(VELORA_SOURCE_DIR) / "data";
    for (const auto& entry : fs::directory_iterator(data)) {
      fs::copy_file(entry.path(), Path(entry.path().filename().string()));
    }
  }

  void Append(const std::string& name, const std::string& text) {
    WriteText(Path(name), ReadText(Path(name)) + text);
  }

  Outcome Run(std::vector<std::string> words) {
    words.insert(words.begin(), "chips");
    words.insert(words.end(), {"--data", Path("")});
    return RunVelora(words);
  }
};

TEST_F(Chips, ListsTheShippedParts) {
  const Outcome run = RunVelora({"chips"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("K668C036"), std::string::npos);
  EXPECT_NE(run.out.find("L668H080      1536    32    8  Sound chip of 80 s with sensors"),
            std::string::npos)
      << run.out;
  const Json all = Json::parse(RunVelora({"chips", "--json"}).out);
  EXPECT_EQ(all.at("parts").size() + 1, Lines(run.out).size());
  EXPECT_EQ(all["parts"][0], Json::parse(R"({"part": "K611A010", "title":
      "Sound chip of 10 s, ADPCM", "chipCode": 101777424, "ramSize": 128, "pins": 24})"));
}

TEST_F(Chips, TheShippedFilesHaveNoFault) {
  const Outcome run = RunVelora({"chips", "--check"});
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(Json::parse(RunVelora({"chips", "--check", "--json"}).out),
            Json::parse(R"({"findings": []})"));
}

TEST_F(Chips, Searches) {
  const Outcome run = RunVelora({"chips", "k668c"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out).size(), 12u) << run.out;
  const Json found = Json::parse(RunVelora({"chips", "SENSORS", "--json"}).out);
  ASSERT_EQ(found.at("parts").size(), 1u);
  EXPECT_EQ(found["parts"][0]["part"], "L668H080");

  const Outcome none = RunVelora({"chips", "K668C036X"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err,
            "velora: K668C036X: no part has this number, or this in its number or title; did you "
            "mean K668C036?\n");
}

TEST_F(Chips, ShowsOnePartWithItsPins) {
  const Outcome run = RunVelora({"chips", "l668h080"});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* const line : {
           "L668H080  Sound chip of 80 s with sensors",
           "RAM         1536 bytes: 96 system, 32 other, 1408 left for firmware and outputs",
           "          0   1   2   3   4   5   6   7   8",
           "  BP1   |Po |Po |P  |P  |P  |P  |P s|P s|  8-15",
           "        +---+---+---+---+---+---+---+---+---+",
           "  BP2   |   |   |   |   |   |   |   | o |   |  16-24",
           "  IP0   |   |   |   |   |   |  s|  s|  25-31",
           "Timers      FXF10, TM0, TM1, TMG0",
           "Record      family SDS_L668H",
           "  MaxIOExpanderNum            2",
       }) {
    const std::vector<std::string> lines = Lines(run.out);
    EXPECT_NE(std::ranges::find(lines, line), lines.end()) << line << "\nis not in\n" << run.out;
  }
}

TEST_F(Chips, JsonHoldsEveryFactUnderItsDocumentedKey) {
  const Json chip = Json::parse(RunVelora({"chips", "K664A100", "--json"}).out);
  const std::string page = ReadText(std::string(VELORA_SOURCE_DIR) + "/docs/commands/chips.md");
  for (const auto& [key, value] : chip.items()) {
    EXPECT_NE(page.find("| `" + key), std::string::npos) << key;
    for (const auto& inner : value.items()) {
      if (!value.is_object()) break;
      EXPECT_NE(page.find("`" + inner.key() + "`"), std::string::npos) << inner.key();
    }
  }
  EXPECT_EQ(chip["ports"][1], Json::parse(R"({"port": "BP1", "firstPin": 0, "lastPin": 3,
      "firstIndex": 4, "lastIndex": 7})"));
  EXPECT_EQ(chip["ranges"]["matrixB"][1], Json::parse(R"({"port": "BP4", "firstPin": 3,
      "lastPin": 0, "firstIndex": 23, "lastIndex": 20, "preferred": false})"));
  EXPECT_TRUE(chip["ranges"]["shared"].is_null());
  EXPECT_EQ(chip["ranges"]["special"].size(), 2u);
  EXPECT_EQ(chip["record"]["families"], Json::parse(R"(["664", "K664"])"));
  EXPECT_EQ(chip["ram"]["stackBase"], 20);
  EXPECT_TRUE(Json::parse(RunVelora({"chips", "Z910A010", "--json"}).out)["record"].is_null());
}

TEST_F(Chips, TellsWhereAFactComesFrom) {
  CopyData();
  WriteText(Path("ChipInfo.cfg"),
            "[Base]\nRamSize = 1\nTitle = base\n[P1]\nISA = [Base]\nPart = 1\nRamSize = 2\n");
  WriteText(Path("ChipProperty.cfg"), "[Other]\nPart = 1\n");
  const Outcome run = Run({"p1", "--why"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "P1\n\n"
            "ChipInfo.cfg: [P1] > [Base]\n"
            "  Title = base\n"
            "      set by [Base] in line 3\n"
            "  RamSize = 2\n"
            "      set by [P1] in line 7\n"
            "      overrides 1 of [Base] in line 2\n\n"
            "ChipProperty.cfg: no such section\n");
  const Json why = Json::parse(Run({"p1", "--why", "--json"}).out);
  EXPECT_EQ(why["files"][0]["sections"], Json::parse(R"(["P1", "Base"])"));
  EXPECT_EQ(why["files"][0]["keys"][1], Json::parse(R"({"key": "RamSize",
      "setBy": {"section": "P1", "line": 7, "value": "2"},
      "overrides": [{"section": "Base", "line": 2, "value": "1"}]})"));
}

TEST_F(Chips, ChecksAndNamesFileSectionAndKey) {
  CopyData();
  Append("ChipInfo.cfg", "[New1]\nISA = [Series.K668C]\nPart = 1\nChipCode = 1\nRamSise = 3\n");
  Append("ChipProperty.cfg", "[New1]\nPart = 1\nISA = [Series.K66]\n");
  Append("IOMap.ini", "BP9 = 1\n");
  const Outcome run = Run({"--check"});
  EXPECT_EQ(run.status, 1);
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 3u) << run.out;
  EXPECT_NE(lines[0].find("ChipInfo.cfg:"), std::string::npos);
  EXPECT_NE(lines[0].find("[New1] RamSise: is no key of a chip; RamSize is meant?"),
            std::string::npos);
  EXPECT_NE(lines[1].find("[New1] ISA: there is no section [Series.K66]; [Series.K6] is meant?"),
            std::string::npos)
      << lines[1];
  EXPECT_NE(lines[2].find("[Register Mapping] BP9: is no port of IOPort"), std::string::npos);
  EXPECT_NE(run.err.find("47 parts, 3 findings"), std::string::npos);
}

/// What the head of the file promises: a section of at most ten lines.
TEST_F(Chips, ANewPartIsTenLines) {
  CopyData();
  Append("ChipInfo.cfg",
         "\n[K668C091]\n"
         "ISA = [Series.K668C]\n"
         "Part = 1\n"
         "Title = Sound chip of 91 s\n"
         "ChipCode = 0x06680291\n"
         "RamSize = 576\n");
  Append("ChipProperty.cfg", "\n[K668C091]\nISA = [Series.K668]\nPart = 1\n");
  EXPECT_EQ(Run({"--check"}).status, 0) << Run({"--check"}).out;
  const Outcome run = Run({"K668C091"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("576 bytes"), std::string::npos);
}

TEST_F(Chips, FilesThatCannotBeReadAreInputErrors) {
  const Outcome run = Run({});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("ChipInfo.cfg"), std::string::npos) << run.err;
  CopyData();
  fs::remove(Path("ChipProperty.cfg"));
  const Outcome part = Run({"K668C036"});
  EXPECT_EQ(part.status, 0) << "the catalogue alone is enough";
  EXPECT_NE(part.err.find("warning: "), std::string::npos) << part.err;
  EXPECT_NE(part.out.find("Record      none"), std::string::npos);
  EXPECT_EQ(Run({"--check"}).status, 3);
}

TEST_F(Chips, AFaultyPartIsToldAndTheOthersStillListed) {
  CopyData();
  Append("ChipInfo.cfg", "[Bad1]\nISA = [Series.K668C]\nPart = 1\n");
  EXPECT_EQ(Run({"Bad1"}).status, 3);
  const Outcome all = Run({});
  EXPECT_EQ(all.status, 0);
  EXPECT_NE(all.out.find("Bad1        faulty: [Bad1] ChipCode: is missing"), std::string::npos);
}

TEST_F(Chips, OptionsThatContradictAreWrongUsage) {
  EXPECT_EQ(RunVelora({"chips", "--why"}).status, 2);
  EXPECT_EQ(RunVelora({"chips", "K668C036", "--check"}).status, 2);
  EXPECT_EQ(RunVelora({"chips", "Nothing", "--why"}).status, 1);
}

}  // namespace
}  // namespace velora::test
