// From the values of a description to an object of a curve class; between the
// table of kinds and MakeCurveLanes only.
#pragma once

#include <memory>
#include <vector>

#include "CurveKinds.h"
#include "curves/VLRColorFlyerCtrlCurve.h"
#include "curves/VLRUnitCtrlCurve.h"

namespace velora::cli {

struct CurveBuild {
  const CurveRequest& request;
  const CurveSetting& setting;
  uint32_t start;
  uint32_t end;
  GroupList& groups;                                        ///< outlives the curves
  std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>> parts;   ///< the factors of a product
  std::vector<std::unique_ptr<C_VLRUnitCtrlCurve>> curves;  ///< what is made, one a channel

  /// The value given, else that of the kind's table.
  int64_t Integer(std::string_view key) const;
  uint8_t Level(std::string_view key) const { return static_cast<uint8_t>(Integer(key)); }
  bool Inverted() const;
};

// What the table of kinds calls. Each adds its curves, or says what is wrong with
// the values.
Status MakeLevelCurve(CurveBuild& build);
Status MakeRampCurve(CurveBuild& build);
Status MakeFlashCurve(CurveBuild& build);
Status MakeSineCurve(CurveBuild& build);
Status MakeTriangleCurve(CurveBuild& build);
Status MakeSplineCurve(CurveBuild& build);
Status MakePolylineCurve(CurveBuild& build);
Status MakeStepsCurve(CurveBuild& build);
Status MakeImageCurve(CurveBuild& build);
Status MakeEnvelopeCurve(CurveBuild& build);
Status MakeEnergyCurve(CurveBuild& build);
Status MakeColourCurves(CurveBuild& build);
Status MakeColourEnvelopeCurves(CurveBuild& build);
Status MakeProductCurve(CurveBuild& build);

}  // namespace velora::cli
