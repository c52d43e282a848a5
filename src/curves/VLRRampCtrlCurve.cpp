#include "curves/VLRRampCtrlCurve.h"

#include "curves/LevelMath.h"
#include "curves/LevelWriter.h"

namespace velora {

C_VLRRampCtrlCurve::C_VLRRampCtrlCurve(uint32_t start, uint32_t end, uint32_t, uint8_t startLevel,
                                       uint8_t endLevel)
    : C_VLRUnitCtrlCurve(start, end, 0), startLevel_(startLevel), endLevel_(endLevel) {}

void C_VLRRampCtrlCurve::GenerateSamples(uint16_t* out) {
  const std::span<uint16_t> levels = OutputOf(out);
  if (levels.empty()) return;
  const double step = (int32_t{endLevel_} - startLevel_) / static_cast<double>(levels.size());
  WriteRun(levels, startLevel_, step);
  if (IsInverted()) InvertLevels(levels);
}

C_VLRUnitCtrlCurve* C_VLRRampCtrlCurve::Clone() const {
  return CloneBy([this] {
    return std::make_unique<C_VLRRampCtrlCurve>(GetStart(), GetEnd(), GetPhase(), GetStartLevel(),
                                                GetEndLevel());
  });
}

void C_VLRRampCtrlCurve::MoveStart(uint32_t start) {
  SetStart(start);
  if (GetEnd() < GetStart()) startLevel_ = 0;
}

void C_VLRRampCtrlCurve::MoveEnd(uint32_t end) {
  SetEnd(end);
  if (GetEnd() < GetStart()) endLevel_ = 0;
  if (GetEnd() == GetStart()) endLevel_ = startLevel_;
}

void C_VLRRampCtrlCurve::Rebase(uint32_t newStart, uint32_t limit) {
  if (newStart >= limit) return;
  const int64_t oldCount = int64_t{GetEnd()} - GetStart() + 1;
  C_VLRUnitCtrlCurve::Rebase(newStart, limit);
  if (GetEnd() != limit || oldCount <= 0) return;
  const int64_t newCount = int64_t{GetEnd()} - GetStart() + 1;
  const double difference = int32_t{endLevel_} - startLevel_;
  endLevel_ = static_cast<uint8_t>(
      static_cast<double>(newCount) * difference / static_cast<double>(oldCount) + startLevel_);
}

}  // namespace velora
