#include <algorithm>
#include <stdexcept>

#include "foundation/EncryptKeys.h"
#include "foundation/EncryptNewPC1.h"
#include "wave_bytes.h"
#include "wave_fixture.h"

namespace velora {
namespace {

using namespace test;

using WavReadTest = WaveFixture;

const std::string kSamples = "\x01\x02\x03\x04\x05\x06\x07\x08";

struct FormatCase {
  const char* name;
  std::string file;
  uint32_t channels, rate, bits, container;
  bool isSigned;
  std::string samples;
};

class WavFormats : public WaveFixture, public testing::WithParamInterface<FormatCase> {};

TEST_P(WavFormats, LoadsFormatAndSamples) {
  const FormatCase& expected = GetParam();
  C_WavFile file;
  const Status status = Load(file, expected.file);
  ASSERT_TRUE(status) << status.Message();
  const C_WavData& sound = *file.Sound();
  EXPECT_EQ(sound.Info().GetChannels(), expected.channels);
  EXPECT_EQ(sound.Info().GetSampleRate(), expected.rate);
  EXPECT_EQ(sound.Info().GetResolutionBits(), expected.bits);
  EXPECT_EQ(sound.Info().GetContainerBits(), expected.container);
  EXPECT_EQ(sound.Info().IsSigned() != 0, expected.isSigned);
  EXPECT_EQ(sound.Info().GetDataSize(), expected.samples.size());
  EXPECT_EQ(BytesOf(sound), expected.samples);
  EXPECT_EQ(file.GetSourceKind(), 2u);
  EXPECT_EQ(file.GetTargetKind(), 0u);
  EXPECT_EQ(file.GetFileSize(), expected.file.size());
}

std::string Streamed(uint32_t size) {
  return "RIFF" + U32(size) + "WAVE" + Format(1, 8000, 16) +
         ChunkClaiming("data", 0xFFFFFFFF, kSamples);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, WavFormats,
    testing::Values(
        FormatCase{"mono16", Riff(Format(1, 8000, 16) + Chunk("data", kSamples)), 1, 8000, 16, 16,
                   true, kSamples},
        FormatCase{"stereo8_is_offset_binary", Riff(Format(2, 44100, 8) + Chunk("data", kSamples)),
                   2, 44100, 8, 8, false, kSamples},
        FormatCase{"data_ahead_of_format", Riff(Chunk("data", kSamples) + Format(1, 8000, 16)), 1,
                   8000, 16, 16, true, kSamples},
        FormatCase{
            "upper_and_lower_case",
            Riff(Chunk("FMT ", FormatBytes(1, 1, 8000, 16)) + Chunk("DATA", kSamples), "wave"), 1,
            8000, 16, 16, true, kSamples},
        FormatCase{"later_chunks_win",
                   Riff(Format(1, 8000, 8) + Chunk("data", "first") + Format(1, 11025, 16) +
                        Chunk("data", kSamples)),
                   1, 11025, 16, 16, true, kSamples},
        FormatCase{"nine_bits_count_as_signed", Riff(Format(1, 8000, 9) + Chunk("data", kSamples)),
                   1, 8000, 9, 9, true, kSamples},
        FormatCase{"no_channels", Riff(Format(0, 8000, 16) + Chunk("data", kSamples)), 0, 8000, 16,
                   16, true, kSamples},
        FormatCase{
            "extended_format_chunk",
            Riff(Chunk("fmt ", FormatBytes(1, 1, 8000, 16) + U16(0)) + Chunk("data", kSamples)), 1,
            8000, 16, 16, true, kSamples},
        FormatCase{"no_data", Riff(Format(1, 8000, 16)), 1, 8000, 16, 16, true, ""},
        FormatCase{"empty_data", Riff(Format(1, 8000, 16) + Chunk("data", "")), 1, 8000, 16, 16,
                   true, ""},
        FormatCase{"data_cut_off",
                   Riff(Format(1, 8000, 16) + ChunkClaiming("data", 1000, kSamples)), 1, 8000, 16,
                   16, true, kSamples},
        FormatCase{"streamed", Streamed(0xFFFFFFFF), 1, 8000, 16, 16, true, kSamples},
        FormatCase{"streamed_form_size_0", Streamed(0), 1, 8000, 16, 16, true, kSamples},
        FormatCase{"odd_data_and_pad",
                   Riff(Format(1, 8000, 8) + Chunk("data", "abc") + std::string(1, '\0') +
                        Chunk("cue ", U32(0))),
                   1, 8000, 8, 8, false, "abc"},
        FormatCase{"odd_data_without_pad",
                   Riff(Format(1, 8000, 8) + Chunk("data", "abc") + Chunk("cue ", U32(0))), 1, 8000,
                   8, 8, false, "abc"}),
    [](const auto& test) { return test.param.name; });

TEST_F(WavReadTest, SamplesAreReadAtEveryPlaceInAPage) {
  // The block takes the place in a page that the samples have in the file.
  for (const size_t shift : {0u, 1u, 4051u, 4052u, 4053u, 8000u}) {
    std::string samples;
    for (size_t i = 0; i < 20000; ++i) samples += static_cast<char>(i * 7 + shift);
    C_WavFile file;
    ASSERT_TRUE(Load(file, Riff(Format(1, 8000, 16) + Chunk("junk", std::string(shift, 'j')) +
                                Chunk("data", samples))));
    EXPECT_EQ(BytesOf(*file.Sound()), samples) << shift;
    EXPECT_EQ(file.Sound()->Words().size(), samples.size() / 2) << "aligned";
    EXPECT_EQ(file.GetDataOffset(), 12 + 24 + 8 + shift + 8);
  }
}

TEST_F(WavReadTest, RefusesWithAReason) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "no RIFF file"},
      {"RIFF" + U32(4) + "AVI ", "form \"AVI \""},
      {Riff(""), "no \"fmt \" chunk"},
      {Riff(Chunk("data", kSamples)), "no \"fmt \" chunk"},
      {Riff(Chunk("fmt ", FormatBytes(1, 1, 8000, 16).substr(0, 15))), "has 15 bytes"},
      {Riff(Chunk("fmt ", "")), "is empty"},
      {Riff(ChunkClaiming("fmt ", 18, FormatBytes(1, 1, 8000, 16))), "file holds 16"},
      {Riff(Format(1, 8000, 16) + Chunk("cue ", "")), "\"cue \" at offset 44 is empty"},
      {Riff(Format(1, 8000, 16) + Chunk("LIST", "")), "\"LIST\" at offset 44 is empty"},
      {Riff(Format(1, 8000, 16) + ChunkClaiming("VLRW", 9, "12345678")), "file holds 8"},
      {Riff(Format(1, 8000, 16, 3)), "format tag 3 found"},
      {Riff(Format(1, 8000, 16, 0xFFFE)), "format tag 65534 found"},
      {Riff(Format(1, 8000, 24)), "Unsupported 24-bit PCM format!"},
      {Riff(Format(1, 8000, 17)), "Unsupported 17-bit PCM format!"},
      {Riff(Format(1, 8000, 17, 2)), "Unsupported 17-bit PCM format!"},
      {Riff(Format(1, 8000, 4, 17) + Chunk("data", kSamples)), "ADPCM samples"},
  };
  for (const auto& [bytes, reason] : cases) {
    C_WavFile file;
    const Status status = Load(file, bytes);
    EXPECT_FALSE(status);
    EXPECT_NE(status.Message().find(reason), std::string::npos)
        << reason << ": " << status.Message();
  }
  C_WavFile file;
  EXPECT_FALSE(file.LoadFile(At("missing.wav")));
  EXPECT_FALSE(file.LoadFile(Path::Native(dir_.path().string())));
}

