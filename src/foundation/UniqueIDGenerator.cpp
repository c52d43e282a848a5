#include "foundation/UniqueIDGenerator.h"

namespace velora {

uint32_t C_UniqueIDGenerator::Get() {
  if (freeIDs_.empty()) return nextID_++;
  const uint32_t id = freeIDs_.back();
  freeIDs_.pop_back();
  isFree_[id] = false;
  return id;
}

void C_UniqueIDGenerator::Free(uint32_t id) {
  if (id == 0 || id >= nextID_) return;
  if (id >= isFree_.size()) isFree_.resize(std::size_t{id} + 1);
  if (isFree_[id]) return;
  isFree_[id] = true;
  freeIDs_.push_back(id);
}

void C_UniqueIDGenerator::Reset() {
  nextID_ = 1;
  freeIDs_.clear();
  isFree_.clear();
}

}  // namespace velora
