// Single samples: stored form, value, and the ends of the data.
#include "audio/wavedata/WavDataBuffer.h"

#include <gtest/gtest.h>

#include "audio/wavedata/SoundKit.h"

namespace velora::test {
namespace {

/// The four bytes of `raw`, lowest first, over and over.
std::vector<std::byte> Bytes(uint32_t raw, size_t count) {
  std::vector<std::byte> bytes(count);
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::byte>(raw >> (8 * (i % 4)));
  return bytes;
}

TEST(WavDataBuffer, DecodesEachForm) {
  const struct {
    Form form;
    uint32_t raw;
    int32_t value;
  } cases[] = {
      {{1, 8, 8, 0}, 0x80, 0},
      {{1, 8, 8, 0}, 0x00, -128},
      {{1, 8, 8, 1}, 0x80, -128},
      {{1, 12, 16, 1}, 0x0800, -2048},
      {{1, 12, 16, 1}, 0x07FF, 2047},
      {{1, 12, 16, 1}, 0x1000, 4096},  // a bit above the resolution stays
      {{1, 12, 16, 0}, 0xFFFF, 63487},
      {{1, 12, 16, 0}, 0x0800, 0},
      {{1, 16, 16, 1}, 0x8000, -32768},
      {{1, 12, 12, 1}, 0x0FFF, -1},  // a container of twelve bits takes two bytes
      {{1, 24, 24, 1}, 0x800000, -8388608},
      {{1, 32, 32, 0}, 0x00000000, INT32_MIN},
      {{1, 32, 32, 1}, 0x7FFFFFFF, INT32_MAX},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Describe(c.form));
    C_WavData sound;
    Fill(sound, c.form, Bytes(c.raw, (c.form.container + 7) / 8));
    EXPECT_EQ(sound.GetBuffer()->GetSample(0, 0), c.value);
    EXPECT_EQ(C_WavDataBufferIterator(*sound.GetBuffer(), 0, 0).Get(), c.value);
  }
}

TEST(WavDataBuffer, OnlyTheIteratorClamps) {
  C_WavData sound;
  Fill(sound, {1, 12, 16, 1}, Bytes(0, 4));
  sound.GetBuffer()->SetSample(0, 2048, 0);
  sound.GetBuffer()->CreateIterator(1, 0)->Set(2048);
  EXPECT_EQ(Decoded(sound), (std::vector<int32_t>{-2048, 2047}));
  EXPECT_EQ(sound.Words()[0], 0x0800);  // bits above the resolution are cut off

  Fill(sound, {1, 8, 8, 0}, Bytes(0, 1));
  sound.GetBuffer()->CreateIterator(0, 0)->Set(-500);
  EXPECT_EQ(sound.GetBuffer()->GetSample(0, 0), -128);
}

TEST(WavDataBuffer, IteratorWalksItsChannel) {
  C_WavData sound;
  Fill16(sound, 2, {1, -1, 2, -2, 3, -3});
  I_WavDataBufferIterator* right = sound.GetBuffer()->CreateIterator(0, 1);
  EXPECT_EQ(right->Get(), -1);
  right->Next();
  EXPECT_EQ(right->Get(), -2);
  right->Seek(2);
  EXPECT_EQ(right->Get(), -3);
  right->Prev();
  right->Set(-20);
  EXPECT_EQ(Decoded(sound), (std::vector<int32_t>{1, -1, 2, -20, 3, -3}));
}

TEST(WavDataBuffer, NothingOutsideTheData) {
  C_WavData sound;
  Fill16(sound, 1, {5, 6});
  I_WavDataBufferIterator* it = sound.GetBuffer()->CreateIterator(0, 0);
  it->Prev();
  it->Set(7);
  EXPECT_EQ(it->Get(), 0);
  it->Seek(2);
  it->Set(7);
  EXPECT_EQ(it->Get(), 0);
  sound.GetBuffer()->SetSample(2, 7, 0);
  sound.GetBuffer()->SetSample(UINT32_MAX, 7, 65535);
  EXPECT_EQ(sound.GetBuffer()->GetSample(UINT32_MAX, 65535), 0);
  EXPECT_EQ(Decoded(sound), (std::vector<int32_t>{5, 6}));

  // A twelve-bit container counts more frames than its bytes hold.
  Fill(sound, {1, 12, 12, 1}, Bytes(0xFFFFFFFF, 6));
  EXPECT_EQ(sound.Info().GetFrameCount(), 4u);
  EXPECT_EQ(sound.FrameCount(), 3u);
  EXPECT_EQ(Decoded(sound), (std::vector<int32_t>{-1, -1, -1, 0}));

  // A format may promise what was never loaded.
  C_WavData empty;
  empty.SetFormat(8000, 1000, 1, 16, 16, 1);
  EXPECT_EQ(empty.GetBuffer()->GetSample(3, 0), 0);
  EXPECT_EQ(empty.ApplyGain(2, 2, nullptr), 1);
  EXPECT_EQ(empty.GetDCOffset(), 0);
}

TEST(WavDataBuffer, PeakLeavesTheLastFrameOut) {
  C_WavData sound;
  Fill16(sound, 2, {1, -9, 2, 3, -32768, 4, 7, 7});
  I_WavDataBuffer& buffer = *sound.GetBuffer();
  EXPECT_EQ(buffer.GetPeak(0, 0, 0, 0), 0);
  EXPECT_EQ(buffer.GetPeak(0, 4, 0, 0), -1);  // four frames: 4 is none
  EXPECT_EQ(buffer.GetPeak(0, 3, 0, 2), -1);
  EXPECT_EQ(buffer.GetPeak(3, 1, 0, 1), 0);
  EXPECT_EQ(buffer.GetPeak(0, 2, 0, 1), 9);
  EXPECT_EQ(buffer.GetPeak(0, 2, 0, 0), 2);
  EXPECT_EQ(buffer.GetPeak(0, 3, 0, 0), 32768);
  EXPECT_EQ(buffer.GetPeak(0, 3, 1, 1), 9);

  Fill(sound, {1, 32, 32, 1}, Bytes(0x80000000, 8));
  EXPECT_EQ(buffer.GetPeak(0, 1, 0, 0), int64_t{1} << 31);
  EXPECT_EQ(C_WavData().GetBuffer()->GetPeak(0, 0, 0, 0), -1);
}

}  // namespace
}  // namespace velora::test
