#include <gtest/gtest.h>

#include <functional>

#include "audio/inspect/Verify.h"
#include "audio/inspect/mpm_bytes.h"

namespace velora {
namespace {

using test::Event;
using test::MpmPlaces;
using test::MpmWriter;
using test::Put;
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
    text += std::to_string(fault.offset) + " " + fault.what + ": expected " + fault.expected +
            ", found " + fault.found + "\n";
  }
  return text;
}

void ExpectGreen(const MpmWriter& file, const char* what) {
  const VerifyReport report = Verify(file.Bytes());
  EXPECT_TRUE(report.Good()) << what << "\n" << Told(report.faults);
  EXPECT_EQ(report.warningCount, 0u) << what << "\n" << Told(report.warnings);
}

TEST(VerifyMpm, PassesAFileWithSomeOfEverything) {
  const MpmWriter file = test::RichFile();
  const VerifyReport report = Verify(file.Bytes());
  EXPECT_TRUE(report.Good()) << Told(report.faults);
  EXPECT_EQ(report.warningCount, 0u) << Told(report.warnings);
  EXPECT_EQ(report.format, "MPM");
  EXPECT_EQ(report.samples, file.decoded.size());
  EXPECT_EQ(report.commands, 11u);
  EXPECT_EQ(report.events, 4u);
  EXPECT_EQ(report.silenceRegions, 2u);
}

/// Forms that a save may give.
TEST(VerifyMpm, PassesWhatASaveMayWrite) {
  const std::vector<uint32_t> wave16 = {2100, 2200, 2300, 2400, 2500, 2400, 2300, 2200,
                                        2100, 2000, 1900, 1800, 1700, 1800, 1900, 2000};
  {
    MpmWriter file;
    ExpectGreen(file, "no sound at all");
  }
  {
    MpmWriter file;
    file.Raw(std::vector<uint32_t>(100, 2047), {});
    file.method = 5;
    file.AddRecord(50, 1, 2);
    ExpectGreen(file, "raw method: events of raw parts are in the records alone");
  }
  {
    MpmWriter file;
    file.Follow(2, wave16, Event{1, 2, 30});
    file.AddRecord(40, 3, 4);
    ExpectGreen(file, "event up to 15 samples ahead; event behind the sound");
  }
  {
    MpmWriter file;
    file.Follow(2, wave16, Event{1, 2, 15});
    file.Raw({2047, 2000}, Event{1, 3, 15});
    file.Raw({2047, 2000}, Event{1, 4, 15});
    file.Raw({2047, 2000}, Event{1, 5, 15});
    ExpectGreen(file, "events at one place take two samples each");
  }
  {
    // Silence 0..8 is odd and grows by one; the gap at 9 vanishes; silence 10..19
    // starts one later.
    MpmWriter file;
    file.Silence(10, {}, false);
    file.Silence(9, {}, false);
    file.Follow(2, wave16, {});
    file.silence = U32(0) + U32(8) + U32(10) + U32(19);
    file.source.insert(file.source.begin(), 2047);
    ExpectGreen(file, "odd silence and a gap of one sample");
  }
  {
    MpmWriter file;
    file.Follow(2, wave16, {});
    file.Raw({2100, 2047}, {});
    file.source.back() = 1999;  // the region's first sample gave way to a pad value
    file.Silence(19, {}, false);
    file.silence = U32(17) + U32(36);
    ExpectGreen(file, "a run of one sample, padded into the silence behind it");
  }
  {
    MpmWriter file;
    file.Silence(30, {}, true);
    file.Raw({1800, (1800 + 2047) / 2}, {});
    file.source.pop_back();
    ExpectGreen(file, "the last sample of the sound, padded behind its end");
  }
}

TEST(VerifyMpm, PassesPlaneData) {
  const auto write = [](char used) {
    MpmWriter file;
    file.Silence(10, Event{206, 0, {}}, false);
    file.Silence(10, Event{204, 0, {}}, false);
    file.stream += std::string("\x0A\x01\x0F", 3) + std::string(8, '\x05');
    file.Silence(10, Event{204, 0, {}}, false);
    file.stream += std::string("\x0A\x01", 2) + used + std::string(8, '\x06');
    file.silence = U32(0) + U32(29);
    file.AddRecord(29, 205, 0);
    // The closing action found no place: it stands behind the decoded samples.
    file.stream += std::string("\2\2\0\0\xCD", 5);
    return file;
  };
  ExpectGreen(write('\x0F'), "planes");
  const VerifyReport report = Verify(write('\x1F').Bytes());
  ASSERT_EQ(report.faultCount, 1u) << Told(report.faults);
  EXPECT_EQ(report.faults[0].what, "used bits of port group 0");
}

struct DamageCase {
  const char* name;
  std::function<void(MpmWriter&)> write;                       // before the bytes are made
  std::function<void(std::string&, const MpmPlaces&)> damage;  // after
  const char* what;                                            // in the text of a fault
};

/// A field of the header, set to a value.
DamageCase Header(const char* name, size_t at, const std::string& value, const char* what) {
  return {name, {}, [=](std::string& bytes, const MpmPlaces&) { Put(bytes, at, value); }, what};
}

