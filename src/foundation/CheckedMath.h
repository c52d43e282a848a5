// Arithmetic on sizes that come out of files.
#pragma once

#include <cstdint>
#include <optional>

namespace velora {

/// a x b, or nothing when it passes 64 bits.
inline std::optional<uint64_t> CheckedMultiply(uint64_t a, uint64_t b) {
  uint64_t product = 0;
  if (__builtin_mul_overflow(a, b, &product)) return std::nullopt;
  return product;
}

/// a + b, or nothing when it passes 64 bits.
inline std::optional<uint64_t> CheckedAdd(uint64_t a, uint64_t b) {
  uint64_t sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) return std::nullopt;
  return sum;
}

/// True when `count` records of `size` bytes fit into `available` bytes.
inline bool FitsInto(uint64_t count, uint64_t size, uint64_t available) {
  const std::optional<uint64_t> bytes = CheckedMultiply(count, size);
  return bytes && *bytes <= available;
}

}  // namespace velora
