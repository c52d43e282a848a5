// `velora events`.
#include "ProgramTest.h"

namespace velora::test {
namespace {

class EventsCommand : public ProgramTest {
 protected:
  static Outcome Events(std::vector<std::string> words) {
    words.insert(words.begin(), "events");
    words.push_back("--no-flush");
    return RunVelora(words);
  }
  static Json List(const std::string& path) {
    const Outcome run = RunVelora({"events", "--json", path});
    EXPECT_EQ(run.status, 0) << run.err;
    return Json::parse(run.out);
  }
  /// "sample:type,param ..." and "start+length ..." in order.
  static std::string Short(const std::string& path) {
    const Json list = List(path);
    std::string text;
    for (const Json& e : list.at("events")) {
      text += e.at("sample").dump() + ":" + e.at("type").dump() + "," + e.at("param").dump() + " ";
    }
    for (const Json& r : list.at("regions")) {
      text += r.at("start").dump() + "+" + r.at("length").dump() + " ";
    }
    return text;
  }
};

TEST_F(EventsCommand, EditsAWaveInPlace) {
  const std::string wave = MakeWave(
      "a.wav", 4000,
      Marks({{800, "(12,5)"}, {800, "(13,6)"}, {900, "SILENCE", 50}}) + Chunk("KIOD", "keep"));
  const std::string crc = Info(wave).at("samplesCrc32");
  const Outcome run = Events({wave, "--add", "100,1,2", "--add", "3000,253,-7", "--remove",
                              "800,12", "--add-silence", "200,30", "--remove-silence", "900"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out + run.err, "");
  EXPECT_EQ(Short(wave), "100:1,2 800:13,6 3000:253,-7 200+30 ");
  EXPECT_EQ(Info(wave).at("samplesCrc32"), crc);
  EXPECT_EQ(Info(wave).at("chunks").at(0).at("tag"), "KIOD");
}

TEST_F(EventsCommand, TenEditsLeaveTheSourceOfAChipFileBitForBit) {
  const std::string chip = MakeChip("a.MPM", 9000, Marks({{2000, "SILENCE", 600}}));
  const std::string crc = Info(chip, {"--source"}).at("samplesCrc32");
  std::string expected;
  for (int i = 0; i < 10; ++i) {
    const std::string event = std::to_string(500 + 700 * i) + "," + std::to_string(i + 1) + ",9";
    ASSERT_EQ(Events({chip, "--add", event}).status, 0);
    ASSERT_EQ(Info(chip, {"--source"}).at("samplesCrc32"), crc) << "after edit " << i;
    const Outcome verified = RunVelora({"verify", chip});
    ASSERT_EQ(verified.status, 0) << verified.out;
    expected += std::to_string(500 + 700 * i) + ":" + std::to_string(i + 1) + ",9 ";
  }
  EXPECT_EQ(Short(chip), expected + "2000+600 ");
}

TEST_F(EventsCommand, SettingsOfAChipFileSurviveAnEdit) {
  const std::string wave = MakeWave("a.wav", 4000);
  ASSERT_EQ(RunVelora({"convert", wave, "-o", Path("a.MPM"), "--raw", "--silence-length", "77",
                       "--silence-threshold", "3"})
                .status,
            0);
  const std::string before = ReadText(Path("a.MPM"));
  ASSERT_EQ(Events({Path("a.MPM"), "--add", "5,6,7"}).status, 0);
  const std::string after = ReadText(Path("a.MPM"));
  EXPECT_EQ(before.substr(56, 6), U16(3) + U16(77 * 8000 / 1000) + U16(5));
  EXPECT_EQ(after.substr(56, 6), before.substr(56, 6));
}

TEST_F(EventsCommand, EveryFormComesBackAsItWent) {
  const std::string wave = MakeWave("a.wav", 44100,
                                    Marks({{0, "(1,2)"},
                                           {1, "(4100,-7)"},
                                           {1, "(5,0)"},
                                           {12345, "[4048,2]"},
                                           {7, "SILENCE", 3},
                                           {40000, "SILENCE", 4100}}));
  const std::string before = Short(wave);
  for (const std::string name : {"list.json", "list.csv", "list.txt"}) {
    ASSERT_EQ(Events({wave, "--export", Path(name)}).status, 0);
    const std::string copy = Path("copy-" + name + ".wav");
    const Outcome run =
        Events({wave, "--clear", "--clear-silence", "--import", Path(name), "-o", copy});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(Short(copy), before) << name;
  }
  EXPECT_EQ(Short(wave), before);
  const auto csv = Lines(ReadText(Path("list.csv")));
  EXPECT_EQ(csv.at(0), "kind,sample,length,type,param");
  EXPECT_EQ(csv.at(1), "event,0,,1,2");
  EXPECT_EQ(csv.at(5), "silence,7,3,,");
  EXPECT_EQ(Lines(ReadText(Path("list.txt"))).at(3), "1.543125\t1.543125\t[4048,2]");
  EXPECT_EQ(Lines(ReadText(Path("list.txt"))).at(5), "5.000000\t5.512500\tSILENCE");
}

TEST_F(EventsCommand, ExportGoesToStandardOutputOrKeepsWhatExists) {
  const std::string wave = MakeWave("a.wav", 100, Marks({{5, "(1,2)"}}));
  EXPECT_EQ(Events({wave, "--export", "-", "--as", "csv"}).out,
            "kind,sample,length,type,param\nevent,5,,1,2\n");
  WriteText(Path("list.csv"), "mine");
  EXPECT_EQ(Events({wave, "--export", Path("list.csv")}).status, 4);
  EXPECT_EQ(ReadText(Path("list.csv")), "mine");
  EXPECT_EQ(Events({wave, "--export", Path("list.csv"), "--force"}).status, 0);
  EXPECT_NE(ReadText(Path("list.csv")), "mine");
}

TEST_F(EventsCommand, BadListsAreRefusedWithThePlace) {
  struct Bad {
    const char* name;
    const char* text;
    const char* message;
  };
  const Bad lists[] = {
      {"a.csv", "sample,kind\n", "line 1: is not the heading"},
      {"b.csv", "kind,sample,length,type,param\nevent,1,,2\n", "line 2: has 4 fields"},
      {"c.csv", "kind,sample,length,type,param\r\n\r\nevent,4294967296,,2,3\r\n", "line 3: sample"},
      {"d.csv", "kind,sample,length,type,param\nnoise,1,,2,3\n", "line 2: kind 'noise'"},
      {"a.txt", "0.5\t0.5\t(1,2)\n0.5 0.5 (1,2)\n", "line 2: has not the three fields"},
      {"b.txt", "nan\t0.5\t(1,2)\n", "line 1: 'nan' is not a time"},
      {"c.txt", "-1\t0.5\t(1,2)\n", "line 1: '-1' is not a time"},
      {"d.txt", "2.0\t1.0\tSILENCE\n", "line 1: the silence ends before"},
      {"a.json", "{\"events\": [", "is not JSON"},
      {"b.json", "[]", "is not an object"},
      {"c.json", "{\"events\": [{\"sample\": 1, \"type\": 2}]}", "events[0] has no \"param\""},
      {"d.json", "{\"events\": [{\"sample\": -1, \"type\": 2, \"param\": 0}]}",
       "events[0] \"sample\" is not"},
      {"e.json", "{\"regions\": [7]}", "regions[0] is not an object"},
      {"f.json", "{\"regions\": 7}", "\"regions\" is not an array"},
      {"g.json", "{\"regions\": [{\"start\": 1e99, \"length\": 1}]}",
       "regions[0] \"start\" is not"},
  };
  const std::string wave = MakeWave("w.wav", 100, Marks({{5, "(1,2)"}}));
  const std::string before = ReadText(wave);
  for (const Bad& bad : lists) {
    WriteText(Path(bad.name), bad.text);
    const Outcome run = Events({wave, "--clear", "--import", Path(bad.name)});
    EXPECT_EQ(run.status, 3) << bad.name;
    EXPECT_NE(run.err.find(Path(bad.name) + ": " + bad.message), std::string::npos) << run.err;
  }
  EXPECT_EQ(Events({wave, "--import", Path("list.what")}).status, 2);
  EXPECT_EQ(ReadText(wave), before);
}

TEST_F(EventsCommand, LabelTracksOfAnEditorAreTaken) {
  const std::string wave = MakeWave("w.wav", 8000);
  WriteText(Path("l.txt"),
            "0.100000\t0.100000\t(1,2)\r\n\\\t100.0\t200.0\r\n0.2\t0.3\tchorus\r\n"
            "0.5\t0.75\tsilence\r\n");
  const Outcome run = Events({wave, "--import", Path("l.txt")});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("1 label that stand for no event"), std::string::npos) << run.err;
  EXPECT_EQ(Short(wave), "800:1,2 4000+2000 ");
}

TEST_F(EventsCommand, ARemovalThatMeetsNothingAnswersNo) {
  const std::string wave = MakeWave("w.wav", 100, Marks({{5, "(1,2)"}}));
  const std::string before = ReadText(wave);
  for (const std::vector<std::string>& words : {std::vector<std::string>{"--remove", "6"},
                                                {"--remove", "5,1,3"},
                                                {"--remove-silence", "5"}}) {
    const Outcome run = Events({wave, words[0], words[1], "--add", "7,7,7"});
    EXPECT_EQ(run.status, 1) << run.err;
    EXPECT_TRUE(run.err.starts_with("velora: " + wave + ": there is no ")) << run.err;
  }
  EXPECT_EQ(ReadText(wave), before);
}

TEST_F(EventsCommand, OutputElsewhereLeavesTheFile) {
  const std::string wave = MakeWave("w.wav", 100);
  const std::string before = ReadText(wave);
  EXPECT_EQ(Events({wave, "--add", "1,2,3", "-o", Path("new.wav")}).status, 0);
  EXPECT_EQ(ReadText(wave), before);
  EXPECT_EQ(Short(Path("new.wav")), "1:2,3 ");
  EXPECT_EQ(Events({wave, "--add", "1,2,3", "-o", Path("new.wav")}).status, 4);
  EXPECT_EQ(Events({wave, "--add", "1,2,3", "--dry-run"}).out, wave + " -> " + wave + "\n");
  EXPECT_EQ(ReadText(wave), before);
  const Outcome piped = RunVelora({"events", "-", "--add", "1,2,3", "-o", "-"}, {.input = before});
  EXPECT_EQ(piped.out, ReadText(Path("new.wav")));
}

TEST_F(EventsCommand, WhatTheEditWouldLoseIsTold) {
  const std::string wave = MakeWave("w.wav", 100, Marks({{5, "verse"}}) + Chunk("bext", "x"));
  const Outcome run = Events({wave, "--add", "500,2,3", "--strict"});
  EXPECT_EQ(run.status, 1);
  for (const char* part : {"\"bext\"", "1 label", "1 event behind the end"}) {
    EXPECT_NE(run.err.find(part), std::string::npos) << part << " in\n" << run.err;
  }
}

}  // namespace
}  // namespace velora::test
