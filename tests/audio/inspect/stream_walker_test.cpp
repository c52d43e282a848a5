#include "audio/inspect/StreamWalker.h"

#include <gtest/gtest.h>

#include "audio/inspect/ChipFrame.h"
#include "audio/inspect/mpm_bytes.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using test::Event;
using test::FileOf;
using test::MpmWriter;

struct Walk {
  std::vector<StreamCommand> commands;
  Status status;
  bool ended = false;
  uint64_t offset = 0;
  uint64_t position = 0;
};

Walk WalkBytes(const std::string& bytes, StreamPlace place) {
  const InputFile file = FileOf(bytes);
  StreamWalker walker(file, place);
  Walk walk;
  StreamCommand command;
  while (walker.Next(command)) walk.commands.push_back(command);
  walk.status = walker.GetStatus();
  walk.ended = walker.Ended();
  walk.offset = walker.Offset();
  walk.position = walker.Position();
  return walk;
}

Walk WalkStream(const std::string& stream, EventForm form = EventForm::kWord,
                const StreamGrammar& grammar = kMpmGrammar) {
  return WalkBytes("###" + stream, {&grammar, 3, stream.size(), form});
}

TEST(StreamWalker, GivesEachCommandWithItsPlace) {
  MpmWriter file;
  file.Silence(500, Event{9, 130, {}});
  file.Raw({1000, 1016, 1032}, {});
  file.Frame(0, std::vector<int>(16, 1), Event{200, 1, {}});
  file.Frame(5, std::vector<int>(64, -1), {});
  const Walk walk = WalkStream(file.stream + '\0');
  ASSERT_TRUE(walk.status.Ok()) << walk.status.Message();
  ASSERT_EQ(walk.commands.size(), 5u);
  EXPECT_TRUE(walk.ended);
  EXPECT_EQ(walk.position, 500u + 3 + 16 + 64);

  const StreamCommand& silence = walk.commands[0];
  EXPECT_EQ(silence.fileOffset, 3u);
  EXPECT_EQ(silence.streamOffset, 0u);
  EXPECT_EQ(silence.size, 5u);
  EXPECT_EQ(silence.length, 500u);
  EXPECT_TRUE(silence.event.present);
  EXPECT_EQ(silence.event.action, 9);
  EXPECT_EQ(silence.event.parameter, 130);
  EXPECT_EQ(silence.event.word, 9 << 8 | 10);  // 130 rotated left by two is 10
  EXPECT_EQ(silence.event.offset, 6u);
  EXPECT_EQ(DescribeCommand(silence), "silence, 500 samples, event 9 (130)");

  const StreamCommand& raw = walk.commands[1];
  EXPECT_EQ(raw.size, 6u);
  EXPECT_EQ(raw.position, 500u);
  EXPECT_EQ(raw.startHigh, 1000 >> 4);
  EXPECT_EQ(raw.bodyOffset, raw.fileOffset + 4);
  EXPECT_FALSE(raw.event.present);

  const StreamCommand& frame = walk.commands[2];
  EXPECT_EQ(frame.size, 14u);
  EXPECT_EQ(frame.rowField, 14);
  EXPECT_EQ(frame.row, 0);
  EXPECT_EQ(frame.startHigh, 1032 >> 4);
  EXPECT_EQ(frame.event.offset, frame.fileOffset + 12);
  EXPECT_EQ(DescribeCommand(frame), "short frame, row 0, start 64, 16 samples, event 200 (1)");

  EXPECT_EQ(walk.commands[3].size, 42u);
  EXPECT_EQ(walk.commands[3].length, 64u);
  EXPECT_EQ(walk.commands[3].row, 5);
  EXPECT_EQ(walk.commands[4].kind, CommandKind::kEnd);
}

