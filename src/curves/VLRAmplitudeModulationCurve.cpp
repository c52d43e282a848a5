#include "curves/VLRAmplitudeModulationCurve.h"

#include <vector>

namespace velora {
namespace {

std::vector<uint16_t> LevelsOf(C_VLRUnitCtrlCurve& curve) {
  std::vector<uint16_t> levels(curve.GetSampleCount());
  curve.GenerateSamples(levels.data());
  return levels;
}

/// The share that a level lets pass; all of it behind the end of the curve.
double FactorAt(const std::vector<uint16_t>& levels, size_t index) {
  return index < levels.size() ? levels[index] / 255.0 : 1.0;
}

}  // namespace

void C_VLRAmplitudeModulationCurve::GenerateSamples(uint16_t* out) {
  if (GetCurveCount() < 2) return;
  GenerateIfMemory([&] {
    const std::vector<uint16_t> first = LevelsOf(*curves_[0]);
    const std::vector<uint16_t> second = LevelsOf(*curves_[1]);
    const std::span<uint16_t> levels = OutputOf(out);
    for (size_t i = 0; i < levels.size(); ++i) {
      const double product = FactorAt(first, i) * FactorAt(second, i) * 255.0;
      levels[i] = static_cast<uint16_t>(static_cast<uint32_t>(product));
    }
  });
}

C_VLRUnitCtrlCurve* C_VLRAmplitudeModulationCurve::Clone() const {
  return CloneBy([this]() -> std::unique_ptr<C_VLRAmplitudeModulationCurve> {
    auto clone = std::make_unique<C_VLRAmplitudeModulationCurve>(GetStart(), GetEnd());
    for (int32_t i = 0; i < GetCurveCount(); ++i) {
      if (!clone->AddCurve(std::unique_ptr<C_VLRUnitCtrlCurve>(GetCurve(i)->Clone()))) {
        return nullptr;
      }
    }
    return clone;
  });
}

bool C_VLRAmplitudeModulationCurve::AddCurve(std::unique_ptr<C_VLRUnitCtrlCurve>&& curve) {
  const auto place = static_cast<size_t>(GetCurveCount());
  if (!curve || place == curves_.size()) return false;
  curves_[place] = std::move(curve);
  return true;
}

int32_t C_VLRAmplitudeModulationCurve::GetCurveCount() const {
  return (curves_[0] ? 1 : 0) + (curves_[1] ? 1 : 0);
}

C_VLRUnitCtrlCurve* C_VLRAmplitudeModulationCurve::GetCurve(int32_t index) const {
  return index >= 0 && index < GetCurveCount() ? curves_[static_cast<size_t>(index)].get()
                                               : nullptr;
}

}  // namespace velora
