// A module of the system, called as any host may call it: by slot number alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/Isolate.h"
#include "platform/Module.h"

namespace velora::cli {

/// What a check found. Checks end with it from any depth; whoever runs them catches it.
class Finding : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws a Finding with the text unless the condition holds.
inline void Demand(bool condition, const std::string& text) {
  if (!condition) throw Finding(text);
}

/// Throws a Finding unless the answer is the one expected.
inline void DemandAnswer(const char* call, int32_t answer, int32_t expected) {
  Demand(answer == expected, std::string(call) + " gave " + std::to_string(answer) + ", not " +
                                 std::to_string(expected));
}

/// Makes a call; what it throws becomes a Finding that names it.
template <typename Call>
auto Guarded(const char* name, const Call& call) {
  NoteStep(name);
  try {
    return call();
  } catch (...) {
    throw Finding(std::string("an exception came out of ") + name);
  }
}

/// An object behind a table, without its class.
class ProbedObject {
 public:
  explicit ProbedObject(void* object) : object_(object) {}

  void* Address() const { return object_; }

  /// Calls the operation in a raw slot; the types of the arguments must be exactly its own.
  template <typename Answer, typename... Arguments>
  Answer Call(const char* name, size_t slot, Arguments... arguments) const {
    using Operation = Answer (*)(void*, Arguments...);
    void* const* const table = *static_cast<void* const* const*>(object_);
    const auto operation = reinterpret_cast<Operation>(table[slot]);
    return Guarded(name, [&] { return operation(object_, arguments...); });
  }

 private:
  void* object_;
};

/// A loaded module that hands out objects through CreateServiceInstance.
class ProbedModule {
 public:
  /// A Finding when it cannot be loaded or lacks the export.
  explicit ProbedModule(const std::string& file);

  int32_t Create(int32_t id, void** out) const;

  /// An object of service 1, which every module of that form has.
  ProbedObject Make() const;

 private:
  LoadedModule module_;
  void* create_;
};

/// Throws a Finding when `action` takes memory that it does not give back: it runs a few
/// times to warm up, and then often enough that a few bytes a run show.
template <typename Action>
void DemandNoLeak(const char* name, const Action& action) {
  constexpr int kWarmUp = 30;
  constexpr int kRuns = 300;
  constexpr int64_t kLeastLeak = 8;  // bytes a run; less is the heap's own noise
  for (int i = 0; i < kWarmUp; ++i) action();
  const auto before = static_cast<int64_t>(GetHeapBytesInUse());
  for (int i = 0; i < kRuns; ++i) action();
  const int64_t each = (static_cast<int64_t>(GetHeapBytesInUse()) - before) / kRuns;
  Demand(each < kLeastLeak,
         std::string(name) + " keeps about " + std::to_string(each) + " bytes a call");
}

}  // namespace velora::cli