TEST(StreamWalker, WalksARawRunLongerThanItsWindow) {
  MpmWriter file;
  std::vector<uint32_t> samples(65536);
  for (size_t i = 0; i < samples.size(); ++i) samples[i] = (i * 37 % 256) << 4;
  file.Raw(samples, Event{1, 2, {}});
  file.Silence(1);
  const Walk walk = WalkStream(file.stream + '\0');
  ASSERT_TRUE(walk.ended) << walk.status.Message();
  EXPECT_EQ(walk.commands[0].length, 65536u);
  EXPECT_EQ(walk.commands[0].event.action, 1);
  EXPECT_EQ(walk.position, 65537u);
}

struct BrokenCase {
  const char* name;
  std::string stream;
  size_t at;  // of the broken command
  const char* message;
};

TEST(StreamWalker, StopsAtABrokenCommand) {
  const BrokenCase cases[] = {
      {"empty", "", 0, "without its end mark"},
      {"no end mark", std::string("\1\5\0", 3), 3, "without its end mark"},
      {"unknown nibble", std::string("\1\5\0\x09", 4), 3, "unknown command byte 9"},
      {"end mark with high bits", "\x10", 0, "unknown command byte 16"},
      {"silence cut", "\1\5", 0, "silence command reaches past"},
      {"silence event cut", std::string("\2\5\0\1", 4), 0, "silence command reaches past"},
      {"raw head cut", std::string("\3\5\1", 3), 0, "raw command reaches past"},
      {"raw body cut", std::string("\3\5\2\0\1", 5), 0, "raw command reaches past"},
      {"frame cut", std::string("\x15\x7F", 2) + std::string(9, 'a'), 0, "short frame command"},
      {"long frame cut", std::string("\x17\x7F", 2) + std::string(39, 'a'), 0, "long frame"},
  };
  for (const BrokenCase& test : cases) {
    SCOPED_TRACE(test.name);
    const Walk walk = WalkStream(test.stream);
    EXPECT_FALSE(walk.ended);
    EXPECT_EQ(walk.offset, 3 + test.at);
    EXPECT_NE(walk.status.Message().find(test.message), std::string::npos) << walk.status.Message();
  }
}

TEST(StreamWalker, StaysInsideTheStreamWhenTheFileGoesOn) {
  const std::string stream("\3\5\2\0\1", 5);
  const Walk walk = WalkBytes(stream + "more bytes", {&kMpmGrammar, 0, stream.size(), {}});
  EXPECT_FALSE(walk.ended);
  EXPECT_FALSE(walk.status.Ok());
}

TEST(StreamWalker, KnowsPlaneBlocksByTheirShape) {
  // Silence of 4 with action 204, then the planes of groups 0 and 2.
  const std::string block = std::string("\x13\x05", 2) + std::string(18, 'p');
  const std::string head("\2\4\0\0\xCC", 5);
  const Walk planes = WalkStream(head + block + '\0', EventForm::kPlanes);
  ASSERT_TRUE(planes.ended);
  EXPECT_EQ(planes.commands[0].event.planesSize, 20u);
  EXPECT_EQ(planes.commands[0].size, 25u);
  // The first event of a file has none: what follows is the next command.
  const Walk bare = WalkStream(head + std::string("\1\2\0\0", 4), EventForm::kPlanes);
  ASSERT_TRUE(bare.ended);
  EXPECT_EQ(bare.commands[0].event.planesSize, 0u);
  EXPECT_EQ(bare.commands[1].length, 2u);
}

/// A family of another kind: other command bytes, the event behind the head, a
/// count of one byte, the row from bit 3 up.
constexpr StreamGrammar kOther = {
    .name = "other",
    .commands = {0xFF, 4, 5, 6, 7, 2, 3, 0, 1},
    .commandMask = 0x07,
    .row = {.byte = 0, .shift = 3, .width = 4},
    .startHigh = {.byte = 1, .shift = 0, .width = 8},
    .frameHeadSize = 2,
    .rawCountSize = 1,
    .eventPlace = EventPlace::kBehindHead,
    .shortFrame = 16,
    .longFrame = 64,
    .groupCodes = 8,
    .groupSize = 5,
    .steps = kPlainSteps,
    .zeroRowField = 0,
    .firstValue = 2048,
    .maxValue = 4095,
    .rawShift = 4,
};

