// Faults in the chip files, as a person who writes them wants to be told.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/chipfile/ChipFile.h"
#include "catalogue/chipfile/ItemSchema.h"
#include "catalogue/chipfile/ItemSource.h"

namespace velora {

struct ItemFinding {
  std::string file;
  size_t line = 0;      ///< from 1
  std::string section;  ///< empty for the file as a whole
  std::string key;      ///< empty for a section as a whole
  std::string message;  ///< a sentence without its full stop
};

/// What is wrong with an item file by itself: unknown keys, values that are not of
/// their form, references that lead nowhere, loops of parents, sections that no
/// part uses, keys that say what a parent says already. In line order, at most one
/// finding for a key of a line.
std::vector<ItemFinding> CheckItems(const ItemSource& source, const ItemSchema& schema);

/// The same for ChipInfo.cfg, and what only shows in a part as a whole: pins that
/// its ports lack, counts that do not add up. `file` is read from the same text.
std::vector<ItemFinding> CheckChipInfo(const ItemSource& source, const ChipFile& file);

/// The same for ChipProperty.cfg, and names that the catalogue does not know.
std::vector<ItemFinding> CheckChipProperty(const ItemSource& source, const ChipFile& catalogue);

/// What is wrong with a register map (IOMap.ini and its like), named `file`: ports
/// without an address, addresses of ports that are not listed or below the first
/// port's.
std::vector<ItemFinding> CheckRegisterMap(const ItemSource& source, const char* file);

/// Where the value of a key comes from.
struct KeyOrigin {
  struct Place {
    std::string section;
    size_t line = 0;
    std::string value;
  };
  std::string key;
  Place setBy;
  std::vector<Place> overrode;  ///< from the nearest parent to the farthest
};

/// Every key of the section and its parents, in the order of the schema, unknown
/// ones behind. What each section says for itself alone (ISA, Part, Unchecked) is
/// left out.
std::vector<KeyOrigin> ExplainItem(const ItemSource& source, const ItemSection& section,
                                   const ItemSchema& schema);

}  // namespace velora
