// How far two words are apart, for guessing what a mistyped one means.
#pragma once

#include <cstddef>
#include <string_view>

namespace velora {

/// Insertions, deletions and replacements of a letter that turn one word into the
/// other (Levenshtein), ASCII letters without regard to case. Takes time in proportion
/// to the product of the lengths.
size_t EditDistance(std::string_view a, std::string_view b);

}  // namespace velora
