// The reading cursor that all lists share.
#pragma once

#include <algorithm>
#include <cstdint>

namespace velora {

/// An index from -1 (before the first item) to the number of items (behind the
/// last one).
class ListCursor {
 public:
  explicit ListCursor(int32_t index) : index_(index) {}

  int32_t Index() const { return index_; }
  void Rewind() { index_ = -1; }
  void SeekEnd(int32_t count) { index_ = count; }

  /// Moves to the next item; false, and stays, when there is none.
  bool MoveNext(int32_t count) {
    if (index_ >= count - 1) return false;
    ++index_;
    return true;
  }

  /// Moves to the previous item; false, and stays, when there is none.
  bool MovePrev(int32_t count) {
    const int32_t from = std::min(index_, count);
    if (from < 1) return false;
    index_ = from - 1;
    return true;
  }

  /// An item came in at `index`: the cursor goes on standing on its item.
  void OnInsert(int32_t index) {
    if (index <= index_) ++index_;
  }

  /// An item went and `count` are left: the cursor keeps its index, so that it
  /// now stands on the item that moved up.
  void OnRemove(int32_t count) { index_ = std::min(index_, count); }

 private:
  int32_t index_;
};

}  // namespace velora
