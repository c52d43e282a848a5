#include "catalogue/chipfile/ItemCheck.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "catalogue/chipfile/Spelling.h"
#include "foundation/StringHelpers.h"
#include "foundation/StringList.h"

namespace velora {
namespace {

/// A section with more than this above it is told and not looked into: what nobody
/// writes must not keep the check busy for hours.
constexpr size_t kMostAncestors = 256;

bool IsTooDeep(const std::vector<const ItemSection*>& lineage) {
  return lineage.size() > kMostAncestors;
}

std::vector<const ItemSection*> BoundedLineage(const ItemSource& source,
                                               const ItemSection& section) {
  return source.Lineage(section, kMostAncestors + 1);
}

/// Keys that a section says for itself alone.
bool IsOwnKey(std::string_view key) {
  return key == kIsaKey || key == kPartKey || key == kUncheckedKey;
}

bool IsPart(const ItemSection& section) {
  const ItemLabel* const flag = section.Find(kPartKey);
  return flag && flag->value == "1";
}

/// The label that answers a key, and the section it stands in.
struct Found {
  const ItemSection* section = nullptr;
  const ItemLabel* label = nullptr;
};

Found FindIn(const std::vector<const ItemSection*>& lineage, size_t from, std::string_view key) {
  for (size_t i = from; i < lineage.size(); ++i) {
    if (const ItemLabel* const label = lineage[i]->Find(key)) return {lineage[i], label};
  }
  return {};
}

std::string InBrackets(std::string_view name) { return "[" + std::string(name) + "]"; }

/// Collects findings, at most one for a key of a line.
class Findings {
 public:
  explicit Findings(const char* file) : file_(file) {}

  void Add(size_t line, std::string_view section, std::string_view key, std::string message) {
    const auto place = std::pair(line, std::string(key));
    findings_.try_emplace(place, ItemFinding{file_, line, std::string(section), std::string(key),
                                             std::move(message)});
  }
  void Add(const ItemSection& section, const ItemLabel& label, std::string message) {
    Add(label.line, section.name, label.key, std::move(message));
  }
  void Add(const ItemSection& section, std::string message) {
    Add(section.line, section.name, {}, std::move(message));
  }

  /// In line order.
  std::vector<ItemFinding> Take() {
    std::vector<ItemFinding> list;
    for (auto& [place, finding] : findings_) list.push_back(std::move(finding));
    return list;
  }

 private:
  const char* file_;
  std::map<std::pair<size_t, std::string>, ItemFinding> findings_;
};

/// Walks an item file from its parts to everything they use.
class ItemChecker {
 public:
  ItemChecker(const ItemSource& source, const ItemSchema& schema, Findings& findings)
      : source_(source), schema_(schema), findings_(findings) {}

  void Run() {
    for (const SourceRemark& remark : source_.Remarks()) {
      findings_.Add(remark.line, remark.section, remark.key, remark.message);
    }
    CheckLoops();
    ReachFromParts();
    for (const ItemSection& section : source_.Sections()) CheckSection(section);
  }

 private:
  // --- Which sections are used, and as what ---

  void ReachFromParts() {
    for (const ItemSection& section : source_.Sections()) {
      if (IsPart(section)) Use(section, schema_.Parts(), true);
    }
    for (const ItemClass& itemClass : schema_.classes) {
      const ItemSection* const root =
          itemClass.rootItem ? source_.Find(itemClass.rootItem) : nullptr;
      if (root) Use(*root, itemClass, true);
    }
    while (!ahead_.empty()) {
      const ItemSection& section = *ahead_.back();
      ahead_.pop_back();
      UseWhatItNames(section, *uses_.at(&section).itemClass);
    }
  }

  /// `whole` for a section that is read as such and not only as a parent.
  void Use(const ItemSection& section, const ItemClass& itemClass, bool whole) {
    const auto [place, added] = uses_.try_emplace(&section, UseOf{&itemClass, whole});
    place->second.whole |= whole;
    if (added) {
      ahead_.push_back(&section);
    } else if (place->second.itemClass != &itemClass) {
      findings_.Add(section, std::string("is used as a ") + place->second.itemClass->name +
                                 " and as a " + itemClass.name);
    }
  }

  void UseWhatItNames(const ItemSection& section, const ItemClass& itemClass) {
    for (const ItemSection* const parent : source_.ParentsOf(section)) {
      Use(*parent, itemClass, false);
    }
    for (const ItemLabel& label : section.labels) {
      const KeyRule* const rule = itemClass.Find(label.key);
      if (!rule || rule->kind != KeyKind::kItems) continue;
      for (const std::string_view entry : ListEntries(label.value)) {
        const std::string_view name = ReferredItem(entry);
        const ItemSection* const item = name.data() ? source_.Find(name) : nullptr;
        if (item) Use(*item, *schema_.Find(rule->items), true);
      }
    }
  }

