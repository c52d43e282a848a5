// Memory, copies, conversion, channels and level of a sound.
#include "audio/wavedata/WavData.h"

#include <gtest/gtest.h>

#include "audio/wavedata/SoundKit.h"

namespace velora::test {
namespace {

using Values = std::vector<int32_t>;

TEST(WavData, ReleaseDeletesBelowOne) {
  auto* sound = new C_WavData;
  sound->AddRef();
  sound->Release();  // the count is 0 again, the sound alive
  EXPECT_EQ(sound->GetDataSize(), 0u);
  sound->Release();  // now gone, which the address sanitizer watches
}

TEST(WavData, FormatAndDataKeepTheirOwnSizes) {
  C_WavData sound;
  sound.SetFormat(8000, 16000, 1, 16, 16, 1);
  EXPECT_EQ(sound.GetDataSize(), 0u);
  EXPECT_EQ(sound.Info().GetDataSize(), 16000u);
  EXPECT_EQ(sound.GetEventMgr()->GetSampleRate(), 8000u);
  ASSERT_NE(sound.AllocData(100), nullptr);
  EXPECT_EQ(sound.GetDataSize(), 100u);
  EXPECT_EQ(sound.Info().GetFrameCount(), 50u);
  sound.SetWavInfo(nullptr);
  EXPECT_EQ(sound.Info().GetSampleRate(), 8000u);
}

TEST(WavData, AForeignBlockIsNeitherFreedNorReplaced) {
  C_WavData sound;
  C_WavData other;
  Fill16(other, 1, {1, 2, 3});
  std::vector<int16_t> foreign{7, 8};
  sound.SetFormat(8000, 4, 1, 16, 16, 1);
  EXPECT_EQ(sound.DetachData(), nullptr);
  sound.AttachData(foreign.data(), 4);
  EXPECT_EQ(Decoded(sound), (Values{7, 8}));
  EXPECT_EQ(sound.Assign(&other), 0);
  EXPECT_EQ(sound.SetData(foreign.data(), 2), nullptr);
  EXPECT_EQ(sound.ChangeFormat(8, 8, 0, nullptr), 0);
  sound.InsertBytes("xy", 0, 2);
  sound.DeleteBytes(0, 2);
  sound.ToStereo();
  EXPECT_EQ(Decoded(sound), (Values{7, 8}));
  EXPECT_EQ(sound.ApplyGain(2, 2, nullptr), 1);
  EXPECT_EQ(foreign, (std::vector<int16_t>{14, 16}));
  EXPECT_EQ(static_cast<void*>(sound.DetachData()), foreign.data());
  EXPECT_EQ(sound.GetData(), nullptr);
  EXPECT_EQ(sound.GetDataSize(), 0u);
  EXPECT_EQ(sound.Assign(&other), 1);
  EXPECT_EQ(Decoded(sound), (Values{1, 2, 3}));
}

TEST(WavData, AllocationEndsAForeignBlock) {
  C_WavData sound;
  std::vector<std::byte> foreign(8);
  sound.AttachData(foreign.data(), 8);
  ASSERT_NE(sound.AllocData(4), nullptr);
  EXPECT_EQ(sound.DetachData(), nullptr);
  EXPECT_NE(sound.SetData(foreign.data(), 8), nullptr);
}

TEST(WavData, AllocDataAtMeetsThePhase) {
  C_WavData sound;
  for (const unsigned phase : {0u, 44u, 45u, 4095u}) {
    const auto bytes = sound.AllocDataAt(10000, phase);
    ASSERT_EQ(bytes.size(), 10000u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(bytes.data()) % 4096, phase);
    std::ranges::fill(bytes, std::byte{1});  // all of it is ours
  }
  sound.SetFormat(8000, 10000, 1, 16, 16, 1);
  EXPECT_TRUE(sound.Words().empty());  // an odd address
  EXPECT_TRUE(sound.AllocDataAt(uint64_t{1} << 32, 0).empty());
  EXPECT_EQ(sound.GetDataSize(), 0u);
}

TEST(WavData, SetDataMayTakeAPartOfItself) {
  C_WavData sound;
  Fill16(sound, 1, {1, 2, 3, 4});
  sound.SetData(sound.GetData() + 2, 4);
  EXPECT_EQ(Decoded(sound), (Values{2, 3}));
}

TEST(WavData, AssignTakesSamplesFormatAndWriteSettings) {
  C_WavData source;
  Fill16(source, 2, {1, 2, 3, 4});
  source.GetWriteParam()->SetCodecParam(9);
  source.GetEventMgr()->AddEventAtSample(1, 1, "", 0);
  source.GetEventMgr()->AddSilenceRegion(0, 1);
  source.DetectSilence(1, 1, nullptr);
  source.CueInfo().SetPoint(1, 1, "data", 0, 0, 1);
  const WavDataPtr copy(source.Clone());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(Decoded(*copy), Decoded(source));
  EXPECT_EQ(copy->Info().GetChannels(), 2);
  EXPECT_EQ(copy->GetWriteParam()->GetCodecParam(), 9u);
  EXPECT_TRUE(copy->EventMgr().Events().empty());
  EXPECT_EQ(copy->GetSilenceRegionCount(), 0u);
  EXPECT_TRUE(copy->SilenceSegments().empty());
  EXPECT_FALSE(copy->CueInfo().HasPoints());
  EXPECT_EQ(copy->Assign(nullptr), 0);
}

TEST(WavData, ConversionShiftsTheMagnitude) {
  C_WavData sound;
  Fill16(sound, 1, {-1, 255, 256, -255, -256, 32767, -32768});
  const WavDataPtr bytes(sound.CreateConverted(8, 8, 0, nullptr));
  EXPECT_EQ(Decoded(*bytes), (Values{0, 0, 1, 0, -1, 127, -128}));
  EXPECT_EQ(bytes->GetData()[0], std::byte{0x80});
  const WavDataPtr wide(bytes->CreateConverted(16, 16, 1, nullptr));
  EXPECT_EQ(Decoded(*wide), (Values{0, 0, 256, 0, -256, 32512, -32768}));
}

TEST(WavData, ConversionRefusesSenselessFormats) {
  C_WavData sound;
  Fill16(sound, 1, {1});
  EXPECT_EQ(sound.CreateConverted(12, 12, 1, nullptr), nullptr);
  EXPECT_EQ(sound.CreateConverted(9, 8, 1, nullptr), nullptr);
  EXPECT_EQ(sound.CreateConverted(24, 24, 1, nullptr), nullptr);
  Fill(sound, {1, 12, 12, 1}, std::vector<std::byte>(4));
  EXPECT_EQ(sound.CreateConverted(16, 16, 1, nullptr), nullptr);
}

TEST(WavData, ChangeFormatKeepsTheWriteSettings) {
  C_WavData sound;
  Fill16(sound, 2, {16, -16, 32, -32});
  sound.GetWriteParam()->SetCodecParam(3);
  const std::byte* const block = sound.GetData();
  ProgressLog log;
  EXPECT_EQ(sound.ChangeFormat(16, 16, 77, &log), 1);  // any other number is signed too
  EXPECT_EQ(sound.GetData(), block);
  EXPECT_TRUE(log.calls.empty());
  EXPECT_EQ(sound.ChangeFormat(12, 16, 0, &log), 1);
  EXPECT_EQ(Decoded(sound), (Values{1, -1, 2, -2}));
  EXPECT_EQ(sound.Words()[0], 2049);
  EXPECT_EQ(sound.GetWriteParam()->GetCodecParam(), 3u);
  EXPECT_EQ(log.calls, (Values{ProgressLog::kBegan, 100, 100, ProgressLog::kEnded}));
}

TEST(WavData, ProgressRisesBlockByBlock) {
  C_WavData sound;
  Fill16(sound, 1, std::vector<int16_t>(4 * 1024));
  ProgressLog log;
  sound.ApplyGain(1, 1, &log);
  EXPECT_EQ(log.calls, (Values{ProgressLog::kBegan, 25, 50, 75, 100, 100, ProgressLog::kEnded}));
}

TEST(WavData, Channels) {
  C_WavData sound;
  const auto reset = [&](uint16_t channels, const std::vector<int16_t>& samples) {
    Fill16(sound, channels, samples);
    return &sound;
  };
  reset(2, {3, -4, 32767, 32767, -3, -4})->MixToMono();
  EXPECT_EQ(Decoded(sound), (Values{0, 32767, -3}));
  EXPECT_EQ(sound.Info().GetDataSize(), 6u);
  reset(3, {1, 2, 4, 9, 9, 9})->MixToMono();
  EXPECT_EQ(Decoded(sound), (Values{2, 9}));

  reset(1, {5, 6})->ToStereo();
  EXPECT_EQ(Decoded(sound), (Values{5, 5, 6, 6}));
  reset(3, {1, 2, 3, 4, 5, 6})->ToStereo();
  EXPECT_EQ(Decoded(sound), (Values{1, 2, 4, 5}));
  EXPECT_EQ(sound.Info().GetDataSize(), 8u);

  reset(1, {5, 6})->ToStereoOneSide(0);
  EXPECT_EQ(Decoded(sound), (Values{5, 0, 6, 0}));
  reset(1, {5, 6})->ToStereoOneSide(1);
  EXPECT_EQ(Decoded(sound), (Values{0, 5, 0, 6}));
  reset(2, {1, 2, 3, 4})->ToStereoOneSide(1);
  EXPECT_EQ(Decoded(sound), (Values{0, 2, 0, 4}));
  const std::vector<std::byte> offset{std::byte{0x90}};
  Fill(sound, {1, 8, 8, 0}, offset);
  sound.ToStereoOneSide(0);
  EXPECT_EQ(sound.GetData()[1], std::byte{0x80});
}

TEST(WavData, ExtractAndPaste) {
  C_WavData sound;
  Fill16(sound, 2, {1, -1, 2, -2, 3, -3});
  const WavDataPtr right(sound.ExtractChannel(1, 1, 2));
  ASSERT_NE(right, nullptr);
  EXPECT_EQ(Decoded(*right), (Values{-2, -3}));
  EXPECT_EQ(right->Info().GetSampleRate(), 8000u);
  EXPECT_EQ(sound.ExtractChannel(2, 0, 1), nullptr);
  EXPECT_EQ(sound.ExtractChannel(1, 2, 2), nullptr);
  EXPECT_EQ(sound.PasteChannel(right.get(), 0, 0, 0), 1);
  EXPECT_EQ(Decoded(sound), (Values{-2, -1, -3, -2, 3, -3}));
  EXPECT_EQ(sound.PasteChannel(right.get(), 0, 2, 0), 0);
  EXPECT_EQ(sound.PasteChannel(right.get(), 2, 0, 0), 0);
  EXPECT_EQ(sound.PasteChannel(nullptr, 0, 0, 0), 0);
  right->ChangeFormat(8, 8, 0, nullptr);
  EXPECT_EQ(sound.PasteChannel(right.get(), 0, 0, 0), 0);

  // Three channels are seen as two: sample 4 is the even one of frame 2.
  Fill16(sound, 3, {0, 1, 2, 3, 4, 5});
  const WavDataPtr even(sound.ExtractChannel(0, 0, 3));
  ASSERT_NE(even, nullptr);
  EXPECT_EQ(Decoded(*even), (Values{0, 2, 4}));
  const WavDataPtr odd(sound.ExtractChannel(2, 0, 3));
  EXPECT_EQ(Decoded(*odd), (Values{1, 3, 5}));
}

TEST(WavData, GainRanges) {
  C_WavData sound;
  Fill16(sound, 2, {100, 100, 100, 100, 100, 100});
  EXPECT_EQ(sound.ApplyGainRange(2, 2, 0, 3, 0, 0, nullptr), 0);
  EXPECT_EQ(sound.ApplyGainRange(2, 2, 0, 2, 0, 2, nullptr), 0);
  EXPECT_EQ(sound.ApplyGainRange(2, 2, 2, 1, 0, 1, nullptr), 1);
  EXPECT_EQ(Decoded(sound), Values(6, 100));
  EXPECT_EQ(sound.ApplyGainRange(-1.999, 7, 1, 1, 1, 1, nullptr), 1);  // one frame: the start gain
  EXPECT_EQ(Decoded(sound), (Values{100, 100, 100, -199, 100, 100}));
  EXPECT_EQ(C_WavData().ApplyGain(1, 1, nullptr), 0);
}

TEST(WavData, NormalizeClipsPeakAndLastFrame) {
  C_WavData sound;
  Fill16(sound, 1, {16384, -8192, 30000});
  EXPECT_EQ(sound.Normalize(), 1);
  EXPECT_EQ(Decoded(sound), (Values{32767, -16384, 32767}));
  Fill16(sound, 1, {0, 0, 5});
  EXPECT_EQ(sound.Normalize(), 1);
  EXPECT_EQ(Decoded(sound), (Values{0, 0, 5}));
  EXPECT_EQ(sound.NormalizeRange(0, 3, 0, 0), 0);
  EXPECT_EQ(C_WavData().Normalize(), 0);
}

TEST(WavData, DCOffsetIsThatOfTheFirstChannel) {
  C_WavData sound;
  Fill16(sound, 2, {-10, 0, -11, 32767, -10, -32768});
  EXPECT_EQ(sound.GetDCOffset(), -10);
  sound.RemoveDCOffset();
  EXPECT_EQ(Decoded(sound), (Values{0, 10, -1, 32767, 0, -32758}));
  EXPECT_EQ(C_WavData().GetDCOffset(), 0);
}

TEST(WavData, InsertAndDeleteBytes) {
  C_WavData sound;
  const auto text = [&] {
    return std::string(reinterpret_cast<const char*>(sound.GetData()), sound.GetDataSize());
  };
  sound.SetData("abcdef", 6);
  const struct {
    int32_t offset, length;
    const char* result;
  } inserts[] = {{2, 2, "abXYcdef"}, {-5, 1, "Xabcdef"}, {99, 2, "abcdefXY"}, {1, -1, "abcdef"}};
  for (const auto& c : inserts) {
    sound.SetData("abcdef", 6);
    sound.InsertBytes("XY", c.offset, c.length);
    EXPECT_EQ(text(), c.result);
  }
  const struct {
    int32_t offset, length;
    const char* result;
  } deletes[] = {{0, 2, "cdef"},   {4, 2, "abcd"},    {0, 6, ""},        {6, 0, "abcdef"},
                 {4, 3, "abcdef"}, {-1, 1, "abcdef"}, {1, -1, "abcdef"}, {1, INT32_MAX, "abcdef"}};
  for (const auto& c : deletes) {
    sound.SetData("abcdef", 6);
    sound.DeleteBytes(c.offset, c.length);
    EXPECT_EQ(text(), c.result);
    EXPECT_EQ(sound.Info().GetDataSize(), sound.GetDataSize());
  }
}

TEST(WavData, ChunkInfosByKind) {
  C_WavData sound;
  void* cue = nullptr;
  ASSERT_EQ(sound.GetChunkInfo(kCueChunk, &cue), 1);
  static_cast<I_WavDataCueInfo*>(cue)->SetPoint(4, 1, "data", 0, 0, 1);
  EXPECT_EQ(sound.CueInfo().GetCount(), 1u);
  void* text = nullptr;
  ASSERT_EQ(sound.GetChunkInfo(kTextChunk, &text), 1);
  EXPECT_EQ(static_cast<I_WavDataTextInfo*>(text)->GetChunkSize(), 4u);
  void* list = nullptr;
  ASSERT_EQ(sound.GetChunkInfo(kListChunk, &list), 1);
  EXPECT_EQ(static_cast<I_WavDataListInfo*>(list)->GetChunkSize(), 4u);
  for (const uint32_t kind : {0u, 6u}) {
    EXPECT_EQ(sound.GetChunkInfo(kind, &list), 0);
    EXPECT_EQ(list, nullptr);
  }
}

uint32_t savedFormat = 0;
std::string savedPath;

bool NoteSave(uint32_t formatId, C_WavData& sound, const Path& path) {
  savedFormat = formatId;
  savedPath = path.Text();
  return sound.GetDataSize() == 2;
}

TEST(WavData, SaveAsGoesThroughTheFunctionSet) {
  C_WavData sound;
  Fill16(sound, 1, {1});
  SetSaveSoundFunction(nullptr);
  EXPECT_EQ(sound.SaveAs(2, "A.wav"), 0);
  SetSaveSoundFunction(&NoteSave);
  EXPECT_EQ(sound.SaveAs(2, "A.wav"), 1);
  EXPECT_EQ(savedFormat, 2u);
  EXPECT_EQ(savedPath, "A.wav");
  savedFormat = 0;
  C_WavData headerOnly;
  headerOnly.SetFormat(8000, 2, 1, 16, 16, 1);
  EXPECT_EQ(headerOnly.SaveAs(2, "A.wav"), 0);
  EXPECT_EQ(savedFormat, 0u);
  SetSaveSoundFunction(nullptr);
}

}  // namespace
}  // namespace velora::test
