#include "audio/WaveFileUtil/RiffFile.h"

#include <array>
#include <chrono>
#include <cstring>

#include "support/TempDir.h"
#include "wave_bytes.h"

namespace velora {
namespace {

using test::Chunk;
using test::ChunkClaiming;
using test::Riff;
using test::U32;

InputFile InMemory(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return InputFile::FromBytes({bytes.begin(), bytes.end()});
}

/// "tag:size@offset" of each chunk, in order.
std::string Listing(C_RiffChunkList& chunks) {
  std::string text;
  for (C_RiffChunk* chunk : chunks) {
    if (!text.empty()) text += ' ';
    text += std::string(TextOf(chunk->Tag())) + ':' + std::to_string(chunk->GetSize()) + '@' +
            std::to_string(chunk->DataOffset());
  }
  return text;
}

const std::string kZero(1, '\0');

struct WalkCase {
  const char* name;
  std::string file;
  std::string listing;
};

class RiffWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(RiffWalk, ListsChunks) {
  C_RiffFile riff;
  const Status status = riff.Open(InMemory(GetParam().file), "WAVE");
  ASSERT_TRUE(status) << status.Message();
  EXPECT_EQ(Listing(riff.Chunks()), GetParam().listing);
}

std::string WithFormSize(uint32_t size, const std::string& chunks) {
  return "RIFF" + U32(size) + "WAVE" + chunks;
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, RiffWalk,
    testing::Values(
        WalkCase{"empty", Riff(""), ""},
        WalkCase{"nothing_counts_at_form_size_4", WithFormSize(4, Chunk("abcd", "xy")), ""},
        WalkCase{"streamed_with_form_size_0", WithFormSize(0, Chunk("abcd", "xy")), "abcd:2@20"},
        WalkCase{"form_size_below_4_wraps", WithFormSize(3, Chunk("abcd", "xy")), "abcd:2@20"},
        WalkCase{"form_size_beyond_the_file", WithFormSize(0xFFFFFFFF, Chunk("abcd", "xy")),
                 "abcd:2@20"},
        WalkCase{"lower_case", "riff" + U32(14) + "wave" + Chunk("abcd", "xy"), "abcd:2@20"},
        WalkCase{"odd_size_without_pad", Riff(Chunk("odd ", "xyz") + Chunk("next", "1234")),
                 "odd :3@20 next:4@31"},
        WalkCase{"odd_size_with_pad", Riff(Chunk("odd ", "xyz") + kZero + Chunk("next", "1234")),
                 "odd :3@20 next:4@32"},
        WalkCase{"run_of_zeros",
                 Riff(Chunk("a   ", "x") + std::string(9000, '\0') + Chunk("b   ", "y")),
                 "a   :1@20 b   :1@9029"},
        WalkCase{"zeros_up_to_the_end", Riff(Chunk("a   ", "x") + std::string(70000, '\0')),
                 "a   :1@20"},
        WalkCase{"duplicates", Riff(Chunk("same", "x") + Chunk("same", "")), "same:1@20 same:0@29"},
        WalkCase{"size_beyond_the_file", Riff(ChunkClaiming("long", 1000, "x")), "long:1000@20"},
        WalkCase{"size_of_all_ones",
                 Riff(ChunkClaiming("long", 0xFFFFFFFF, "x") + Chunk("none", "")),
                 "long:4294967295@20"},
        WalkCase{"header_cut_off", Riff(Chunk("good", "x") + "tag" + kZero), "good:1@20"},
        WalkCase{"second_chunk_behind_the_form",
                 WithFormSize(4 + 9, Chunk("in  ", "x") + Chunk("out ", "y")), "in  :1@20"},
        WalkCase{"chunk_across_the_end_of_the_form",
                 WithFormSize(4 + 10, Chunk("a   ", "x") + Chunk("b   ", "yy")),
                 "a   :1@20 b   :2@29"},
        // The pad uses up what is left of the form, and one more chunk is listed.
        WalkCase{"padding_across_the_end_of_the_form",
                 WithFormSize(4 + 10, Chunk("a   ", "x") + kZero + kZero + kZero +
                                          Chunk("b   ", "y") + Chunk("c   ", "z")),
                 "a   :1@20 b   :1@32"}),
    [](const auto& test) { return test.param.name; });

TEST(RiffFileTest, SaysWhyAFileIsNone) {
  const std::pair<std::string, const char*> cases[] = {
      {"RIFF", "ends at byte 4"},
      {"RIFX" + U32(4) + "WAVE", "begins with \"RIFX\""},
      {"RIFF" + U32(4) + "AVI ", "form \"AVI \" found"},
  };
  for (const auto& [file, reason] : cases) {
    C_RiffFile riff;
    const Status status = riff.Open(InMemory(file), "WAVE");
    EXPECT_FALSE(status);
    EXPECT_NE(status.Message().find(reason), std::string::npos) << status.Message();
  }
}

TEST(RiffFileTest, WalksLongZeroRunsAndManyChunksInLinearTime) {
  const test::TempDir dir;
  std::string tiny;
  for (int i = 0; i < 500000; ++i) tiny += Chunk("tiny", "");
  const auto start = std::chrono::steady_clock::now();
  for (const std::string& chunks : {std::string(64 << 20, '\0'), tiny}) {
    test::WriteText(dir / "long.wav", Riff(chunks));
    C_RiffFile riff;
    ASSERT_TRUE(riff.Open(Path::Native(dir / "long.wav"), "WAVE"));
    EXPECT_EQ(riff.Chunks().Count(), chunks[0] ? 500000 : 0);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(RiffChunkTest, ReadsWithinItsContentOnly) {
  C_RiffFile riff;
  ASSERT_TRUE(riff.Open(InMemory(Riff(Chunk("full", "0123456789") + Chunk("none", "") +
                                      ChunkClaiming("long", 0xFFFFFFF0, "only"))),
                        "WAVE"));
  ASSERT_EQ(riff.Chunks().Count(), 3);
  std::array<char, 16> buffer{};

  I_RiffChunk* full = riff.Chunks().ItemAt(0);
  ASSERT_EQ(full->Read(buffer.data(), 4, 3), 1);
  EXPECT_EQ(std::string_view(buffer.data(), 4), "3456");
  EXPECT_EQ(full->Read(buffer.data(), 1, 9), 1);
  EXPECT_EQ(full->Read(buffer.data(), 0, 10), 1);
  EXPECT_EQ(full->Read(buffer.data(), 1, 10), 0);
  EXPECT_EQ(full->Read(buffer.data(), 11, 0), 0);
  EXPECT_EQ(full->Read(buffer.data(), 2, 0xFFFFFFFF), 0);

  EXPECT_EQ(riff.Chunks().ItemAt(1)->Read(buffer.data(), 0, 0), 0);

  C_RiffChunk* cut = riff.Chunks().ItemAt(2);
  EXPECT_EQ(cut->SizeInFile(), 4u);
  EXPECT_EQ(cut->Read(buffer.data(), 1, 0), 0);
  EXPECT_NE(cut->Content().Message().find("the file holds 4"), std::string::npos);
}

TEST(RiffChunkTest, ParsesChildren) {
  C_RiffFile riff;
  ASSERT_TRUE(
      riff.Open(InMemory(Riff(Chunk("outr", Chunk("in1 ", "a") + kZero + Chunk("in2 ", "bc")) +
                              Chunk("next", "d"))),
                "WAVE"));
  C_RiffChunk* outer = riff.Chunks().ItemAt(0);
  ASSERT_TRUE(outer->ParseChildren());
  EXPECT_EQ(Listing(outer->Children()), "in1 :1@28 in2 :2@38");
  char byte = 0;
  EXPECT_EQ(outer->Children().ItemAt(0)->Read(&byte, 1, 0), 1);
  EXPECT_EQ(byte, 'a');
}

TEST(RiffFileTest, WritesWithoutPadding) {
  const test::TempDir dir;
  C_RiffFile riff;
  riff.Chunks().AddChunk({'o', 'd', 'd', ' '}, 3)->SetData("xyz");
  const std::string borrowed = "1234";
  riff.Chunks().AddChunk({'e', 'v', 'e', 'n'}, 4)->Borrow(std::as_bytes(std::span(borrowed)));
  C_RiffChunk* parent = riff.Chunks().AddChunk({'p', 'a', 'r', 't'}, 9);
  parent->Children().AddChunk({'k', 'i', 'd', ' '}, 1)->SetData("k");
  riff.Chunks().AddChunk({'n', 'o', 'n', 'e'}, 0);

  ASSERT_TRUE(riff.Save(Path::Native(dir / "out.wav"), {'W', 'A', 'V', 'E'}));
  EXPECT_EQ(test::ReadText(dir / "out.wav"),
            Riff(Chunk("odd ", "xyz") + Chunk("even", "1234") + Chunk("part", Chunk("kid ", "k")) +
                 Chunk("none", "")));
  EXPECT_EQ(riff.Chunks().ItemAt(1)->DataOffset(), 12u + 8 + 3 + 8);
}

TEST(RiffFileTest, RefusesWhatPasses32BitsBeforeWriting) {
  const test::TempDir dir;
  // The form and two headers take 20 bytes more than the contents.
  for (const uint32_t second : {0x7FFFFFFFu - 20, 0x7FFFFFFFu - 19}) {
    C_RiffFile riff;
    riff.Chunks().AddChunk({'a', ' ', ' ', ' '}, 0x80000000u);
    riff.Chunks().AddChunk({'b', ' ', ' ', ' '}, second);
    const Status status = riff.Save(Path::Native(dir / "big.wav"), {'W', 'A', 'V', 'E'});
    ASSERT_FALSE(status);
    // The largest that fits fails later, for its chunks have no content here.
    const bool fits = second == 0x7FFFFFFFu - 20;
    EXPECT_EQ(status.Message().find("at most") == std::string::npos, fits) << status.Message();
    EXPECT_EQ(dir.Entries().empty(), !fits);
    std::filesystem::remove(dir / "big.wav");
  }
}

TEST(RiffFileTest, ReportsAWriteThatFails) {
  C_RiffFile riff;
  riff.Chunks().AddChunk({'a', 'b', 'c', 'd'}, 3)->SetData("xyz");
  EXPECT_FALSE(riff.Save(Path::Native("/dev/full"), {'W', 'A', 'V', 'E'}));
  EXPECT_FALSE(riff.Save(Path::Native("/nowhere/at/all.wav"), {'W', 'A', 'V', 'E'}));
}

}  // namespace
}  // namespace velora