  // --- One section ---

  void CheckSection(const ItemSection& section) {
    const auto use = uses_.find(&section);
    if (use == uses_.end()) {
      findings_.Add(section, section.name.empty()
                                 ? "labels in front of the first section belong to no part"
                                 : "no part uses it; a part of its own needs \"Part = 1\"");
      return;
    }
    const ItemClass& itemClass = *use->second.itemClass;
    const std::vector<const ItemSection*> lineage = BoundedLineage(source_, section);
    if (IsTooDeep(lineage)) {
      findings_.Add(section, "has more than " + std::to_string(kMostAncestors) +
                                 " sections above it; no more are looked at");
      return;
    }
    for (const ItemLabel& label : section.labels) {
      const KeyRule* const rule = itemClass.Find(label.key);
      if (!rule) {
        AddUnknownKey(section, label, itemClass);
      } else if (!IsUnchecked(section, label.key)) {
        CheckLabel(section, label, *rule, itemClass);
        CheckOverride(section, label, lineage);
      }
    }
    if (use->second.whole) CheckRequired(section, lineage, itemClass);
  }

  static bool IsUnchecked(const ItemSection& section, std::string_view key) {
    const ItemLabel* const list = section.Find(kUncheckedKey);
    if (!list) return false;
    const std::vector<std::string_view> keys = ListEntries(list->value);
    return std::ranges::find(keys, key) != keys.end();
  }

  void AddUnknownKey(const ItemSection& section, const ItemLabel& label,
                     const ItemClass& itemClass) {
    std::vector<std::string> known;
    for (const KeyRule& rule : itemClass.keys) known.emplace_back(rule.name);
    std::string message = std::string("is no key of a ") + itemClass.name;
    if (const auto meant = NearestName(label.key, known)) message += "; " + *meant + " is meant?";
    findings_.Add(section, label, message);
  }

  void CheckLabel(const ItemSection& section, const ItemLabel& label, const KeyRule& rule,
                  const ItemClass& itemClass) {
    if (const Status status = CheckValue(rule, label.value); !status) {
      findings_.Add(section, label, status.Message());
      return;
    }
    if (rule.kind == KeyKind::kParents) CheckReferences(section, label, SplitEntries(label.value));
    if (rule.kind == KeyKind::kItems) CheckReferences(section, label, ListEntries(label.value));
    if (rule.kind != KeyKind::kKeyList) return;
    for (const std::string_view key : ListEntries(label.value)) {
      if (!itemClass.Find(key) || !section.Find(key)) {
        findings_.Add(section, label, "the section has no key " + std::string(key));
      }
    }
  }

  void CheckReferences(const ItemSection& section, const ItemLabel& label,
                       const std::vector<std::string_view>& entries) {
    for (const std::string_view entry : entries) {
      const std::string_view name = ReferredItem(entry);
      const ItemSection* const item = source_.Find(name);
      if (!item) {
        findings_.Add(section, label, "there is no section " + InBrackets(name) + Meant(name));
      } else if (item->name != name) {
        findings_.Add(section, label,
                      InBrackets(name) + " is written " + InBrackets(item->name) +
                          " at its place, and a family test compares letter for letter");
      }
    }
  }

  std::string Meant(std::string_view name) const {
    std::vector<std::string> known;
    for (const ItemSection& section : source_.Sections()) known.push_back(section.name);
    const auto meant = NearestName(name, known);
    return meant ? "; " + InBrackets(*meant) + " is meant?" : "";
  }

  void CheckOverride(const ItemSection& section, const ItemLabel& label,
                     const std::vector<const ItemSection*>& lineage) {
    if (IsOwnKey(label.key)) return;
    const Found inherited = FindIn(lineage, 1, label.key);
    if (!inherited.label || inherited.label->value != label.value) return;
    findings_.Add(section, label,
                  "says what " + InBrackets(inherited.section->name) + " says in line " +
                      std::to_string(inherited.label->line) + " already");
  }

  void CheckRequired(const ItemSection& section, const std::vector<const ItemSection*>& lineage,
                     const ItemClass& itemClass) {
    for (const KeyRule& rule : itemClass.keys) {
      if (!rule.required || FindIn(lineage, 0, rule.name).label) continue;
      findings_.Add(section.line, section.name, rule.name,
                    std::string("is missing, and a ") + itemClass.name + " needs it");
    }
  }

