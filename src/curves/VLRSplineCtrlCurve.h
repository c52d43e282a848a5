// A smooth curve through control points.
#pragma once

#include <cstdint>

#include "curves/VLRUnitCtrlCurve.h"
#include "foundation/ElementList.h"

namespace velora {

/// A Catmull-Rom curve through its points, of which there must be at least two
/// and whose positions must rise; their owner keeps them so. The first and last
/// point may lie elsewhere than Start and End: outside the points the level of the
/// nearest end holds.
///
/// The table of the element list stands first in the object, with its nine
/// operations in raw slots 0 to 9; GetPointCount, SetPoints and RemapPoints
/// follow it in slots 10 to 12. The table of the curve is that of
/// C_VLRUnitCtrlCurve.
class C_VLRSplineCtrlCurve : public C_CUElementArray<tagVLRCurveCtrlPoint>,
                             public C_VLRUnitCtrlCurve {
 public:
  /// Without points.
  C_VLRSplineCtrlCurve(uint32_t start, uint32_t end, uint32_t phase);

  /// With points, and phase 0; the word is ignored.
  C_VLRSplineCtrlCurve(uint32_t start, uint32_t end, uint32_t ignored,
                       const tagVLRCurveCtrlPoint* points, uint16_t count);

  // These three must stay the first virtual operations of the class: the slots
  // behind the list are handed out in the order of declaration.

  /// Modulo 2^16.
  virtual uint16_t GetPointCount() const { return static_cast<uint16_t>(Count()); }

  /// Replaces all points; ids start at 1 again. Null counts as none.
  virtual void SetPoints(const tagVLRCurveCtrlPoint* points, uint16_t count);

  /// Fits points of one range into another, bounds included: the first and last
  /// point take its ends, those between their place in proportion, but never the
  /// first position. Levels, Start and End stay. False, and nothing is done, when
  /// a range has not two positions.
  virtual bool RemapPoints(uint32_t sourceFirst, uint32_t sourceLast, uint32_t targetFirst,
                           uint32_t targetLast);

  uint32_t GetType() const override { return kCurveSpline; }
  void GenerateSamples(uint16_t* out) override;
  C_VLRUnitCtrlCurve* Clone() const override;

  /// Scales the points as well, each as the end of its sample.
  void ScaleTime(double ratio) override;

  /// Moves the points along. The first one that would pass the limit is cut back
  /// onto the line that leads to it; those behind it are removed.
  void Rebase(uint32_t newStart, uint32_t limit) override;

  /// The list operations with the two parts of a point; `id` may be null. A point
  /// goes in front of the one at `index`; false above the count.
  using C_CUElementArray<tagVLRCurveCtrlPoint>::Add;
  using C_CUElementArray<tagVLRCurveCtrlPoint>::InsertAt;
  void Add(uint32_t sample, uint8_t level, uint32_t* id) { Add({sample, level}, id); }
  bool InsertAt(int32_t index, uint32_t sample, uint8_t level, uint32_t* id) {
    return InsertAt(index, {sample, level}, id);
  }

  /// Inserts the same point n times in front of `index`. An index behind the end
  /// is first reached with copies of the point. Nothing for a negative index.
  void InsertCopies(int32_t index, uint32_t sample, uint8_t level, int32_t n);

  /// Puts the point at `from` in front of the one at `to`, with a new id. False
  /// when there is no such place.
  bool MovePoint(int32_t from, int32_t to);

 protected:
  /// Adds this curve's points, with new ids, to its clone.
  void CopyPointsTo(C_VLRSplineCtrlCurve& clone) const;
};

}  // namespace velora
