// `velora curve`: levels, pictures, and events in a sound.
#include <cmath>
#include <numeric>

#include "ProgramTest.h"

namespace velora::test {
namespace {

using Words = std::vector<std::string>;

const std::string kRoot = VELORA_SOURCE_DIR;
const std::string kDemo = kRoot + "/examples/curves/demo.json";

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class CurveTest : public ProgramTest {
 protected:
  static Outcome Curve(Words words, const std::string& input = {}) {
    words.insert(words.begin(), "curve");
    return RunVelora(words, {.input = input});
  }

  /// The levels of the first curve that comes out.
  static std::vector<int> Levels(Words words, const std::string& input = {}) {
    words.insert(words.end(), {"--as", "json"});
    const Outcome run = Curve(words, input);
    EXPECT_EQ(run.status, 0) << run.err;
    if (run.status != 0) return {};
    return Json::parse(run.out)["curves"][0]["levels"].get<std::vector<int>>();
  }

  std::string Write(const std::string& name, const std::string& text) const {
    WriteText(Path(name), text);
    return Path(name);
  }
};

TEST_F(CurveTest, SineComesOutAsCsvSampleBySample) {
  const Outcome run = Curve({"sine", "--start", "0", "--end", "7999", "--rate", "8000", "--freq",
                             "12.5", "--high", "255", "--low", "0"});
  ASSERT_EQ(run.status, 0) << run.err;
  const auto lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 8001u);
  EXPECT_EQ(lines[0], "sample,sine");
  for (int i = 0; i < 8000; ++i) {
    // A cycle of 640 has 641 samples, and begins one step behind its zero.
    const double angle = ((i + 1) % 641) / 640.0 * 6.283185307179586;
    const int level = static_cast<int>(std::sin(angle) * 127.5 + 127.5);
    ASSERT_EQ(lines[static_cast<size_t>(i) + 1], std::to_string(i) + "," + std::to_string(level));
  }
}

TEST_F(CurveTest, EveryKindTakesItsOptions) {
  const std::string constant = Write("constant.wav", Wave(std::vector<int16_t>(40, 16384)));
  std::vector<int16_t> burst(30, 10);
  std::fill(burst.begin() + 10, burst.begin() + 20, int16_t{-5000});
  const std::string gated = Write("burst.wav", Wave(burst));
  const auto repeat = [](std::vector<std::pair<int, int>> runs) {
    std::vector<int> levels;
    for (const auto& run : runs)
      levels.insert(levels.end(), static_cast<size_t>(run.first), run.second);
    return levels;
  };
  const struct {
    Words words;
    std::vector<int> levels;
  } cases[] = {
      {{"level", "--level", "7", "--end", "2"}, {7, 7, 7}},
      {{"level", "--level", "7", "--start", "4", "--end", "5", "--inverted"}, {248, 248}},
      {{"ramp", "--to", "8", "--end", "3"}, {0, 2, 4, 6}},
      {{"flash", "--freq", "250", "--rate", "2000", "--duty", "25", "--end", "9"},
       {255, 255, 0, 0, 0, 0, 0, 0, 255, 255}},
      {{"flash", "--freq", "250", "--rate", "1000", "--phase", "3", "--low", "9", "--end", "3"},
       {9, 255, 255, 9}},
      {{"triangle", "--freq", "1000", "--rate", "8000", "--high", "40", "--peak", "7", "--end",
        "15"},
       {0, 10, 20, 30, 40, 30, 20, 10, 0, 10, 20, 30, 40, 30, 20, 10}},
      {{"spline", "--points", "0:0,4:100"}, {0, 25, 50, 75, 100}},
      {{"polyline", "--points", "2:10,4:30", "--end", "5"}, {10, 10, 10, 20, 30, 30}},
      {{"steps", "--points", "1:5,3:9"}, {0, 5, 5, 9}},
      {{"image", "--levels", "3,1,2", "--start", "7"}, {3, 1, 2}},
      {{"envelope", "--wave", constant}, std::vector<int>(40, 128)},
      {{"envelope", "--wave", constant, "--map", "0:0,128:64,255:255", "--end", "5"},
       std::vector<int>(6, 64)},
      {{"energy", "--wave", gated, "--window", "5", "--threshold", "1000", "--high", "200"},
       repeat({{10, 0}, {10, 200}, {10, 0}})},
      {{"colour", "--colours", "0:#0a0000,2:#140000:hold,4:#ff0000"}, {10, 15, 20, 20, 20}},
      {{"colour-envelope", "--colours", "0:#000000,255:#ff0000", "--wave", constant, "--window",
        "8"},
       std::vector<int>(40, 127)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.words));
    EXPECT_EQ(Levels(c.words), c.levels);
  }
}