TEST_F(WavReadTest, TellsTheAdpcmTargets) {
  const std::pair<uint32_t, uint32_t> cases[] = {{1, 0}, {2, 3}, {17, 6}};
  for (const auto& [tag, target] : cases) {
    C_WavFile file;
    const Status status =
        file.LoadMetadata(Write(Riff(Format(2, 22050, 4, tag) + Chunk("data", kSamples))));
    ASSERT_TRUE(status) << status.Message();
    EXPECT_EQ(file.GetTargetKind(), target);
    EXPECT_EQ(file.FormatTag(), tag);
    EXPECT_EQ(file.Sound()->Info().GetResolutionBits(), 4);
    EXPECT_FALSE(file.Sound()->Info().IsSigned());
  }
}

const std::string kMarked =
    Riff(Format(1, 8000, 16) + Chunk("data", kSamples) +
         Chunk("cue ",
               U32(4) + CueRecord(1, 800) + CueRecord(2, 5) + CueRecord(3, 300) + CueRecord(4, 9)) +
         Chunk("LIST", "adtl" + Label(1, "(4100,7)") + Label(2, "[4048,2]") +
                           Label(3, " Silence ") + Label(4, "a note") + Length(3, 100)) +
         Chunk("smpl", std::string(28, '\x01') + U32(1) + U32(0) + U32(4) + U32(1) + U32(10) +
                           U32(20) + U32(0) + U32(3)) +
         Chunk("kiod", "private") + Chunk("else", "dropped") + Chunk("VLRI", ""));

