// Integer fields of on-disk records.
//
// A record of a file is a struct of these types: it has no padding, may stand at
// any address, and its size is the size of the fields in the file:
//
//   struct CuePointRecord {
//     le32 id;        // from 1
//     le32 position;  // in samples
//   };
//   static_assert(sizeof(CuePointRecord) == 8);
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace velora {

/// An integer stored lowest byte first with alignment 1. Behaves as the integer
/// itself: made from it, turned into it. Zero when not initialised.
template <std::integral T>
class LittleEndian {
 public:
  constexpr LittleEndian() = default;
  constexpr LittleEndian(T value) : bytes_(std::bit_cast<Bytes>(value)) { ToFileOrder(bytes_); }

  constexpr operator T() const {
    Bytes bytes = bytes_;
    ToFileOrder(bytes);
    return std::bit_cast<T>(bytes);
  }

 private:
  using Bytes = std::array<std::byte, sizeof(T)>;

  /// Swaps native and file order; its own inverse.
  static constexpr void ToFileOrder(Bytes& bytes) {
    if constexpr (std::endian::native == std::endian::big) {
      std::reverse(bytes.begin(), bytes.end());
    }
  }

  Bytes bytes_{};
};

using le16 = LittleEndian<uint16_t>;
using le32 = LittleEndian<uint32_t>;
using le64 = LittleEndian<uint64_t>;
using lei16 = LittleEndian<int16_t>;
using lei32 = LittleEndian<int32_t>;
using lei64 = LittleEndian<int64_t>;

static_assert(sizeof(le16) == 2 && sizeof(le32) == 4 && sizeof(le64) == 8);
static_assert(alignof(le64) == 1 && std::is_trivially_copyable_v<le64>);

}  // namespace velora
