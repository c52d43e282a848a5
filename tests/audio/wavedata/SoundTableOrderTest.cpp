// The places of the operations in the tables of this folder, reached as a host
// reaches them.
#include <gtest/gtest.h>

#include "audio/wavedata/SoundKit.h"
#include "support/RawTable.h"

namespace velora::test {
namespace {

/// A pair of operations that set and give the same number.
template <typename T>
void ExpectPair(const RawTable& table, size_t set, size_t get, uint32_t value) {
  SCOPED_TRACE(set);
  const T number = static_cast<T>(value);
  table.Call<void>(set, number);
  EXPECT_EQ(table.Call<T>(get), number);
}

TEST(SoundTables, WavInfo) {
  C_WavInfo info;
  const RawTable table(static_cast<I_WavInfo*>(&info));
  table.Call<void>(13, uint32_t{8000}, uint32_t{24000}, uint16_t{2}, uint16_t{12}, uint16_t{16},
                   int32_t{0});
  EXPECT_EQ(table.Call<uint32_t>(0), 750u);
  EXPECT_EQ(table.Call<uint32_t>(1), 24000u);
  EXPECT_EQ(table.Call<uint32_t>(2), 8000u);
  EXPECT_EQ(table.Call<uint32_t>(3), 6000u);
  EXPECT_EQ(table.Call<uint16_t>(4), 12);
  EXPECT_EQ(table.Call<uint16_t>(5), 16);
  EXPECT_EQ(table.Call<uint16_t>(6), 2);
  EXPECT_EQ(table.Call<uint16_t>(7), 2);
  EXPECT_EQ(table.Call<uint16_t>(8), 4);
  EXPECT_EQ(table.Call<uint32_t>(9), 32000u);
  EXPECT_EQ(table.Call<int32_t>(10), 0);
  table.Call<void>(11, uint32_t{16000});
  EXPECT_EQ(info.GetSampleRate(), 16000u);
  C_WavInfo other;
  other.SetSampleRate(5);
  table.Call<void>(12, static_cast<const I_WavInfo*>(&other));
  EXPECT_EQ(info.GetSampleRate(), 5u);
  WaveFormatRecord record{};
  table.Call<void>(14, &record);
  EXPECT_EQ(record.FormatTag, 1);
  RawTable(static_cast<I_WavInfo*>(new C_WavInfo)).Call<void>(16);
}

TEST(SoundTables, BufferAndIterator) {
  C_WavData sound;
  Fill16(sound, 1, {1, -9, 3});
  const RawTable buffer(static_cast<I_WavDataBuffer*>(sound.GetBuffer()));
  EXPECT_EQ(buffer.Call<int32_t>(0, uint32_t{1}, uint16_t{0}), -9);
  buffer.Call<void>(1, uint32_t{2}, int32_t{4}, uint16_t{0});
  EXPECT_EQ(buffer.Call<int64_t>(2, uint32_t{0}, uint32_t{2}, uint16_t{0}, uint16_t{0}), 9);
  const RawTable iterator(buffer.Call<I_WavDataBufferIterator*>(3, uint32_t{2}, uint16_t{0}));
  EXPECT_EQ(iterator.Call<int32_t>(3), 4);
  iterator.Call<void>(0, uint32_t{0});
  EXPECT_EQ(iterator.Call<int32_t>(3), 1);
  iterator.Call<void>(1);
  EXPECT_EQ(iterator.Call<int32_t>(3), -9);
  iterator.Call<void>(2);
  iterator.Call<void>(4, int32_t{40000});
  EXPECT_EQ(sound.GetBuffer()->GetSample(0, 0), 32767);
}

TEST(SoundTables, SilenceSegmentAndProgress) {
  C_SilenceSegment segment(0, 0);
  const RawTable table(static_cast<I_SilenceSegment*>(&segment));
  table.Call<void>(3, uint32_t{4}, uint32_t{9});
  EXPECT_EQ(table.Call<uint32_t>(0), 4u);
  EXPECT_EQ(table.Call<uint32_t>(1), 9u);
  EXPECT_EQ(table.Call<uint32_t>(2), 6u);

  ProgressLog log;
  const RawTable progress(static_cast<I_ProgressCallback*>(&log));
  progress.Call<void>(0);
  progress.Call<void>(1, int32_t{50});
  progress.Call<void>(2);
  EXPECT_EQ(log.calls, (std::vector<int32_t>{ProgressLog::kBegan, 50, ProgressLog::kEnded}));
}

TEST(SoundTables, WriteWavParam) {
  C_WriteWavParam param;
  const RawTable table(static_cast<I_WriteWavParam*>(&param));
  EXPECT_EQ(table.Call<int32_t>(2), 0);
  table.Call<void>(1, uint16_t{12}, uint16_t{16}, uint32_t{1});
  EXPECT_EQ(table.Call<int32_t>(2), 1);
  uint16_t resolution = 0;
  table.Call<void>(3, &resolution, static_cast<uint16_t*>(nullptr),
                   static_cast<uint32_t*>(nullptr));
  EXPECT_EQ(resolution, 12);
  EXPECT_EQ(table.Call<int32_t>(7), 0);
  table.Call<void>(6, uint32_t{64}, uint32_t{1});
  EXPECT_EQ(table.Call<int32_t>(7), 1);
  uint32_t minLength = 0;
  table.Call<void>(8, &minLength, static_cast<uint32_t*>(nullptr));
  EXPECT_EQ(minLength, 64u);
  for (const size_t set : {4, 9, 11, 13, 15, 25})
    ExpectPair<uint32_t>(table, set, set + 1, 70 + set);
  ExpectPair<uint8_t>(table, 17, 18, 200);
  for (const size_t set : {19, 21, 23}) ExpectPair<uint16_t>(table, set, set + 1, 1000 + set);
  EXPECT_EQ(table.Call<int32_t>(27), 1);
  table.Call<void>(28, static_cast<I_VeloraPinMapInfoMgr*>(nullptr));
  EXPECT_EQ(table.Call<I_VeloraPinMapInfoMgr*>(29), nullptr);
  EXPECT_EQ(param.GetLvePercent2(), 1021);
  table.Call<void>(0);
  EXPECT_EQ(param.GetLvePercent2(), 100);
  RawTable(static_cast<I_WriteWavParam*>(new C_WriteWavParam)).Call<void>(31);
}

TEST(SoundTables, EventAndRegion) {
  C_ActionEventMgr manager;
  const RawTable event(static_cast<I_ActionEvent*>(manager.AddEventAtMs(1, 1, "", 0)));
  EXPECT_EQ(event.Call<uint32_t>(0), 1u);
  ExpectPair<int32_t>(event, 2, 1, 4100);
  ExpectPair<uint32_t>(event, 4, 3, 33);
  event.Call<void>(6, static_cast<const char*>("text"));
  EXPECT_STREQ(event.Call<const char*>(5), "text");
  ExpectPair<int32_t>(event, 8, 7, 5);
  ExpectPair<uint32_t>(event, 10, 9, 77);
  ExpectPair<uint32_t>(event, 12, 11, 8000);
  ExpectPair<uint32_t>(event, 14, 13, 6);
  RawTable(static_cast<I_ActionEvent*>(new C_ActionEvent)).Call<void>(16);

  const RawTable region(static_cast<I_ActionSilenceRegion*>(manager.AddSilenceRegion(1, 2)));
  EXPECT_EQ(region.Call<uint32_t>(0), 1u);
  ExpectPair<uint32_t>(region, 1, 2, 10);
  ExpectPair<uint32_t>(region, 3, 4, 20);
  ExpectPair<uint32_t>(region, 5, 6, 30);
}

TEST(SoundTables, EventMgr) {
  C_ActionEventMgr manager;
  const RawTable table(static_cast<I_ActionEventMgr*>(&manager));
  const char* const text = "";
  table.Call<void>(10, uint32_t{1000});
  EXPECT_EQ(table.Call<uint32_t>(11), 1000u);
  auto* timed = table.Call<I_ActionEvent*>(0, int32_t{1}, uint32_t{10}, text, int32_t{2});
  auto* placed = table.Call<I_ActionEvent*>(8, int32_t{3}, uint32_t{20}, text, int32_t{4});
  EXPECT_EQ(table.Call<I_ActionEvent*>(3, timed->GetId()), timed);
  EXPECT_EQ(table.Call<I_CUList<I_ActionEvent>*>(4, uint32_t{10})->GetAt(0), timed);
  EXPECT_EQ(table.Call<I_CUList<I_ActionEvent>*>(5, int32_t{3})->GetAt(0), placed);
  EXPECT_EQ(table.Call<I_CUList<I_ActionEvent>*>(9, uint32_t{20})->GetAt(0), placed);
  EXPECT_EQ(table.Call<I_CUList<I_ActionEvent>*>(6)->GetCount(), 2);
  EXPECT_EQ(table.Call<int32_t>(7, table.Call<I_CUList<I_ActionEvent>*>(6)), 1);
  EXPECT_EQ(manager.Events().size(), 4u);
  EXPECT_EQ(table.Call<int32_t>(1, uint32_t{999}), 0);
  table.Call<void>(2);
  EXPECT_TRUE(manager.Events().empty());

  auto* region = table.Call<I_ActionSilenceRegion*>(12, uint32_t{5}, uint32_t{6});
  EXPECT_EQ(table.Call<I_ActionSilenceRegion*>(15, region->GetId()), region);
  EXPECT_EQ(table.Call<I_CUList<I_ActionSilenceRegion>*>(16, uint32_t{5})->GetAt(0), region);
  EXPECT_EQ(table.Call<I_CUList<I_ActionSilenceRegion>*>(17)->GetCount(), 1);
  EXPECT_EQ(table.Call<int32_t>(18, table.Call<I_CUList<I_ActionSilenceRegion>*>(17)), 1);
  EXPECT_EQ(table.Call<int32_t>(13, uint32_t{999}), 0);
  table.Call<void>(14);
  EXPECT_TRUE(manager.Regions().empty());
  RawTable(static_cast<I_ActionEventMgr*>(new C_ActionEventMgr)).Call<void>(20);
}

TEST(SoundTables, CueInfo) {
  C_WavDataCueInfo cues(nullptr);
  const RawTable table(static_cast<I_WavDataCueInfo*>(&cues));
  const auto set = [&](uint32_t id) {
    return table.Call<int32_t>(5, id, uint32_t{20}, static_cast<const char*>("abcd"), uint32_t{30},
                               uint32_t{40}, uint32_t{50});
  };
  EXPECT_EQ(table.Call<int32_t>(0), 0);
  EXPECT_EQ(set(7), 1);
  EXPECT_EQ(set(8), 1);
  EXPECT_EQ(table.Call<uint32_t>(2), 2u);
  auto* point = table.Call<I_WavDataCuePoint*>(3, uint32_t{0});
  EXPECT_EQ(table.Call<I_WavDataCuePoint*>(4, uint32_t{7}), point);
  const RawTable fields(point);
  EXPECT_EQ(fields.Call<uint32_t>(0), 7u);
  EXPECT_EQ(fields.Call<uint32_t>(1), 20u);
  EXPECT_STREQ(fields.Call<const char*>(2), "abcd");
  EXPECT_EQ(fields.Call<uint32_t>(3), 30u);
  EXPECT_EQ(fields.Call<uint32_t>(4), 40u);
  EXPECT_EQ(fields.Call<uint32_t>(5), 50u);
  EXPECT_EQ(table.Call<uint32_t>(8), 52u);
  MemoryChunk chunk(uint32_t{52});
  EXPECT_EQ(table.Call<int32_t>(10, static_cast<I_RiffChunk*>(&chunk)), 1);
  EXPECT_EQ(table.Call<int32_t>(6, uint32_t{0}), 1);
  EXPECT_EQ(table.Call<int32_t>(7, uint32_t{8}), 1);
  EXPECT_EQ(table.Call<int32_t>(9, static_cast<I_RiffChunk*>(&chunk)), 1);
  EXPECT_EQ(cues.GetCount(), 2u);
  table.Call<void>(1);
  EXPECT_FALSE(cues.HasPoints());
}

TEST(SoundTables, SamplerInfo) {
  C_WavDataSamplerInfo sampler;
  const RawTable table(static_cast<I_WavDataSamplerInfo*>(&sampler));
  for (uint32_t word = 0; word < 7; ++word) ExpectPair<uint32_t>(table, 13 + word, 3 + word, word);
  EXPECT_EQ(sampler.GetSmpteFormat(), 5u);
  ExpectPair<uint32_t>(table, 11, 12, 4);
  EXPECT_EQ(table.Call<int32_t>(0), 0);
  EXPECT_EQ(table.Call<int32_t>(21, uint32_t{1}, uint32_t{2}, uint32_t{3}, uint32_t{4}, uint32_t{5},
                                uint32_t{6}),
            1);
  EXPECT_EQ(table.Call<uint32_t>(10), 1u);
  const RawTable loop(table.Call<I_WavDataSampleLoop*>(20, uint32_t{0}));
  for (uint32_t i = 0; i < 6; ++i) EXPECT_EQ(loop.Call<uint32_t>(i), i + 1);
  EXPECT_EQ(table.Call<uint32_t>(23), 64u);
  MemoryChunk chunk(uint32_t{64});
  EXPECT_EQ(table.Call<int32_t>(25, static_cast<I_RiffChunk*>(&chunk)), 1);
  EXPECT_EQ(table.Call<int32_t>(22, uint32_t{0}), 1);
  EXPECT_EQ(table.Call<int32_t>(24, static_cast<I_RiffChunk*>(&chunk)), 1);
  EXPECT_EQ(table.Call<int32_t>(0), 1);
  table.Call<void>(2);
  EXPECT_EQ(sampler.GetLoopCount(), 0u);
  EXPECT_EQ(sampler.GetSmpteFormat(), 5u);
  table.Call<void>(1);
  EXPECT_EQ(sampler.GetSmpteFormat(), 0u);
}

TEST(SoundTables, ListInfo) {
  C_WavDataListInfo list;
  const RawTable table(static_cast<I_WavDataListInfo*>(&list));
  EXPECT_EQ(table.Call<int32_t>(4, uint32_t{1}, static_cast<const char*>("a")), 1);
  EXPECT_EQ(table.Call<uint32_t>(1), 1u);
  EXPECT_STREQ(table.Call<const char*>(3, uint32_t{0}, static_cast<uint32_t*>(nullptr)), "a");
  EXPECT_EQ(table.Call<int32_t>(10, uint32_t{1}, uint32_t{9}), 1);
  EXPECT_EQ(table.Call<uint32_t>(7), 1u);
  EXPECT_EQ(table.Call<uint32_t>(9, uint32_t{1}), 9u);
  EXPECT_EQ(table.Call<uint32_t>(0), 46u);
  MemoryChunk chunk(uint32_t{46});
  EXPECT_EQ(table.Call<int32_t>(6, static_cast<I_RiffChunk*>(&chunk)), 1);
  table.Call<void>(2);
  EXPECT_EQ(list.GetLabelCount(), 0u);
  table.Call<void>(8);
  EXPECT_EQ(list.GetTextCount(), 0u);
  EXPECT_EQ(table.Call<int32_t>(5, static_cast<I_RiffChunk*>(&chunk)), 1);
  EXPECT_EQ(list.GetTextLength(1), 9u);
}

TEST(SoundTables, ExtraChunks) {
  C_WavDataExtraChunkInfo chunks;
  const RawTable table(static_cast<I_WavDataExtraChunkInfo*>(&chunks));
  const auto tag = static_cast<const char*>("KIOD");
  MemoryChunk content(std::string("xy"));
  EXPECT_EQ(table.Call<int32_t>(11, tag, static_cast<const void*>("abc"), uint32_t{3}), 1);
  EXPECT_EQ(table.Call<int32_t>(13, tag, static_cast<I_RiffChunk*>(&content)), 1);
  EXPECT_EQ(table.Call<int32_t>(0), 2);  // the list's own GetCount
  const RawTable chunk(table.Call<I_WavDataExtraChunk*>(14, tag));
  EXPECT_STREQ(chunk.Call<const char*>(0), "KIOD");
  const void* bytes = nullptr;
  EXPECT_EQ(chunk.Call<uint32_t>(1, &bytes), 3u);
  EXPECT_EQ(table.Call<int32_t>(12, tag), 1);
  EXPECT_EQ(chunks.Count(), 1);
}

/// Each slot of the sound is told from its neighbours by what it changes.
TEST(SoundTables, WavData) {
  auto* const sound = new C_WavData;
  const RawTable table(static_cast<I_WavData*>(sound));
  const auto none = static_cast<I_ProgressCallback*>(nullptr);
  table.Call<void>(0);
  table.Call<void>(1);
  EXPECT_EQ(table.Call<I_WavInfo*>(2), sound->GetWavInfo());
  table.Call<void>(6, uint32_t{8000}, uint32_t{8}, uint16_t{1}, uint16_t{16}, uint16_t{16},
                   int32_t{1});
  EXPECT_EQ(sound->Info().GetSampleRate(), 8000u);
  C_WavInfo info = sound->Info();
  info.SetSampleRate(16000);
  table.Call<void>(5, static_cast<const I_WavInfo*>(&info));
  EXPECT_EQ(sound->Info().GetSampleRate(), 16000u);
  std::byte* block = table.Call<std::byte*>(8, uint32_t{4});
  EXPECT_EQ(block, sound->GetData());
  const int16_t samples[] = {100, -100, 1, 3};
  block = table.Call<std::byte*>(9, static_cast<const void*>(samples), uint32_t{8});
  EXPECT_EQ(block, table.Call<std::byte*>(3));
  EXPECT_EQ(table.Call<uint32_t>(4), 8u);
  EXPECT_EQ(table.Call<int32_t>(7, static_cast<I_WavData*>(nullptr)), 0);
  EXPECT_EQ(table.Call<int32_t>(10, uint16_t{16}, uint16_t{16}, int32_t{1}, none), 1);
  const RawTable clone(table.Call<I_WavData*>(11));
  EXPECT_EQ(clone.Call<uint32_t>(4), 8u);
  clone.Call<void>(1);
  const RawTable bytes(table.Call<I_WavData*>(12, uint16_t{8}, uint16_t{8}, int32_t{0}, none));
  EXPECT_EQ(bytes.Call<uint32_t>(4), 4u);
  bytes.Call<void>(44);  // the deleting destructor
  auto* const extracted = table.Call<I_WavData*>(13, uint16_t{0}, uint32_t{1}, uint32_t{2});
  EXPECT_EQ(extracted->GetDataSize(), 4u);
  EXPECT_EQ(table.Call<int32_t>(14, extracted, uint16_t{0}, uint32_t{2}, uint32_t{0}), 1);
  extracted->Release();
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{100, -100, -100, 1}));

