// What the chip catalogue promises (I_ChipCatalog.h, I_ChipInfo.h).
#include <array>

#include "ModuleCheck.h"
#include "ModuleProbe.h"
#include "foundation/AsciiText.h"

namespace velora::cli {
namespace {

constexpr size_t kListGetAt = 5;

std::string CatalogueFile(const ModuleFacts& facts) { return facts.directory + "ChipInfo.cfg"; }

class ProbedCatalogue {
 public:
  explicit ProbedCatalogue(const ProbedModule& module) : object_(module.Make()) {}

  void Destroy() const { object_.Call<void>("Destroy", 1); }
  int32_t Load(const char* path) const { return object_.Call<int32_t>("Load", 2, path); }
  void* GetChip(const char* part) const { return object_.Call<void*>("GetChip", 3, part); }

  ProbedObject NeedChip(const std::string& part) const {
    void* const chip = GetChip(part.c_str());
    Demand(chip != nullptr, "GetChip knows no '" + part + "'");
    return ProbedObject(chip);
  }

 private:
  ProbedObject object_;
};

void Release(const ProbedObject& chip) { chip.Call<void>("Release", 0); }

int32_t GetInterface(const ProbedObject& chip, int32_t id, void** out) {
  return chip.Call<int32_t>("GetInterface", 1, id, out);
}

void CheckEntry(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  for (const int32_t id : {0, 2, -1}) {
    void* const mark = const_cast<char*>(facts.file.data());
    void* out = mark;
    const std::string call = "CreateServiceInstance(" + std::to_string(id) + ")";
    DemandAnswer(call.c_str(), module.Create(id, &out), 0);
    Demand(out == mark, call + " changed what it was to leave alone");
  }
  DemandAnswer("CreateServiceInstance(1) without a place for the object", module.Create(1, nullptr),
               0);
}

void CheckLoading(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedCatalogue catalogue(module);
  Demand(!catalogue.GetChip(facts.part.c_str()), "GetChip knows a part before Load");
  DemandAnswer("Load(null)", catalogue.Load(nullptr), 0);
  DemandAnswer("Load of no file", catalogue.Load((facts.directory + "no such file").c_str()), 0);
  DemandAnswer("Load", catalogue.Load(CatalogueFile(facts).c_str()), 1);
  DemandAnswer("Load of no file", catalogue.Load((facts.directory + "no such file").c_str()), 0);
  Release(catalogue.NeedChip(facts.part));
  catalogue.Destroy();
}

void CheckChips(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedCatalogue catalogue(module);
  DemandAnswer("Load", catalogue.Load(CatalogueFile(facts).c_str()), 1);
  Demand(!catalogue.GetChip(nullptr), "GetChip(null) gave a chip");
  Demand(!catalogue.GetChip(""), "GetChip of an empty part gave a chip");
  Demand(!catalogue.GetChip("no such part"), "GetChip of an unknown part gave a chip");
  Release(catalogue.NeedChip(ToLower(facts.part)));
  const ProbedObject first = catalogue.NeedChip(facts.part);
  const ProbedObject second = catalogue.NeedChip(facts.part);
  Demand(first.Address() != second.Address(), "two chips are one object");
  Release(first);
  void* out = const_cast<char*>(facts.file.data());
  DemandAnswer("GetInterface(99)", GetInterface(second, 99, &out), 0);
  Demand(out == nullptr, "GetInterface(99) left the place as it was");
  DemandAnswer("GetInterface without a place", GetInterface(second, 4, nullptr), 0);
  Release(second);
  catalogue.Destroy();
}

/// A list of ranges: its count agrees with what its places hold.
void CheckList(const char* name, void* list) {
  const ProbedObject object(list);
  const int32_t count = object.Call<int32_t>("GetCount", 0);
  Demand(count >= 0 && count < 10000, std::string(name) + " has an absurd count");
  const auto at = [&object](int32_t i) { return object.Call<void*>("GetAt", kListGetAt, i); };
  for (int32_t i = 0; i < count; ++i) {
    Demand(at(i) != nullptr, std::string(name) + " has a gap");
    const ProbedObject range(at(i));
    Demand(range.Call<const char*>("GetName", 0) != nullptr,
           std::string(name) + " has a range without a name");
  }
  Demand(!at(-1) && !at(count), std::string(name) + " answers for places that it lacks");
}

void CheckInterfaces(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedCatalogue catalogue(module);
  DemandAnswer("Load", catalogue.Load(CatalogueFile(facts).c_str()), 1);
  const ProbedObject chip = catalogue.NeedChip(facts.part);
  std::array<void*, 3> found{};
  DemandAnswer("GetInterface(3)", GetInterface(chip, 3, &found[0]), 1);
  DemandAnswer("GetInterface(4)", GetInterface(chip, 4, &found[1]), 1);
  DemandAnswer("GetInterface(7)", GetInterface(chip, 7, &found[2]), 1);
  Demand(found[0] && found[1] && found[2], "GetInterface gave 1 and no interface");
  const ProbedObject resources(found[1]);
  Demand(resources.Call<int32_t>("GetRamSize", 0) > 0, "the chip has no RAM");
  CheckList("GetPortList", resources.Call<void*>("GetPortList", 2));
  CheckList("GetReservedRanges", resources.Call<void*>("GetReservedRanges", 3));
  CheckList("GetPwmRanges", ProbedObject(found[2]).Call<void*>("GetPwmRanges", 0));
  Release(chip);
  catalogue.Destroy();
}

void CheckLeaks(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedCatalogue catalogue(module);
  DemandAnswer("Load", catalogue.Load(CatalogueFile(facts).c_str()), 1);
  DemandNoLeak("a catalogue", [&module] { ProbedCatalogue(module).Destroy(); });
  DemandNoLeak("a chip", [&] {
    const ProbedObject chip = catalogue.NeedChip(facts.part);
    void* out = nullptr;
    for (const int32_t id : {3, 4, 7, 99}) GetInterface(chip, id, &out);
    Release(chip);
  });
  DemandNoLeak("GetChip of an unknown part", [&] { catalogue.GetChip("no such part"); });
  catalogue.Destroy();
}

constexpr ModuleCheck kChecks[] = {
    {"entry", "answers 0 for other ids and where there is no place for the object", CheckEntry},
    {"loading", "reads its file, and keeps what it read when a later one fails", CheckLoading},
    {"chips", "makes a chip for a known part, in any case, and none for others", CheckChips},
    {"interfaces", "has the interfaces of a chip with sound lists", CheckInterfaces},
    {"leaks", "gives back what it takes", CheckLeaks},
};

}  // namespace

std::span<const ModuleCheck> CatalogueChecks() { return kChecks; }

}  // namespace velora::cli
