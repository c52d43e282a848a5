// `velora project` as a person meets it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunVelora.h"
#include "support/TempDir.h"

namespace velora::test {
namespace {

using Json = nlohmann::json;

Outcome Project(const TempDir& dir, std::vector<std::string> words) {
  words.insert(words.begin(), "project");
  return RunVelora(words, {.directory = dir.path().string()});
}

/// A project with five pins.
void MakeToy(const TempDir& dir, const std::string& name) {
  const Outcome made =
      Project(dir, {"new", name, "--part", "L668H080", "pin0=0.3", "pin0.type=firmware",
                    "pin1=BP0.4", "pin2=1.0", "pin2.type=hardware", "pin2.keep=yes", "pin3=1.1",
                    "pin4=2.7", "pin4.gamma=0:0,128:90,255:255", "timer=TMG0", "pwm-frequency=50",
                    "Sounds.bark=sounds/bark.wav"});
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.err, "");
}

TEST(ProjectCommand, MakesAndShows) {
  const TempDir dir;
  MakeToy(dir, "toy.ini");
  const Json project = Json::parse(Project(dir, {"show", "--json", "toy.ini"}).out);
  EXPECT_EQ(project["path"], "toy.ini");
  EXPECT_EQ(project["part"], "L668H080");
  EXPECT_EQ(project["firmwarePwmTimer"], "TMG0");
  ASSERT_EQ(project["pins"].size(), 5u);
  EXPECT_EQ(project["pins"][1], Json::parse(R"({"pin": 1, "port": 0, "portPin": 4, "pwmType": 0,
      "stopValue": 0, "keepLevel": false, "multiPinValue": 0, "mapEventIndex": 252,
      "xResolution": 30, "yResolution": 63,
      "gamma": [{"sample": 0, "level": 0}, {"sample": 255, "level": 255}]})"));
  EXPECT_EQ(project["pins"][4]["gamma"].size(), 3u);
  EXPECT_EQ(project["resources"]["optionA"], 0);
  EXPECT_EQ(project["outputs"]["timerRecord"], nullptr);
  EXPECT_EQ(project["settings"], nullptr);
  EXPECT_EQ(project["userMap"], nullptr);

  const Outcome text = Project(dir, {"show", "toy.ini"});
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("  2  1.0    hardware         30      63     0  yes      251"),
            std::string::npos)
      << text.out;
}

TEST(ProjectCommand, EditsInPlaceAndNothingElse) {
  const TempDir dir;
  MakeToy(dir, "toy.ini");
  const std::string text = ReadText(dir / "toy.ini");
  EXPECT_EQ(Project(dir, {"set", "toy.ini", "pin0.frequency=50"}).status, 0);
  std::string wanted = text;
  const std::string before = "Pin0_XResolution = 30";
  wanted.replace(wanted.find(before), before.size(), "Pin0_XResolution = 50");
  EXPECT_EQ(ReadText(dir / "toy.ini"), wanted);
  EXPECT_EQ(Project(dir, {"set", "toy.ini", "pin0.frequency=30", "-o", "other.ini"}).status, 0);
  EXPECT_EQ(ReadText(dir / "other.ini"), text);
  EXPECT_EQ(Project(dir, {"set", "toy.ini", "pin0.frequency=1", "-o", "other.ini"}).status, 4);
  EXPECT_EQ(Project(dir, {"set", "--dry-run", "toy.ini", "pin0.frequency=1"}).out, "toy.ini\n");
  EXPECT_EQ(ReadText(dir / "toy.ini"), wanted);
}

TEST(ProjectCommand, DiffSaysWhatAndWhether) {
  const TempDir dir;
  MakeToy(dir, "a.ini");
  MakeToy(dir, "b.ini");
  const Outcome same = Project(dir, {"diff", "a.ini", "b.ini"});
  EXPECT_EQ(same.status, 0);
  EXPECT_EQ(same.out, "");
  ASSERT_EQ(Project(dir, {"set", "b.ini", "pin4=none", "Resources.OptionA=1", "method=bam",
                          "Sounds.bark=", "pin0.type=none"})
                .status,
            0);
  const Outcome other = Project(dir, {"diff", "a.ini", "b.ini"});
  EXPECT_EQ(other.status, 1);
  EXPECT_EQ(Lines(other.out),
            (std::vector<std::string>{"sound bark: sounds/bark.wav in a.ini, nothing in b.ini",
                                      "option A: 0 in a.ini, 1 in b.ini",
                                      "pin 0: kind of PWM: firmware in a.ini, none in b.ini",
                                      "pin 4: in use: yes in a.ini, no in b.ini",
                                      "convert method: PWM in a.ini, BAM in b.ini"}));
  const Json json = Json::parse(Project(dir, {"diff", "--json", "a.ini", "b.ini"}).out);
  EXPECT_EQ(json["differ"], true);
  EXPECT_EQ(json["differences"][1],
            Json::parse(R"({"what": "option A", "first": "0", "second": "1"})"));
}

