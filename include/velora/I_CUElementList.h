// A list of plain values as it is read and filled across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// An ordered list of values with a reading cursor; each value has an id.
///
/// Getters copy the value to `value`, which must not be null, and its id to
/// `id`, which may be; they return 1, or 0 without touching either. A new list
/// stands before its first value.
///
/// The order of the operations is the contract. Nine operations, ten raw slots:
/// the destructor takes two.
template <typename T>
class I_CUElementList {
 public:
  /// Slot 0.
  virtual int32_t GetCount() = 0;

  /// Slot 1. The next GetNext gives the first value.
  virtual void Rewind() = 0;

  /// Slot 2. The next GetPrev gives the last value.
  virtual void SeekEnd() = 0;

  /// Slot 3. 0 when there is no further value; the cursor then stays.
  virtual int32_t GetNext(T* value, uint32_t* id) = 0;

  /// Slot 4. 0 at the first value; the cursor then stays.
  virtual int32_t GetPrev(T* value, uint32_t* id) = 0;

  /// Slot 5. 0 for an index below 0 or beyond the last.
  virtual int32_t GetAt(int32_t index, T* value, uint32_t* id) = 0;

  /// Slot 6. Appends the value; its new id goes to `id`, which may be null.
  /// Always 1.
  virtual int32_t Add(T value, uint32_t* id) = 0;

  /// Slot 7. Adds every value of the other list, with new ids. 0 for a null list.
  virtual int32_t Append(I_CUElementList<T>* other) = 0;

  /// Slots 8 and 9.
  virtual ~I_CUElementList() = default;
};

}  // namespace velora
