// What every object that can stand in a list has.
#pragma once

#include <cstdint>

namespace velora {

/// Base of list items.
class C_CUItem {
 public:
  /// Unique in the list that holds the item; 0 until a list takes it. Written by
  /// lists alone.
  uint32_t ID = 0;

 protected:
  C_CUItem() = default;
  ~C_CUItem() = default;

  /// A copy of an item is in no list yet; an assignment changes what an item
  /// holds, not where it stands.
  C_CUItem(const C_CUItem&) {}
  C_CUItem& operator=(const C_CUItem&) { return *this; }
};

}  // namespace velora
