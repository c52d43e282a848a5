// Byte text: case, comparison and trimming.
//
// Only the letters A to Z have case; bytes above 0x7F stand for themselves, so
// that nothing here depends on a code page or a locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace velora {

/// The characters that trimming removes unless told otherwise.
inline constexpr std::string_view kBlanks = " \t\n";

constexpr char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline std::string ToUpper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) { return ToUpper(c); });
  return upper;
}

inline std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return ToLower(c); });
  return lower;
}

constexpr bool EqualsNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return ToLower(x) == ToLower(y); });
}

/// Byte order of the texts in lower case.
constexpr bool LessNoCase(std::string_view a, std::string_view b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return static_cast<unsigned char>(ToLower(x)) < static_cast<unsigned char>(ToLower(y));
  });
}

constexpr bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualsNoCase(text.substr(0, start.size()), start);
}

constexpr std::string_view TrimLeft(std::string_view text, std::string_view set = kBlanks) {
  const size_t first = text.find_first_not_of(set);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

constexpr std::string_view TrimRight(std::string_view text, std::string_view set = kBlanks) {
  return text.substr(0, text.find_last_not_of(set) + 1);
}

constexpr std::string_view Trim(std::string_view text, std::string_view set = kBlanks) {
  return TrimRight(TrimLeft(text, set), set);
}

}  // namespace velora
