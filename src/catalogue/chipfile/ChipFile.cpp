#include "catalogue/chipfile/ChipFile.h"

#include <algorithm>
#include <utility>

#include "catalogue/chipfile/ItemSchema.h"
#include "catalogue/chipfile/ItemSource.h"
#include "foundation/AsciiText.h"
#include "foundation/ItemFile.h"
#include "foundation/ItemProperty.h"

namespace velora {
namespace {

constexpr int32_t kInterfaceIds[] = {3, 4, 7};

/// Reads the values of one record by the rules of its class; a value that breaks
/// its rule is a fault and reads as nothing.
class RecordReader {
 public:
  RecordReader(I_ItemProperty& record, const ItemClass& rules, std::vector<ChipFault>& faults)
      : record_(record), rules_(rules), faults_(faults) {
    for (const KeyRule& rule : rules_.keys) Check(rule);
  }

  std::string Text(const char* key) const {
    const char* const text = record_.GetString(key);
    return text ? text : "";
  }

  /// True when the key has a value.
  bool Has(const char* key) const { return !Text(key).empty(); }

  /// 0 without a value.
  uint32_t Word(const char* key) const {
    return IsGood(key) && Has(key) ? static_cast<uint32_t>(record_.GetNumber(key)) : 0;
  }
  int32_t Number(const char* key) const { return static_cast<int32_t>(Word(key)); }

  std::vector<int32_t> Numbers(const char* key) const {
    int32_t count = 0;
    const int32_t* const numbers = record_.GetNumberList(key, &count);
    return IsGood(key) ? std::vector<int32_t>(numbers, numbers + count) : std::vector<int32_t>();
  }

  std::vector<std::string> Texts(const char* key) const {
    int32_t count = 0;
    const char* const* const texts = record_.GetStringList(key, &count);
    return {texts, texts + count};
  }

  std::vector<PinRange> Ports(const char* key) {
    const std::string text = Text(key);
    if (!IsGood(key)) return {};
    Result<std::vector<PinRange>> ports = ReadPorts(ListEntries(text));
    if (ports && !ports->empty()) return std::move(ports.Value());
    AddFault(key, ports ? "names no port" : ports.Message());
    return {};
  }

  RangeList Ranges(const char* key, const std::vector<PinRange>& ports) {
    RangeList list;
    const std::string text = Text(key);
    if (text.empty() || !IsGood(key)) return list;
    list.there = true;
    for (const std::string_view entry : ListEntries(text)) {
      Result<PinRange> range = ReadPinRange(entry, ports);
      if (!range) {
        AddFault(key, range.Message());
        break;
      }
      list.ranges.push_back(std::move(range.Value()));
    }
    return list;
  }

  /// The records that the key refers to, each read by the rules of its class.
  template <typename Visit>
  void ForEachItem(const char* key, const char* itemClass, const Visit& visit) {
    int32_t count = 0;
    I_ItemProperty* const* const items = record_.GetItemList(key, &count);
    for (I_ItemProperty* const item : std::span(items, static_cast<size_t>(count))) {
      if (!item->IsLoaded()) {
        AddFault(key, "there is no section [" + std::string(item->GetName()) + "]");
        continue;
      }
      visit(RecordReader(*item, *ChipInfoSchema().Find(itemClass), faults_));
    }
  }

  void AddFault(const char* key, std::string message) {
    faults_.push_back({record_.GetName(), key, std::move(message)});
  }

 private:
  void Check(const KeyRule& rule) {
    const char* const text = record_.GetString(rule.name);
    Status status;
    if (text) {
      status = CheckValue(rule, text);
    } else if (rule.required) {
      status = Status::Error("is missing, and a part needs it");
    }
    if (status.Ok()) return;
    bad_.emplace_back(rule.name);
    AddFault(rule.name, status.Message());
  }

  bool IsGood(std::string_view key) const { return std::ranges::find(bad_, key) == bad_.end(); }