TEST(ProjectCommand, TellsWhatIsWrong) {
  struct Case {
    std::vector<std::string> words;
    int status;
    const char* says;
  };
  const TempDir dir;
  MakeToy(dir, "toy.ini");
  const std::string text = ReadText(dir / "toy.ini");
  std::string broken = text;
  broken.replace(broken.find("Clock = 8192000"), 15, "Clock = 8MHz");
  broken.replace(broken.find("Pin2_Convert = 1"), 16, "Pin2_Convert 1");
  WriteText(dir / "broken.ini", broken);
  const Case cases[] = {
      {{"show", "broken.ini"}, 3, "velora: broken.ini: line 6: SystemClock: '8MHz' is no whole"},
      {{"show", "broken.ini"}, 3, "'Pin2_Convert 1' is neither [section] nor key = value"},
      {{"set", "broken.ini", "pin1=none"}, 3, "line 6"},
      {{"diff", "toy.ini", "broken.ini"}, 3, "line 6"},
      {{"show", "none.ini"}, 3, "velora: none.ini: "},
      {{"new", "toy.ini", "--part", "L668H080"}, 4, "velora: toy.ini: exists already"},
      {{"new", "x.ini"}, 2, "--part"},
      {{"new", "x.ini", "--part", "A;B"}, 2, "one line"},
      {{"new", "x.ini", "--part", "QQ"}, 0, "the chip catalogue has no part 'QQ'"},
      {{"set", "toy.ini"}, 2, "NAME=VALUE"},
      {{"set", "toy.ini", "pin1"}, 2, "'pin1' is not NAME=VALUE"},
      {{"set", "toy.ini", "pin32=0.1"}, 2, "'32' is not from 0 to 31"},
      {{"set", "toy.ini", "pin9.type=none"}, 2, "pin9=PORT.PIN gives it a place"},
      {{"set", "toy.ini", "pin1=XX.3"}, 2, "the ports are BP0"},
      {{"set", "toy.ini", "pin1.frequency=65536"}, 2, "not from 0 to 65535"},
      {{"set", "toy.ini", "pin1.type=fast"}, 2, "none, hardware, firmware, expander"},
      {{"set", "toy.ini", "pin1.gamma=5"}, 2, "no gamma point"},
      {{"set", "toy.ini", "pin1.colour=5"}, 2, "no 'colour'"},
      {{"set", "toy.ini", "VeloraPinMapInfo.UsedRAMSize=5"}, 2, "there is no such name"},
      {{"set", "toy.ini", "Resources.OptionA=one"}, 2, "'one' is no whole number"},
      {{"set", "toy.ini", "Resources.OptionB="}, 2, "there is no 'OptionB'"},
      {{"set", "toy.ini", "timer=a;b"}, 4, "FirmwarePWMTimer"},
      {{"diff", "toy.ini"}, 2, "two files"},
      {{"melt", "toy.ini"}, 2, "new, show, diff, set"},
  };
  for (const Case& c : cases) {
    const Outcome outcome = Project(dir, c.words);
    SCOPED_TRACE(c.words[0] + " " + c.words.back());
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    EXPECT_NE(outcome.err.find(c.says), std::string::npos) << outcome.err;
    EXPECT_EQ(ReadText(dir / "toy.ini"), text);
  }
}

TEST(ProjectCommand, WarningsAreStrict) {
  const TempDir dir;
  WriteText(dir / "p.ini", "[Project]\nPart = X\npart = Y\n");
  EXPECT_EQ(Project(dir, {"show", "p.ini"}).status, 0);
  const Outcome strict = Project(dir, {"show", "--strict", "p.ini"});
  EXPECT_EQ(strict.status, 1);
  EXPECT_EQ(strict.err, "velora: p.ini: warning: line 3: nothing reads 'part' in [Project]\n");
}

}  // namespace
}  // namespace velora::test