TEST_F(CurveTest, ProductsMultiplyTheirTwoCurves) {
  const std::string product =
      R"({"kind": "product", "end": 3, "curves": [{"kind": "level", "level": 128},
          {"kind": "steps", "points": [[0, 255], [2, 128]]}]})";
  EXPECT_EQ(Levels({"-"}, product), (std::vector<int>{128, 128, 64, 64}));
}

TEST_F(CurveTest, FormsAgreeAndNamesStayApart) {
  const std::string two = Write("two.json",
                                R"({"rate": 100, "curves": [
          {"kind": "steps", "name": "a,b", "start": 1, "points": [[1, 5], [2, 6]]},
          {"kind": "colour", "name": "run", "pin": [4, 5, 6],
           "colours": [[2, "#010203", "hold"], [4, "#ffffff"]], "start": 2},
          {"kind": "level", "start": 900000000, "end": 900000001},
          {"kind": "level", "start": 7, "end": 8}]})");
  const Outcome csv = Curve({two});
  ASSERT_EQ(csv.status, 0) << csv.err;
  const auto lines = Lines(csv.out);
  ASSERT_EQ(lines.size(), 9u) << "samples that no curve has take no row";
  EXPECT_EQ(lines[0], "sample,\"a,b\",run.red,run.green,run.blue,level,level 2");
  EXPECT_EQ(lines[1], "1,5,,,,,");
  EXPECT_EQ(lines[2], "2,6,1,2,3,,");
  EXPECT_EQ(lines[8], "900000001,,,,,255,");

  const Json json = Json::parse(Curve({two, "--json"}).out);
  EXPECT_EQ(json["rate"], 100);
  ASSERT_EQ(json["curves"].size(), 6u);
  EXPECT_EQ(json["curves"][3], Json::parse(R"({"name": "run.blue", "kind": "colour", "start": 2,
      "end": 4, "pin": 6, "levels": [3, 3, 3]})"));
  EXPECT_TRUE(json["curves"][0]["pin"].is_null());

  const Outcome several = Curve({two, "--as", "raw"});
  EXPECT_EQ(several.status, 2);
  EXPECT_TRUE(Contains(several.err, "run.green")) << several.err;
  EXPECT_EQ(Curve({two, "--as", "raw", "--only", "run.green"}).out, "\x02\x02\x02");
  const Outcome mistyped = Curve({two, "--only", "run.gren"});
  EXPECT_EQ(mistyped.status, 2);
  EXPECT_TRUE(Contains(mistyped.err, "did you mean 'run.green'?")) << mistyped.err;
}