void ExpectMetadata(C_WavData& sound) {
  EXPECT_EQ(EventListing(sound), "4048@5=2 4100@800=7");
  EXPECT_EQ(RegionListing(sound), "300+100");
  EXPECT_EQ(sound.CueInfo().GetCount(), 4u);
  EXPECT_EQ(sound.ListInfo().GetLabelCount(), 4u);
  ASSERT_EQ(sound.SamplerInfo().GetLoopCount(), 1u);
  EXPECT_EQ(sound.SamplerInfo().GetLoopAt(0)->GetLoopEnd(), 20u);
  ASSERT_EQ(sound.ExtraChunks().Count(), 2);
  EXPECT_STREQ(sound.ExtraChunks().ItemAt(0)->GetTag(), "kiod");
  EXPECT_STREQ(sound.ExtraChunks().ItemAt(1)->GetTag(), "VLRI");
}

TEST_F(WavReadTest, ReadsEventsAndMetadata) {
  C_WavFile file;
  ASSERT_TRUE(Load(file, kMarked));
  ExpectMetadata(*file.Sound());
  EXPECT_EQ(file.Sound()->EventMgr().GetSampleRate(), 8000u);
  EXPECT_EQ(file.Sound()->EventMgr().Events()[1]->GetTimeMs(), 100u);
}

TEST_F(WavReadTest, LoadsMetadataWithoutSamples) {
  C_WavFile file;
  ASSERT_TRUE(Load(file, kMarked));
  // Into the same object, whose samples then are gone.
  ASSERT_TRUE(file.LoadMetadata(Write(kMarked)));
  ExpectMetadata(*file.Sound());
  EXPECT_EQ(file.Sound()->GetDataSize(), 0u);
  EXPECT_EQ(file.Sound()->Info().GetDataSize(), kSamples.size());
}

TEST_F(WavReadTest, LoadingTwiceGivesTheSameSound) {
  C_WavFile file;
  ASSERT_TRUE(Load(file, kMarked));
  ASSERT_TRUE(Load(file, kMarked));
  ExpectMetadata(*file.Sound());
  ASSERT_TRUE(Load(file, Riff(Format(1, 8000, 16))));
  EXPECT_EQ(EventListing(*file.Sound()), "");
  EXPECT_EQ(file.Sound()->CueInfo().GetCount(), 0u);
  EXPECT_EQ(file.Sound()->ExtraChunks().Count(), 0);
  EXPECT_EQ(file.Sound()->GetDataSize(), 0u);
}

TEST_F(WavReadTest, InfoLeavesTheSoundAlone) {
  C_WavFile file;
  ASSERT_TRUE(file.ReadInfoFile(Write(kMarked)));
  EXPECT_EQ(file.Sound(), nullptr);
  EXPECT_EQ(file.GetWavInfo(), nullptr);
  EXPECT_EQ(file.GetDataOffset(), 44u);
  EXPECT_EQ(file.GetPath(), At("in.wav").Text());
  EXPECT_EQ(file.GetFileSize(), kMarked.size());
  EXPECT_GT(file.GetFileTime()->GetYear(), 2000);
}

TEST_F(WavReadTest, ForeignMetadataKeepWhatFits) {
  C_WavFile file;
  ASSERT_TRUE(Load(
      file,
      Riff(Format(1, 8000, 16) + Chunk("cue ", U32(0xFFFFFFFF) + CueRecord(1, 8) + "cut") +
           Chunk("LIST", "INFOISFT" + U32(4) + "prog") +
           Chunk("LIST", "adtl" + Label(1, "(1,2)") + ChunkClaiming("labl", 0xFFFFFFFF, U32(1))) +
           Chunk("LIST", "INFO"))));
  EXPECT_EQ(EventListing(*file.Sound()), "1@8=2");
}

