#include "host/ProjectDiff.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "host/PinMapWords.h"
#include "host/Project.h"
#include "host/ProjectStore.h"

namespace velora {
namespace {

constexpr char kNothing[] = "nothing";

using Differences = std::vector<ProjectDifference>;
using Entries = std::vector<std::pair<std::string, std::string>>;  // what, value

std::string YesNo(bool value) { return value ? "yes" : "no"; }

void Compare(std::string what, const std::string& first, const std::string& second,
             Differences& differences) {
  if (first != second) differences.push_back({std::move(what), first, second});
}

/// Entries of two lists by what they are, in the order of the first list and then of the
/// second.
void CompareEntries(const Entries& first, const Entries& second, Differences& differences) {
  const std::map<std::string, std::string> inSecond(second.begin(), second.end());
  std::set<std::string> seen;
  for (const auto& [what, value] : first) {
    seen.insert(what);
    const auto found = inSecond.find(what);
    Compare(what, value, found == inSecond.end() ? kNothing : found->second, differences);
  }
  for (const auto& [what, value] : second) {
    if (!seen.contains(what)) differences.push_back({what, kNothing, value});
  }
}

void CompareFacts(const FactValues& first, const FactValues& second, const char* section,
                  Differences& differences) {
  for (const FactRow& row : AllFacts()) {
    if (std::string_view(row.section) != section) continue;
    // Some values may be missing, which is not the same as 0.
    const auto text = [&row](const FactValues& facts) {
      const bool missing = row.optional && !facts.Has(row.fact);
      return missing ? std::string(kNothing) : FactText(row, facts.Get(row.fact));
    };
    Compare(row.words, text(first), text(second), differences);
  }
}

Entries SoundEntries(const ProjectData& data) {
  Entries entries;
  for (const ProjectSound& sound : data.sounds) {
    entries.emplace_back("sound " + sound.name, sound.path);
  }
  return entries;
}

Entries OutEntries(const ProjectData& data) {
  Entries entries;
  for (size_t i = 0; i < data.outs.size(); ++i) {
    const std::string what = "OUT" + std::to_string(i + 1);
    entries.emplace_back(what, PinPlaceText(data.outs[i].place));
    if (!data.outs[i].name.empty()) entries.emplace_back(what + ": name", data.outs[i].name);
  }
  return entries;
}

void AddPlaces(const char* what, const std::vector<PinPlace>& places, Entries& entries) {
  for (size_t i = 0; i < places.size(); ++i) {
    entries.emplace_back("hand-made map: " + std::string(what) + " " + std::to_string(i),
                         PinPlaceText(places[i]));
  }
}

Entries UserMapEntries(const ProjectData& data) {
  Entries entries;
  for (size_t i = 0; i < data.cells.size(); ++i) {
    const MatrixCell& cell = data.cells[i];
    entries.emplace_back("hand-made map: cell " + std::to_string(i),
                         "key " + std::to_string(cell.key) + " at " + PinPlaceText(cell.lineA) +
                             " and " + PinPlaceText(cell.lineB));
  }
  AddPlaces("input", data.inputs, entries);
  AddPlaces("single pin", data.singles, entries);
  AddPlaces("output", data.outputs, entries);
  AddPlaces("fixed pin", data.fixed, entries);
  return entries;
}

Entries SettingEntries(const ProjectData& data) {
  Entries entries;
  for (const ProjectSetting& setting : data.settings) {
    entries.emplace_back("setting " + SettingKey(setting.group, setting.number),
                         std::to_string(setting.value));
  }
  return entries;
}

/// The keys and values that a pin map saves, in their order, with exact numbers.
Entries PinMapEntries(C_VeloraPinMapInfoMgr& pinMap) {
  ProjectStore store;
  pinMap.Save(&store);
  Entries entries;
  for (const IniLine& line : store.Document().Lines()) {
    if (line.kind == IniLine::kEntry) entries.emplace_back(line.name, std::string(line.Value()));
  }
  return entries;
}

bool IsPinUsed(const C_VeloraPinMapInfoMgr& pinMap, uint32_t pin) {
  const PinRecord* const record =
      pinMap.GetPin(pin, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  return record && record->Convert;
}

void ComparePinMaps(C_VeloraPinMapInfoMgr& first, C_VeloraPinMapInfoMgr& second,
                    Differences& differences) {
  Differences found;
  CompareEntries(PinMapEntries(first), PinMapEntries(second), found);
  for (ProjectDifference& difference : found) {
    const std::string key = difference.what;
    if (const auto pin = PinOfKey(key)) {
      // The other keys of a pin that is used on one side only say nothing more.
      const bool bothUse = IsPinUsed(first, *pin) && IsPinUsed(second, *pin);
      if (!bothUse && !key.ends_with("_Convert")) continue;
    }
    const auto inWords = [&key](const std::string& value) {
      return value == kNothing ? value : ValueInWords(key, value);
    };
    differences.push_back({KeyInWords(key), inWords(difference.first), inWords(difference.second)});
  }
}

}  // namespace

std::vector<ProjectDifference> CompareProjects(Project& first, Project& second) {
  const ProjectData& a = first.Data();
  const ProjectData& b = second.Data();
  Differences differences;
  Compare("part", a.partNumber, b.partNumber, differences);
  CompareFacts(a.facts, b.facts, kProjectSection, differences);
  CompareEntries(SoundEntries(a), SoundEntries(b), differences);
  Compare("has resources", YesNo(a.hasResources), YesNo(b.hasResources), differences);
  CompareFacts(a.facts, b.facts, kResourcesSection, differences);
  Compare("has outputs", YesNo(a.hasOutputs), YesNo(b.hasOutputs), differences);
  CompareFacts(a.facts, b.facts, kOutputsSection, differences);
  CompareEntries(OutEntries(a), OutEntries(b), differences);
  Compare("has a script", YesNo(a.hasScript), YesNo(b.hasScript), differences);
  CompareFacts(a.facts, b.facts, kScriptSection, differences);
  CompareEntries(UserMapEntries(a), UserMapEntries(b), differences);
  Compare("has settings", YesNo(a.hasSettings), YesNo(b.hasSettings), differences);
  CompareEntries(SettingEntries(a), SettingEntries(b), differences);
  ComparePinMaps(first.PinMap(), second.PinMap(), differences);
  return differences;
}

}  // namespace velora
