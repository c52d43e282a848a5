#include "curves/VLRLevelCtrlCurve.h"

#include <algorithm>

#include "curves/LevelMath.h"

namespace velora {

void C_VLRLevelCtrlCurve::GenerateSamples(uint16_t* out) {
  std::ranges::fill(OutputOf(out), Deliver(level_, IsInverted()));
}

C_VLRUnitCtrlCurve* C_VLRLevelCtrlCurve::Clone() const {
  return CloneBy(
      [this] { return std::make_unique<C_VLRLevelCtrlCurve>(GetStart(), GetEnd(), GetLevel()); });
}

}  // namespace velora