TEST_F(WavReadTest, ReadsEncipheredFiles) {
  std::string temporary;
  {
    C_EncryptNewPC1 cipher;
    const Path plain = Write(kMarked, "plain.wav");
    ASSERT_EQ(cipher.Encipher(plain, At("secret.wav"), kDataFilePassKey, nullptr), kEncryptDone);
    ASSERT_NE(Read("secret.wav").substr(0, 4), "RIFF");

    C_WavFile file;
    const Status status = file.LoadFile(At("secret.wav"));
    ASSERT_TRUE(status) << status.Message();
    ExpectMetadata(*file.Sound());
    EXPECT_EQ(BytesOf(*file.Sound()), kSamples);
    // The file read is the deciphered one.
    temporary = file.GetPath();
    EXPECT_NE(temporary, At("secret.wav").Text());
    EXPECT_EQ(ReadText(temporary), kMarked);
    EXPECT_EQ(file.GetFileSize(), kMarked.size());

    // It goes with the next header.
    ASSERT_EQ(file.ReadHeader(At("secret.wav").Text().c_str(), 1, nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(temporary));
    temporary = file.GetPath();
    EXPECT_EQ(file.ReadData(), 1);
    EXPECT_TRUE(std::filesystem::exists(temporary));
  }
  EXPECT_FALSE(std::filesystem::exists(temporary));
}

TEST_F(WavReadTest, RefusesFilesEncipheredWithAnotherKey) {
  C_EncryptNewPC1 cipher;
  ASSERT_EQ(cipher.Encipher(Write(kMarked), At("secret.wav"), "another", nullptr), kEncryptDone);
  C_WavFile file;
  const Status status = file.LoadFile(At("secret.wav"));
  ASSERT_FALSE(status);
  EXPECT_NE(status.Message().find("cannot be deciphered (code 4)"), std::string::npos)
      << status.Message();
}

// --- the boundary ------------------------------------------------------------

class BoxCounter final : public I_WindowHost {
 public:
  int32_t ShowBox(const char* text, const char* caption, uint32_t style) override {
    shown += std::string(caption) + '|' + text + '|' + std::to_string(style);
    return kAnswerOk;
  }
  int32_t ShowDialog(I_DialogModel*) override { return kAnswerCancel; }

  std::string shown;
};

TEST_F(WavReadTest, FormatErrorsAreExceptionsWithoutAWindow) {
  const std::string path = Write(Riff(Format(1, 8000, 16, 3))).Text();
  for (const bool load : {false, true}) {
    C_WavFile file;
    try {
      file.ReadHeader(path.c_str(), load, nullptr);
      FAIL() << "no exception";
    } catch (const std::exception& error) {
      EXPECT_EQ(error.what(), "Unsupported wave format!(" + path + ")");
    }
  }
  C_WavFile file;
  const std::string wide = Write(Riff(Format(1, 8000, 32))).Text();
  try {
    file.Load(wide.c_str(), nullptr);
    FAIL() << "no exception";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "Unsupported 32-bit PCM format!(" + wide + ")");
  }
}

TEST_F(WavReadTest, FormatErrorsAreBoxesWithAWindow) {
  BoxCounter window;
  C_WavFile file;
  file.SetOwnerWindow(&window);
  const std::string path = Write(Riff(Format(1, 8000, 16, 3))).Text();
  EXPECT_EQ(file.ReadHeader(path.c_str(), 1, nullptr), 0);
  EXPECT_EQ(window.shown, "Load wave error!|Unsupported wave format!(" + path + ")|16");
  // Other failures show nothing.
  window.shown.clear();
  EXPECT_EQ(file.ReadHeader(Write("RIFF").Text().c_str(), 1, nullptr), 0);
  EXPECT_EQ(window.shown, "");
  EXPECT_EQ(file.Sound()->OwnerWindow(), &window);
}

