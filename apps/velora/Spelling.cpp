#include "Spelling.h"

#include <algorithm>

#include "foundation/EditDistance.h"

namespace velora::cli {
namespace {

constexpr size_t kNear = 2;
constexpr size_t kLeastStart = 3;

/// Letters that two words have in common from their first on.
size_t CommonStart(std::string_view a, std::string_view b) {
  return static_cast<size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

}  // namespace

const char* NearestWord(std::string_view word, std::span<const char* const> words) {
  const char* nearest = nullptr;
  size_t least = std::min(kNear + 1, std::max<size_t>(word.size(), 1));
  for (const char* candidate : words) {
    const size_t distance = EditDistance(word, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = candidate;
  }
  if (nearest) return nearest;
  size_t longest = kLeastStart - 1;
  for (const char* candidate : words) {
    const std::string_view text = candidate;
    const size_t common = CommonStart(word, text);
    if (common <= longest || common < std::min(word.size(), text.size())) continue;
    longest = common;
    nearest = candidate;
  }
  return nearest;
}

std::string DidYouMean(std::string_view word, std::span<const char* const> words) {
  const char* const nearest = NearestWord(word, words);
  return nearest ? "; did you mean '" + std::string(nearest) + "'?" : std::string();
}

}  // namespace velora::cli
