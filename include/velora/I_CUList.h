// A list of objects as it is read across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// An ordered list of items with a reading cursor. Each item carries an id that
/// no other item of the list has; 0 is no id.
///
/// Items are borrowed from the list: they stay valid until the list drops them.
/// A list is shared by AddRef and Release; the maker holds the first reference.
///
/// The order of the operations is the contract. Ten operations, eleven raw
/// slots: the destructor takes two.
template <typename T>
class I_CUList {
 public:
  /// Slot 0.
  virtual int32_t GetCount() = 0;

  /// Slot 1. The next GetNext gives the first item. A list that has never been
  /// rewound stands on its first item, so that GetNext would skip it.
  virtual void Rewind() = 0;

  /// Slot 2. The next GetPrev gives the last item.
  virtual void SeekEnd() = 0;

  /// Slot 3. Moves on and gives the item, or null when there is no further one;
  /// the cursor then stays.
  virtual T* GetNext() = 0;

  /// Slot 4. Moves back and gives the item, or null at the first; the cursor
  /// then stays.
  virtual T* GetPrev() = 0;

  /// Slot 5. Null for an index below 0 or beyond the last. Leaves the cursor.
  virtual T* GetAt(int32_t index) = 0;

  /// Slot 6. The first item with this id, or null. Leaves the cursor.
  virtual T* FindByID(uint32_t id) = 0;

  /// Slot 7.
  virtual void AddRef() = 0;

  /// Slot 8. The list deletes itself with the last reference.
  virtual void Release() = 0;

  /// Slots 9 and 10.
  virtual ~I_CUList() = default;
};

}  // namespace velora