  // --- Loops of parents ---

  /// Depth first with the path kept by hand: a file may nest deeper than the stack.
  void CheckLoops() {
    enum class State { kAhead, kOnPath, kDone };
    struct Step {
      const ItemSection* section;
      std::vector<const ItemSection*> parents;
      size_t next = 0;
    };
    std::unordered_map<const ItemSection*, State> states;
    for (const ItemSection& start : source_.Sections()) {
      if (states[&start] != State::kAhead) continue;
      std::vector<Step> path;
      const auto enter = [&](const ItemSection* section) {
        states[section] = State::kOnPath;
        path.push_back({section, source_.ParentsOf(*section)});
      };
      enter(&start);
      while (!path.empty()) {
        if (path.back().next == path.back().parents.size()) {
          states[path.back().section] = State::kDone;
          path.pop_back();
          continue;
        }
        const ItemSection* const parent = path.back().parents[path.back().next++];
        if (states[parent] == State::kAhead) {
          enter(parent);
        } else if (states[parent] == State::kOnPath) {
          std::string loop;
          const auto first = std::ranges::find(path, parent, &Step::section);
          for (auto step = first; step != path.end(); ++step) {
            loop += InBrackets(step->section->name) + " > ";
          }
          const ItemSection& last = *path.back().section;
          findings_.Add(last, *last.Find(kIsaKey), "a loop: " + loop + InBrackets(parent->name));
        }
      }
    }
  }

  struct UseOf {
    const ItemClass* itemClass;
    bool whole;
  };

