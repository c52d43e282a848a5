// Files that the library saves, judged by the checks that know nothing of it.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "audio/WaveFileUtil/MpmFile.h"
#include "audio/WaveFileUtil/SrcFile.h"
#include "audio/WaveFileUtil/WavFile.h"
#include "audio/inspect/Verify.h"
#include "audio/inspect/mpm_bytes.h"
#include "support/TempDir.h"

namespace velora {
namespace {

using Random = std::mt19937;

uint32_t Pick(Random& random, uint32_t from, uint32_t to) {
  return std::uniform_int_distribution<uint32_t>(from, to)(random);
}

/// Bursts of tone and noise from faint to full scale, and rests.
std::vector<int16_t> MakeSamples(Random& random, uint32_t count) {
  std::vector<int16_t> samples(count);
  for (uint32_t i = 0; i < count;) {
    const uint32_t end = std::min(count, i + Pick(random, 1, 700));
    const double level = Pick(random, 0, 3) == 0 ? 0 : std::pow(2.0, Pick(random, 4, 15));
    const double pitch = Pick(random, 1, 300) / 1000.0;
    const bool noise = Pick(random, 0, 2) == 0;
    for (; i < end; ++i) {
      const double unit = noise ? Pick(random, 0, 2000) / 1000.0 - 1 : std::sin(i * pitch);
      samples[i] = static_cast<int16_t>(unit * level * 0.999);
    }
  }
  return samples;
}

struct SoundShape {
  uint32_t count = 0;
  uint32_t events = 0;
  uint32_t regions = 0;  // none: silence is detected
  bool crowded = false;  // many events at a few places
  bool raw = false;
};

WavDataPtr MakeSound(Random& random, const SoundShape& shape) {
  WavDataPtr sound = C_WavData::Create();
  const std::vector<int16_t> samples = MakeSamples(random, shape.count);
  const uint32_t size = shape.count * 2;
  sound->SetFormat(Pick(random, 4000, 22050), size, 1, 16, 16, 1);
  sound->SetData(samples.data(), size);
  for (uint32_t i = 0; i < shape.events; ++i) {
    const uint32_t places[] = {0, shape.count / 3, shape.count - 1};
    const uint32_t at =
        shape.crowded ? places[Pick(random, 0, 2)] : Pick(random, 0, shape.count + 20);
    sound->GetEventMgr()->AddEventAtSample(static_cast<int32_t>(Pick(random, 0, 255)), at, "",
                                           static_cast<int32_t>(Pick(random, 0, 255)));
  }
  for (uint32_t i = 0; i < shape.regions; ++i) {
    sound->GetEventMgr()->AddSilenceRegion(Pick(random, 0, shape.count - 1), Pick(random, 1, 200));
  }
  if (shape.raw) sound->GetWriteParam()->SetCodecParam(1);
  return sound;
}

template <typename File>
std::vector<std::byte> Save(const test::TempDir& dir, C_WavData& sound) {
  File file;
  file.AttachWavData(&sound);
  const Status status = file.SaveFile(Path::Native(dir / "sound"));
  file.DetachWavData();
  EXPECT_TRUE(status.Ok()) << status.Message();
  return test::ReadBytes(dir / "sound");
}

Result<VerifyReport> Verify(std::vector<std::byte> bytes) {
  const InputFile file = InputFile::FromBytes(std::move(bytes));
  return VerifyOpenFile(file);
}

void ExpectGreen(const std::vector<std::byte>& bytes) {
  const Result<VerifyReport> report = Verify(bytes);
  ASSERT_TRUE(report.Ok()) << report.Message();
  for (const Fault& fault : report->faults) {
    ADD_FAILURE() << fault.offset << " " << fault.what << ": expected " << fault.expected
                  << ", found " << fault.found;
  }
  for (const Fault& fault : report->warnings) {
    ADD_FAILURE() << "warning: " << fault.offset << " " << fault.what << ": expected "
                  << fault.expected << ", found " << fault.found;
  }
}

TEST(SavedFiles, OfRandomSoundsAreGreen) {
  const test::TempDir dir;
  Random random(1);
  for (int round = 0; round < 400 && !testing::Test::HasFailure(); ++round) {
    SoundShape shape;
    shape.count = round % 4 == 0 ? Pick(random, 1, 40) : Pick(random, 1, 6000);
    shape.events = round % 3 == 0 ? 0 : Pick(random, 0, 30);
    shape.regions = round % 2 == 0 ? 0 : Pick(random, 1, 12);
    shape.crowded = round % 5 == 0;
    shape.raw = round % 7 == 0;
    SCOPED_TRACE("round " + std::to_string(round) + ", " + std::to_string(shape.count) +
                 " samples");
    const WavDataPtr sound = MakeSound(random, shape);
    ExpectGreen(Save<C_MpmFile>(dir, *sound));
    ExpectGreen(Save<C_SrcFile>(dir, *sound));
    ExpectGreen(Save<C_EnSrcFile>(dir, *sound));
  }
}

/// Offsets of a saved file's parts, from its own header.
struct Parts {
  explicit Parts(const std::vector<std::byte>& bytes) : bytes_(&bytes) {}
  size_t Number(size_t at) const {
    size_t number = 0;
    for (size_t i = 4; i > 0; --i)
      number = number << 8 | std::to_integer<size_t>((*bytes_)[at + i - 1]);
    return number;
  }
  size_t Decoded() const { return Number(48); }
  size_t Source() const { return Number(38); }
  size_t Events() const { return Number(20); }

 private:
  const std::vector<std::byte>* bytes_;
};

/// What the header and the stream cannot tell: the silence detection, and the low
/// bits of the rate that the band limit loses.
bool IsFree(size_t byte, unsigned bit) {
  return (byte >= 56 && byte < 60) || (byte == 12 && bit < 2);
}

TEST(SavedFiles, TellEveryFlippedBitOfHeadersStreamAndDecodedBlock) {
  const test::TempDir dir;
  Random random(5);
  SoundShape shape;
  shape.count = 900;
  shape.events = 6;
  shape.regions = 2;
  const WavDataPtr sound = MakeSound(random, shape);
  std::vector<std::byte> bytes = Save<C_MpmFile>(dir, *sound);
  ExpectGreen(bytes);
  const size_t end = Parts(bytes).Source();
  for (size_t byte = 0; byte < end; ++byte) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      bytes[byte] ^= static_cast<std::byte>(1u << bit);
      const Result<VerifyReport> report = Verify(bytes);
      const bool found = !report.Ok() || report->faultCount + report->warningCount > 0;
      EXPECT_TRUE(found || IsFree(byte, bit)) << "byte " << byte << " bit " << bit;
      bytes[byte] ^= static_cast<std::byte>(1u << bit);
    }
  }
}

TEST(SavedFiles, OfWavesAreGreen) {
  const test::TempDir dir;
  Random random(3);
  for (int round = 0; round < 40; ++round) {
    SoundShape shape;
    shape.count = Pick(random, 300, 3000);
    shape.events = Pick(random, 0, 20);
    const WavDataPtr sound = MakeSound(random, shape);
    sound->GetEventMgr()->AddSilenceRegion(10, 100);
    const Result<VerifyReport> report = Verify(Save<C_WavFile>(dir, *sound));
    ASSERT_TRUE(report.Ok()) << report.Message();
    EXPECT_EQ(report->faultCount, 0u);
    EXPECT_EQ(report->events, shape.events);
    EXPECT_EQ(report->silenceRegions, 1u);
  }
}

}  // namespace
}  // namespace velora
