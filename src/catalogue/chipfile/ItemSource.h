// The text of an item file with the place of every label.
//
// C_ItemProperty answers what a record says; this tells who said it: for checks
// and explanations, which name file, section, key and line. Both read the same
// grammar, and every value found here is what C_ItemProperty gives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

struct ItemLabel {
  std::string key;
  std::string value;
  size_t line = 0;  ///< from 1
};

struct ItemSection {
  std::string name;
  size_t line = 0;                ///< of its first header; of its first label without one
  std::vector<ItemLabel> labels;  ///< in file order; a key once, with its last value

  /// The section's own label; null without one. Keys compare letter for letter.
  const ItemLabel* Find(std::string_view key) const;
};

/// Something that reading passes over and a person would want to know.
struct SourceRemark {
  size_t line = 0;
  std::string section;
  std::string key;  ///< empty for a remark on a whole line
  std::string message;
};

class ItemSource {
 public:
  /// Reads a plain file; an enciphered one has no lines to speak of.
  static Result<ItemSource> Open(const Path& path);
  static ItemSource Parse(std::string_view text);

  const std::vector<ItemSection>& Sections() const { return sections_; }
  const std::vector<SourceRemark>& Remarks() const { return remarks_; }

  /// Section names compare without regard to case. Null for none.
  const ItemSection* Find(std::string_view name) const;

  /// The sections of the label ISA, in its order, without those that the file
  /// lacks.
  std::vector<const ItemSection*> ParentsOf(const ItemSection& section) const;

  /// The section and all above it in the order in which a key is looked for:
  /// depth first, each once; at most the first `most` of them.
  std::vector<const ItemSection*> Lineage(const ItemSection& section, size_t most = SIZE_MAX) const;

 private:
  ItemSection& NeedSection(std::string_view name, size_t line, bool header);
  void ReadLine(std::string_view line, size_t number, size_t& current);
  void ResolveParents();
  size_t IndexOf(const ItemSection& section) const {
    return static_cast<size_t>(&section - sections_.data());
  }

  std::vector<ItemSection> sections_;
  std::vector<std::vector<size_t>> parents_;  ///< of each section, as indexes
  std::vector<SourceRemark> remarks_;
  std::unordered_map<std::string, size_t> places_;  ///< by name in lower case
};

/// The key that names the parents of a section.
inline constexpr std::string_view kIsaKey = "ISA";

/// The name in a reference "[Name]"; null data for a text that is none.
std::string_view ReferredItem(std::string_view text);

/// The entries between the braces of "{a, b}"; a text without braces has none.
std::vector<std::string_view> ListEntries(std::string_view text);

/// The entries of a text separated as those of a list are.
std::vector<std::string_view> SplitEntries(std::string_view text);

}  // namespace velora
