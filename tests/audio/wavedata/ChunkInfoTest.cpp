// The chunks of a wave file, byte by byte.
#include <gtest/gtest.h>

#include "audio/wavedata/SoundKit.h"

namespace velora::test {
namespace {

using namespace std::string_literals;

/// What an info writes into a chunk of the size it asks for.
template <typename Info>
std::string Written(const Info& info) {
  MemoryChunk chunk(info.GetChunkSize());
  EXPECT_EQ(info.Write(&chunk), 1);
  MemoryChunk other(info.GetChunkSize() + 1);
  EXPECT_EQ(info.Write(&other), 0);
  EXPECT_EQ(other.Content(), std::string(info.GetChunkSize() + 1, '\xEE'));
  return chunk.Content();
}

template <typename Info>
int32_t ReadFrom(Info& info, const std::string& content) {
  MemoryChunk chunk(content);
  return info.Read(&chunk);
}

std::string CuePoint(uint32_t id, uint32_t position) {
  return Le(id) + Le(position) + "data" + Le(0) + Le(0) + Le(position);
}

TEST(CueInfo, WritesAndReads) {
  C_WavDataCueInfo cues(nullptr);
  for (const uint32_t id : {7, 3, 5}) cues.SetPoint(id, 10 * id, "data", 0, 0, 10 * id);
  EXPECT_EQ(cues.GetChunkSize(), 76u);
  const std::string expected = Le(3) + CuePoint(7, 70) + CuePoint(3, 30) + CuePoint(5, 50);
  EXPECT_EQ(Written(cues), expected);
  C_WavDataCueInfo read(nullptr);
  read.SetPoint(99, 0, "", 0, 0, 0);
  ASSERT_EQ(ReadFrom(read, expected), 1);
  EXPECT_EQ(Written(read), expected);
  EXPECT_STREQ(read.GetAt(1)->GetChunkTag(), "data");
  EXPECT_EQ(read.FindById(99), nullptr);
  EXPECT_EQ(read.GetAt(3), nullptr);
}

TEST(CueInfo, SetPointChangesTheFirstOfItsId) {
  C_WavDataCueInfo cues(nullptr);
  ASSERT_EQ(ReadFrom(cues, Le(3) + CuePoint(1, 10) + CuePoint(2, 20) + CuePoint(2, 30)), 1);
  cues.SetPoint(2, 99, "dataXYZ", 1, 2, 3);
  EXPECT_EQ(cues.GetCount(), 3u);
  EXPECT_EQ(cues.GetAt(1)->GetPosition(), 99u);
  EXPECT_STREQ(cues.GetAt(1)->GetChunkTag(), "data");
  EXPECT_EQ(cues.GetAt(1)->GetSampleOffset(), 3u);
  EXPECT_EQ(cues.GetAt(2)->GetPosition(), 30u);
  EXPECT_EQ(cues.RemoveById(2), 1);
  EXPECT_EQ(cues.FindById(2)->GetPosition(), 30u);  // the second one is the first now
  EXPECT_EQ(cues.RemoveById(2), 1);
  EXPECT_EQ(cues.RemoveById(2), 0);
  EXPECT_EQ(cues.RemoveAt(1), 0);
  EXPECT_EQ(cues.RemoveAt(0), 1);
  EXPECT_FALSE(cues.HasPoints());
}

TEST(CueInfo, KeepsWhatFits) {
  const struct {
    std::string content;
    int32_t result;
    uint32_t count;
  } cases[] = {
      {"", 0, 1},
      {"ab", 1, 0},
      {Le(0xFFFFFFFF) + CuePoint(1, 1) + CuePoint(2, 2), 1, 2},
      {Le(2) + CuePoint(1, 1) + CuePoint(2, 2).substr(0, 23), 1, 1},
      {Le(1) + CuePoint(1, 1) + CuePoint(2, 2), 1, 1},
  };
  for (const auto& c : cases) {
    C_WavDataCueInfo cues(nullptr);
    cues.SetPoint(9, 9, "data", 0, 0, 9);
    EXPECT_EQ(ReadFrom(cues, c.content), c.result);
    EXPECT_EQ(cues.GetCount(), c.count);
  }
  MemoryChunk truncated(Le(1) + CuePoint(1, 1));
  truncated.claimed = 0xFFFFFFFF;  // costs neither memory nor the points there were
  C_WavDataCueInfo cues(nullptr);
  EXPECT_EQ(cues.Read(&truncated), 0);
  EXPECT_EQ(cues.Read(nullptr), 0);
}

std::string SamplerHead(uint32_t loops, uint32_t dataSize) {
  std::string head;
  for (uint32_t word = 1; word <= 7; ++word) head += Le(word);
  return head + Le(loops) + Le(dataSize);
}

std::string Loop(uint32_t id) { return Le(id) + Le(1) + Le(20) + Le(30) + Le(4) + Le(5); }

TEST(SamplerInfo, WritesAndReads) {
  C_WavDataSamplerInfo sampler;
  const std::string content = SamplerHead(2, 3) + Loop(8) + Loop(9);
  ASSERT_EQ(ReadFrom(sampler, content + "xyz"), 1);
  EXPECT_EQ(sampler.GetManufacturer(), 1u);
  EXPECT_EQ(sampler.GetSmpteOffset(), 7u);
  EXPECT_EQ(sampler.GetLoopAt(1)->GetCueId(), 9u);
  EXPECT_EQ(sampler.GetLoopAt(1)->GetLoopEnd(), 30u);
  EXPECT_EQ(sampler.GetLoopAt(2), nullptr);
  EXPECT_EQ(Written(sampler), content + "\0\0\0"s);
  sampler.AddLoop(10, 1, 20, 30, 4, 5);
  sampler.RemoveLoopAt(0);
  sampler.SetSamplerDataSize(0);
  EXPECT_EQ(Written(sampler), SamplerHead(2, 0) + Loop(9) + Loop(10));
  sampler.Clear();
  EXPECT_EQ(Written(sampler), std::string(36, '\0'));
}

TEST(SamplerInfo, KeepsWhatFits) {
  const struct {
    std::string content;
    int32_t result;
    uint32_t loops, dataSize;
  } cases[] = {
      {"", 0, 0, 0},
      {SamplerHead(0, 0).substr(0, 30), 1, 0, 0},
      {SamplerHead(0xFFFFFFFF, 0) + Loop(1) + Loop(2).substr(1), 1, 1, 0},
      {SamplerHead(1, 0xFFFFFFFF) + Loop(1) + "ab", 1, 1, 2},
      {SamplerHead(0, 5), 1, 0, 0},
  };
  for (const auto& c : cases) {
    C_WavDataSamplerInfo sampler;
    EXPECT_EQ(ReadFrom(sampler, c.content), c.result);
    EXPECT_EQ(sampler.GetLoopCount(), c.loops);
    EXPECT_EQ(sampler.GetSamplerDataSize(), c.dataSize);
    EXPECT_EQ(sampler.GetChunkSize(), 36 + 24 * c.loops + c.dataSize);
  }
}

TEST(ListInfo, WritesLabelsThenTexts) {
  C_WavDataListInfo list;
  list.AddText(2, 100);
  list.AddLabel(1, "abcde");
  list.AddLabel(2, "abcd");
  EXPECT_EQ(Written(list),
            "adtl"
            "labl"s +
                Le(10) + Le(1) + "abcde\0"s + "labl" + Le(10) + Le(2) + "abcd\0\0"s + "ltxt" +
                Le(20) + Le(2) + Le(100) + std::string(12, '\0'));
  EXPECT_EQ(list.GetTextLength(2), 100u);
  EXPECT_EQ(list.GetTextLength(1), 0u);
}

TEST(ListInfo, LongLabelsAreCut) {
  const std::string text(100, 'x');
  C_WavDataListInfo list;
  ASSERT_EQ(ReadFrom(list, "adtllabl" + Le(105) + Le(1) + text + "\0\0"s + "labl" + Le(6) + Le(2) +
                               "y\0"s),
            1);
  list.AddLabel(3, text.c_str());
  ASSERT_EQ(list.GetLabelCount(), 3u);
  uint32_t id = 0;
  EXPECT_EQ(list.GetLabelAt(0, nullptr), text.substr(0, 63));
  EXPECT_STREQ(list.GetLabelAt(1, &id), "y");
  EXPECT_EQ(id, 2u);
  EXPECT_EQ(list.GetLabelAt(2, nullptr), text.substr(0, 63));
  EXPECT_EQ(list.GetLabelAt(3, &id), nullptr);
}

TEST(ListInfo, WalksForeignAndDamagedRecords) {
  const std::string good = "labl" + Le(6) + Le(1) + "a\0"s;
  const struct {
    std::string records;
    std::vector<std::string> labels;
  } cases[] = {
      {good + "note" + Le(3) + "abc\0"s + good, {"a", "a"}},
      {"labl" + Le(5) + Le(1) + "b" + "\0"s + good, {"b", "a"}},  // odd size, pad byte
      {"labl" + Le(7) + Le(1) + "b\0c\0"s, {"b"}},                // ends at the first NUL
      {"labl" + Le(0) + good, {"", "a"}},                         // the id is that of behind
      {"labl" + Le(0xFFFFFFFF) + Le(1) + "tail", {"tail"}},
      {"labl" + Le(6) + Le(1), {""}},
      {"labl" + Le(6) + "ab", {}},  // not even an id
      {"LABL" + Le(6) + Le(1) + "a\0"s, {}},
      {good + "labl" + Le(0), {"a"}},  // eight bytes say nothing
  };
  for (const auto& c : cases) {
    C_WavDataListInfo list;
    EXPECT_EQ(ReadFrom(list, "adtl" + c.records), 1);
    std::vector<std::string> labels;
    for (const auto& label : list.Labels()) labels.emplace_back(label.Text());
    EXPECT_EQ(labels, c.labels);
  }
}

TEST(ListInfo, OtherFormsAreLeftAlone) {
  C_WavDataListInfo list;
  list.AddLabel(1, "kept");
  EXPECT_EQ(ReadFrom(list, "INFOISFT" + Le(4) + "abcd"), 1);
  EXPECT_EQ(ReadFrom(list, "ad"), 1);
  EXPECT_EQ(ReadFrom(list, ""), 0);
  EXPECT_EQ(list.GetLabelCount(), 1u);
  EXPECT_EQ(ReadFrom(list, "adtl"), 1);
  EXPECT_EQ(list.GetLabelCount(), 0u);
}

TEST(ListInfo, TheFirstTextOfAnIdCounts) {
  const auto text = [](uint32_t id, uint32_t length) {
    return "ltxt" + Le(20) + Le(id) + Le(length) + std::string(12, '\0');
  };
  C_WavDataListInfo list;
  ASSERT_EQ(ReadFrom(list, "adtl" + text(4, 10) + text(4, 20) + "ltxt" + Le(20) + Le(5)), 1);
  EXPECT_EQ(list.GetTextCount(), 2u);
  EXPECT_EQ(list.GetTextLength(4), 10u);
  list.ClearTexts();
  EXPECT_EQ(list.GetTextLength(4), 0u);
}

TEST(ExtraChunks, KeepsAllInOrder) {
  C_WavDataExtraChunkInfo chunks;
  MemoryChunk first("first"s);
  MemoryChunk empty(""s);
  MemoryChunk broken("x"s);
  broken.claimed = 100;
  EXPECT_EQ(chunks.AddFromChunk("KIOD", &first), 1);
  EXPECT_EQ(chunks.AddFromChunk("kiod", &empty), 1);
  EXPECT_EQ(chunks.AddFromChunk("KIOD", &broken), 0);
  EXPECT_EQ(chunks.AddFromBytes("KIOD", "second", 6), 1);
  EXPECT_EQ(chunks.AddFromBytes("KIOD", nullptr, 6), 0);
  ASSERT_EQ(chunks.GetCount(), 3);
  const void* bytes = nullptr;
  EXPECT_EQ(chunks.Find("KIOD")->GetData(&bytes), 5u);
  EXPECT_EQ(std::memcmp(bytes, "first", 5), 0);
  EXPECT_EQ(chunks.GetAt(1)->GetData(&bytes), 0u);
  EXPECT_EQ(bytes, nullptr);
  EXPECT_STREQ(chunks.GetAt(1)->GetTag(), "kiod");
  EXPECT_EQ(chunks.Remove("KIOD"), 1);
  EXPECT_EQ(chunks.Find("KIOD")->GetData(&bytes), 6u);
  EXPECT_EQ(chunks.Remove("MIOW"), 0);
  EXPECT_EQ(chunks.Find("MIOW"), nullptr);
}

}  // namespace
}  // namespace velora::test