TEST_F(CurveTest, WrongOptionsSayWhatIsWrong) {
  const std::string wave = MakeWave("speech.wav");
  const struct {
    Words words;
    std::string message;
  } cases[] = {
      {{}, "CURVE is missing"},
      {{"sin"}, "did you mean 'sine'?"},
      {{"sine", "--rate", "8000", "--end", "9"}, "freq is missing"},
      {{"sine", "--freq", "1", "--end", "9"}, "--rate"},
      {{"sine", "--freq", "1", "--rate", "8000"}, "end is missing"},
      {{"sine", "--freq", "1", "--duty", "3"}, "--duty: a curve of the kind sine has no 'duty'"},
      {{"sine", "--freq", "1.23456"}, "more than four decimals"},
      {{"sine", "--freq", "-1"}, "is not a frequency"},
      {{"sine", "--freq", "0", "--rate", "8000", "--end", "9"}, "gives no levels"},
      {{"sine", "--freq", "9000", "--rate", "8000", "--end", "9"}, "shorter than a sample"},
      {{"sine", "--freq", "1", "--rate", "8000", "--end", "9", "--low", "9", "--high", "8"},
       "low level 9 is above the high level 8"},
      {{"flash", "--freq", "256", "--rate", "8000", "--end", "9"}, "below 256 Hz"},
      {{"triangle", "--freq", "1000", "--rate", "8000", "--peak", "9", "--end", "9"},
       "rise for 8 and fall for 0"},
      {{"level", "--start", "9", "--end", "9"}, "does not lie behind the start"},
      {{"polyline", "--points", "0:0,0:5"}, "does not lie behind 0"},
      {{"polyline", "--points", "0:0"}, "two points"},
      {{"polyline", "--points", "0:0,5:256"}, "'256'"},
      {{"image", "--levels", "1,2,3", "--end", "9"}, "there are 3 for the 10 samples"},
      {{"colour", "--colours", "0:#12345,4:#000000"}, "is not a colour"},
      {{"colour", "--colours", "0:#000000,4:#ffffff", "--pin", "1"}, "3 outputs, and 1 pin"},
      {{"colour", "--colours", "0:#000000,4:#ffffff", "--pin", "1,2,1"}, "a pin twice"},
      {{"colour-envelope", "--colours", "0:#000000,99:#ffffff", "--wave", wave}, "span 254"},
      {{"envelope", "--end", "9"}, "--wave"},
      {{"energy", "--wave", wave, "--rate", "11025"}, "8000 samples a second"},
      {{"level", "--end", "9", "--pin", "32"}, "'32'"},
      {{"level", "--end", "9", "-o", Path("level.txt")}, ".csv"},
      {{kDemo, "--freq", "3"}, "--freq belongs to a curve"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.words));
    const Outcome run = Curve(c.words);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(Lines(run.err).size(), 1u) << run.err;
    EXPECT_TRUE(Contains(run.err, c.message)) << run.err;
  }
}

TEST_F(CurveTest, FaultyDescriptionsNameThePlace) {
  const struct {
    std::string text;
    std::string message;
  } cases[] = {
      {"{\n  \"curves\": [\n    {\"kind\": \"ramp\",}\n  ]\n}", "line 3, column 21"},
      {"", "line 1, column 1"},
      {"[]", "\"curves\""},
      {R"({"curves": []})", "not an array of curves"},
      {R"({"curves": [{"kind": "ramp", "end": 9}], "wav": "x"})", "did you mean 'wave'?"},
      {R"({"curves": [{"kind": "ramp", "end": 9}, {"end": 9}]})", "curves[1]: has no \"kind\""},
      {R"({"curves": [{"kind": "sinus"}]})", "curves[0]: 'sinus' is no kind of curve"},
      {R"({"rate": 8000, "curves": [{"kind": "sine", "freqency": 3}]})",
       "has no 'freqency'; did you mean 'freq'?"},
      {R"({"curves": [{"kind": "sine", "colours": 3}]})", "has no 'colours'; it has name, start"},
      {R"({"curves": [{"kind": "sine", "endFrek": 3}]})", "did you mean 'endFreq'?"},
      {R"({"curves": [{"kind": "sine", "freq": "3"}]})", "curves[0]: freq: is not a number"},
      {R"({"curves": [{"kind": "ramp", "from": 256}]})", "from: '256' is not an integer"},
      {R"({"curves": [{"kind": "ramp", "from": 1.5}]})", "from: '1.5' is not an integer"},
      {R"({"curves": [{"kind": "ramp", "from": 1, "from": 2}]})", "\"from\" twice"},
      {R"({"curves": [{"kind": "spline", "points": [[0, 1], [2]]}]})", "points: '2' is not"},
      {R"({"curves": [{"kind": "spline", "points": [[0, [1]], [2, 3]]}]})", "no place here"},
      {R"({"curves": [{"kind": "ramp", "end": 9, "inverted": 1}]})", "inverted: is not true"},
      {R"({"kind": "product", "end": 9, "curves": [{"kind": "ramp"}]})", "array of two curves"},
      {R"({"kind": "product", "end": 9, "curves": [{"kind": "ramp"}, {"kind": "ramp", "pin": 1}]})",
       "curves[1]: a curve of the kind ramp has no 'pin'"},
      {R"({"kind": "product", "end": 9, "curves": [{"kind": "ramp"},
          {"kind": "colour", "colours": [[0, "#000000"], [1, "#000000"]]}]})",
       "a colour is no factor"},
      {R"({"curves": [{"kind": "sine", "freq": 3, "end": 9}]})",
       "curves[0] (sine): needs the rate"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const Outcome run = Curve({"-"}, c.text);
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(Lines(run.err).size(), 1u) << run.err;
    EXPECT_TRUE(Contains(run.err, c.message)) << run.err;
  }
}

