// What somebody may have meant.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velora {

/// The candidate that differs from the word in the fewest letters, or in case
/// alone; none when all differ in more than a third of the word (at least two).
std::optional<std::string> NearestName(std::string_view word,
                                       std::span<const std::string> candidates);

}  // namespace velora