std::vector<DamageCase> DamageCases() {
  using Bytes = std::string;
  using Places = MpmPlaces;
  return {
      Header("version", 4, U16(0x0111), "header: version"),
      Header("header size", 6, U16(64), "header: header size"),
      Header("channels", 8, U16(2), "header: channels"),
      Header("format code", 10, U16(8), "header: format code"),
      Header("rate", 12, U16(11025), "header: band limit"),
      Header("band limit", 14, U16(1), "header: band limit"),
      Header("file size", 16, U32(99), "header: file size"),
      Header("event block offset", 20, U32(99), "header: event block offset"),
      Header("event block size", 24, U32(99), "header: event block size"),
      Header("stream block offset", 28, U32(63), "header: stream block offset"),
      Header("stream block size", 32, U32(99), "header: stream block size"),
      Header("stream bits", 36, U16(16), "header: stream bits"),
      Header("samples offset", 38, U32(99), "header: samples offset"),
      Header("sample count", 42, U32(99), "header: event block offset"),
      Header("sample bits", 46, U16(16), "header: sample bits"),
      Header("decoded offset", 48, U32(99), "header: decoded offset"),
      Header("decoded count", 52, U32(99), "99 samples, the decoded count"),
      Header("compression method", 60, U16(5), "none with this compression method"),
      Header("another method", 60, U16(6), "header: compression method"),
      Header("stream block tag", 62, "MFRN", "stream block: tag"),
      Header("stream block's size", 66, U16(15), "stream block: block size"),
      Header("stream offset", 68, U32(77), "stream block: stream offset"),
      Header("stream size", 72, U32(40), "stream block: stream size"),
      {"end mark in the middle", {}, [](Bytes& b, const Places&) { b[76] = 0; }, "end mark"},
      {"no end mark", [](MpmWriter& w) { w.endMark = false; }, {}, "without its end mark"},
      {"unknown command", {}, [](Bytes& b, const Places&) { b[76] = 9; }, "unknown command byte"},
      {"high bits of a silence command",
       {},
       [](Bytes& b, const Places&) { b[76] = 0x21; },
       "silence command: command byte"},
      {"start value of a frame",
       {},
       [](Bytes& b, const Places&) { b[80] ^= 1; },
       "long frame command: start value"},
      {"a sign", {}, [](Bytes& b, const Places&) { b[81] ^= 1; }, "decoded word 40"},
      {"a decoded word",
       {},
       [](Bytes& b, const Places& p) { b[p.decoded + 90] ^= 1; },
       "decoded word 45"},
      {"low bits of a raw word",
       {},
       [](Bytes& b, const Places& p) { b[p.source - 2] ^= 1; },
       "by the source sample"},
      {"source sample above 12 bits",
       {},
       [](Bytes& b, const Places& p) { b[p.source + 1] |= 0x10; },
       "source sample 0"},
      {"event block tag",
       {},
       [](Bytes& b, const Places& p) { b[p.events] = 'X'; },
       "event block: tag"},
      {"event block's size",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 4] = 15; },
       "event block: block size"},
      {"event records offset",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 6] ^= 4; },
       "event block: records offset"},
      {"event count",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 10] ^= 1; },
       "header: event block size"},
      {"event position",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 14] ^= 32; },
       "event 0: position"},
      {"event action",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 18] ^= 1; },
       "event word in the stream"},
      {"event parameter",
       {},
       [](Bytes& b, const Places& p) { b[p.events + 19] ^= 1; },
       "event word in the stream"},
      {"an event record too many", [](MpmWriter& w) { w.AddRecord(60, 1, 1); }, {}, "event 4"},
      {"an event record too few",
       [](MpmWriter& w) { w.events.resize(w.events.size() - 6); },
       {},
       "the records are used up"},
      {"silence block tag",
       {},
       [](Bytes& b, const Places& p) { b[p.silence] = 'X'; },
       "silence block: tag"},
      {"silence block's size",
       {},
       [](Bytes& b, const Places& p) { b[p.silence + 4] = 1; },
       "silence block: block size"},
      {"silence record size",
       {},
       [](Bytes& b, const Places& p) { b[p.silence + 6] = 1; },
       "silence block: record size"},
      {"silence records offset",
       {},
       [](Bytes& b, const Places& p) { b[p.silence + 8] ^= 4; },
       "silence block: records offset"},
      {"silence count",
       {},
       [](Bytes& b, const Places& p) { b[p.silence + 12] = 1; },
       "silence block: count"},
      {"a silence record missing",
       [](MpmWriter& w) { w.silence.resize(w.silence.size() - 8); },
       {},
       "silence command"},
      {"a silence record too many",
       [](MpmWriter& w) { w.silence = U32(0) + U32(39) + U32(60) + U32(80) + w.silence.substr(8); },
       {},
       "silence 1"},
      {"silence that ends before it starts",
       [](MpmWriter& w) { w.silence = U32(9) + U32(5) + w.silence.substr(8); },
       {},
       "silence 0: end"},
      {"silence behind the sound",
       [](MpmWriter& w) { w.silence += U32(90000) + U32(90009); },
       {},
       "below the sample count"},
      {"raw samples where frames belong",
       [](MpmWriter& w) {
         w = MpmWriter();
         w.Raw(std::vector<uint32_t>(40, 2047), {});
       },
       {},
       "5: raw runs as long as a frame"},
      {"a truncated tail", {}, [](Bytes& b, const Places&) { b.pop_back(); }, "header: file size"},
      {"trailing garbage", {}, [](Bytes& b, const Places&) { b += 'x'; }, "header: file size"},
  };
}

