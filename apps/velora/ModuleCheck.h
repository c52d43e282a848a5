// Whether a module of the system keeps its promises, found out from outside.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/Status.h"

namespace velora::cli {

/// What the checks are given.
struct ModuleFacts {
  std::string file;
  std::string directory;  ///< of the file, with its separator
  std::string part;       ///< a part number that the module should know
};

/// One promise. `run` throws a Finding when it is not kept.
struct ModuleCheck {
  const char* name;
  const char* what;  ///< what is promised
  void (*run)(const ModuleFacts& facts);
};

/// A kind of module: its exports, and what its objects promise.
struct ModuleKind {
  const char* name;
  const char* baseName;                  ///< of its file
  std::span<const char* const> exports;  ///< all that it exports, sorted
  std::span<const ModuleCheck> checks;   ///< beside those of every module
};

std::span<const ModuleKind> AllModuleKinds();

/// By name; else by the base name of the file, and by what it exports; null when none fits.
const ModuleKind* FindModuleKind(const std::string& name);
const ModuleKind* GuessModuleKind(const ModuleFacts& facts);

struct ModuleVerdict {
  const char* name;
  const char* what;
  std::string finding;  ///< empty: the promise is kept
};

/// Runs all checks, each in a process of its own that may take `seconds`.
std::vector<ModuleVerdict> CheckModule(const ModuleFacts& facts, const ModuleKind& kind,
                                       double seconds);

// The rows of the kinds that have objects.
std::span<const ModuleCheck> WizardChecks();
std::span<const ModuleCheck> CatalogueChecks();

}  // namespace velora::cli
