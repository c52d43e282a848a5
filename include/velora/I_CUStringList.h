// A list of strings as it is read and filled across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// An ordered list of byte strings with a reading cursor.
///
/// Texts that are handed out are borrowed from the list and valid until it
/// changes. Texts handed in are copied; null counts as the empty string.
///
/// The order of the operations is the contract. Nine operations, ten raw slots:
/// the destructor takes two.
class I_CUStringList {
 public:
  /// Slot 0.
  virtual int32_t GetCount() = 0;

  /// Slot 1. The next GetNext gives the first string. A list that has never been
  /// rewound stands on its first string, so that GetNext would skip it.
  virtual void Rewind() = 0;

  /// Slot 2. The next GetPrev gives the last string.
  virtual void SeekEnd() = 0;

  /// Slot 3. Null when there is no further string; the cursor then stays.
  virtual const char* GetNext() = 0;

  /// Slot 4. Null at the first string; the cursor then stays.
  virtual const char* GetPrev() = 0;

  /// Slot 5. Null for an index below 0 or beyond the last.
  virtual const char* GetAt(int32_t index) = 0;

  /// Slot 6. 1 when the string was appended.
  virtual int32_t Add(const char* text) = 0;

  /// Slot 7. Copies every string of the other list; 0 for a null list.
  virtual int32_t Append(I_CUStringList* other) = 0;

  /// Slots 8 and 9.
  virtual ~I_CUStringList() = default;
};

}  // namespace velora
