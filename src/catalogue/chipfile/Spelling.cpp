#include "catalogue/chipfile/Spelling.h"

#include <algorithm>
#include <vector>

#include "foundation/AsciiText.h"

namespace velora {
namespace {

constexpr size_t kLongestWord = 64;  // nobody mistypes longer ones into a known key

/// Insertions, deletions and replacements that turn one word into the other.
size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t replaced = diagonal + (ToLower(a[i - 1]) == ToLower(b[j - 1]) ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

}  // namespace

std::optional<std::string> NearestName(std::string_view word,
                                       std::span<const std::string> candidates) {
  if (word.size() > kLongestWord) return {};
  size_t nearest = std::max<size_t>(2, word.size() / 3) + 1;
  std::optional<std::string> found;
  for (const std::string& candidate : candidates) {
    const size_t distance = EditDistance(word, candidate);
    if (distance >= nearest) continue;
    nearest = distance;
    found = candidate;
  }
  return found;
}

}  // namespace velora
