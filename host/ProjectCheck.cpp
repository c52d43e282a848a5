#include "host/ProjectCheck.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/AsciiText.h"
#include "foundation/IniFile.h"
#include "foundation/StringHelpers.h"
#include "host/ProjectFacts.h"
#include "host/ProjectStore.h"
#include "pinmap/ProjectSection.h"
#include "pinmap/VeloraPinMapInfoMgr.h"

namespace velora {
namespace {

constexpr size_t kMostSentences = 50;  // of faults and of warnings; nobody reads more

constexpr const char* kOwnSections[] = {kProjectSection, kSoundsSection, kResourcesSection,
                                        kOutputsSection, kScriptSection, kSettingsSection,
                                        kPinMapSection,  kMotorSection};

bool IsOwnSection(std::string_view name) {
  return std::ranges::any_of(kOwnSections,
                             [name](const char* own) { return EqualsNoCase(own, name); });
}

std::string LineText(const IniLine& line) { return "line " + std::to_string(line.number) + ": "; }

/// A key of the section that differs only in case, or nothing.
std::string NearKey(std::string_view section, std::string_view key) {
  for (const FactRow& row : AllFacts()) {
    if (EqualsNoCase(row.section, section) && EqualsNoCase(row.key, key)) {
      return std::string("; did you mean ") + row.key;
    }
  }
  return {};
}

/// Adds a sentence, or to the number of those left out.
void Tell(std::vector<std::string>& sentences, size_t& more, std::string sentence) {
  if (sentences.size() < kMostSentences) {
    sentences.push_back(std::move(sentence));
  } else {
    ++more;
  }
}

void TellMore(std::vector<std::string>& sentences, size_t more) {
  if (more) sentences.push_back("and " + std::to_string(more) + " more of that kind");
}

struct LeftOut {
  size_t faults = 0;
  size_t warnings = 0;
};

void CheckEntry(const ProjectStore& store, const std::string& section, const IniLine& line,
                ProjectReport& report, LeftOut& more) {
  if (line.bare) {
    Tell(report.faults, more.faults,
         LineText(line) + "'" + std::string(line.Value()) +
             "' is neither [section] nor key = value");
    return;
  }
  const IniLine* const counts = store.Document().Find(section, line.name);
  if (counts != &line) {
    Tell(report.warnings, more.warnings,
         LineText(line) + line.name + " stands again in line " + std::to_string(counts->number) +
             ", which counts");
  } else if (!store.WasUsed(section, line.name)) {
    Tell(report.warnings, more.warnings,
         LineText(line) + "nothing reads '" + line.name + "' in [" + section + "]" +
             NearKey(section, line.name));
  }
}

void CheckEntries(const ProjectStore& store, ProjectReport& report) {
  std::string section;
  LeftOut more;
  for (const IniLine& line : store.Document().Lines()) {
    if (line.erased || line.kind == IniLine::kOther) continue;
    if (line.kind == IniLine::kSection) {
      section = line.name;
    } else if (IsOwnSection(section) || line.bare) {
      CheckEntry(store, section, line, report, more);
    }
  }
  TellMore(report.faults, more.faults);
  TellMore(report.warnings, more.warnings);
}

/// A number that was cut on its way into the pin map comes out of it as another one.
void CheckNumbers(const ProjectStore& store, C_VeloraPinMapInfoMgr& pinMap, ProjectReport& report) {
  C_CUIniFile saved;
  pinMap.Save(&saved);
  std::string section;
  for (const IniLine& line : store.Document().Lines()) {
    if (line.kind == IniLine::kSection) section = line.name;
    if (line.kind != IniLine::kEntry || !IsInteger(line.Value())) continue;
    if (!EqualsNoCase(section, kPinMapSection) && !EqualsNoCase(section, kMotorSection)) continue;
    if (store.Document().Find(section, line.name) != &line) continue;
    const char* const text =
        saved.GetString(section.c_str(), line.name.c_str(), kIniText, kMsgNone);
    if (!text || !IsInteger(text) || ReadInt(text) == ReadInt(line.Value())) continue;
    report.faults.push_back(LineText(line) + line.name + ": '" + std::string(line.Value()) +
                            "' does not fit; it would be read as " + text);
  }
}

}  // namespace

void CheckProjectText(const ProjectStore& store, C_VeloraPinMapInfoMgr& pinMap,
                      ProjectReport& report) {
  for (const ProjectStore::Misread& misread : store.Misreads()) {
    report.faults.push_back("line " + std::to_string(misread.line) + ": " + misread.label + ": '" +
                            misread.value + "' is not " + misread.wanted);
  }
  CheckNumbers(store, pinMap, report);
  CheckEntries(store, report);
}

}  // namespace velora
