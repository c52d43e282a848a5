// Objects that must be gone before the module goes, counted in debug builds.
#pragma once

#include <string>

#include "platform/System.h"

namespace velora {

/// Set by the build; see velora_module.
inline constexpr bool kCountObjects = VELORA_COUNT_OBJECTS;

/// The living objects of one kind. Goes with the module, and then tells which of
/// them it outlives.
class ObjectCounter {
 public:
  constexpr explicit ObjectCounter(const char* kind) : kind_(kind) {}
  ObjectCounter(const ObjectCounter&) = delete;
  ObjectCounter& operator=(const ObjectCounter&) = delete;
  ~ObjectCounter() {
    if (count_ == 0) return;
    WriteStandardError("PartCatalog: unloaded before " + std::to_string(count_) + " " + kind_ +
                       " was released\n");
  }

  int Count() const { return count_; }

 private:
  friend class Counted;

  const char* kind_;
  int count_ = 0;
};

extern ObjectCounter liveCatalogs;
extern ObjectCounter liveChips;

/// A member that counts the object it stands in.
class Counted {
 public:
  explicit Counted(ObjectCounter& counter) : counter_(counter) { Change(+1); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { Change(-1); }

 private:
  void Change(int change) {
    if constexpr (kCountObjects) counter_.count_ += change;
  }

  ObjectCounter& counter_;
};

}  // namespace velora
