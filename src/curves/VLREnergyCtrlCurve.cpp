#include "curves/VLREnergyCtrlCurve.h"

#include <algorithm>

#include "curves/LevelMath.h"
#include "curves/Loudness.h"

namespace velora {
namespace {

/// Counts the votes of a window that slides over the samples. A vote is 1 for a
/// loud sample, otherwise -1.
class SlidingVote {
 public:
  SlidingVote(std::span<const int16_t> samples, int64_t reach, uint32_t threshold, uint16_t loud,
              uint16_t quiet)
      : samples_(samples), reach_(reach), threshold_(threshold), loud_(loud), quiet_(quiet) {}

  void Write(std::span<uint16_t> out) {
    const auto count = static_cast<int64_t>(samples_.size());
    for (int64_t i = 0; i <= std::min(reach_, count - 1); ++i) sum_ += VoteOf(i);
    out[0] = Level();
    // Positions from which on the left edge moves, and up to which the right one
    // does.
    const int64_t leaves = std::min(reach_ + 1, count);
    const int64_t enters = std::max<int64_t>(count - reach_, 1);
    Slide<false, true>(out, 1, std::min(leaves, enters));
    if (leaves < enters) {
      Slide<true, true>(out, leaves, enters);
    } else {
      Slide<false, false>(out, enters, leaves);
    }
    Slide<true, false>(out, std::max(leaves, enters), count);
  }

 private:
  int32_t VoteOf(int64_t index) const {
    return MagnitudeOf(samples_[static_cast<size_t>(index)]) >= threshold_ ? 1 : -1;
  }

  uint16_t Level() const { return sum_ > 0 ? loud_ : quiet_; }

  template <bool kLeaves, bool kEnters>
  void Slide(std::span<uint16_t> out, int64_t from, int64_t to) {
    for (int64_t i = from; i < to; ++i) {
      if constexpr (kLeaves) sum_ -= VoteOf(i - reach_ - 1);
      if constexpr (kEnters) sum_ += VoteOf(i + reach_);
      out[static_cast<size_t>(i)] = Level();
    }
  }

  std::span<const int16_t> samples_;
  int64_t reach_;
  uint32_t threshold_;
  uint16_t loud_;
  uint16_t quiet_;
  int32_t sum_ = 0;
};

}  // namespace

C_VLREnergyCtrlCurve::C_VLREnergyCtrlCurve(uint32_t start, uint32_t end, uint16_t windowSamples,
                                           uint8_t lowLevel, uint8_t highLevel, uint16_t threshold,
                                           const int16_t* samples)
    : C_VLRUnitCtrlCurve(start, end, 0),
      windowSamples_(windowSamples),
      lowLevel_(lowLevel),
      highLevel_(highLevel),
      threshold_(threshold),
      samples_(samples) {}

void C_VLREnergyCtrlCurve::AttachWave(uint32_t sampleRate, const int16_t* samples) {
  C_VLRUnitCtrlCurve::AttachWave(sampleRate, samples);
  samples_ = samples;
}

void C_VLREnergyCtrlCurve::GenerateSamples(uint16_t* out) {
  if (!samples_ || GetSampleCount() == 0) return;
  GenerateIfMemory([&] {
    std::vector<int16_t> silenced;
    const bool inverted = GetInverted() == 1;
    SlidingVote vote(SoundInRange(samples_, silenced), windowSamples_ / 2, threshold_,
                     Deliver(highLevel_, inverted), Deliver(lowLevel_, inverted));
    vote.Write(OutputOf(out));
  });
}

C_VLRUnitCtrlCurve* C_VLREnergyCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLREnergyCtrlCurve>(GetStart(), GetEnd(), windowSamples_, lowLevel_,
                                                  highLevel_, threshold_, samples_);
  });
}

}  // namespace velora
