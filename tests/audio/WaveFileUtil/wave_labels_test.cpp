#include "audio/WaveFileUtil/WaveLabels.h"

#include <algorithm>
#include <random>

#include "audio/wavedata/WavData.h"
#include "wave_fixture.h"

namespace velora {
namespace {

struct PairCase {
  const char* text;
  LabelBrackets brackets;
  std::optional<LabelPair> pair;
};

TEST(LabelTest, ParsesPairs) {
  const PairCase cases[] = {
      {"(4100,7)", kRoundBrackets, LabelPair{4100, 7}},
      {"note (4100,7) more", kRoundBrackets, LabelPair{4100, 7}},
      {"[4048,2]", kSquareBrackets, LabelPair{4048, 2}},
      {"[4048,2]", kRoundBrackets, std::nullopt},
      {"( abc,def)", kRoundBrackets, LabelPair{0, 0}},
      {"(-5,+6)", kRoundBrackets, LabelPair{-5, 6}},
      {"( \t\n\v\f\r12x,7y)", kRoundBrackets, LabelPair{12, 7}},
      {"(,)", kRoundBrackets, LabelPair{0, 0}},
      {"(1,2,3)", kRoundBrackets, LabelPair{1, 2}},
      {"((1,2))", kRoundBrackets, LabelPair{0, 2}},
      {",(1,2)", kRoundBrackets, LabelPair{1, 2}},
      {"),(1)", kRoundBrackets, std::nullopt},
      {"(1)2,3", kRoundBrackets, std::nullopt},
      {"(1,2", kRoundBrackets, std::nullopt},
      {"(12)", kRoundBrackets, std::nullopt},
      {"", kRoundBrackets, std::nullopt},
      {"(- 5,6)", kRoundBrackets, LabelPair{0, 6}},
      // 30 blanks and the first of two digits are 31 characters.
      {"(                              12,7)", kRoundBrackets, LabelPair{1, 7}},
  };
  for (const PairCase& c : cases) {
    EXPECT_EQ(ParsePair(c.text, c.brackets), c.pair) << c.text << ' ' << c.brackets.open;
  }
}

TEST(LabelTest, KnowsSilence) {
  for (const char* text : {"SILENCE", "silence", " \t\v\f\r\nSiLeNcE \n"}) {
    EXPECT_TRUE(IsSilenceLabel(text)) << text;
  }
  for (const char* text : {"", "SILENCE.", "SIL ENCE", "SILENCE(3,4)"}) {
    EXPECT_FALSE(IsSilenceLabel(text)) << text;
  }
}

/// Gives the strings a test sets, whatever the text, and counts the calls.
class ScriptedConverter : public LabelConverter {
 public:
  explicit ScriptedConverter(std::vector<std::string> strings) : strings_(std::move(strings)) {}

  bool Convert(std::string_view, std::vector<std::string>& strings) override {
    ++calls;
    strings.insert(strings.end(), strings_.begin(), strings_.end());
    return !strings_.empty();
  }

  int calls = 0;

