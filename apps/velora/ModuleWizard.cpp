// What the property wizard promises (I_VLRPropertyWizard.h).
#include "ModuleCheck.h"
#include "ModuleProbe.h"

namespace velora::cli {
namespace {

constexpr char kNoPart[] = "no such part";
constexpr int32_t kRunFailed = 2;

/// The wizard by slots.
class ProbedWizard {
 public:
  explicit ProbedWizard(const ProbedModule& module) : object_(module.Make()) {}

  void Release() const { object_.Call<void>("Release", 0); }
  int32_t Init(const char* part) const {
    void* const noWindows = nullptr;
    return object_.Call<int32_t>("Init", 1, noWindows, part);
  }
  int32_t Run(int32_t mode, void* project) const {
    return object_.Call<int32_t>("Run", 2, mode, project, uint32_t{0}, int32_t{1}, int32_t{0},
                                 int32_t{0}, int32_t{0});
  }
  int32_t GenerateCode(int32_t mode, void* project) const {
    return object_.Call<int32_t>("GenerateCode", 3, mode, project, intptr_t{0}, intptr_t{0});
  }
  int32_t HasResourceError() const { return object_.Call<int32_t>("HasResourceError", 4); }
  int32_t SetOutPinNames(const char* const* names, int32_t count) const {
    return object_.Call<int32_t>("SetOutPinNames", 5, names, count);
  }
  std::string GetPartNumber() const {
    const char* const part = object_.Call<const char*>("GetPartNumber", 6);
    Demand(part != nullptr, "GetPartNumber gave null");
    return part;
  }
  void* Address() const { return object_.Address(); }

 private:
  ProbedObject object_;
};

void DemandPart(const ProbedWizard& wizard, const std::string& part) {
  const std::string told = wizard.GetPartNumber();
  Demand(told == part, "GetPartNumber gave '" + told + "' after Init with '" + part + "'");
}

void CheckEntry(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  void* const mark = const_cast<char*>(facts.file.data());
  for (const int32_t id : {0, 2, -1, 0x10001}) {
    void* out = mark;
    const std::string call = "CreateServiceInstance(" + std::to_string(id) + ")";
    DemandAnswer(call.c_str(), module.Create(id, &out), 0);
    Demand(out == mark, call + " changed what it was to leave alone");
  }
}

void CheckNullOut(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  DemandAnswer("CreateServiceInstance(1) without a place for the object", module.Create(1, nullptr),
               0);
}

void CheckObjects(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard first(module);
  const ProbedWizard second(module);
  Demand(first.Address() != second.Address(), "two wizards are one object");
  DemandAnswer("Init", first.Init(facts.part.c_str()), 1);
  Demand(second.GetPartNumber().empty(), "a wizard knows what another one was told");
  first.Release();
  DemandAnswer("Init of a wizard that outlived another", second.Init(facts.part.c_str()), 1);
  DemandPart(second, facts.part);
  second.Release();
}

void CheckSlots(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard wizard(module);
  DemandAnswer("SetOutPinNames(null)", wizard.SetOutPinNames(nullptr, 1), 0);
  DemandAnswer("Init", wizard.Init(facts.part.c_str()), 1);
  DemandPart(wizard, facts.part);
  DemandAnswer("HasResourceError", wizard.HasResourceError(), 0);
  DemandAnswer("Run without a project", wizard.Run(1, nullptr), kRunFailed);
  const int32_t generated = wizard.GenerateCode(1, nullptr);
  Demand(generated == 0 || generated == 1,
         "GenerateCode without a project gave " + std::to_string(generated) + ", not 0 or 1");
  DemandPart(wizard, facts.part);
  wizard.Release();
}

void CheckInit(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard wizard(module);
  DemandAnswer("Run before Init", wizard.Run(1, nullptr), kRunFailed);
  DemandAnswer("Init with null", wizard.Init(nullptr), 0);
  DemandPart(wizard, "");
  DemandAnswer("Init with a part that there is not", wizard.Init(kNoPart), 0);
  DemandPart(wizard, kNoPart);
  for (int i = 0; i < 3; ++i) {
    std::string part = facts.part;
    DemandAnswer("Init, repeated,", wizard.Init(part.c_str()), 1);
    part.assign(part.size(), '?');  // the wizard must have its own copy
    DemandPart(wizard, facts.part);
  }
  DemandAnswer("Init with a part that there is not", wizard.Init(kNoPart), 0);
  DemandAnswer("Run after a failed Init", wizard.Run(1, nullptr), kRunFailed);
  wizard.Release();
}

void CheckNoProject(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard wizard(module);
  DemandAnswer("Init", wizard.Init(facts.part.c_str()), 1);
  for (const int32_t mode : {1, 2, 3}) {
    DemandAnswer("Run without a project", wizard.Run(mode, nullptr), kRunFailed);
    DemandAnswer("HasResourceError", wizard.HasResourceError(), 0);
  }
  wizard.Release();
}

void CheckNames(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard wizard(module);
  const char* const names[] = {"one", nullptr, ""};
  DemandAnswer("SetOutPinNames of three", wizard.SetOutPinNames(names, 3), 1);
  DemandAnswer("SetOutPinNames of none", wizard.SetOutPinNames(names, 0), 1);
  DemandAnswer("SetOutPinNames of -1", wizard.SetOutPinNames(names, -1), 1);
  DemandAnswer("SetOutPinNames(null)", wizard.SetOutPinNames(nullptr, 3), 0);
  wizard.Release();
}

void CheckLeaks(const ModuleFacts& facts) {
  const ProbedModule module(facts.file);
  const ProbedWizard keeper(module);  // keeps the chip catalogue loaded
  const char* const names[] = {"a name that is too long to be kept in place", "two"};
  DemandAnswer("Init", keeper.Init(facts.part.c_str()), 1);
  DemandNoLeak("a wizard", [&module] { ProbedWizard(module).Release(); });
  DemandNoLeak("Init", [&] { keeper.Init(facts.part.c_str()); });
  DemandNoLeak("a failing Init", [&] { keeper.Init(kNoPart); });
  DemandNoLeak("SetOutPinNames", [&] { keeper.SetOutPinNames(names, 2); });
  DemandNoLeak("Run without a project", [&] { keeper.Run(1, nullptr); });
  DemandNoLeak("GenerateCode without a project", [&] { keeper.GenerateCode(1, nullptr); });
  DemandNoLeak("HasResourceError", [&] { keeper.HasResourceError(); });
  DemandNoLeak("GetPartNumber", [&] { keeper.GetPartNumber(); });
  keeper.Release();
}

constexpr ModuleCheck kChecks[] = {
    {"entry", "answers 0 for ids other than 1 and leaves the place alone", CheckEntry},
    {"null", "answers 0 when there is no place for the object", CheckNullOut},
    {"slots", "has the operations in their slots", CheckSlots},
    {"objects", "makes wizards that know nothing of each other", CheckObjects},
    {"init", "can be bound again and again, also after failures", CheckInit},
    {"no-project", "ends a run without a project with 2", CheckNoProject},
    {"names", "takes the names of OUT pins", CheckNames},
    {"leaks", "gives back what it takes", CheckLeaks},
};

}  // namespace

std::span<const ModuleCheck> WizardChecks() { return kChecks; }

}  // namespace velora::cli
