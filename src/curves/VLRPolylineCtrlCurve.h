// Straight lines between control points.
#pragma once

#include "curves/VLRSplineCtrlCurve.h"

namespace velora {

/// As the spline, but with straight lines. Of points at the same position the
/// last one counts.
class C_VLRPolylineCtrlCurve : public C_VLRSplineCtrlCurve {
 public:
  using C_VLRSplineCtrlCurve::C_VLRSplineCtrlCurve;

  uint32_t GetType() const override { return kCurvePolyline; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;
};

}  // namespace velora