  const ItemSource& source_;
  const ItemSchema& schema_;
  Findings& findings_;
  std::unordered_map<const ItemSection*, UseOf> uses_;
  std::vector<const ItemSection*> ahead_;
};

/// Adds the faults of a part where the file says what is wrong.
void AddFaults(const ItemSource& source, const std::vector<ChipFault>& faults, Findings& findings) {
  for (const ChipFault& fault : faults) {
    const ItemSection* const section = source.Find(fault.item);
    if (!section) continue;
    const Found found = FindIn(BoundedLineage(source, *section), 0, fault.key);
    if (found.label) {
      findings.Add(*found.section, *found.label, fault.message);
    } else {
      findings.Add(section->line, section->name, fault.key, fault.message);
    }
  }
}

/// Pairs of pins that are no range.
void CheckExpanderPort(const ItemSource& source, const ItemSection& section, Findings& findings) {
  const std::vector<const ItemSection*> lineage = BoundedLineage(source, section);
  const Found starts = FindIn(lineage, 0, "RangeStart");
  const Found ends = FindIn(lineage, 0, "RangeEnd");
  if (!starts.label || !ends.label) return;
  const auto first = ListEntries(starts.label->value);
  const auto last = ListEntries(ends.label->value);
  if (first.size() != last.size()) {
    findings.Add(*ends.section, *ends.label,
                 "has " + std::to_string(last.size()) + " entries, and RangeStart " +
                     std::to_string(first.size()));
    return;
  }
  for (size_t i = 0; i < first.size(); ++i) {
    if (first[i] <= last[i]) continue;  // one digit each, or a finding already
    findings.Add(*ends.section, *ends.label,
                 "range " + std::string(first[i]) + " to " + std::string(last[i]) + " is none");
  }
}

void CheckEmulator(const ItemSource& source, const ChipFile& catalogue, Findings& findings) {
  const ItemSection* const emulator = source.Find("EmulatorInfo");
  const ItemLabel* const chips = emulator ? emulator->Find("AvailableChips") : nullptr;
  if (!chips) return;
  for (const std::string_view part : ListEntries(chips->value)) {
    if (catalogue.FindPart(part)) continue;
    const auto meant = NearestName(part, catalogue.Parts());
    findings.Add(*emulator, *chips,
                 "ChipInfo.cfg has no part " + std::string(part) +
                     (meant ? "; " + *meant + " is meant?" : ""));
  }
}

/// Ports of a record that its chip lacks.
void CheckPortNames(const ItemSource& source, const ItemSection& record, const ChipFile& catalogue,
                    Findings& findings) {
  const Result<ChipFacts> facts = catalogue.Read(record.name);
  if (!facts) return;  // in one of the files alone, or told already
  for (const char* const key : {"PortName", "VlrOutPortOrder"}) {
    const Found found = FindIn(BoundedLineage(source, record), 0, key);
    if (!found.label) continue;
    for (const std::string_view port : ListEntries(found.label->value)) {
      if (std::ranges::find(facts->ports, port, &PinRange::port) != facts->ports.end()) continue;
      findings.Add(*found.section, *found.label,
                   "part " + record.name + " has no port " + std::string(port));
    }
  }
}

constexpr char kRegisterSection[] = "Register Mapping";
constexpr char kPortListKey[] = "IOPort";

/// Addresses of the ports listed; the first has the lowest.
void CheckAddresses(const ItemSection& map, const std::vector<std::string>& ports,
                    Findings& findings) {
  std::optional<uint32_t> base;
  for (const std::string& port : ports) {
    const ItemLabel* const label = map.Find(port);
    uint32_t address = 0;
    if (!label) {
      findings.Add(map.line, map.name, port, "port of IOPort without an address");
    } else if (!ParseNumber(label->value, &address)) {
      findings.Add(map, *label, "\"" + label->value + "\" is no number");
    } else if (base && address < *base) {
      findings.Add(map, *label, "lies below the address of the first port, " + ports.front());
    } else if (&port == &ports.front()) {
      base = address;
    }
  }
}

}  // namespace

std::vector<ItemFinding> CheckItems(const ItemSource& source, const ItemSchema& schema) {
  Findings findings(schema.file);
  ItemChecker(source, schema, findings).Run();
  return findings.Take();
}

std::vector<ItemFinding> CheckChipInfo(const ItemSource& source, const ChipFile& file) {
  Findings findings(ChipInfoSchema().file);
  ItemChecker(source, ChipInfoSchema(), findings).Run();
  for (const std::string& part : file.Parts()) {
    const ItemSection* const section = source.Find(part);
    if (!section || IsTooDeep(BoundedLineage(source, *section))) continue;
    std::vector<ChipFault> faults;
    file.Read(part, faults);
    AddFaults(source, faults, findings);
  }
  return findings.Take();
}

std::vector<ItemFinding> CheckChipProperty(const ItemSource& source, const ChipFile& catalogue) {
  Findings findings(ChipPropertySchema().file);
  ItemChecker(source, ChipPropertySchema(), findings).Run();
  for (const ItemSection& section : source.Sections()) {
    CheckExpanderPort(source, section, findings);
    if (IsPart(section)) CheckPortNames(source, section, catalogue, findings);
  }
  CheckEmulator(source, catalogue, findings);
  return findings.Take();
}

std::vector<ItemFinding> CheckRegisterMap(const ItemSource& source, const char* file) {
  Findings findings(file);
  for (const SourceRemark& remark : source.Remarks()) {
    findings.Add(remark.line, remark.section, remark.key, remark.message);
  }
  const ItemSection* const map = source.Find(kRegisterSection);
  const ItemLabel* const ports = map ? map->Find(kPortListKey) : nullptr;
  if (!ports) {
    findings.Add(map ? map->line : 1, kRegisterSection, kPortListKey, "is missing");
    return findings.Take();
  }
  C_CUStringList names;
  SplitList(ports->value, names);
  if (names.Count() != std::ranges::count(ports->value, ',') + 1) {
    findings.Add(*map, *ports,
                 "an empty name ends the list behind " + std::to_string(names.Count()) + " ports");
  }
  std::vector<std::string> listed;
  for (const std::string& name : names) listed.push_back(name);
  CheckAddresses(*map, listed, findings);
  for (const ItemLabel& label : map->labels) {
    if (label.key == kPortListKey || std::ranges::find(listed, label.key) != listed.end()) continue;
    const auto meant = NearestName(label.key, listed);
    findings.Add(*map, label, "is no port of IOPort" + (meant ? "; " + *meant + " is meant?" : ""));
  }
  return findings.Take();
}

std::vector<KeyOrigin> ExplainItem(const ItemSource& source, const ItemSection& section,
                                   const ItemSchema& schema) {
  std::vector<KeyOrigin> origins;
  std::unordered_map<std::string_view, size_t> places;
  for (const ItemSection* const item : source.Lineage(section)) {
    for (const ItemLabel& label : item->labels) {
      if (IsOwnKey(label.key)) continue;
      KeyOrigin::Place place = {item->name, label.line, label.value};
      const auto [at, added] = places.try_emplace(label.key, origins.size());
      if (added) {
        origins.push_back({label.key, std::move(place), {}});
      } else {
        origins[at->second].overrode.push_back(std::move(place));
      }
    }
  }
  const std::span<const KeyRule> rules = schema.Parts().keys;
  const auto rank = [rules](const KeyOrigin& origin) {
    return std::ranges::find_if(
               rules, [&origin](const KeyRule& rule) { return origin.key == rule.name; }) -
           rules.begin();
  };
  std::ranges::stable_sort(origins, {}, rank);
  return origins;
}

}  // namespace velora