TEST(StreamWalker, ReadsAFamilyByItsRow) {
  std::string stream;
  stream += std::string("\5\x04\x0A\x08\0", 5);                       // silence 8, event 10 (1)
  stream += std::string("\7\x80\x04\x0B\1\x81", 6);                   // raw 2, event 11 (1)
  stream += std::string("\x1B\x80\x08\x0C", 4) + std::string(10, 0);  // short, row 3, event 12 (2)
  stream += std::string("\x28\x80", 2) + std::string(40, 0);          // long, row 5
  stream += '\xFF';
  const Walk walk = WalkStream(stream, EventForm::kWord, kOther);
  ASSERT_TRUE(walk.ended) << walk.status.Message();
  ASSERT_EQ(walk.commands.size(), 5u);
  const char* const lines[] = {"silence, 8 samples, event 10 (1)",
                               "raw, start 128, 2 samples, event 11 (1)",
                               "short frame, row 3, start 128, 16 samples, event 12 (2)",
                               "long frame, row 5, start 128, 64 samples", "end"};
  for (size_t i = 0; i < 5; ++i) EXPECT_EQ(DescribeCommand(walk.commands[i]), lines[i]);
}

TEST(CommandStream, FindsTheStreamOfAFile) {
  const test::TempDir dir;
  const MpmWriter file = test::RichFile();
  test::WriteBytes(dir / "a.mpm", test::ToBytes(file.Bytes()));
  const Result<CommandStream> stream = CommandStream::Open(Path::Native(dir / "a.mpm"));
  ASSERT_TRUE(stream.Ok()) << stream.Message();
  EXPECT_EQ(stream->SampleRate(), 8000u);
  EXPECT_EQ(stream->Place().offset, 76u);
  StreamWalker walker = stream->Walk();
  StreamCommand command;
  while (walker.Next(command)) {
  }
  EXPECT_TRUE(walker.Ended());
  EXPECT_EQ(walker.Position(), file.decoded.size());
}

TEST(CommandStream, SaysWhyThereIsNone) {
  const test::TempDir dir;
  const std::string whole = test::RichFile().Bytes();
  std::string outside = whole;
  test::Put(outside, 68, test::U32(0x7FFFFFFF));
  const std::pair<std::string, const char*> cases[] = {
      {"", "no chip format"},
      {"RIFF" + whole.substr(4), "no chip format"},
      {whole.substr(0, 40), "header: expected 62 bytes, found 40"},
      {outside, "stream: expected inside"},
  };
  for (const auto& [bytes, message] : cases) {
    test::WriteBytes(dir / "a.mpm", test::ToBytes(bytes));
    const Result<CommandStream> stream = CommandStream::Open(Path::Native(dir / "a.mpm"));
    ASSERT_FALSE(stream.Ok());
    EXPECT_NE(stream.Message().find(message), std::string::npos) << stream.Message();
  }
  EXPECT_FALSE(CommandStream::Open(Path::Native(dir / "none.mpm")).Ok());
}

TEST(CommandStream, TellsPlaneDataFromPlainEvents) {
  // Action 204 with planes behind it, in the middle of a stream that ends right
  // only when they are taken as such.
  MpmWriter file;
  file.Silence(10, Event{1, 0, {}});
  file.Silence(10, Event{204, 0, {}}, false);
  file.stream += std::string("\x0A\x01", 2) + "\xFF" + std::string(8, '\x09');
  file.Silence(10, Event{205, 0, {}}, false);
  const InputFile planes = FileOf(file.Bytes());
  EXPECT_EQ(FindStream(planes, ReadChipFile(planes).Value())->form, EventForm::kPlanes);

  MpmWriter plain;
  plain.Silence(10, Event{204, 0, {}});
  plain.Silence(10, Event{204, 0, {}}, false);
  const InputFile words = FileOf(plain.Bytes());
  EXPECT_EQ(FindStream(words, ReadChipFile(words).Value())->form, EventForm::kWord);
}

}  // namespace
}  // namespace velora
