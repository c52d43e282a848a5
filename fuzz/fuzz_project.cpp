// A project file: read, told, written and read again.
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/IniFile.h"
#include "host/Project.h"
#include "host/ProjectDiff.h"

namespace {

using namespace velora;

/// What the store reads is what the plain class reads; loading alone changes no byte.
void CheckStore(std::string_view text) {
  ProjectStore store;
  if (!store.LoadProjectText(text)) return;
  if (store.ProjectText() != text) __builtin_trap();
  C_CUIniFile plain;
  plain.LoadText(text);
  std::string section;
  for (const IniLine& line : store.Document().Lines()) {
    if (line.kind == IniLine::kSection) section = line.name;
    if (line.kind != IniLine::kEntry) continue;
    const char* const label = line.name.c_str();
    const char* const here = store.GetString(section.c_str(), label, kIniText, kMsgNone);
    const std::string value = here ? here : "(none)";
    const char* const there = plain.GetString(section.c_str(), label, kIniText, kMsgNone);
    if (value != (there ? there : "(none)")) __builtin_trap();
  }
}

/// A project that is read without a fault means the same once it is saved, and saving it
/// once more changes nothing.
void CheckProject(std::string_view text) {
  ProjectReport report;
  const auto project = Project::LoadText(text, report);
  if (!project) {
    if (report.faults.empty()) __builtin_trap();
    return;
  }
  const auto saved = project->SaveText();
  if (!saved) return;
  const auto again = Project::LoadText(saved.Value(), report);
  if (!again || !CompareProjects(*project, *again).empty()) __builtin_trap();
  const auto twice = again->SaveText();
  if (!twice || twice.Value() != saved.Value()) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckStore(text);
  CheckProject(text);
  return 0;
}
