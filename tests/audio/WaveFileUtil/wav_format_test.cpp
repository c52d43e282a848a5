// The factory, and the order of both interfaces' operations.

#include "audio/WaveFileUtil/WavFileFormat.h"

#include "support/RawTable.h"
#include "wave_bytes.h"
#include "wave_fixture.h"

namespace velora {
namespace {

using namespace test;

using WavFormatTest = WaveFixture;

const std::string kWave =
    Riff(Format(1, 8000, 16) + Chunk("data", "abcd") + Chunk("cue ", U32(1) + CueRecord(1, 1)) +
         Chunk("LIST", "adtl" + Label(1, "(5,6)")));

/// A source file of one sample; flag 132 marks the enciphered form.
std::string Source(char flag) {
  return "KPCM" + U16(1) + U16(22) + U16(1) + U16(12) + flag + std::string(1, '\0') + U16(8000) +
         U16(3400) + U32(1) + U16(0x0800);
}

TEST_F(WavFormatTest, DetectsFormats) {
  const std::pair<std::string, uint32_t> cases[] = {
      {kWave, 2},
      {Source('\x04'), 1},
      {Source('\x84'), 13},
      {"RIFF", 0},
      {"", 0},
      {Riff(Format(1, 8000, 16, 3)), 0},
      {"KPCM", 0},
  };
  for (const auto& [bytes, id] : cases) {
    // The name says nothing.
    EXPECT_EQ(DetectSoundFormat(Write(bytes, "x.mpm")), id) << bytes.substr(0, 4);
  }
  EXPECT_EQ(DetectSoundFormat(At("missing")), 0u);
}

TEST_F(WavFormatTest, KnowsWhatItCanDo) {
  for (const uint32_t id : {1u, 2u, 6u, 13u}) {
    EXPECT_TRUE(CanRead(id) && CanWrite(id)) << id;
    EXPECT_NE(MakeWavFile(id), nullptr);
  }
  // Names without a class.
  for (const uint32_t id : {0u, 9u, 31u, 45u, 59u, 129u, 1000u}) {
    EXPECT_FALSE(CanRead(id) || CanWrite(id)) << id;
    EXPECT_EQ(MakeWavFile(id), nullptr);
  }
}

TEST_F(WavFormatTest, OpensSounds) {
  const auto all = OpenSound(Write(kWave));
  ASSERT_TRUE(all) << all.Message();
  EXPECT_EQ(BytesOf(*all.Value()->Sound()), "abcd");
  EXPECT_EQ(EventListing(*all.Value()->Sound()), "5@1=6");

  const auto metadata = OpenSound(Write(kWave), {LoadScope::kMetadata, SampleView::kDecoded});
  ASSERT_TRUE(metadata);
  EXPECT_EQ(metadata.Value()->Sound()->GetDataSize(), 0u);
  EXPECT_EQ(EventListing(*metadata.Value()->Sound()), "5@1=6");

  const auto header = OpenSound(Write(kWave), {LoadScope::kHeader, SampleView::kDecoded});
  ASSERT_TRUE(header);
  EXPECT_EQ(EventListing(*header.Value()->Sound()), "");
  EXPECT_EQ(header.Value()->Sound()->CueInfo().GetCount(), 1u);
}

TEST_F(WavFormatTest, SaysWhyNothingOpens) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "no known sound format"},
      {"text", "no known sound format"},
      {"64EV....", "format EVO (id 59) cannot be read"},
      {Riff(Format(1, 8000, 24)), "Unsupported 24-bit PCM format!"},
      {"riffxxxxAVI ", "form \"AVI \" found"},
      {Source('\x04') + "x", "the count at offset 18"},
  };
  for (const auto& [bytes, reason] : cases) {
    const auto opened = OpenSound(Write(bytes));
    ASSERT_FALSE(opened) << reason;
    EXPECT_NE(opened.Message().find(reason), std::string::npos) << opened.Message();
  }
  EXPECT_NE(OpenSound(At("missing")).Message().find("cannot open"), std::string::npos);
}

TEST_F(WavFormatTest, TheFactorysOperationsStandInTheirOrder) {
  const std::string wave = Write(kWave, "a.wav").Text();
  const std::string source = Write(Source('\x84'), "b.src").Text();
  I_WavFileFormat* factory = new C_WavFileFormat;
  const RawTable table(factory);
  EXPECT_EQ(table.Call<uint32_t>(1, wave.c_str()), 2u);
  EXPECT_EQ(table.Call<uint32_t>(1, source.c_str()), 13u);
  EXPECT_EQ(table.Call<int32_t>(2, uint32_t{2}, wave.c_str()), 1);
  EXPECT_EQ(table.Call<int32_t>(2, uint32_t{1}, source.c_str()), 0);
  EXPECT_EQ(table.Call<int32_t>(2, uint32_t{13}, source.c_str()), 1);
  EXPECT_EQ(table.Call<int32_t>(2, uint32_t{11}, wave.c_str()), 0);
  auto* file = table.Call<I_WavFile*>(3, wave.c_str(), int32_t{1}, uint32_t{0});
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(std::memcmp(file->GetData(), "abcd", 4), 0);
  file->Release();
  file = table.Call<I_WavFile*>(4, wave.c_str());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->GetData(), nullptr);
  EXPECT_EQ(file->GetWavInfo()->GetSampleRate(), 8000u);
  file->Release();
  EXPECT_EQ(table.Call<I_WavFile*>(4, (wave + "x").c_str()), nullptr);
  table.Call<void>(0);  // Release
}

