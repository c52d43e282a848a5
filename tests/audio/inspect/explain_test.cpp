#include "audio/inspect/Explain.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "audio/inspect/mpm_bytes.h"

namespace velora {
namespace {

using test::Chunk;
using test::MpmWriter;
using test::U16;
using test::U32;

ParseLog Explain(const std::string& bytes, const ExplainOptions& options = {}) {
  const InputFile file = test::FileOf(bytes);
  const Result<ParseLog> log = ExplainOpenFile(file, options);
  EXPECT_TRUE(log.Ok()) << log.Message();
  return log.Ok() ? log.Value() : ParseLog{};
}

/// "offset+size depth name=value (note)" of each entry.
std::string Line(const LogEntry& entry) {
  std::string line = std::to_string(entry.offset) + "+" + std::to_string(entry.size) + " " +
                     std::string(static_cast<size_t>(entry.depth), ' ') + entry.name;
  if (!entry.value.empty()) line += " = " + entry.value;
  if (!entry.note.empty()) line += " (" + entry.note + ")";
  return line;
}

/// The lines stand in the log in this order, with or without others between them.
void ExpectLines(const ParseLog& log, const std::vector<std::string>& lines) {
  std::vector<std::string> told;
  for (const LogEntry& entry : log.entries) told.push_back(Line(entry));
  auto at = told.begin();
  for (const std::string& line : lines) {
    at = std::find(at, told.end(), line);
    ASSERT_NE(at, told.end()) << line << " is missing or out of order in\n"
                              << testing::PrintToString(told);
  }
}

/// The blocks of depth 0 cover the file from end to end.
void ExpectCover(const ParseLog& log) {
  uint64_t at = 0;
  for (const LogEntry& entry : log.entries) {
    if (entry.depth != 0) continue;
    EXPECT_EQ(entry.offset, at) << entry.name;
    at = entry.offset + entry.size;
  }
  EXPECT_EQ(at, log.fileSize);
}

std::string SmallWave() {
  const std::string records =
      test::Label(1, "(12,5)") + test::Label(2, "SILENCE") + test::Length(2, 3);
  return test::Riff(test::Format(1, 8000, 16) + Chunk("data", "abcdef") + std::string(2, '\0') +
                    Chunk("cue ", U32(2) + test::CueRecord(1, 0) + test::CueRecord(2, 1)) +
                    Chunk("LIST", "adtl" + records) + Chunk("VLRW", "xyz") + Chunk("junk", "")) +
         "tail";
}

TEST(Explain, TellsAWaveFromEndToEnd) {
  const ParseLog log = Explain(SmallWave());
  EXPECT_EQ(log.format, "WAV");
  ExpectCover(log);
  ExpectLines(log, {
                       "0+12 RIFF",
                       "8+4  form = \"WAVE\"",
                       "12+24 \"fmt \" = 16 bytes (PCM)",
                       "24+4  sample rate = 8000",
                       "36+14 \"data\" = 6 bytes",
                       "44+6  samples = 3 frames",
                       "50+2 padding = 2 zero bytes",
                       "52+60 \"cue \" = 52 bytes",
                       "60+4  count = 2",
                       "88+24  cue point 1",
                       "92+4   position = 1",
                       "112+80 \"LIST\" = 72 bytes",
                       "120+4  form = \"adtl\"",
                       "124+20  \"labl\" = 11 bytes",
                       "136+7   text = \"(12,5)\" (event 12, parameter 5)",
                       "156+8   text = \"SILENCE\" (silence region)",
                       "172+4   cue id = 2",
                       "176+4   length = 3",
                       "192+11 \"VLRW\" = 3 bytes (private, kept as it stands)",
                       "203+8 \"junk\" = 0 bytes (not read, not kept by a save)",
                       "211+4 trailing bytes (behind the form)",
                   });
}

TEST(Explain, TellsWhereAWaveIsCut) {
  const std::string whole = SmallWave();
  ExpectLines(Explain(whole.substr(0, 48)),
              {"36+12 \"data\" = 6 bytes (cut off: expected 6 bytes, found 4)"});
  ExpectLines(Explain(whole.substr(0, 40)), {"36+4 scrap (too short for a chunk)"});
  for (size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(Explain(whole.substr(0, size)).entries.empty()) << size;
  }
}

TEST(Explain, TellsAChipFileFromEndToEnd) {
  const MpmWriter file = test::RichFile();
  const test::MpmPlaces at = file.Places();
  const ParseLog log = Explain(file.Bytes());
  EXPECT_EQ(log.format, "MPM");
  ExpectCover(log);
  const auto number = [](size_t value) { return std::to_string(value); };
  ExpectLines(log,
              {
                  "0+62 header",
                  "4+2  version = 0x0110",
                  "60+2  compression method = 4",
                  "62+14 stream block",
                  "72+4  stream size = " + number(at.decoded - 76),
                  "76+" + number(at.decoded - 76) + " stream",
                  "76+0  silence commands = 3 (360 samples)",
                  "76+0  raw commands = 2 (14 samples)",
                  "76+0  short frame commands = 2 (32 samples)",
                  "76+0  long frame commands = 3 (192 samples)",
                  "76+0  events = 4",
                  number(at.decoded - 1) + "+1  end mark",
                  number(at.decoded) + "+1196 decoded block = 598 words",
                  number(at.source) + "+1196 source samples = 598 words",
                  number(at.events) + "+38 event block",
                  number(at.events + 14) + "+6  event 0 = sample 167, action 20, parameter 129",
                  number(at.silence) + "+32 silence block",
                  number(at.silence + 16) + "+8  silence 0 = samples 0 to 39",
              });
}

TEST(Explain, TellsGapsAndOverlapsOfAChipFile) {
  const MpmWriter file = test::RichFile();
  std::string bytes = file.Bytes();
  const test::MpmPlaces at = file.Places();
  test::Put(bytes, 38, U32(static_cast<uint32_t>(at.source - 10)));
  ExpectLines(
      Explain(bytes),
      {
          std::to_string(at.source - 10) + "+1196 source samples = 598 words (overlaps what stands "
                                           "before by 10 bytes)",
          std::to_string(at.events - 10) + "+10 unused bytes (belong to nothing)",
      });
  bytes = file.Bytes();
  bytes[76] = 9;
  ExpectLines(Explain(bytes), {"76+0  broken command (unknown command byte 9)"});
  bytes = file.Bytes() + "xyz";
  ExpectLines(Explain(bytes), {std::to_string(at.end) + "+3 unused bytes (belong to nothing)"});
}

TEST(Explain, TellsASourceFile) {
  const std::string header =
      "KPCM" + U16(1) + U16(22) + U16(1) + U16(12) + '\x84' + '\0' + U16(8000) + U16(3400) + U32(3);
  ExpectLines(Explain(header + "abcdefgh"), {"0+22 header", "12+1  flag = 132",
                                             "22+6 samples = 3 words (enciphered byte by byte)",
                                             "28+2 trailing bytes (belong to nothing)"});
  ExpectLines(Explain(header + "ab"), {"22+2 samples = 1 words (cut off: expected 3 words)"});
  ExpectLines(Explain(header.substr(0, 20)),
              {"0+20 header (cut off: expected 22 bytes, found 20)", "18+2  count = cut off"});
}

TEST(Explain, TellsTheFirstBytesOfAnUnknownFile) {
  const ParseLog log = Explain("\x01\x02" + std::string(30, 'z'));
  EXPECT_EQ(log.format, "");
  ExpectLines(log, {"0+16 first bytes = 01 02 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A 7A ... (no "
                    "known sound file begins with \"\\x01\\x02zz\")",
                    "16+16 unknown bytes"});
}

TEST(Explain, StaysWithinItsLimits) {
  MpmWriter file = test::RichFile();
  for (uint32_t i = 0; i < 5000; ++i) file.AddRecord(9000 + i, 1, 1);
  const std::string bytes = file.Bytes();
  const size_t first = file.Places().events + 14;

  const ParseLog records = Explain(bytes, {.recordLimit = 10});
  ExpectLines(records, {std::to_string(first + 60) + "+" + std::to_string(6 * 4994) +
                        "  4994 more events (not told one by one)"});
  EXPECT_EQ(records.omitted, 4994u);

  const ParseLog entries = Explain(bytes, {.recordLimit = 100000, .entryLimit = 200});
  ASSERT_EQ(entries.entries.size(), 200u);
  EXPECT_EQ(entries.entries.back().name, "left out");
  EXPECT_GT(entries.omitted, 4000u);
}

}  // namespace
}  // namespace velora
