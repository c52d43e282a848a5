// The level of one pin of a colour group that follows the sound.
#pragma once

#include "curves/VLRColorFlyerCtrlCurve.h"

namespace velora {

/// The mean loudness of each window of samples picks a place in the run of
/// colours of the group. The window and the inverted flag are the group's.
class C_VLRColorEnvelopCtrlCurve : public C_VLRColorFlyerCtrlCurve {
 public:
  /// `groups` and `samples` are borrowed and may be null, see AttachWave.
  C_VLRColorEnvelopCtrlCurve(uint32_t start, uint32_t end, uint32_t ignored, uint8_t channel,
                             int32_t groupIndex, const GroupList* groups, const int16_t* samples);

  uint32_t GetType() const override { return kCurveColorEnvelop; }

  /// Nothing without samples, a colour envelope group, or two keys in it.
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Takes the samples.
  void AttachWave(uint32_t sampleRate, const int16_t* samples) override;

  const int16_t* GetSamples() const { return samples_; }
  void SetSamples(const int16_t* samples) { AttachWave(0, samples); }

 private:
  const int16_t* samples_;
};

}  // namespace velora