TEST_F(WavReadTest, BoundaryPathsHaveALimit) {
  // Each component is short enough for the file system; the whole is not for the class.
  std::string folder = dir_.path().string();
  while (folder.size() + 60 < 258) folder += '/' + std::string(59, 'd');
  std::filesystem::create_directories(folder);
  const std::string fits = folder + '/' + std::string(258 - folder.size(), 'f');
  ASSERT_EQ(fits.size(), 259u);
  const std::string tooLong = fits + 'f';
  const std::string wave = Riff(Format(1, 8000, 16));
  WriteText(fits, wave);
  WriteText(tooLong, wave);

  C_WavFile file;
  EXPECT_EQ(file.ReadHeader(fits.c_str(), 1, nullptr), 1) << file.LastStatus().Message();
  EXPECT_EQ(file.ReadHeader(tooLong.c_str(), 1, nullptr), 0);
  EXPECT_NE(file.LastStatus().Message().find("260 characters"), std::string::npos);
  EXPECT_EQ(file.Save(tooLong.c_str()), 0);
  EXPECT_EQ(file.ReadHeader(nullptr, 1, nullptr), 0);
  EXPECT_TRUE(file.LoadFile(Path::Native(tooLong)));
}

TEST_F(WavReadTest, BoundaryPathsAreTheSystemsOwn) {
  Write(kMarked, "Sound.WAV");
  std::string path = dir_ / "sound.wav";
  std::ranges::replace(path, '/', '\\');
  C_WavFile file;
  ASSERT_EQ(file.ReadHeader(("C:" + path).c_str(), 1, nullptr), 1) << file.LastStatus().Message();
  ASSERT_EQ(file.ReadData(), 1);
  EXPECT_EQ(BytesOf(*file.Sound()), kSamples);
  EXPECT_EQ(file.GetPath(), "C:" + path);
}

TEST_F(WavReadTest, DataOfAFileThatShrankOrWentFails) {
  const Path path = Write(kMarked);
  C_WavFile file;
  EXPECT_EQ(file.ReadData(), 0);  // no sound
  ASSERT_EQ(file.ReadHeader(path.Text().c_str(), 1, nullptr), 1);
  std::filesystem::resize_file(path.Text(), 50);
  EXPECT_EQ(file.ReadData(), 0);
  EXPECT_EQ(file.Sound()->GetDataSize(), 0u);
  std::filesystem::remove(path.Text());
  EXPECT_EQ(file.ReadData(), 0);
}

// --- whose sound it is -------------------------------------------------------

TEST_F(WavReadTest, AttachedSoundsStayTheirOwners) {
  const WavDataPtr sound = C_WavData::Create();
  Fill(*sound, 16000, 1, 16, 16, true, "1234");
  {
    C_WavFile file;
    EXPECT_EQ(file.DetachWavData(), nullptr);
    file.GetWavData()->SetFormat(1, 2, 1, 16, 16, 1);
    file.AttachWavData(sound.get());
    EXPECT_EQ(file.Sound(), sound.get());
    EXPECT_EQ(sound->EventMgr().GetSampleRate(), 16000u);
    EXPECT_EQ(file.DetachWavData(), sound.get());
    EXPECT_EQ(file.DetachWavData(), nullptr);
    EXPECT_EQ(file.Sound(), nullptr);
    file.AttachWavData(sound.get());
    ASSERT_TRUE(Load(file, kMarked));
  }
  EXPECT_EQ(BytesOf(*sound), kSamples);
}

TEST_F(WavReadTest, OwnSoundsOutliveTheFileByAReference) {
  C_WavData* sound = nullptr;
  {
    C_WavFile file;
    ASSERT_TRUE(Load(file, kMarked));
    EXPECT_EQ(file.DetachWavData(), nullptr);
    sound = file.Sound();
    sound->AddRef();
  }
  EXPECT_EQ(BytesOf(*sound), kSamples);
  sound->Release();
}

TEST_F(WavReadTest, ForwardsToTheSound) {
  C_WavFile file;
  void* info = &file;
  EXPECT_EQ(file.GetData(), nullptr);
  EXPECT_EQ(file.GetWriteParam(), nullptr);
  EXPECT_EQ(file.SaveAs(2, "x.wav"), 0);
  EXPECT_EQ(file.GetChunkInfo(1, &info), 0);
  EXPECT_EQ(info, nullptr);
  EXPECT_EQ(file.Sound(), nullptr);

  file.SetFormat(8000, 4, 1, 16, 16, 1);
  ASSERT_NE(file.SetData("abcd", 4), nullptr);
  EXPECT_EQ(std::memcmp(file.GetData(), "abcd", 4), 0);
  EXPECT_EQ(file.GetChunkInfo(1, &info), 1);
  EXPECT_EQ(file.GetWavInfo()->GetSampleRate(), 8000u);

  C_WavFile copy;
  EXPECT_EQ(copy.Assign(file.GetWavData()), 1);
  EXPECT_EQ(BytesOf(*copy.Sound()), "abcd");
  file.GetWriteParam()->SetLveMode(9);
  copy.CopyWriteParam(file.GetWavData());
  EXPECT_EQ(copy.GetWriteParam()->GetLveMode(), 9);
}

