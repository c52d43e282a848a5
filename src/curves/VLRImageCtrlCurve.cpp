#include "curves/VLRImageCtrlCurve.h"

#include <algorithm>

#include "curves/LevelMath.h"

namespace velora {

C_VLRImageCtrlCurve::C_VLRImageCtrlCurve(uint32_t start, uint32_t end)
    : C_VLRImageCtrlCurve(start, end, nullptr) {}

C_VLRImageCtrlCurve::C_VLRImageCtrlCurve(uint32_t start, uint32_t end, const uint8_t* levels)
    : C_VLRUnitCtrlCurve(start, end, 0) {
  if (levels) {
    SetLevels(levels);
  } else {
    levels_.resize(C_VLRUnitCtrlCurve::GetSampleCount());
  }
}

void C_VLRImageCtrlCurve::GenerateSamples(uint16_t* out) {
  const std::span<uint16_t> levels = OutputOf(out);
  const bool inverted = IsInverted();
  const size_t stored = std::min(levels.size(), levels_.size());
  for (size_t i = 0; i < stored; ++i) levels[i] = Deliver(levels_[i], inverted);
  std::ranges::fill(levels.subspan(stored), Deliver(0, inverted));
}

C_VLRUnitCtrlCurve* C_VLRImageCtrlCurve::Clone() const {
  return CloneBy([this] {
    auto clone = std::make_unique<C_VLRImageCtrlCurve>(0, 0);
    clone->SetStart(GetStart());
    clone->SetEnd(GetEnd());
    clone->levels_ = levels_;
    return clone;
  });
}

void C_VLRImageCtrlCurve::SetLevels(const uint8_t* levels) {
  if (levels) levels_.assign(levels, levels + C_VLRUnitCtrlCurve::GetSampleCount());
}

}  // namespace velora