  EXPECT_EQ(table.Call<int32_t>(26, 2.0, 2.0, none), 1);
  EXPECT_EQ(
      table.Call<int32_t>(27, 0.5, 0.5, uint32_t{0}, uint32_t{0}, uint16_t{0}, uint16_t{0}, none),
      1);
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{100, -200, -200, 2}));
  EXPECT_EQ(table.Call<int32_t>(33), -74);
  table.Call<void>(34);
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{174, -126, -126, 76}));
  EXPECT_EQ(table.Call<int32_t>(29, uint32_t{0}, uint32_t{1}, uint16_t{0}, uint16_t{0}), 1);
  EXPECT_EQ(sound->GetBuffer()->GetSample(0, 0), 32767);
  EXPECT_EQ(table.Call<int32_t>(28), 1);
  EXPECT_EQ(sound->GetBuffer()->GetSample(3, 0), 76);

  table.Call<void>(16);
  EXPECT_EQ(sound->Info().GetChannels(), 2);
  table.Call<void>(17, int32_t{1});
  EXPECT_EQ(sound->GetBuffer()->GetSample(0, 0), 0);
  table.Call<void>(15);
  EXPECT_EQ(sound->GetBuffer()->GetSample(0, 0), 16383);
  EXPECT_EQ(table.Call<I_WriteWavParam*>(18), sound->GetWriteParam());
  EXPECT_EQ(table.Call<int32_t>(19, uint32_t{2}, static_cast<const char*>(nullptr)), 0);
  EXPECT_EQ(table.Call<I_ActionEventMgr*>(20), sound->GetEventMgr());
  EXPECT_EQ(table.Call<I_WavDataBuffer*>(25), sound->GetBuffer());

  using List = I_CUList<I_SilenceSegment>*;
  EXPECT_EQ(table.Call<List>(21, uint32_t{2000}, uint32_t{1}, none)->GetCount(), 1);
  EXPECT_EQ(table
                .Call<List>(22, uint32_t{100}, uint32_t{1}, uint32_t{2}, uint32_t{3}, uint16_t{0},
                            uint16_t{0}, none)
                ->GetCount(),
            1);
  const List detected = table.Call<List>(30);
  EXPECT_EQ(Read(sound->SilenceSegments()), (Segments{{2, 3}}));
  C_SilenceSegmentList target;
  table.Call<void>(38, detected, &target);
  EXPECT_EQ(Read(target.Items()), (Segments{{2, 3}}));
  target.Append(1, 1);
  table.Call<void>(39, static_cast<List>(&target), detected, &target, int32_t{1});
  EXPECT_EQ(Read(target.Items()), (Segments{{1, 3}}));
  table.Call<void>(31, static_cast<List>(&target));
  EXPECT_EQ(Read(sound->SilenceSegments()), (Segments{{1, 3}}));
  table.Call<void>(45, detected);
  EXPECT_EQ(table.Call<uint32_t>(36), 1u);
  EXPECT_EQ(table.Call<List>(37)->GetAt(0)->GetLength(), 3u);
  table.Call<void>(35);
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{16383, 0, 0, 0}));

  void* cues = nullptr;
  EXPECT_EQ(table.Call<int32_t>(32, uint32_t{kCueChunk}, &cues), 1);
  EXPECT_EQ(cues, static_cast<I_WavDataCueInfo*>(&sound->CueInfo()));
  C_WavData other;
  other.GetWriteParam()->SetCodecParam(5);
  table.Call<void>(40, static_cast<I_WavData*>(&other));
  EXPECT_EQ(sound->WriteParam().GetCodecParam(), 5u);
  table.Call<void>(41, static_cast<const void*>(samples), int32_t{0}, int32_t{2});
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{100, 16383, 0, 0, 0}));
  table.Call<void>(42, int32_t{2}, int32_t{6});
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{100, 0}));
  int16_t foreign = 6;
  table.Call<void>(23, static_cast<void*>(&foreign), uint32_t{2});
  EXPECT_EQ(Decoded(*sound), (std::vector<int32_t>{6}));
  EXPECT_EQ(static_cast<void*>(table.Call<std::byte*>(24)), &foreign);
  table.Call<void>(1);
}

}  // namespace
}  // namespace velora::test
