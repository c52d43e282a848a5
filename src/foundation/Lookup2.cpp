#include "foundation/Lookup2.h"

#include <cstddef>

namespace velora {
namespace {

constexpr uint32_t kGoldenRatio = 0x9E3779B9;

struct State {
  uint32_t a, b, c;

  void Mix() {
    a -= b, a -= c, a ^= c >> 13;
    b -= c, b -= a, b ^= a << 8;
    c -= a, c -= b, c ^= b >> 13;
    a -= b, a -= c, a ^= c >> 12;
    b -= c, b -= a, b ^= a << 16;
    c -= a, c -= b, c ^= b >> 5;
    a -= b, a -= c, a ^= c >> 3;
    b -= c, b -= a, b ^= a << 10;
    c -= a, c -= b, c ^= b >> 15;
  }
};

/// Up to four bytes from `at` on, lowest first; 0 where the text has ended.
uint32_t WordAt(std::string_view text, size_t at) {
  uint32_t word = 0;
  for (size_t i = 0; i < 4 && at + i < text.size(); ++i) {
    word |= uint32_t{static_cast<unsigned char>(text[at + i])} << (8 * i);
  }
  return word;
}

}  // namespace

uint32_t HashLookup2(std::string_view text, uint32_t initial) {
  const auto length = static_cast<uint32_t>(text.size());
  State state{kGoldenRatio, kGoldenRatio, initial};
  for (; text.size() >= 12; text.remove_prefix(12)) {
    state.a += WordAt(text, 0);
    state.b += WordAt(text, 4);
    state.c += WordAt(text, 8);
    state.Mix();
  }
  state.a += WordAt(text, 0);
  state.b += WordAt(text, 4);
  // The lowest byte of c is kept for the length.
  state.c += length + (WordAt(text, 8) << 8);
  state.Mix();
  return state.c;
}

}  // namespace velora
