// Each block-wise operation against its plain twin, over random formats, lengths,
// ranges and addresses.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "audio/wavedata/PlainTwin.h"
#include "audio/wavedata/SoundKit.h"

namespace velora::test {
namespace {

/// A sound on a block of its own that starts at any address.
struct PlacedSound {
  std::vector<std::byte> block;
  size_t phase;
  C_WavData sound;

  PlacedSound(const Form& form, std::span<const std::byte> bytes, size_t atPhase)
      : block(bytes.size() + atPhase), phase(atPhase) {
    std::ranges::copy(bytes, block.begin() + static_cast<ptrdiff_t>(phase));
    const auto size = static_cast<uint32_t>(bytes.size());
    sound.AttachData(block.data() + phase, size);
    sound.SetFormat(8000, size, form.channels, form.resolution, form.container, form.isSigned);
  }
};

/// What a case is made of; the same for the same seed.
class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}

  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }

  Form SourceForm() {
    // The common forms come often enough for their own paths to be met.
    if (Below(3) == 0) return {static_cast<uint16_t>(1 + Below(2)), 16, 16, 1};
    static constexpr uint16_t kContainers[] = {8, 8, 16, 16, 16, 12, 9, 24, 32};
    Form form;
    form.channels = static_cast<uint16_t>(1 + Below(4));
    form.container = kContainers[Below(std::size(kContainers))];
    form.resolution = Below(2) ? form.container : static_cast<uint16_t>(1 + Below(form.container));
    form.isSigned = static_cast<int32_t>(Below(2));
    return form;
  }

  Form TargetForm() {
    static constexpr uint16_t kContainers[] = {8, 16, 16, 32};
    Form form;
    form.container = kContainers[Below(std::size(kContainers))];
    form.resolution = Below(2) ? form.container : static_cast<uint16_t>(1 + Below(form.container));
    if (Below(3) == 0 && form.container == 16) form.resolution = 12;
    form.isSigned = static_cast<int32_t>(Below(2));
    return form;
  }

  /// Loud, quiet and constant stretches, extreme values and stray bits.
  std::vector<std::byte> SampleBytes(const Form& form) {
    const size_t width = (form.container + 7u) / 8;
    const size_t samples = form.channels * (Below(5) ? Below(5000) : Below(100));
    std::vector<std::byte> bytes(samples * width + Below(2));
    const SampleFormat format(form.resolution, form.container, form.isSigned != 0);
    size_t left = 0;
    unsigned kind = 0;
    for (size_t i = 0; i < samples; ++i) {
      if (left-- == 0) {
        left = Below(300);
        kind = Below(5);
      }
      uint32_t raw = static_cast<uint32_t>(random_());
      const auto quiet = static_cast<int32_t>(Below(41)) - 20;
      if (kind == 1) raw = format.Encode(quiet);
      if (kind == 2) raw = format.Encode(0);
      if (kind == 3) raw = format.Encode(Below(2) ? format.minValue : format.maxValue);
      if (kind == 4) raw = format.Encode(static_cast<int32_t>(raw));
      format.Store(bytes.data() + i * width, raw);
    }
    return bytes;
  }

 private:
  std::mt19937 random_;
};

void CheckConvert(Dice& dice) {
  Form form = dice.SourceForm();
  const std::vector<std::byte> bytes = dice.SampleBytes(form);
  const Form to = dice.TargetForm();
  SCOPED_TRACE(Describe(form) + " to " + Describe(to));
  PlacedSound source(form, bytes, dice.Below(4));
  const WavDataPtr fast(
      source.sound.CreateConverted(to.resolution, to.container, to.isSigned, nullptr));
  const bool convertible = form.container == 8 || form.container == 16 || form.container == 32;
  ASSERT_EQ(fast != nullptr, convertible);
  if (!fast) return;
  C_WavData plain;
  PlainConvert(source.sound, to, plain);
  EXPECT_EQ(fast->Info().GetFrameCount(), plain.Info().GetFrameCount());
  EXPECT_TRUE(std::ranges::equal(fast->Bytes(), plain.Bytes()));
}

