#include "foundation/PC1Cipher.h"

namespace velora {
namespace {

constexpr uint32_t kMultiplier = 0x4E35;
constexpr uint32_t kWeight = 0x015A;

}  // namespace

PC1Cipher::PC1Cipher(const Key& key) {
  for (size_t i = 0; i < keyWords_.size(); ++i) {
    keyWords_[i] = static_cast<uint32_t>(key[2 * i]) << 8 | key[2 * i + 1];
  }
}

// All bytes of the key turn by the same plain byte, so one word, `moved`, says
// how the key has turned since the start, and the key itself is never written.
// What bounds the speed is the chain through `word`: eight times a product, a
// sum and an exclusive or that wait for each other, and, when deciphering, for
// the plain byte in front.
template <bool kEncipher>
void PC1Cipher::Run(std::span<const std::byte> in, std::byte* out) {
  const std::array<uint32_t, 8> keyWords = keyWords_;
  uint32_t moved = moved_;
  uint32_t x1a2 = x1a2_;
  uint32_t si = si_;
  for (size_t at = 0; at < in.size(); ++at) {
    uint32_t word = 0;
    uint32_t inter = 0;
    for (uint32_t i = 0; i < keyWords.size(); ++i) {
      word ^= keyWords[i] ^ moved;
      const uint32_t weighted = word * kWeight;
      x1a2 = (x1a2 + i) * kMultiplier + (si + weighted);
      si = weighted;
      word = word * kMultiplier + 1;
      inter ^= word ^ x1a2;
    }
    const auto mask = static_cast<uint8_t>(inter >> 8 ^ inter);
    const auto byte = std::to_integer<uint8_t>(in[at]);
    const auto result = static_cast<uint8_t>(byte ^ mask);
    moved ^= uint32_t{kEncipher ? byte : result} * 0x0101;
    out[at] = std::byte{result};
  }
  moved_ = moved;
  x1a2_ = x1a2;
  si_ = si;
}

void PC1Cipher::Encipher(std::span<const std::byte> in, std::byte* out) { Run<true>(in, out); }

void PC1Cipher::Decipher(std::span<const std::byte> in, std::byte* out) { Run<false>(in, out); }

}  // namespace velora