TEST(VerifyMpm, FindsDamage) {
  for (const DamageCase& test : DamageCases()) {
    SCOPED_TRACE(test.name);
    MpmWriter file = test::RichFile();
    if (test.write) test.write(file);
    std::string bytes = file.Bytes();
    if (test.damage) test.damage(bytes, file.Places());
    const VerifyReport report = Verify(bytes);
    EXPECT_FALSE(report.Good());
    const std::string told = Told(report.faults);
    EXPECT_NE(told.find(test.what), std::string::npos) << told;
  }
}

TEST(VerifyMpm, WarnsOfWhatAReaderTakes) {
  MpmWriter flat;
  flat.Frame(4, std::vector<int>(16, 0), {});
  VerifyReport report = Verify(flat.Bytes());
  EXPECT_TRUE(report.Good()) << Told(report.faults);
  ASSERT_EQ(report.warningCount, 1u) << Told(report.warnings);
  EXPECT_EQ(report.warnings[0].what, "short frame: row of a flat frame");

  MpmWriter noSilence;
  noSilence.Frame(1, std::vector<int>(16, 1), {});
  std::string bytes = noSilence.Bytes();
  bytes.resize(bytes.size() - 16);
  Put(bytes, 16, U32(static_cast<uint32_t>(bytes.size())));
  report = Verify(bytes);
  EXPECT_TRUE(report.Good()) << Told(report.faults);
  ASSERT_EQ(report.warningCount, 1u);
  EXPECT_EQ(report.warnings[0].what, "silence block");
}

/// Bits that nothing else in the file determines.
bool IsFree(const MpmWriter& file, size_t byte, unsigned bit) {
  const MpmPlaces at = file.Places();
  if (byte >= 56 && byte < 60) return true;     // silence detection
  if (byte == 12) return bit < 2;               // the band limit halves the rate
  if (byte >= at.source && byte < at.events) {  // high bits are 0, raw runs are stored twice
    return byte % 2 == at.source % 2 || bit < 4;
  }
  const size_t records = at.events + 14;
  if (byte >= records && byte < at.silence && (byte - records) % 6 == 0) {
    return bit < 4;  // an event may stand a short frame off
  }
  const size_t regions = at.silence + 16;
  return byte >= regions && (byte - regions) % 4 == 0 && bit == 0;  // ends may be a sample off
}

TEST(VerifyMpm, FindsEveryFlippedBitThatTheFileDetermines) {
  const MpmWriter file = test::RichFile();
  const std::string whole = file.Bytes();
  size_t flips = 0;
  for (size_t byte = 0; byte < whole.size(); ++byte) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      std::string bytes = whole;
      bytes[byte] = static_cast<char>(bytes[byte] ^ 1 << bit);
      const InputFile open = test::FileOf(bytes);
      const Result<VerifyReport> report = VerifyOpenFile(open);
      if (IsFree(file, byte, bit)) continue;
      ++flips;
      EXPECT_TRUE(!report.Ok() || !report->Good()) << "byte " << byte << " bit " << bit;
    }
  }
  EXPECT_GT(flips, 10000u);
}

TEST(VerifyMpm, SurvivesEveryTruncation) {
  const std::string whole = test::RichFile().Bytes();
  for (size_t size = 4; size < whole.size(); ++size) {
    EXPECT_FALSE(Verify(whole.substr(0, size)).Good()) << size;
  }
}

TEST(VerifyMpm, EndsAtOnceWhenTheHeaderClaimsMoreThanTheFileHolds) {
  // Silence for four thousand million samples, none of them stored.
  MpmWriter file;
  for (int i = 0; i < 65536; ++i) file.Silence(0, {}, false);
  for (size_t i = 0; i < file.stream.size(); i += 3) Put(file.stream, i, "\1\xFF\xFF");
  std::string bytes = file.Bytes();
  Put(bytes, 52, U32(0xFFFFFFFF));
  const VerifyReport report = Verify(bytes);
  EXPECT_FALSE(report.Good());
  EXPECT_EQ(report.samples, 0u);
  EXPECT_LE(report.faults.size(), 100u);
}

TEST(VerifyMpm, CountsMoreFaultsThanItLists) {
  MpmWriter file = test::RichFile();
  std::fill(file.source.begin(), file.source.end(), 5000u);
  const InputFile open = test::FileOf(file.Bytes());
  const Result<VerifyReport> report = VerifyOpenFile(open, {.listLimit = 5});
  ASSERT_TRUE(report.Ok());
  EXPECT_EQ(report->faults.size(), 5u);
  EXPECT_GE(report->faultCount, file.source.size());
}

}  // namespace
}  // namespace velora
