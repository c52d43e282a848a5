#include "audio/wavedata/WavInfo.h"

#include <gtest/gtest.h>

namespace velora {
namespace {

struct Case {
  uint32_t rate, size;
  uint16_t channels, resolution, container;
  uint32_t frames, durationMs;
  uint16_t containerBytes, blockAlign;
  uint32_t bytesPerSecond;
};

TEST(WavInfo, DerivedValues) {
  const Case cases[] = {
      {8000, 16000, 1, 16, 16, 8000, 1000, 2, 2, 16000},
      {44100, 44100 * 4, 2, 16, 16, 44100, 1000, 2, 4, 176400},
      {8000, 16016, 1, 16, 16, 8008, 1000, 2, 2, 16000},  // 1.001 s falls short of 1001 ms
      {8000, 24, 1, 12, 12, 16, 2, 2, 2, 16000},          // counted in bits, stored in bytes
      {8000, 7, 2, 8, 8, 3, 0, 1, 2, 16000},
      {0, 16000, 1, 16, 16, 8000, 0, 2, 2, 0},
      {8000, 16000, 0, 16, 16, 0, 0, 2, 0, 0},
      {8000, 16000, 1, 0, 0, 0, 0, 0, 0, 0},
      {8000, 0x20000002, 1, 16, 16, 1, 0, 2, 2, 16000},  // size x 8 wraps
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.size << " bytes of " << c.container << " bits");
    C_WavInfo info;
    info.Set(c.rate, c.size, c.channels, c.resolution, c.container, 1);
    EXPECT_EQ(info.GetFrameCount(), c.frames);
    EXPECT_EQ(info.GetDurationMs(), c.durationMs);
    EXPECT_EQ(info.GetContainerBytes(), c.containerBytes);
    EXPECT_EQ(info.GetBlockAlign(), c.blockAlign);
    EXPECT_EQ(info.GetBytesPerSecond(), c.bytesPerSecond);
  }
}

TEST(WavInfo, StartsSignedAndEmpty) {
  const C_WavInfo info;
  EXPECT_NE(info.IsSigned(), 0);
  EXPECT_EQ(info.GetFrameCount(), 0u);
  EXPECT_EQ(info.GetDurationMs(), 0u);
}

TEST(WavInfo, WaveFormatIsPcmWithTheResolution) {
  C_WavInfo info;
  info.Set(16000, 100, 2, 12, 16, 1);
  WaveFormatRecord record{};
  info.GetWaveFormat(&record);
  EXPECT_EQ(record.FormatTag, 1);
  EXPECT_EQ(record.Channels, 2);
  EXPECT_EQ(record.SampleRate, 16000u);
  EXPECT_EQ(record.BytesPerSecond, 64000u);
  EXPECT_EQ(record.BlockAlign, 4);
  EXPECT_EQ(record.BitsPerSample, 12);
}

}  // namespace
}  // namespace velora
