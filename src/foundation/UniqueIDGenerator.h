// Ids of the items of a list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velora {

/// Hands out 32-bit ids from 1 on. Ids given back are handed out again first,
/// the last one given back before the others. 0 is never handed out: it stands
/// for "no id". All operations take constant time.
class C_UniqueIDGenerator {
 public:
  uint32_t Get();

  /// Gives an id back. An id that was never handed out, or is free already, is
  /// ignored.
  void Free(uint32_t id);

  /// As new: the next id is 1.
  void Reset();

 private:
  uint32_t nextID_ = 1;
  std::vector<uint32_t> freeIDs_;  ///< a stack
  std::vector<bool> isFree_;       ///< by id, as long as the highest id given back
};

}  // namespace velora
