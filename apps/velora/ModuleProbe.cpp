#include "ModuleProbe.h"

#include <utility>

#include "platform/Path.h"

namespace velora::cli {
namespace {

constexpr char kEntry[] = "CreateServiceInstance";

LoadedModule LoadOrFind(const std::string& file) {
  Result<LoadedModule> loaded = LoadedModule::Load(Path::Native(file));
  if (!loaded) throw Finding("cannot be loaded: " + loaded.Message());
  return std::move(loaded.Value());
}

}  // namespace

ProbedModule::ProbedModule(const std::string& file)
    : module_(LoadOrFind(file)), create_(module_.Find(kEntry)) {
  Demand(create_ != nullptr, std::string("has no export ") + kEntry);
}

int32_t ProbedModule::Create(int32_t id, void** out) const {
  using Entry = int32_t (*)(int32_t, void**);
  return Guarded(kEntry, [&] { return reinterpret_cast<Entry>(create_)(id, out); });
}

ProbedObject ProbedModule::Make() const {
  void* object = nullptr;
  DemandAnswer("CreateServiceInstance(1)", Create(1, &object), 1);
  Demand(object != nullptr, "CreateServiceInstance(1) gave 1 and no object");
  return ProbedObject(object);
}

}  // namespace velora::cli
