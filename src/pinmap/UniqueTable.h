// A list in which no two entries have the same index.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

namespace velora {

/// Entries in the order they were added, until Sort. `IndexOf` gives an entry's index; it
/// may be a member pointer. Adding takes logarithmic time, so that a long table in a
/// project opens as fast as a short one.
template <typename T, auto IndexOf>
class T_UniqueTable {
 public:
  const std::vector<T>& Entries() const { return entries_; }
  bool Has(int32_t index) const { return used_.contains(index); }

  /// False, with nothing added, when the index is in use.
  bool Add(const T& entry) {
    if (!used_.insert(std::invoke(IndexOf, entry)).second) return false;
    entries_.push_back(entry);
    return true;
  }

  void Clear() {
    entries_.clear();
    used_.clear();
  }

  void Sort() { std::ranges::sort(entries_, {}, IndexOf); }

 private:
  std::vector<T> entries_;
  std::set<int32_t> used_;
};

}  // namespace velora
