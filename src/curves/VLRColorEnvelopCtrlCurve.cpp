#include "curves/VLRColorEnvelopCtrlCurve.h"

#include "curves/ColorMapGen.h"
#include "curves/Loudness.h"
#include "curves/VLRPolylineCtrlCurve.h"

namespace velora {

C_VLRColorEnvelopCtrlCurve::C_VLRColorEnvelopCtrlCurve(uint32_t start, uint32_t end,
                                                       uint32_t ignored, uint8_t channel,
                                                       int32_t groupIndex, const GroupList* groups,
                                                       const int16_t* samples)
    : C_VLRColorFlyerCtrlCurve(start, end, ignored, channel, groupIndex, groups),
      samples_(samples) {}

void C_VLRColorEnvelopCtrlCurve::AttachWave(uint32_t sampleRate, const int16_t* samples) {
  C_VLRUnitCtrlCurve::AttachWave(sampleRate, samples);
  samples_ = samples;
}

void C_VLRColorEnvelopCtrlCurve::GenerateSamples(uint16_t* out) {
  const auto* group = dynamic_cast<const C_VLRGroupColorEnvelopCtrlCurve*>(FindGroup());
  if (!group || !samples_ || GetSampleCount() == 0) return;
  GenerateIfMemory([&] {
    // One level less than there are steps of loudness: full scale takes the last.
    LoudnessMap map;
    const auto levels = static_cast<int32_t>(map.levels.size()) - 1;
    const C_ColorMapGen generator(group->GetKeys(), group->GetKeyCount());
    const auto channel = static_cast<uint8_t>(group->FindChannel(GetChannel()));
    if (!generator.Generate(channel, 0, map.levels.data(), levels)) return;
    map.levels.back() = map.levels[map.levels.size() - 2];

    std::vector<int16_t> silenced;
    const std::span<const int16_t> sound = SoundInRange(samples_, silenced);
    C_VLRPolylineCtrlCurve contour(GetStart(), LastPosition(), GetPhase());
    contour.SetInverted(group->GetInverted());
    AddLoudnessPoints(sound, GetStart(), group->GetWindowSamples(), MeanMagnitude, map, contour);
    contour.GenerateSamples(out);
  });
}

C_VLRUnitCtrlCurve* C_VLRColorEnvelopCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRColorEnvelopCtrlCurve>(GetStart(), GetEnd(), 0, GetChannel(),
                                                        GetGroupIndex(), GetGroups(), samples_);
  });
}

}  // namespace velora
