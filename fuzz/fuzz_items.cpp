// Any bytes as an item file: every operation, on records reached in every way.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ItemProperty.h"

namespace {

using namespace velora;

constexpr int kRecords = 8;  ///< asked of each file
constexpr int kKeys = 24;    ///< asked of each record

void Require(bool condition) {
  if (!condition) std::abort();
}

template <typename List>
void RequireList(const List* list, int32_t count) {
  Require((list == nullptr) == (count == 0) && count >= 0);
}

/// What the operations say of one key must fit together. `others` gets the
/// records that the key leads to.
void AskKey(I_ItemProperty& item, const char* key, std::vector<I_ItemProperty*>& others) {
  const char* const text = item.GetString(key);
  int32_t exists = -1, isNumber = -1, strings = -1, numbers = -1, bools = -1, items = -1;
  Require(item.GetBoolEx(key, &exists) == item.GetBool(key));
  Require((exists == 1) == (text && *text));
  Require(item.GetNumberEx(key, &isNumber) == item.GetNumber(key));
  Require(isNumber <= exists);

  const char* const* const entries = item.GetStringList(key, &strings);
  RequireList(entries, strings);
  for (int32_t i = 0; i < strings; ++i) {
    const std::string_view entry = entries[i];
    Require(!entry.empty() && entry.find_first_of(", \t") == std::string_view::npos);
  }
  RequireList(item.GetNumberList(key, &numbers), numbers);
  RequireList(item.GetBoolList(key, &bools), bools);
  Require(numbers <= strings && bools == strings);

  I_ItemProperty* const* const list = item.GetItemList(key, &items);
  RequireList(list, items);
  Require(items <= strings);
  for (int32_t i = 0; i < items; ++i) others.push_back(list[i]);
  if (I_ItemProperty* const one = item.GetItem(key)) others.push_back(one);
  Require(item.GetString(key) == text);
}

void AskItem(C_CUIniFile& file, I_ItemProperty& item, std::vector<I_ItemProperty*>& others) {
  const std::string name = item.GetName();
  Require(item.IsA(name.c_str()) == 1);
  item.IsA("another");
  item.GetString("missing everywhere");
  for (int32_t place = 0; place < kKeys; ++place) {
    const char* const label = file.GetLabelName(name.c_str(), place);
    if (!label) break;
    Require(item.IsLoaded() == 1);
    AskKey(item, std::string(label).c_str(), others);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto file = std::make_shared<C_CUIniFile>();
  file->LoadText({reinterpret_cast<const char*>(data), size});
  for (int32_t section = 0; section < kRecords; ++section) {
    const char* const name = file->GetSectionName(section);
    if (!name) break;
    C_ItemProperty item(file, std::string(name).c_str());
    std::vector<I_ItemProperty*> reached = {&item};
    for (size_t i = 0; i < reached.size() && i < kRecords; ++i)
      AskItem(*file, *reached[i], reached);
    I_ItemProperty* const copy = reached.back()->Clone();
    Require(std::string_view(copy->GetName()) == reached.back()->GetName());
    Require(copy->IsLoaded() == reached.back()->IsLoaded());
    copy->Release();
  }
  return 0;
}
