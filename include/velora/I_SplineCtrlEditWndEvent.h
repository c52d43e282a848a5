// What the curve editor tells its owner.
#pragma once

#include <cstdint>

namespace velora {

/// Implemented by whoever wants to follow the mouse in the curve editor. The
/// editor borrows the object; it must stay until the editor has another sink or
/// none. Samples are positions on the x axis, levels are 0 to 255. A call comes
/// after the editor has changed its points, so that they may be read from it; the
/// sink must not press buttons of its own on the editor meanwhile.
///
/// The order of the operations is the contract. Five raw slots, no destructor.
class I_SplineCtrlEditWndEvent {
 public:
  /// Slot 0. The pointer moved inside the plot, to this place; while a point is
  /// dragged this comes ahead of OnPointMoved and does not know its limits.
  virtual void OnMouseOverValue(uint32_t sample, uint8_t level) = 0;

  /// Slot 1. The pointer moved outside the plot; sent for every such move.
  virtual void OnMouseLeavePlot() = 0;

  /// Slot 2. The mouse added a point.
  virtual void OnPointAdded(uint32_t sample, uint8_t level) = 0;

  /// Slot 3. The mouse removed the point that stood here.
  virtual void OnPointRemoved(uint32_t sample, uint8_t level) = 0;

  /// Slot 4. The mouse dragged a point; the new place is the one it really took.
  /// Sent for every move of the pointer, also when the two are the same.
  virtual void OnPointMoved(uint32_t oldSample, uint8_t oldLevel, uint32_t newSample,
                            uint8_t newLevel) = 0;

 protected:
  ~I_SplineCtrlEditWndEvent() = default;
};

}  // namespace velora
