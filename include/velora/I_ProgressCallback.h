// How a long operation tells how far it is.
#pragma once

#include <cstdint>

namespace velora {

/// Implemented by whoever waits. The caller keeps the object alive until the
/// operation it was passed to returns; a null pointer means nobody is interested.
///
/// The order of the operations is the contract. Three raw slots.
class I_ProgressCallback {
 public:
  /// Slot 0. The operation starts; called once, and only when it really starts.
  virtual void Begin() = 0;

  /// Slot 1. Whole percents, 0 to 100, never falling. The last one is 100; it may
  /// come twice.
  virtual void Report(int32_t percent) = 0;

  /// Slot 2. The operation is over; called once for each Begin.
  virtual void End() = 0;

 protected:
  ~I_ProgressCallback() = default;
};

}  // namespace velora
