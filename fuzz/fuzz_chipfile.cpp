// Any bytes as the files on chips: read, checked, explained. What the lines explain is
// what the records say, and a part without findings has facts.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/chipfile/ChipFile.h"
#include "catalogue/chipfile/ItemCheck.h"
#include "foundation/ItemProperty.h"

namespace {

using namespace velora;

constexpr size_t kSections = 8;  ///< explained of each file

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireRange(const PinRange& range, const ChipFacts& facts) {
  Require(range.firstIndex >= 0 && range.firstIndex < facts.PinCount());
  Require(range.lastIndex >= 0 && range.lastIndex < facts.PinCount());
  Require(range.HighestPin() <= 255 && range.LowestPin() >= 0);
}

void CheckPart(const ChipFile& file, const std::string& part) {
  const Result<ChipFacts> facts = file.Read(std::string_view(part));
  if (!facts) return;
  Require(facts->PinCount() > 0 && facts->groupSize >= 1 && facts->outputGroupSize >= 1);
  for (const RangeList* const list :
       {&facts->inputRanges, &facts->outputRanges, &facts->pwmRanges, &facts->sharedRanges}) {
    for (const PinRange& range : list->ranges) RequireRange(range, facts.Value());
  }
}

void CheckExplanation(const ItemSource& source, const std::shared_ptr<C_CUIniFile>& items) {
  const auto& sections = source.Sections();
  Require(sections.size() == static_cast<size_t>(items->GetSectionCount()));
  for (size_t i = 0; i < std::min(sections.size(), kSections); ++i) {
    C_ItemProperty record(items, sections[i].name.c_str());
    for (const KeyOrigin& origin : ExplainItem(source, sections[i], ChipInfoSchema())) {
      // A label is text up to its first zero on both sides.
      const char* const value = record.GetString(origin.key.c_str());
      Require(value && origin.setBy.value == value);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const ItemSource source = ItemSource::Parse(text);
  const auto items = std::make_shared<C_CUIniFile>();
  items->LoadText(text);
  CheckExplanation(source, items);
  CheckItems(source, ChipInfoSchema());
  CheckRegisterMap(source, "IOMap.ini");
  const Result<ChipFile> file = ChipFile::FromText(text);
  if (!file || file->Parts().size() > 64) return 0;
  CheckChipInfo(source, file.Value());
  CheckChipProperty(source, file.Value());
  for (const std::string& part : file->Parts()) CheckPart(file.Value(), part);
  return 0;
}
