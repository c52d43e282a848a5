// The labels of one section of an INI file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/StLHashT.h"

namespace velora {

/// A label and its value. A deleted label keeps its place and has no value.
struct Symbol {
  std::string Label;
  std::optional<std::string> Value;
};

/// A hash table of symbols that is searched by label.
class C_SymbolTab : public C_StLHashT<Symbol> {
 public:
  /// The symbol, also a deleted one, or null.
  Symbol* FindLabel(std::string_view label) const;

 protected:
  using C_StLHashT::C_StLHashT;
};

/// The table of an INI section: 1,024 buckets, of 2 records each on average
/// before it grows.
///
/// Labels hash as they are spelt and compare without regard to case, so two
/// spellings of a label are one label only if they happen to fall into the same
/// bucket. Do not rely on either.
class C_IniSymbolTab : public C_SymbolTab {
 public:
  C_IniSymbolTab() : C_SymbolTab(1000, 2) {}

  uint32_t Hash(const Symbol& symbol) const override;
  bool IsEqual(const Symbol& a, const Symbol& b) const override;
};

}  // namespace velora
