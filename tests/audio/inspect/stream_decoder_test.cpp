#include "audio/inspect/StreamDecoder.h"

#include <gtest/gtest.h>

#include "audio/inspect/mpm_bytes.h"

namespace velora {
namespace {

using test::FileOf;
using test::MpmWriter;

/// All samples of a stream, read in blocks of `block`, raw ones with their low
/// bits 0.
std::vector<uint16_t> DecodeAll(const std::string& stream, size_t block,
                                const StreamGrammar& grammar = kMpmGrammar) {
  const InputFile file = FileOf(stream);
  StreamWalker walker(file, {&grammar, 0, stream.size(), EventForm::kWord});
  StreamDecoder decoder(file, grammar);
  std::vector<uint16_t> all;
  std::vector<uint16_t> out(block);
  StreamCommand command;
  while (walker.Next(command)) {
    decoder.Begin(command);
    while (const size_t count = decoder.Read(out))
      all.insert(all.end(), out.begin(), out.begin() + count);
  }
  EXPECT_TRUE(walker.Ended()) << walker.GetStatus().Message();
  return all;
}

TEST(StreamDecoder, FollowsCodesByHand) {
  // Row 2 has step 24. Signs of codes 1 and 7; magnitudes 1, 2, 0, 15, 3, 0, 1, 0:
  // the last with its sign is -16.
  const std::string stream = std::string("\x25\x7F\x82\x21\xF0\x03\x01", 7) + std::string(5, '\0') +
                             std::string("\1\3\0\0", 4);
  const std::vector<uint16_t> samples = DecodeAll(stream, 100);
  const int codes[] = {1, -2, 0, 15, 3, 0, 1, -16};
  int value = 2047;
  ASSERT_EQ(samples.size(), 19u);
  for (size_t i = 0; i < 8; ++i) {
    value += 24 * codes[i];
    EXPECT_EQ(samples[i], value) << i;
  }
  // The rest of the frame and the silence stay where it ended.
  for (size_t i = 8; i < 19; ++i) EXPECT_EQ(samples[i], value) << i;
}

TEST(StreamDecoder, GivesTheSameInBlocksOfAnySize) {
  MpmWriter file = test::RichFile();
  for (size_t i = 0; i < 20; ++i) file.Raw(std::vector<uint32_t>(3000 + i, 16 * i), {});
  const std::vector<uint16_t> whole = DecodeAll(file.stream + '\0', 100000);
  ASSERT_EQ(whole.size(), file.decoded.size());
  for (const size_t block : {1u, 7u, 64u, 1000u}) {
    EXPECT_EQ(DecodeAll(file.stream + '\0', block), whole) << block;
  }
}

TEST(StreamDecoder, GivesTheHighBitsOfRawSamples) {
  MpmWriter file;
  file.Raw({0xABC, 0x123, 0xFFF}, {});
  EXPECT_EQ(DecodeAll(file.stream + '\0', 10), (std::vector<uint16_t>{0xAB0, 0x120, 0xFF0}));
}

TEST(StreamDecoder, GoesOnFromAValueThatIsSet) {
  MpmWriter file;
  file.Raw({0xABC}, {});
  file.Frame(1, std::vector<int>(16, 1), {});
  const std::string stream = file.stream + '\0';
  const InputFile bytes = FileOf(stream);
  StreamWalker walker(bytes, {&kMpmGrammar, 0, stream.size(), EventForm::kWord});
  StreamDecoder decoder(bytes, kMpmGrammar);
  std::vector<uint16_t> out(16);
  StreamCommand command;
  ASSERT_TRUE(walker.Next(command));
  decoder.Begin(command);
  ASSERT_EQ(decoder.Read(out), 1u);
  decoder.SetValue(0xABC);
  ASSERT_TRUE(walker.Next(command));
  decoder.Begin(command);
  ASSERT_EQ(decoder.Read(out), 16u);
  EXPECT_EQ(std::vector<uint32_t>(out.begin(), out.end()),
            std::vector<uint32_t>(file.decoded.begin() + 1, file.decoded.end()));
}

TEST(StreamDecoder, HoldsAndCountsCodesThatLeaveTheRange) {
  MpmWriter file;
  file.Frame(15, std::vector<int>(16, 15), {});  // 2047 + 15 x 128 = 3967, then held
  const std::string stream = file.stream + '\0';
  const InputFile bytes = FileOf(stream);
  StreamWalker walker(bytes, {&kMpmGrammar, 0, stream.size(), EventForm::kWord});
  StreamDecoder decoder(bytes, kMpmGrammar);
  StreamCommand command;
  ASSERT_TRUE(walker.Next(command));
  decoder.Begin(command);
  std::vector<uint16_t> out(16);
  ASSERT_EQ(decoder.Read(out), 16u);
  EXPECT_EQ(out.front(), 3967);
  EXPECT_EQ(out.back(), 4095);
  EXPECT_EQ(decoder.HeldCodes(), 15u);
  EXPECT_EQ(decoder.MovingCodes(), 16u);
}

TEST(StreamDecoder, PutsAFramesFirstSampleOnTheGrid) {
  StreamGrammar grammar = kMpmGrammar;
  grammar.firstSampleBits = 8;
  MpmWriter file;
  file.Frame(0, std::vector<int>(16, -1), {});
  const std::vector<uint16_t> samples = DecodeAll(file.stream + '\0', 16, grammar);
  // 2047 - 8 = 2039, nine below the middle, goes down to the multiple of 16.
  EXPECT_EQ(samples[0], 2032);
  EXPECT_EQ(samples[1], 2024);
}

}  // namespace
}  // namespace velora
