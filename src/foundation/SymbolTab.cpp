#include "foundation/SymbolTab.h"

#include "foundation/AsciiText.h"
#include "foundation/Lookup2.h"

namespace velora {

Symbol* C_SymbolTab::FindLabel(std::string_view label) const {
  return Find({std::string(label), std::nullopt});
}

uint32_t C_IniSymbolTab::Hash(const Symbol& symbol) const {
  constexpr uint32_t kInitial = 0x12345678;
  return HashLookup2(symbol.Label, kInitial);
}

bool C_IniSymbolTab::IsEqual(const Symbol& a, const Symbol& b) const {
  return EqualsNoCase(a.Label, b.Label);
}

}  // namespace velora
