#include "ModuleCheck.h"

#include <algorithm>
#include <string_view>

#include "ModuleProbe.h"
#include "foundation/AsciiText.h"
#include "platform/ModuleExports.h"

namespace velora::cli {
namespace {

constexpr const char* kServiceExports[] = {"CreateServiceInstance"};
constexpr const char* kGeneratorExports[] = {"SetChipPartNum", "SetChipPartNumWithCvtMethod"};
constexpr const char* kRamPlanExports[] = {"GetAvailableRam"};
constexpr const char* kFanoutExports[] = {"CreatePortFanoutUtil"};

/// The first few names and how many more there are.
std::string Joined(const std::vector<std::string>& names) {
  constexpr size_t kShown = 5;
  std::string text;
  for (size_t i = 0; i < std::min(names.size(), kShown); ++i) text += (i ? ", " : "") + names[i];
  if (names.size() > kShown) text += " and " + std::to_string(names.size() - kShown) + " more";
  return text.empty() ? "nothing" : text;
}

std::vector<std::string> ExportsOf(const std::string& file) {
  Result<std::vector<std::string>> exports = ListModuleExports(Path::Native(file));
  if (!exports) throw Finding(exports.Message());
  return exports.Value();
}

// What every module promises.

void CheckExports(const ModuleFacts& facts, const ModuleKind& kind) {
  const std::vector<std::string> wanted(kind.exports.begin(), kind.exports.end());
  const std::vector<std::string> found = ExportsOf(facts.file);
  Demand(found == wanted, "exports " + Joined(found) + "; expected " + Joined(wanted));
}

void CheckLoad(const ModuleFacts& facts, const ModuleKind& kind) {
  {
    const Result<LoadedModule> module = LoadedModule::Load(Path::Native(facts.file));
    Demand(module.Ok(), "cannot be loaded: " + module.Message());
    for (const char* const name : kind.exports) {
      Demand(module->Find(name) != nullptr, std::string("has no export ") + name);
    }
  }
  Demand(!LoadedModule::IsLoaded(facts.file), "is still mapped after it was closed");
}

struct CommonCheck {
  const char* name;
  const char* what;
  void (*run)(const ModuleFacts& facts, const ModuleKind& kind);
};

constexpr CommonCheck kCommonChecks[] = {
    {"exports", "exports what it is loaded for and nothing else", CheckExports},
    {"load", "can be loaded, and is gone once it is closed", CheckLoad},
};

/// The finding of a check in a process of its own; empty when there is none.
template <typename Check>
std::string FindingOf(const Check& check, double seconds) {
  const auto work = [&check]() -> std::string {
    try {
      check();
      return {};
    } catch (const Finding& finding) {
      return finding.what();
    } catch (...) {
      return "the check itself failed";
    }
  };
  const Result<std::string> outcome = RunIsolated(work, seconds);
  return outcome ? outcome.Value() : outcome.Message();
}

std::string BaseName(const std::string& file) {
  const std::string name = file.substr(file.rfind('/') + 1);
  return name.substr(0, name.find('.'));
}

}  // namespace

std::span<const ModuleKind> AllModuleKinds() {
  static const ModuleKind kKinds[] = {
      {"wizard", "VeloraUtil", kServiceExports, WizardChecks()},
      {"catalogue", "PartCatalog", kServiceExports, CatalogueChecks()},
      {"generator", "VLRCodeGen", kGeneratorExports, {}},
      {"ram-plan", "RamPlan", kRamPlanExports, {}},
      {"fan-out", "PortFanoutUtil", kFanoutExports, {}},
  };
  return kKinds;
}

const ModuleKind* FindModuleKind(const std::string& name) {
  const auto kinds = AllModuleKinds();
  const auto found =
      std::ranges::find_if(kinds, [&name](const ModuleKind& kind) { return name == kind.name; });
  return found == kinds.end() ? nullptr : &*found;
}

const ModuleKind* GuessModuleKind(const ModuleFacts& facts) {
  const auto kinds = AllModuleKinds();
  const std::string base = BaseName(facts.file);
  for (const ModuleKind& kind : kinds) {
    if (StartsWithNoCase(base, kind.baseName)) return &kind;
  }
  const auto exports = ListModuleExports(Path::Native(facts.file));
  if (!exports) return nullptr;
  for (const ModuleKind& kind : kinds) {
    const bool all = std::ranges::all_of(kind.exports, [&exports](const char* name) {
      return std::ranges::find(exports.Value(), name) != exports.Value().end();
    });
    if (all) return &kind;
  }
  return nullptr;
}

std::vector<ModuleVerdict> CheckModule(const ModuleFacts& facts, const ModuleKind& kind,
                                       double seconds) {
  std::vector<ModuleVerdict> verdicts;
  for (const CommonCheck& check : kCommonChecks) {
    verdicts.push_back(
        {check.name, check.what, FindingOf([&] { check.run(facts, kind); }, seconds)});
  }
  for (const ModuleCheck& check : kind.checks) {
    verdicts.push_back({check.name, check.what, FindingOf([&] { check.run(facts); }, seconds)});
  }
  return verdicts;
}

}  // namespace velora::cli