void CheckGain(Dice& dice) {
  static constexpr double kGains[] = {0, 0.5, 1, 1.37, -0.8, 3, 1e6, -1e300};
  const Form form = dice.SourceForm();
  const std::vector<std::byte> bytes = dice.SampleBytes(form);
  PlacedSound fast(form, bytes, dice.Below(4));
  PlacedSound plain(form, bytes, 0);
  const auto frames = static_cast<uint32_t>(fast.sound.FrameCount());
  if (frames == 0) return;
  const uint32_t first = dice.Below(frames);
  const uint32_t last = first + dice.Below(frames - first);
  const auto firstChannel = static_cast<uint16_t>(dice.Below(2) ? 0 : dice.Below(form.channels));
  const auto lastChannel = static_cast<uint16_t>(
      dice.Below(2) ? form.channels - 1 : firstChannel + dice.Below(form.channels - firstChannel));
  const double start = kGains[dice.Below(std::size(kGains))];
  const double end = kGains[dice.Below(std::size(kGains))];
  SCOPED_TRACE(testing::Message() << Describe(form) << ", " << first << " to " << last << ", gain "
                                  << start << " to " << end);
  ASSERT_EQ(fast.sound.ApplyGainRange(start, end, first, last, firstChannel, lastChannel, nullptr),
            1);
  PlainGain(plain.sound, start, end, first, last, firstChannel, lastChannel);
  EXPECT_TRUE(std::ranges::equal(fast.sound.Bytes(), plain.sound.Bytes()));
}

void CheckPeakAndOffset(Dice& dice) {
  const Form form = dice.SourceForm();
  SCOPED_TRACE(Describe(form));
  const std::vector<std::byte> bytes = dice.SampleBytes(form);
  PlacedSound fast(form, bytes, dice.Below(4));
  PlacedSound plain(form, bytes, 0);
  const auto frames = static_cast<uint32_t>(fast.sound.FrameCount());
  if (frames > 1) {
    const uint32_t from = dice.Below(frames);
    const uint32_t to = dice.Below(frames);
    const auto channel = static_cast<uint16_t>(dice.Below(form.channels));
    const auto lastChannel = static_cast<uint16_t>(form.channels - 1);
    EXPECT_EQ(fast.sound.GetBuffer()->GetPeak(from, to, channel, lastChannel),
              PlainPeak(plain.sound, from, to, channel, lastChannel));
  }
  fast.sound.RemoveDCOffset();
  PlainRemoveOffset(plain.sound);
  EXPECT_TRUE(std::ranges::equal(fast.sound.Bytes(), plain.sound.Bytes()));
}

void CheckDetectAndClear(Dice& dice) {
  static constexpr uint32_t kThresholds[] = {0, 1, 4, 100, 2047};
  static constexpr uint32_t kLengths[] = {0, 1, 2, 63, 64, 65, 200};
  const Form form = dice.SourceForm();
  const std::vector<std::byte> bytes = dice.SampleBytes(form);
  PlacedSound placed(form, bytes, dice.Below(4));
  C_WavData& sound = placed.sound;
  const uint32_t frames = sound.Info().GetFrameCount();  // beyond the data too
  if (frames < 2) return;
  const uint32_t first = dice.Below(3) ? dice.Below(std::min(frames - 1, 200u)) : 0;
  const uint32_t last = first + 1 + dice.Below(frames - first - 1);
  const auto firstChannel = static_cast<uint16_t>(dice.Below(2) ? 0 : dice.Below(form.channels));
  const DetectRange range{kThresholds[dice.Below(std::size(kThresholds))],
                          kLengths[dice.Below(std::size(kLengths))],
                          first,
                          last,
                          firstChannel,
                          static_cast<uint16_t>(form.channels - 1)};
  SCOPED_TRACE(testing::Message() << Describe(form) << ", " << first << " to " << last
                                  << ", threshold " << range.threshold << ", length "
                                  << range.minLength);
  ProgressLog plainLog;
  const Segments expected = PlainDetect(sound, range, plainLog);
  ProgressLog fastLog;
  const C_SilenceSegmentList* found =
      sound.DetectSilenceRange(range.threshold, range.minLength, range.first, range.last,
                               range.firstChannel, range.lastChannel, &fastLog);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(Read(found->Items()), expected);
  EXPECT_EQ(fastLog.calls, plainLog.calls);

  std::vector<int32_t> cleared = Decoded(sound);
  for (const auto& [start, end] : expected) {
    std::fill(cleared.begin() + start * form.channels, cleared.begin() + (end + 1) * form.channels,
              0);
  }
  sound.ClearSilence();
  EXPECT_EQ(Decoded(sound), cleared);
}

constexpr unsigned kSeeds = 400;

void ForAllSeeds(void (*check)(Dice&)) {
  for (unsigned seed = 1; seed <= kSeeds && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Dice dice(seed);
    check(dice);
  }
}

TEST(FastPath, Convert) { ForAllSeeds(CheckConvert); }
TEST(FastPath, Gain) { ForAllSeeds(CheckGain); }
TEST(FastPath, PeakAndOffset) { ForAllSeeds(CheckPeakAndOffset); }
TEST(FastPath, DetectAndClear) { ForAllSeeds(CheckDetectAndClear); }

}  // namespace
}  // namespace velora::test
