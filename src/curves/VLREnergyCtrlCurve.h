// A gate that follows the loudness of the sound.
#pragma once

#include "curves/VLRUnitCtrlCurve.h"

namespace velora {

/// The high level where, in a window round the sample, the loud samples are in
/// the majority, otherwise the low one. A sample is loud from the threshold on.
/// Only an inverted flag of exactly 1 counts.
class C_VLREnergyCtrlCurve : public C_VLRUnitCtrlCurve {
 public:
  /// `samples` is borrowed, see AttachWave.
  C_VLREnergyCtrlCurve(uint32_t start, uint32_t end, uint16_t windowSamples, uint8_t lowLevel,
                       uint8_t highLevel, uint16_t threshold, const int16_t* samples);

  uint32_t GetType() const override { return kCurveEnergy; }

  /// Nothing without samples.
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Takes the samples.
  void AttachWave(uint32_t sampleRate, const int16_t* samples) override;

  /// An even width counts as the next odd one.
  uint16_t GetWindowSamples() const { return windowSamples_; }
  void SetWindowSamples(uint16_t count) { windowSamples_ = count; }
  uint8_t GetLowLevel() const { return lowLevel_; }
  void SetLowLevel(uint8_t level) { lowLevel_ = level; }
  uint8_t GetHighLevel() const { return highLevel_; }
  void SetHighLevel(uint8_t level) { highLevel_ = level; }
  uint16_t GetThreshold() const { return threshold_; }
  void SetThreshold(uint16_t threshold) { threshold_ = threshold; }
  const int16_t* GetSamples() const { return samples_; }
  void SetSamples(const int16_t* samples) { AttachWave(0, samples); }

 private:
  uint16_t windowSamples_;
  uint8_t lowLevel_;
  uint8_t highLevel_;
  uint16_t threshold_;
  const int16_t* samples_;
};

}  // namespace velora