 private:
  std::vector<std::string> strings_;
};

TEST(LabelTest, TheLastConvertedStringDecides) {
  const std::vector<LabelPair> none;
  const std::pair<std::vector<std::string>, std::vector<LabelPair>> cases[] = {
      {{"(1,2)"}, {{1, 2}}},
      {{"(1,2)", "(3,4)"}, {{1, 2}, {3, 4}}},
      {{"x", "(3,4)"}, {{3, 4}}},
      {{"(1,2)", "x"}, none},
      {{}, none},
  };
  for (const auto& [strings, pairs] : cases) {
    ScriptedConverter converter(strings);
    EXPECT_EQ(ParseLabel("mark", kRoundBrackets, &converter), pairs);
    EXPECT_EQ(converter.calls, 1);
  }
  EXPECT_EQ(ParseLabel("mark", kRoundBrackets, nullptr), none);
}

TEST(LabelTest, TakesAtMost256PairsFromALabel) {
  std::vector<std::string> strings(256, "(1,2)");
  strings.push_back("no pair, and not reached");
  ScriptedConverter converter(strings);
  EXPECT_EQ(ParseLabel("mark", kRoundBrackets, &converter).size(), 256u);
}

TEST(LabelTest, AsksTheConverterOnlyForWhatIsNoPairItself) {
  ScriptedConverter converter({"[5,6]"});
  EXPECT_EQ(ParseLabel("(1,2)", kRoundBrackets, &converter).size(), 1u);
  EXPECT_EQ(converter.calls, 0);

  const WavDataPtr sound = C_WavData::Create();
  sound->CueInfo().SetPoint(1, 40, "data", 0, 0, 40);
  sound->ListInfo().AddLabel(1, "mark");
  LabelsToEvents(sound->CueInfo(), sound->ListInfo(), &converter, *sound->GetEventMgr());
  // Once for the round form, once for the square one.
  EXPECT_EQ(converter.calls, 2);
  EXPECT_EQ(test::EventListing(*sound), "5@40=6");
}

TEST(LabelTest, WritesTwoActionsInSquareBrackets) {
  EXPECT_EQ(MakeEventLabel(4047, 1), "(4047,1)");
  EXPECT_EQ(MakeEventLabel(4048, -1), "[4048,-1]");
  EXPECT_EQ(MakeEventLabel(4049, 0), "[4049,0]");
  EXPECT_EQ(MakeEventLabel(4050, 0), "(4050,0)");
  EXPECT_EQ(MakeEventLabel(INT32_MIN, INT32_MAX), "(-2147483648,2147483647)");
}

TEST(LabelTest, TriesTheFormsInTheirOrder) {
  const WavDataPtr sound = C_WavData::Create();
  const char* labels[] = {"SILENCE(3,4)", "silence[5,6]", " silence ", "a note", "[7,8](9,10)"};
  uint32_t id = 0;
  for (const char* label : labels) {
    ++id;
    sound->CueInfo().SetPoint(id, id * 10, "data", 0, 0, 0);
    sound->ListInfo().AddLabel(id, label);
    sound->ListInfo().AddText(id, 100 + id);
    sound->ListInfo().AddText(id, 999);
  }
  sound->ListInfo().AddLabel(77, "(1,1)");  // no such point
  LabelsToEvents(sound->CueInfo(), sound->ListInfo(), nullptr, *sound->GetEventMgr());
  EXPECT_EQ(test::EventListing(*sound), "3@10=4 5@20=6 9@50=10");
  EXPECT_EQ(test::RegionListing(*sound), "30+103");
}

/// Labels at random places, few enough of them that many share one, in an order that
/// jumps back: the events must stand as if each had been added on its own.
TEST(LabelTest, OrdersEventsAsIfAddedOneByOne) {
  std::mt19937 random(7);
  for (const uint32_t span : {3u, 20u, 1000u}) {
    const WavDataPtr sound = C_WavData::Create();
    C_ActionEventMgr oneByOne;
    for (uint32_t id = 1; id <= 300; ++id) {
      const uint32_t position = random() % span;
      sound->CueInfo().SetPoint(id, position, "data", 0, 0, position);
      sound->ListInfo().AddLabel(id, MakeEventLabel(static_cast<int32_t>(id), 0).c_str());
      oneByOne.AddEventAtSample(static_cast<int32_t>(id), position, "", 0);
    }
    LabelsToEvents(sound->CueInfo(), sound->ListInfo(), nullptr, *sound->GetEventMgr());
    ASSERT_EQ(sound->EventMgr().Events().size(), 300u);
    EXPECT_TRUE(std::ranges::equal(sound->EventMgr().Events(), oneByOne.Events(),
                                   [](const C_ActionEvent* a, const C_ActionEvent* b) {
                                     return a->GetType() == b->GetType() &&
                                            a->GetSample() == b->GetSample();
                                   }));
  }
}

TEST(LabelTest, ManyRegionsInFallingOrderComeOutSorted) {
  const WavDataPtr sound = C_WavData::Create();
  constexpr uint32_t kCount = 200000;
  for (uint32_t id = 1; id <= kCount; ++id) {
    sound->CueInfo().SetPoint(id, kCount - id, "data", 0, 0, 0);
    sound->ListInfo().AddLabel(id, "SILENCE");
  }
  LabelsToEvents(sound->CueInfo(), sound->ListInfo(), nullptr, *sound->GetEventMgr());
  const auto regions = sound->EventMgr().Regions();
  ASSERT_EQ(regions.size(), kCount);
  EXPECT_TRUE(std::ranges::is_sorted(regions, {}, &C_ActionSilenceRegion::GetStart));
}

}  // namespace
}  // namespace velora