// --- treatments --------------------------------------------------------------

class RecordingLsc : public I_LSCMgr {
 public:
  explicit RecordingLsc(std::string& calls) : calls_(calls) {}
  void Process(uint32_t form, void*, uint32_t frames, uint16_t index, uint16_t table) override {
    calls_ += std::to_string(form) + ',' + std::to_string(frames) + ',' + std::to_string(index) +
              ',' + std::to_string(table) + ' ';
  }

 private:
  std::string& calls_;
};

TEST_F(WavReadTest, LevelShapingGetsTheFormOfTheBlock) {
  std::string calls;
  C_WavFile file;
  file.SetLscMgr(std::make_unique<RecordingLsc>(calls));
  char samples[8] = {};
  C_WavInfo info;
  info.Set(8000, 8, 1, 16, 16, 1);
  file.ConvertWithLsc(samples, &info);  // no sound
  I_WriteWavParam& settings = *file.GetWavData()->GetWriteParam();
  settings.SetLscIndex(0x10003);
  settings.SetLscTable(0x20002);
  file.ConvertWithLsc(samples, &info);  // switched off
  settings.SetLscEnabled(1);
  file.ConvertWithLsc(nullptr, &info);
  file.ConvertWithLsc(samples, nullptr);
  EXPECT_EQ(calls, "");

  file.ConvertWithLsc(samples, &info);
  info.Set(8000, 8, 1, 12, 16, 0);
  file.ConvertWithLsc(samples, &info);
  info.Set(8000, 8, 1, 12, 16, 1);
  file.ConvertWithLsc(samples, &info);
  info.Set(8000, 8, 1, 16, 16, 0);
  file.ConvertWithLsc(samples, &info);
  EXPECT_EQ(calls, "2,4,3,2 1,4,3,2 0,4,3,2 0,4,3,2 ");
  file.SetLscMgr(nullptr);
  file.ConvertWithLsc(samples, &info);
}

class RecordingLve : public I_LVEMgr {
 public:
  explicit RecordingLve(std::string& calls) : calls_(calls) {}
  void Process(void*, uint32_t frames, uint32_t rate, uint16_t mode, uint16_t* percent1,
               uint16_t* percent2, uint16_t* percent3, int32_t flag) override {
    calls_ += std::to_string(frames) + ',' + std::to_string(rate) + ',' + std::to_string(mode) +
              ',' + std::to_string(*percent1 + *percent2 + *percent3) + ',' + std::to_string(flag);
    *percent1 = 11;
    *percent2 = 22;
    *percent3 = 33;
  }

 private:
  std::string& calls_;
};

TEST_F(WavReadTest, LevelEnhancementLeavesItsPercents) {
  std::string calls;
  C_WavFile file;
  uint16_t samples[4] = {};
  file.SetLveMgr(std::make_unique<RecordingLve>(calls));
  file.ApplyLve(samples, 4, 1);  // no sound
  C_WriteWavParam& settings = *file.EnsureSound().GetWriteParam();
  file.SetFormat(8000, 8, 1, 16, 16, 1);
  settings.SetLvePercent2(7);
  file.ApplyLve(samples, 4, 1);  // mode 0
  EXPECT_EQ(calls, "");
  EXPECT_EQ(settings.GetLvePercent2(), 100);

  settings.SetLveMode(3);
  file.ApplyLve(samples, 4, 1);
  EXPECT_EQ(calls, "4,8000,3,300,1");
  EXPECT_EQ(settings.GetLvePercent1(), 11);
  EXPECT_EQ(settings.GetLvePercent2(), 22);
  EXPECT_EQ(settings.GetLvePercent3(), 33);
  file.SetLveMgr(nullptr);
  file.ApplyLve(samples, 4, 1);
  EXPECT_EQ(settings.GetLvePercent3(), 100);
}

}  // namespace
}  // namespace velora
