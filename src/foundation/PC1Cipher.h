// The stream cipher PC1 (Pukall Cipher 1, 1991, in the public domain) with a key
// of 128 bits.
//
// PC1 is old and short of key material here (see EncryptKeys.h): it keeps honest
// people out and nobody else.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace velora {

/// One run over a stream of bytes. The key moves with each plain byte, so both
/// directions have to see the stream from its first byte on, in any pieces; an
/// object goes one way only.
class PC1Cipher {
 public:
  using Key = std::array<uint8_t, 16>;

  explicit PC1Cipher(const Key& key);

  /// The next bytes of the stream. `out` has room for as many as `in` holds and
  /// may be the same memory; it must not overlap it otherwise.
  void Encipher(std::span<const std::byte> in, std::byte* out);
  void Decipher(std::span<const std::byte> in, std::byte* out);

 private:
  template <bool kEncipher>
  void Run(std::span<const std::byte> in, std::byte* out);

  // The words have 16 bits. Sums, products and exclusive ors of the low 16 bits
  // depend on nothing above, so they are carried in 32 and cut at the end.
  std::array<uint32_t, 8> keyWords_;  ///< as the key began
  uint32_t moved_ = 0;                ///< what the plain bytes have turned in each key word
  uint32_t x1a2_ = 0;                 ///< the accumulator of the published algorithm
  uint32_t si_ = 0;                   ///< its register that is carried between bytes
};

}  // namespace velora
