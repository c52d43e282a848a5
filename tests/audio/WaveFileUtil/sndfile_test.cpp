// Wave files between this library and libsndfile, where that is installed.

#ifdef VELORA_HAVE_SNDFILE
#include <sndfile.h>

#include <numeric>

#include "wave_fixture.h"

namespace velora {
namespace {

using namespace test;

using SndfileTest = WaveFixture;

struct FrameForm {
  int subtype;
  uint16_t bits;
};

TEST_F(SndfileTest, ReadsWhatItWrote) {
  std::vector<int16_t> samples(3001 * 2);
  std::iota(samples.begin(), samples.end(), int16_t{-3000});
  for (const FrameForm form : {FrameForm{SF_FORMAT_PCM_16, 16}, FrameForm{SF_FORMAT_PCM_U8, 8}}) {
    for (const int channels : {1, 2}) {
      SF_INFO info{};
      info.samplerate = 11025;
      info.channels = channels;
      info.format = SF_FORMAT_WAV | form.subtype;
      SNDFILE* out = sf_open((dir_ / "foreign.wav").c_str(), SFM_WRITE, &info);
      ASSERT_NE(out, nullptr);
      sf_set_string(out, SF_STR_TITLE, "odd title");
      const sf_count_t frames = 3001;
      ASSERT_EQ(sf_writef_short(out, samples.data(), frames), frames);
      sf_close(out);

      C_WavFile file;
      const Status status = file.LoadFile(At("foreign.wav"));
      ASSERT_TRUE(status) << status.Message();
      C_WavData& sound = *file.Sound();
      EXPECT_EQ(sound.Info().GetFrameCount(), static_cast<uint32_t>(frames));
      EXPECT_EQ(sound.Info().GetSampleRate(), 11025u);
      EXPECT_EQ(sound.Info().GetResolutionBits(), form.bits);
      for (uint32_t frame = 0; frame < 3001; frame += 7) {
        const auto last = static_cast<uint16_t>(channels - 1);
        const int16_t written = samples[frame * static_cast<size_t>(channels) + last];
        ASSERT_EQ(sound.GetBuffer()->GetSample(frame, last), written >> (16 - form.bits));
      }
    }
  }
}

TEST_F(SndfileTest, WritesWhatItReads) {
  const std::pair<uint16_t, int> forms[] = {{16, SF_FORMAT_PCM_16}, {8, SF_FORMAT_PCM_U8}};
  for (const auto& [bits, subtype] : forms) {
    C_WavFile file;
    std::string samples;
    for (int i = 0; i < 4002; ++i) samples += static_cast<char>(i * 11);
    Fill(file.EnsureSound(), 44100, 2, bits, bits, bits > 8, samples);
    file.Sound()->GetEventMgr()->AddEventAtSample(5, 77, "", 6);
    file.Sound()->GetEventMgr()->AddSilenceRegion(100, 50);
    file.Sound()->SamplerInfo().AddLoop(1, 0, 10, 20, 0, 3);
    ASSERT_TRUE(file.SaveFile(At("ours.wav")));

    SF_INFO info{};
    SNDFILE* in = sf_open((dir_ / "ours.wav").c_str(), SFM_READ, &info);
    ASSERT_NE(in, nullptr) << sf_strerror(nullptr);
    EXPECT_EQ(info.samplerate, 44100);
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, subtype);
    ASSERT_EQ(info.frames, 4002 / file.GetWavInfo()->GetBlockAlign());
    std::vector<int16_t> read(static_cast<size_t>(info.frames) * 2);
    ASSERT_EQ(sf_readf_short(in, read.data(), info.frames), info.frames);
    for (uint32_t frame = 0; frame < info.frames; frame += 5) {
      ASSERT_EQ(read[frame * 2 + 1] >> (16 - bits), file.Sound()->GetBuffer()->GetSample(frame, 1));
    }

    SF_CUES cues{};
    ASSERT_EQ(sf_command(in, SFC_GET_CUE, &cues, sizeof cues), SF_TRUE);
    ASSERT_EQ(cues.cue_count, 2u);
    EXPECT_EQ(cues.cue_points[0].sample_offset, 77u);
    EXPECT_STREQ(cues.cue_points[0].name, "(5,6)");
    EXPECT_STREQ(cues.cue_points[1].name, "SILENCE");
    SF_INSTRUMENT instrument{};
    ASSERT_EQ(sf_command(in, SFC_GET_INSTRUMENT, &instrument, sizeof instrument), SF_TRUE);
    ASSERT_EQ(instrument.loop_count, 1);
    EXPECT_EQ(instrument.loops[0].start, 10u);
    sf_close(in);
  }
}

TEST_F(SndfileTest, RefusesItsWiderFormats) {
  const std::pair<int, const char*> cases[] = {
      {SF_FORMAT_WAV | SF_FORMAT_PCM_24, "Unsupported 24-bit PCM format!"},
      {SF_FORMAT_WAV | SF_FORMAT_FLOAT, "Unsupported wave format!"},
      {SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, "Unsupported wave format!"},
      {SF_FORMAT_WAV | SF_FORMAT_ULAW, "Unsupported wave format!"},
  };
  for (const auto& [format, reason] : cases) {
    SF_INFO info{};
    info.samplerate = 8000;
    info.channels = 1;
    info.format = format;
    SNDFILE* out = sf_open((dir_ / "wide.wav").c_str(), SFM_WRITE, &info);
    ASSERT_NE(out, nullptr);
    const int16_t sample = 5;
    sf_writef_short(out, &sample, 1);
    sf_close(out);
    C_WavFile file;
    const Status status = file.LoadFile(At("wide.wav"));
    EXPECT_FALSE(status);
    EXPECT_NE(status.Message().find(reason), std::string::npos) << status.Message();
  }
}

}  // namespace
}  // namespace velora
#endif
