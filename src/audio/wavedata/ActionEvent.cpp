#include "audio/wavedata/ActionEvent.h"

namespace velora {
namespace {

/// Cut to a whole number, of which 32 bits are kept.
uint32_t LowWord(double value) { return static_cast<uint32_t>(static_cast<uint64_t>(value)); }

}  // namespace

uint32_t C_ActionEvent::GetTimeMs() const {
  if (!positionInSamples_) return timeMs_;
  return sampleRate_ ? LowWord(sample_ * 1000.0 / sampleRate_) : 0;
}

void C_ActionEvent::SetTimeMs(uint32_t milliseconds) {
  timeMs_ = milliseconds;
  positionInSamples_ = false;
}

uint32_t C_ActionEvent::GetSample() const {
  if (positionInSamples_) return sample_;
  return LowWord(static_cast<double>(sampleRate_) * timeMs_ / 1000.0);
}

void C_ActionEvent::SetSample(uint32_t sample) {
  sample_ = sample;
  positionInSamples_ = true;
}

}  // namespace velora
