#include "catalogue/chipfile/Spelling.h"

#include <algorithm>

#include "foundation/EditDistance.h"

namespace velora {
namespace {

constexpr size_t kLongestWord = 64;  // nobody mistypes longer ones into a known key

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
