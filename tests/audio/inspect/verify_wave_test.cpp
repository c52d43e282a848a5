#include <gtest/gtest.h>

#include "audio/inspect/LabelGrammar.h"
#include "audio/inspect/Verify.h"
#include "audio/inspect/mpm_bytes.h"

namespace velora {
namespace {

using test::Chunk;
using test::ChunkClaiming;
using test::CueRecord;
using test::Format;
using test::FormatBytes;
using test::Label;
using test::Length;
using test::ListRecord;
using test::Riff;
using test::U16;
using test::U32;

VerifyReport Verify(const std::string& bytes) {
  const InputFile file = test::FileOf(bytes);
  const Result<VerifyReport> report = VerifyOpenFile(file);
  EXPECT_TRUE(report.Ok()) << report.Message();
  return report.Ok() ? report.Value() : VerifyReport{};
}

std::string Told(const std::vector<Fault>& faults) {
  std::string text;
  for (const Fault& fault : faults) {
    text += fault.what + ": expected " + fault.expected + ", found " + fault.found + "\n";
  }
  return text;
}

const std::string kData = Chunk("data", std::string(400, '\x10'));  // 200 frames of mono 16 bits
const std::string kFormat = Format(1, 8000, 16);

std::string Cues(const std::string& records) {
  return Chunk("cue ", U32(static_cast<uint32_t>(records.size() / 24)) + records);
}
std::string Adtl(const std::string& records) { return Chunk("LIST", "adtl" + records); }

std::string Sampler(uint32_t start, uint32_t end, uint32_t count = 1, uint32_t extra = 0) {
  std::string head;
  for (int i = 0; i < 7; ++i) head += U32(0);
  return Chunk("smpl", head + U32(count) + U32(extra) + U32(1) + U32(0) + U32(start) + U32(end) +
                           U32(0) + U32(0));
}

/// A block of four-bit codes: the fmt chunk of the published formats.
std::string AdpcmFormat(uint32_t tag, uint32_t align, uint32_t samples, uint32_t byteRate) {
  return Chunk("fmt ", U16(tag) + U16(1) + U32(8000) + U32(byteRate) + U16(align) + U16(4) +
                           U16(2) + U16(samples));
}

TEST(VerifyWave, PassesAFileWithSomeOfEverything) {
  const std::string labels =
      Label(1, "(12,5)") + Label(2, "[4048,2]") + Label(3, " silence ") + Length(3, 50);
  const VerifyReport report =
      Verify(Riff(kFormat + kData + Cues(CueRecord(1, 10) + CueRecord(2, 20) + CueRecord(3, 100)) +
                  Sampler(0, 199) + Adtl(labels) + Chunk("KIOD", "any")));
  EXPECT_TRUE(report.Good()) << Told(report.faults);
  EXPECT_EQ(report.warningCount, 0u) << Told(report.warnings);
  EXPECT_EQ(report.format, "WAV");
  EXPECT_EQ(report.samples, 200u);
  EXPECT_EQ(report.events, 2u);
  EXPECT_EQ(report.silenceRegions, 1u);
}

struct WaveCase {
  const char* name;
  std::string bytes;
  const char* what;  // in the text of a fault or warning; empty for a file without any
};

/// Files without a fault; `what` is in a warning.
TEST(VerifyWave, TakesWhatAReaderTakes) {
  const std::string cues = Cues(CueRecord(1, 10));
  const WaveCase cases[] = {
      {"8 bits stereo", Riff(Format(2, 8000, 8) + kData), ""},
      {"12 bits", Riff(Format(1, 8000, 12) + kData), ""},
      {"data first", Riff(kData + kFormat), ""},
      {"a pad byte between chunks", Riff(kFormat + Chunk("abcd", "x") + '\0' + kData), ""},
      {"a pad byte behind the form", Riff(kFormat + kData + Chunk("abcd", "x")) + '\0', ""},
      {"IMA ADPCM", Riff(AdpcmFormat(17, 256, 505, 4055) + Chunk("data", std::string(512, 1))), ""},
      {"Microsoft ADPCM", Riff(AdpcmFormat(2, 256, 500, 4096) + Chunk("data", std::string(512, 1))),
       ""},
      {"a list of another form", Riff(kFormat + kData + Chunk("LIST", "INFOabc")), ""},
      {"a plain label", Riff(kFormat + kData + cues + Adtl(Label(1, "Verse"))), "record \"labl\""},
      {"text behind a pair", Riff(kFormat + kData + cues + Adtl(Label(1, "(1,2)(3,4)"))),
       "record \"labl\""},
      {"a long label",
       Riff(kFormat + kData + cues + Adtl(Label(1, "(1,2)" + std::string(90, ' ')))),
       "at most 63 characters"},
      {"lower case head", "riff" + Riff(kFormat + kData).substr(4), "RIFF head: tag"},
      {"upper case chunk", Riff(kFormat + Chunk("DATA", std::string(400, 1))), "chunk tag"},
      {"two data chunks", Riff(kFormat + kData + kData), "the last one counts"},
      {"zeros between chunks", Riff(kFormat + std::string(4, '\0') + kData), "padding"},
      {"cue behind the sound", Riff(kFormat + kData + Cues(CueRecord(1, 201))),
       "cue point 0: position"},
      {"a short last block",
       Riff(AdpcmFormat(17, 256, 505, 4055) + Chunk("data", std::string(300, 1))),
       "chunk \"data\": size"},
  };
  for (const WaveCase& test : cases) {
    SCOPED_TRACE(test.name);
    const VerifyReport report = Verify(test.bytes);
    EXPECT_TRUE(report.Good()) << Told(report.faults);
    const std::string told = Told(report.warnings);
    EXPECT_EQ(told.empty(), *test.what == 0) << told;
    EXPECT_NE(told.find(test.what), std::string::npos) << told;
  }
}

TEST(VerifyWave, FindsFaults) {
  const std::string good = Riff(kFormat + kData);
  const std::string cues = Cues(CueRecord(1, 10));
  const std::string fmt = FormatBytes(1, 1, 8000, 16);
  const auto with = [&](const std::string& chunks) { return Riff(kFormat + kData + chunks); };
  const auto label = [&](const std::string& text) { return with(cues + Adtl(Label(1, text))); };
  std::string otherTag = CueRecord(1, 10);
  test::Put(otherTag, 8, "slnt");
  const WaveCase cases[] = {
      {"truncated", good.substr(0, good.size() - 1), "RIFF head: form size"},
      {"truncated data", good.substr(0, good.size() - 1), "chunk \"data\": size"},
      {"trailing byte", good + 'x', "RIFF head: form size"},
      {"trailing zeros", good + std::string(2, '\0'), "RIFF head: form size"},
      {"form size 0", "RIFF" + U32(0) + good.substr(8), "RIFF head: form size"},
      {"scrap behind the last chunk", with("abc"), "end of the form"},
      {"unprintable tag", with(Chunk("\x01\x02\x03\x04", "x")), "chunk tag"},
      {"chunk past the end", with(ChunkClaiming("abcd", 99, "x")), "chunk \"abcd\": size"},
      {"no fmt", Riff(kData), "chunk \"fmt \""},
      {"no data", Riff(kFormat), "chunk \"data\""},
      {"short fmt", Riff(Chunk("fmt ", fmt.substr(0, 14)) + kData), "chunk \"fmt \": size"},
      {"floating point", Riff(Format(1, 8000, 16, 3) + kData), "fmt: format tag"},
      {"no channels", Riff(Format(0, 8000, 16) + kData), "fmt: channels"},
      {"no rate", Riff(Format(1, 0, 16) + kData), "fmt: sample rate"},
      {"24 bits", Riff(Format(1, 8000, 24) + kData), "fmt: bits"},
      {"0 bits", Riff(Format(1, 8000, 0) + kData), "fmt: bits"},
      {"block align", Riff(Chunk("fmt ", fmt.substr(0, 12) + U16(4) + U16(16)) + kData),
       "fmt: block align"},
      {"byte rate", Riff(Chunk("fmt ", fmt.substr(0, 8) + U32(16001) + U16(2) + U16(16)) + kData),
       "fmt: byte rate"},
      {"half a frame", Riff(kFormat + Chunk("data", "abc")), "chunk \"data\": size"},
      {"ADPCM bits", Riff(Format(1, 8000, 16, 17) + kData), "fmt: bits"},
      {"ADPCM samples of a block", Riff(AdpcmFormat(17, 256, 504, 4055) + kData),
       "fmt: samples of a block"},
      {"ADPCM byte rate", Riff(AdpcmFormat(2, 256, 500, 9999) + kData), "fmt: byte rate"},
      {"ADPCM block without its head", Riff(AdpcmFormat(2, 6, 500, 96) + kData),
       "fmt: block align"},
      {"cue count", with(Chunk("cue ", U32(2) + CueRecord(1, 10))), "chunk \"cue \": size"},
      {"empty cue chunk", with(Chunk("cue ", "")), "chunk \"cue \": size"},
      {"two cues of one id", with(Cues(CueRecord(1, 10) + CueRecord(1, 20))), "cue point ids"},
      {"cue of a chunk that is not there", with(Cues(otherTag)), "cue point 0: chunk"},
      {"loop count", with(Sampler(0, 10, 2)), "chunk \"smpl\": size"},
      {"sampler data size", with(Sampler(0, 10, 1, 4)), "chunk \"smpl\": size"},
      {"short smpl", with(Chunk("smpl", std::string(35, '\0'))), "chunk \"smpl\": size"},
      {"loop behind the sound", with(Sampler(0, 200)), "loop 0: end"},
      {"loop that ends before it starts", with(Sampler(20, 10)), "loop 0: start"},
      {"label without cue", with(Adtl(Label(1, "(1,2)"))), "record \"labl\": cue id"},
      {"label of another cue", with(cues + Adtl(Label(2, "(1,2)"))), "record \"labl\": cue id"},
      {"length without cue", with(cues + Adtl(Length(2, 5))), "record \"ltxt\": cue id"},
      {"silence without length", label("SILENCE"), "record \"labl\": SILENCE"},
      {"pair without its end", label("(1,2"), "record \"labl\": text"},
      {"pair without comma", label("[1 2]"), "record \"labl\": text"},
      {"pair of words", label("(one,two)"), "record \"labl\": text"},
      {"empty numbers", label("(,)"), "record \"labl\": text"},
      {"short label", with(cues + Adtl(ListRecord("labl", "ab"))), "record \"labl\": size"},
      {"short length", with(cues + Adtl(ListRecord("ltxt", U32(1)))), "record \"ltxt\": size"},
      {"list record past the end", with(cues + Adtl("labl" + U32(50) + U32(1))),
       "record \"labl\": size"},
      {"list scrap", with(Adtl("abc")), "chunk \"LIST\""},
      {"short list", with(Chunk("LIST", "ad")), "chunk \"LIST\": size"},
  };
  for (const WaveCase& test : cases) {
    SCOPED_TRACE(test.name);
    const VerifyReport report = Verify(test.bytes);
    const std::string told = Told(report.faults);
    EXPECT_NE(told.find(test.what), std::string::npos) << told;
  }
}

TEST(VerifyWave, FindsEveryFlippedBitOfTheSizesAndTheFormat) {
  const std::string good =
      Riff(kFormat + kData + Cues(CueRecord(1, 10)) + Adtl(Label(1, "SILENCE") + Length(1, 5)));
  const std::pair<size_t, size_t> ranges[] = {{4, 8}, {16, 36}, {40, 44}, {448, 460}};
  for (const auto& [from, to] : ranges) {
    for (size_t bit = from * 8; bit < to * 8; ++bit) {
      std::string bytes = good;
      bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
      EXPECT_FALSE(Verify(bytes).Good()) << "byte " << bit / 8 << " bit " << bit % 8;
    }
  }
}

TEST(VerifyWave, SurvivesEveryTruncation) {
  const std::string good = Riff(kFormat + kData + Cues(CueRecord(1, 10)) + Sampler(0, 10) +
                                Adtl(Label(1, "SILENCE") + Length(1, 5)));
  for (size_t size = 12; size < good.size(); ++size) {
    EXPECT_FALSE(Verify(good.substr(0, size)).Good()) << size;
  }
}

struct LabelCase {
  const char* text;
  LabelKind kind;
  int32_t type;
  int32_t parameter;
  bool more;
};

TEST(LabelGrammar, ReadsLabels) {
  const LabelCase cases[] = {
      {"(4100,7)", LabelKind::kEvent, 4100, 7, false},
      {"[4048,2]", LabelKind::kEvent, 4048, 2, false},
      {" ( -3 , +4 ) ", LabelKind::kEvent, -3, 4, false},
      {"SILENCE(3,4)", LabelKind::kEvent, 3, 4, true},
      {"silence[5,6]", LabelKind::kEvent, 5, 6, true},
      {"[1,2](3,4)", LabelKind::kEvent, 3, 4, true},
      {"\tSilence\n", LabelKind::kSilence, 0, 0, false},
      {"SILENCES", LabelKind::kPlain, 0, 0, false},
      {"Verse (live)", LabelKind::kPlain, 0, 0, false},
      {"", LabelKind::kPlain, 0, 0, false},
      {"(1)", LabelKind::kBroken, 0, 0, false},
      {"(1,2]", LabelKind::kBroken, 0, 0, false},
      {"(abc,7)", LabelKind::kBroken, 0, 7, false},
      {"(99999999999,7)", LabelKind::kBroken, 0, 7, false},
  };
  for (const LabelCase& test : cases) {
    SCOPED_TRACE(test.text);
    const LabelMeaning meaning = ReadLabelMeaning(test.text);
    EXPECT_EQ(static_cast<int>(meaning.kind), static_cast<int>(test.kind));
    EXPECT_EQ(meaning.type, test.type);
    EXPECT_EQ(meaning.parameter, test.parameter);
    EXPECT_EQ(meaning.more, test.more);
  }
}

}  // namespace
}  // namespace velora