TEST_F(CurveTest, HostileDescriptionsEndQuickly) {
  std::string nested = R"({"kind": "ramp", "end": 9})";
  for (int i = 0; i < 5000; ++i) {
    nested.insert(0, R"({"kind": "product", "curves": [{"kind": "ramp"}, )").append("]}");
  }
  const Outcome deep = Curve({"-"}, nested);
  EXPECT_EQ(deep.status, 3);
  EXPECT_TRUE(Contains(deep.err, "nested too deep")) << deep.err;
  const Outcome brackets = Curve({"-"}, std::string(1 << 20, '['));
  EXPECT_EQ(brackets.status, 3);
}

TEST_F(CurveTest, RangesOfDaysAreRefusedBeforeMemoryIsTaken) {
  for (const Words& words :
       {Words{"level", "--end", "4294967295"}, Words{"ramp", "--end", "400000000"},
        Words{"colour", "--colours", "0:#000000,100000000:#ffffff"}}) {
    const Outcome run = Curve(words);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(Contains(run.err, "268435456 are made at once")) << run.err;
  }
  // Points far behind the end cost nothing.
  EXPECT_EQ(Levels({"polyline", "--points", "0:0,4294967295:255", "--end", "3"}),
            (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(CurveTest, TheExampleIsDrawnInBothThemes) {
  for (const std::string theme : {"light", "dark"}) {
    const std::string svg = Path(theme + ".svg");
    const Outcome run = Curve({kDemo, "-o", svg, "--theme", theme});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string text = ReadText(svg);
    for (const char* name :
         {"weasels.wav", "breath", "sweep", "blink", "tail", "mouth", "ears", "cheeks"}) {
      EXPECT_TRUE(Contains(text, std::string(">").append(name).append("</text>"))) << name;
    }
    for (const char* style : {"lane0", "fill5", "laneRed", "laneBlue", "laneStep", "swatch"}) {
      EXPECT_TRUE(Contains(text, std::string("class=\"").append(style).append("\""))) << style;
    }
    EXPECT_TRUE(text.ends_with("</svg>\n"));
    if (RunProgram({"sh", "-c", "command -v xmllint"}).status == 0) {
      EXPECT_EQ(RunProgram({"xmllint", "--noout", svg}).status, 0);
    }
    EXPECT_EQ(Curve({kDemo, "-o", svg}).status, 4) << "overwritten without --force";
    EXPECT_EQ(Curve({kDemo, "-o", svg, "--force"}).status, 0);
  }
}

TEST_F(CurveTest, LinesGoWhereTheLevelsAre) {
  // Lanes of 100 pixels: level 255 at y = 92, level 0 at 192; 300 samples over 912 pixels.
  const Outcome run = Curve({"steps", "--points", "0:255,100:0,200:51", "--end", "299", "--as",
                             "svg", "--width", "1000", "--height", "100"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(
      Contains(run.out, "class=\"lane0\" d=\"M64 92L368 92L368 192L672 192L672 172L976 172\""))
      << run.out;
}

// ---- into a sound -----------------------------------------------------------

struct Grid {
  uint64_t rate;
  uint64_t frequency;
  int resolution;
};

/// The events that levels become, by the rule itself.
Json ExpectedEvents(const std::vector<int>& levels, int start, int pin, const Grid& grid) {
  Json events = Json::array();
  int last = -1;
  for (uint64_t k = 0; k * grid.rate / grid.frequency < levels.size(); ++k) {
    const uint64_t at = k * grid.rate / grid.frequency;
    const int q = static_cast<int>(std::floor(levels[at] * grid.resolution / 255.0 + 0.5));
    if (q != last) events.push_back({static_cast<uint64_t>(start) + at, 253 - pin, q});
    last = q;
  }
  return events;
}

/// [sample, type, param] of the sound's events of a type.
Json EventsOfType(const Json& info, int type) {
  Json events = Json::array();
  for (const Json& event : info["events"]) {
    if (event["type"] == type) events.push_back({event["sample"], event["type"], event["param"]});
  }
  return events;
}

TEST_F(CurveTest, CurvesBecomeEventsOfTheirPins) {
  const Words curve = {"triangle", "--freq", "2.5", "--start", "100", "--end", "3499"};
  const struct {
    Words words;
    int pin;
    Grid grid;
  } cases[] = {
      {{"--pin", "0"}, 0, {8000, 30, 63}},
      {{"--pin", "31", "--sample-freq", "77", "--resolution", "255"}, 31, {8000, 77, 255}},
      {{"--pin", "5", "--sample-freq", "8000", "--resolution", "1"}, 5, {8000, 8000, 1}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.words));
    const std::string type = std::to_string(253 - c.pin);
    // The second and third stand in the curve's range, the last behind it.
    const std::string wave = MakeWave("pin" + type + ".wav", 4000,
                                      Marks({{50, "(" + type + ",9)"},
                                             {100, "(" + type + ",8)"},
                                             {3499, "(" + type + ",7)(12,4)"},
                                             {3500, "(" + type + ",6)"}}));
    const Json before = Info(wave);
    Words withWave = curve;
    withWave.insert(withWave.end(), {"--wave", wave});
    const auto levels = Levels(withWave);
    Words into = curve;
    into.insert(into.end(), c.words.begin(), c.words.end());
    into.insert(into.end(), {"--into", wave, "--no-flush"});
    const Outcome run = Curve(into);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(Contains(run.err, "in place of 2")) << run.err;

    Json expected = ExpectedEvents(levels, 100, c.pin, c.grid);
    expected.insert(expected.begin(), Json{50, 253 - c.pin, 9});
    expected.push_back(Json{3500, 253 - c.pin, 6});
    const Json after = Info(wave);
    EXPECT_EQ(EventsOfType(after, 253 - c.pin), expected);
    EXPECT_EQ(EventsOfType(after, 12), EventsOfType(before, 12));
    EXPECT_EQ(after["samplesCrc32"], before["samplesCrc32"]);

    const std::string once = ReadText(wave);
    EXPECT_EQ(Curve(into).status, 0);
    EXPECT_EQ(ReadText(wave), once) << "a second run changed the file";
  }
}

TEST_F(CurveTest, FromCurveToChipFile) {
  const std::string wave = MakeWave("speech.wav");
  ASSERT_EQ(Curve({"envelope", "--pin", "0", "--into", wave}).status, 0);
  const std::string chip = Path("speech.MPM");
  ASSERT_EQ(RunVelora({"convert", wave, "-o", chip}).status, 0);
  const Json events = EventsOfType(Info(wave), 253);
  EXPECT_GT(events.size(), 5u);
  EXPECT_EQ(EventsOfType(Info(chip), 253), events);

  // And straight into the chip file, whose source samples stay.
  const Json source = Info(chip, {"--source"});
  const std::string copy = Path("copy.MPM");
  ASSERT_EQ(Curve({"flash", "--freq", "4", "--pin", "1", "--into", chip, "-o", copy}).status, 0);
  const Json edited = Info(copy, {"--source"});
  EXPECT_EQ(edited["samplesCrc32"], source["samplesCrc32"]);
  EXPECT_EQ(EventsOfType(edited, 253), events);
  EXPECT_EQ(EventsOfType(edited, 252).size(), 4u);
  EXPECT_EQ(EventsOfType(Info(chip), 252).size(), 0u) << "-o writes elsewhere";
}

TEST_F(CurveTest, DescriptionsSetSeveralPinsAtOnce) {
  const std::string wave = MakeWave("speech.wav");
  const std::string both = Write("both.json", R"({"resolution": 10, "curves": [
      {"kind": "level", "level": 255, "pin": 1},
      {"kind": "level", "level": 255, "pin": 2, "resolution": 20, "end": 1999},
      {"kind": "level", "level": 0, "pin": 2, "start": 2000},
      {"kind": "ramp"},
      {"kind": "colour", "pin": [7, 8, 9], "colours": [[0, "#ff8000"], [3999, "#ff8000"]]}]})");
  ASSERT_EQ(Curve({both, "--into", wave}).status, 0);
  const Json info = Info(wave);
  EXPECT_EQ(EventsOfType(info, 252), Json::parse("[[0, 252, 10]]"));
  EXPECT_EQ(EventsOfType(info, 251), Json::parse("[[0, 251, 20], [2000, 251, 0]]"));
  EXPECT_EQ(EventsOfType(info, 246), Json::parse("[[0, 246, 10]]"));
  EXPECT_EQ(EventsOfType(info, 245), Json::parse("[[0, 245, 5]]"));
  EXPECT_EQ(EventsOfType(info, 244), Json::parse("[[0, 244, 0]]"));
  EXPECT_EQ(info["events"].size(), 6u);
}

TEST_F(CurveTest, WhatCannotGoIntoASoundLeavesItAlone) {
  const std::string wave = MakeWave("speech.wav");
  const std::string before = ReadText(wave);
  const std::string twice = Write("twice.json", R"({"curves": [
      {"kind": "ramp", "pin": 3, "end": 100}, {"kind": "ramp", "pin": 3, "start": 100}]})");
  const std::string other = Write("fast.wav", Riff(Format(1, 11025, 16) + DataChunk({1, 2, 3})));
  const struct {
    Words words;
    int status;
    std::string message;
  } cases[] = {
      {{"ramp", "--into", wave}, 2, "no curve has a pin"},
      {{twice, "--into", wave}, 2, "sets pin 3 at the same time"},
      {{"ramp", "--pin", "0", "--sample-freq", "8001", "--into", wave},
       2,
       "passes the sound's rate"},
      {{"ramp", "--pin", "0", "--wave", other, "--into", wave}, 3, "8000 samples a second"},
      {{"ramp", "--pin", "0", "--into", wave, "--json"}, 2, "another run"},
      {{"ramp", "--pin", "0", "--into", wave, "-o", other}, 4, "exists"},
      {{"ramp", "--pin", "0", "--into", Path("nowhere.wav")}, 3, "nowhere.wav"},
      {{"ramp", "--pin", "0", "--into", wave, "--dry-run"}, 0, "15 events"},
      {{"ramp", "--pin", "0", "--end", "9999", "--into", wave, "--dry-run", "--strict"},
       1,
       "behind the end"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.words));
    const Outcome run = Curve(c.words);
    EXPECT_EQ(run.status, c.status);
    EXPECT_TRUE(Contains(run.err, c.message)) << run.err;
    EXPECT_EQ(ReadText(wave), before);
  }
}

// ---- the page ---------------------------------------------------------------

TEST_F(CurveTest, ThePageHasTheKindsAndDescriptionsThatWork) {
  const std::string page = ReadText(kRoot + "/docs/commands/curve.md");
  EXPECT_TRUE(Contains(page, "```\n" + Curve({"--kinds"}).out + "```\n"))
      << "docs/commands/curve.md is out of date";
  EXPECT_TRUE(Contains(page, "```json\n" + ReadText(kDemo) + "```\n"));
  const size_t single = page.find("```json\n{\n  \"kind\"");
  ASSERT_NE(single, std::string::npos);
  const size_t start = page.find('{', single);
  const std::string text = page.substr(start, page.find("```", start) - start);
  EXPECT_EQ(Levels({"-"}, text).size(), 16000u);
}

}  // namespace
}  // namespace velora::test