  I_ItemProperty& record_;
  const ItemClass& rules_;
  std::vector<ChipFault>& faults_;
  std::vector<std::string_view> bad_;  ///< keys that broke their rule
};

void ReadPinFacts(RecordReader& record, ChipFacts& facts) {
  facts.ports = record.Ports("Ports");
  facts.groupSize = record.Number("GroupSize");
  facts.outputGroupSize = record.Number("OutputGroupSize");
  const std::vector<int32_t> counts = record.Numbers("PinCounts");
  if (counts.size() != std::size(facts.pinCounts)) {
    record.AddFault("PinCounts", "is no list of three numbers");
    return;
  }
  std::ranges::copy(counts, facts.pinCounts);
  const int pins = facts.ports.empty() ? 0 : facts.ports.back().lastIndex + 1;
  if (pins != facts.PinCount()) {
    record.AddFault("PinCounts", "add up to " + std::to_string(facts.PinCount()) +
                                     ", and the ports have " + std::to_string(pins) + " pins");
  }
}

void ReadRangeFacts(RecordReader& record, ChipFacts& facts) {
  static constexpr std::pair<const char*, RangeList ChipFacts::*> kLists[] = {
      {"ReservedRanges", &ChipFacts::reservedRanges}, {"MatrixRangesA", &ChipFacts::matrixRangesA},
      {"MatrixRangesB", &ChipFacts::matrixRangesB},   {"FixedRanges", &ChipFacts::fixedRanges},
      {"InputRanges", &ChipFacts::inputRanges},       {"OutputRanges", &ChipFacts::outputRanges},
      {"OptionRanges", &ChipFacts::optionRanges},     {"SharedRanges", &ChipFacts::sharedRanges},
      {"SpecialRanges", &ChipFacts::specialRanges},   {"PwmRanges", &ChipFacts::pwmRanges},
  };
  if (facts.ports.empty()) return;  // a fault already, and no more is to be said
  for (const auto& [key, list] : kLists) facts.*list = record.Ranges(key, facts.ports);
}

void ReadMemoryFacts(RecordReader& record, ChipFacts& facts) {
  static constexpr std::pair<const char*, int32_t ChipFacts::*> kNumbers[] = {
      {"RamSize", &ChipFacts::ramSize},
      {"SystemRam", &ChipFacts::systemRam},
      {"OtherRam", &ChipFacts::otherRam},
      {"StackBase", &ChipFacts::stackBase},
      {"PortScanBase", &ChipFacts::portScanBase},
      {"ScanRamA", &ChipFacts::scanRamA},
      {"ScanRamB", &ChipFacts::scanRamB},
      {"MatrixBase", &ChipFacts::matrixBase},
      {"MatrixPerLine", &ChipFacts::matrixPerLine},
      {"EventRam", &ChipFacts::eventRam},
  };
  for (const auto& [key, number] : kNumbers) facts.*number = record.Number(key);
  facts.hasMemoryModel = record.Has("SystemRam") || record.Has("OtherRam");
}

ResourceLists ReadResourceLists(const RecordReader& record) {
  return {record.Texts("AudioFiles"), record.Texts("MusicFiles"), record.Texts("ImageFiles")};
}

void ReadItemFacts(RecordReader& record, ChipFacts& facts) {
  record.ForEachItem("Features", "feature", [&facts](const RecordReader& feature) {
    facts.features.push_back({feature.Text("Name"), feature.Word("Mask"), feature.Number("Ram"),
                              feature.Number("Kind")});
  });
  record.ForEachItem("FeatureBlocks", "feature block", [&facts](const RecordReader& block) {
    facts.featureBlocks.push_back({block.Number("Key"), block.Number("Ram")});
  });
  record.ForEachItem("ResourceSets", "resource set", [&facts](const RecordReader& set) {
    facts.resourceSets.push_back(ReadResourceLists(set));
  });
}

ChipFacts ReadChipFacts(I_ItemProperty& item, std::vector<ChipFault>& faults) {
  RecordReader record(item, ChipInfoSchema().Parts(), faults);
  ChipFacts facts;
  facts.part = item.GetName();
  facts.title = record.Text("Title");
  facts.chipCode = record.Word("ChipCode");
  facts.interfaces = record.Numbers("Interfaces");
  for (const int32_t id : facts.interfaces) {
    if (std::ranges::find(kInterfaceIds, id) == std::end(kInterfaceIds)) {
      record.AddFault("Interfaces", std::to_string(id) + " is none of 3, 4 and 7");
    }
  }
  ReadPinFacts(record, facts);
  ReadRangeFacts(record, facts);
  ReadMemoryFacts(record, facts);
  ReadItemFacts(record, facts);
  facts.resources = ReadResourceLists(record);
  facts.timers = record.Texts("Timers");
  return facts;
}

}  // namespace

bool ChipFacts::HasInterface(int32_t id) const {
  return std::ranges::find(interfaces, id) != interfaces.end();
}

Result<ChipFile> ChipFile::Open(const Path& path) {
  Result<std::shared_ptr<C_CUIniFile>> items = OpenItemFile(path);
  if (!items) return items.GetStatus();
  return FromItems(std::move(items.Value()));
}

Result<ChipFile> ChipFile::FromText(std::string_view text) {
  auto items = std::make_shared<C_CUIniFile>();
  items->LoadText(text);
  return FromItems(std::move(items));
}

Result<ChipFile> ChipFile::FromItems(std::shared_ptr<C_CUIniFile> items) {
  ChipFile file;
  file.items_ = std::move(items);
  for (int32_t i = 0; i < file.items_->GetSectionCount(); ++i) {
    const std::string name = file.items_->GetSectionName(i);
    const char* const flag =
        file.items_->GetString(name.c_str(), kPartKey.data(), kIniText, kMsgNone);
    if (flag && std::string_view(flag) == "1" && !name.empty()) file.parts_.push_back(name);
  }
  if (file.parts_.empty()) return Status::Error("names no part: no section has \"Part = 1\"");
  return file;
}

const std::string* ChipFile::FindPart(std::string_view part) const {
  const auto found = std::ranges::find_if(
      parts_, [part](const std::string& each) { return EqualsNoCase(each, part); });
  return found == parts_.end() ? nullptr : &*found;
}

ChipFacts ChipFile::Read(const std::string& part, std::vector<ChipFault>& faults) const {
  C_ItemProperty record(items_, part.c_str());
  return ReadChipFacts(record, faults);
}

Result<ChipFacts> ChipFile::Read(std::string_view part) const {
  const std::string* const known = FindPart(part);
  if (!known) return Status::Error("there is no part " + std::string(part));
  std::vector<ChipFault> faults;
  ChipFacts facts = Read(*known, faults);
  if (faults.empty()) return facts;
  const ChipFault& first = faults.front();
  return Status::Error("[" + first.item + "] " + first.key + ": " + first.message);
}

}  // namespace velora
