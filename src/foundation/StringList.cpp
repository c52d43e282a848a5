#include "foundation/StringList.h"

#include <memory>

#include "foundation/AsciiText.h"

namespace velora {

C_CUStringList::C_CUStringList(const C_CUStringList& other) : I_CUStringList() { *this = other; }

C_CUStringList& C_CUStringList::operator=(const C_CUStringList& other) {
  if (this == &other) return *this;
  Clear();
  for (const std::string& text : other) AddText(text);
  return *this;
}

int32_t C_CUStringList::Add(const char* text) {
  AddText(text ? text : "");
  return 1;
}

void C_CUStringList::AddText(std::string_view text) {
  strings_.Add(std::make_unique<String>(text));
}

int32_t C_CUStringList::Append(I_CUStringList* other) {
  if (!other) return 0;
  const int32_t count = other->GetCount();  // the list may be appended to itself
  for (int32_t i = 0; i < count; ++i) Add(other->GetAt(i));
  return 1;
}

bool C_CUStringList::InsertAt(int32_t index, const char* text) {
  auto string = std::make_unique<String>(text ? text : "");
  if (!strings_.InsertAt(index, string.get())) return false;
  string.release();
  return true;
}

template <typename Less>
void C_CUStringList::SortBy(Less less, bool ascending) {
  strings_.StableSort([&](const String& a, const String& b) {
    return ascending ? less(a.Text, b.Text) : less(b.Text, a.Text);
  });
}

void C_CUStringList::Sort(bool ascending) {
  SortBy([](std::string_view a, std::string_view b) { return a < b; }, ascending);
}

void C_CUStringList::SortNoCase(bool ascending) {
  SortBy([](std::string_view a, std::string_view b) { return LessNoCase(a, b); }, ascending);
}

void C_CUStringList::SortAfter(char delimiter, bool ascending) {
  const auto key = [delimiter](std::string_view text) {
    const size_t at = text.rfind(delimiter);
    return at == std::string_view::npos ? text : text.substr(at);
  };
  SortBy([key](std::string_view a, std::string_view b) { return key(a) < key(b); }, ascending);
}

}  // namespace velora