TEST_F(WavFormatTest, AFilesOperationsStandInTheirOrder) {
  const std::string path = Write(kWave).Text();
  auto* file = new C_WavFile;
  const RawTable table(static_cast<I_WavFile*>(file));
  table.Call<void>(0);  // AddRef
  EXPECT_EQ(table.Call<int32_t>(24, path.c_str(), int32_t{1}, static_cast<uint32_t*>(nullptr)), 1);
  EXPECT_EQ(table.Call<int32_t>(25), 1);
  EXPECT_EQ(table.Call<const char*>(2), path);
  EXPECT_EQ(table.Call<I_CUTime*>(3), file->GetFileTime());
  EXPECT_EQ(table.Call<uint32_t>(4), kWave.size());
  EXPECT_EQ(table.Call<uint32_t>(5), 2u);
  EXPECT_EQ(table.Call<uint32_t>(6), 0u);
  EXPECT_EQ(table.Call<I_WavInfo*>(7), file->GetWavInfo());
  EXPECT_EQ(table.Call<I_WavData*>(10), file->Sound());
  EXPECT_EQ(table.Call<std::byte*>(11), file->GetData());
  EXPECT_EQ(table.Call<uint32_t>(23), 44u);

  const WavDataPtr other = C_WavData::Create();
  Fill(*other, 16000, 1, 8, 8, false, "xyz");
  other->GetWriteParam()->SetLveMode(4);
  EXPECT_EQ(table.Call<int32_t>(12, static_cast<I_WavData*>(other.get())), 1);
  EXPECT_EQ(BytesOf(*file->Sound()), "xyz");
  table.Call<void>(14, uint32_t{500}, uint32_t{4}, uint16_t{1}, uint16_t{16}, uint16_t{16},
                   int32_t{1});
  EXPECT_EQ(file->GetWavInfo()->GetSampleRate(), 500u);
  table.Call<void>(13, static_cast<const I_WavInfo*>(other->GetWavInfo()));
  EXPECT_EQ(file->GetWavInfo()->GetSampleRate(), 16000u);
  const auto* data = table.Call<std::byte*>(15, static_cast<const void*>("pq"), uint32_t{2});
  EXPECT_EQ(data, file->GetData());
  EXPECT_EQ(BytesOf(*file->Sound()), "pq");
  EXPECT_EQ(table.Call<I_WriteWavParam*>(16), file->GetWriteParam());
  EXPECT_EQ(table.Call<int32_t>(17, uint32_t{2}, (dir_ / "17.wav").c_str()), 1);
  void* info = nullptr;
  EXPECT_EQ(table.Call<int32_t>(18, uint32_t{1}, &info), 1);
  EXPECT_NE(info, nullptr);
  file->GetWriteParam()->Reset();
  table.Call<void>(19, static_cast<I_WavData*>(other.get()));
  EXPECT_EQ(file->GetWriteParam()->GetLveMode(), 4);
  table.Call<void>(20, static_cast<void*>(nullptr), static_cast<const I_WavInfo*>(nullptr));
  EXPECT_EQ(table.Call<int32_t>(26, (dir_ / "26.wav").c_str()), 1);
  EXPECT_EQ(Read("17.wav"), Read("26.wav"));
  file->GetWriteParam()->SetLvePercent1(5);
  table.Call<void>(27, static_cast<void*>(nullptr), uint32_t{0}, int32_t{1});
  EXPECT_EQ(file->GetWriteParam()->GetLvePercent1(), 100);

  table.Call<void>(8, static_cast<I_WavData*>(other.get()));
  EXPECT_EQ(file->Sound(), other.get());
  EXPECT_EQ(table.Call<I_WavData*>(9), other.get());
  table.Call<void>(1);   // Release: one reference less
  table.Call<void>(22);  // the destructor that frees
}

TEST_F(WavFormatTest, WhatIsKnownOfAFileStandsInItsOrder) {
  C_WavFile file;
  ASSERT_TRUE(Load(file, kWave));
  const RawTable table(static_cast<I_WavFileInfo*>(&file));
  EXPECT_EQ(table.Call<const char*>(0), At("in.wav").Text());
  EXPECT_EQ(table.Call<I_CUTime*>(1), file.GetFileTime());
  EXPECT_EQ(table.Call<uint32_t>(2), kWave.size());
  EXPECT_EQ(table.Call<uint32_t>(3), 2u);
  EXPECT_EQ(table.Call<uint32_t>(4), 0u);
  EXPECT_EQ(table.Call<I_WavInfo*>(5), file.GetWavInfo());
}

}  // namespace
}  // namespace velora
