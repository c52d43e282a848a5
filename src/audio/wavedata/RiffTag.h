// Four-character tags as callers give them.
#pragma once

#include <array>
#include <cstring>

namespace velora {

/// Up to four characters of `tag`, filled up with zeros, and a terminator; null is
/// empty. Four characters need no terminator of their own.
inline std::array<char, 5> MakeRiffTag(const char* tag) {
  std::array<char, 5> text{};
  if (tag) std::memcpy(text.data(), tag, strnlen(tag, 4));
  return text;
}

}  // namespace velora
