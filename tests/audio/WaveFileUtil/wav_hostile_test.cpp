// Damaged and forged wave files: they are read or refused, never followed.

#include <chrono>
#include <random>

#include "audio/WaveFileUtil/WavFileFormat.h"
#include "wave_bytes.h"
#include "wave_fixture.h"

namespace velora {
namespace {

using namespace test;

const std::string kWave =
    Riff(Format(2, 8000, 16) + Chunk("data", "abcdefghijkl") +
         Chunk("cue ", U32(3) + CueRecord(1, 2) + CueRecord(2, 1) + CueRecord(7, 0)) +
         Chunk("smpl", std::string(28, '\x02') + U32(1) + U32(4) + U32(1) + U32(0) + U32(0) +
                           U32(2) + U32(0) + U32(0) + "priv") +
         Chunk("LIST", "adtl" + Label(1, "(5,6)") + Label(2, "SILENCE") + Length(2, 3)) +
         Chunk("VLRW", "private"));
const size_t kDataStart = 44;

class WavHostileTest : public WaveFixture {
 protected:
  /// Opens the bytes in every way there is. What is opened holds no more than they do,
  /// and can be saved and opened again. True when the whole file loads.
  bool Survives(const std::string& bytes) {
    const Path path = Write(bytes);
    DetectSoundFormat(path);
    for (const LoadScope scope : {LoadScope::kHeader, LoadScope::kMetadata, LoadScope::kAll}) {
      const auto opened = OpenSound(path, {scope, SampleView::kDecoded});
      EXPECT_NE(opened.Ok(), !opened.Message().empty());
    }
    C_WavFile file;
    if (!file.LoadFile(path)) return false;
    C_WavData& sound = *file.Sound();
    EXPECT_LE(sound.GetDataSize(), bytes.size());
    EXPECT_LE(sound.CueInfo().GetCount() * 24u, bytes.size());
    EXPECT_LE(sound.SamplerInfo().GetChunkSize(), bytes.size());
    EXPECT_LE(sound.EventMgr().Events().size(), bytes.size());
    std::filesystem::remove(dir_ / "again.wav");
    if (file.SaveFile(At("again.wav"))) {
      C_WavFile again;
      EXPECT_TRUE(again.LoadFile(At("again.wav")));
      EXPECT_EQ(EventListing(*again.Sound()), EventListing(sound));
      EXPECT_EQ(again.Sound()->GetDataSize(), sound.GetDataSize());
    }
    return true;
  }
};

TEST_F(WavHostileTest, EveryTruncation) {
  ASSERT_TRUE(Survives(kWave));
  for (size_t size = 0; size < kWave.size(); ++size) {
    // Samples cut off are left out; without the whole format there is nothing to load.
    const bool loads = Survives(kWave.substr(0, size));
    if (size < kDataStart + 12) {
      EXPECT_EQ(loads, size >= kDataStart - 8) << size;
    }
  }
}

TEST_F(WavHostileTest, EveryBit) {
  for (size_t bit = 0; bit < kWave.size() * 8; ++bit) {
    std::string damaged = kWave;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
    const size_t byte = bit / 8;
    const bool loads = Survives(damaged);
    if (byte >= kDataStart && byte < kDataStart + 12) {
      EXPECT_TRUE(loads) << bit;
    }
  }
}

TEST_F(WavHostileTest, EveryWordOfAllOnes) {
  for (size_t at = 0; at + 4 <= kWave.size(); ++at) {
    std::string damaged = kWave;
    damaged.replace(at, 4, "\xFF\xFF\xFF\xFF");
    Survives(damaged);
  }
}

TEST_F(WavHostileTest, RandomDamage) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string damaged = kWave;
    for (uint32_t i = random() % 6; i < 6; ++i) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    Survives(damaged);
  }
}

/// A file made to need quadratic time: labels that jump back and forth, all in front of
/// the last event.
TEST_F(WavHostileTest, LabelsInTheWorstOrderTakeNoMinutes) {
  constexpr uint32_t kCount = 100000;
  std::string cues = U32(kCount) + CueRecord(1, 5000000);
  std::string labels = "adtl" + Label(1, "(1,1)");
  for (uint32_t id = 2; id <= kCount; ++id) {
    cues += CueRecord(id, id % 2 ? 7 : kCount - id);
    labels += Label(id, "(1,1)");
  }
  const Path path = Write(Riff(Format(1, 8000, 16) + Chunk("cue ", cues) + Chunk("LIST", labels)));
  C_WavFile file;
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(file.LoadFile(path));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(file.Sound()->EventMgr().Events().size(), kCount);
}

}  // namespace
}  // namespace velora
