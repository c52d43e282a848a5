#include "Spelling.h"

#include <algorithm>
#include <vector>

namespace velora::cli {
namespace {

constexpr size_t kNear = 2;
constexpr size_t kLeastStart = 3;

/// Insertions, deletions and replacements that turn one word into the other.
size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

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
