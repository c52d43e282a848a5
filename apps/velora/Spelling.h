// Mistyped words and what was probably meant.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velora::cli {

/// The word that takes the fewest insertions, deletions and replacements of a
/// letter, at most two and fewer than the word has letters; else one that begins
/// with the mistyped word or is its beginning, three letters at least, as "freq" for
/// "frequency"; null when there is none of either.
const char* NearestWord(std::string_view word, std::span<const char* const> words);

/// "; did you mean 'sine'?", empty when no word is near.
std::string DidYouMean(std::string_view word, std::span<const char* const> words);

}  // namespace velora::cli
