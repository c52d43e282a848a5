// How one sample is stored.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <velora/I_WavInfo.h>

namespace velora {

static_assert(std::endian::native == std::endian::little, "samples are read as they stand");

/// The stored form of a sample and the way to its value and back, for code that
/// looks at single samples. Blocks of samples go through SampleBlock.h.
struct SampleFormat {
  uint16_t bytes = 0;       ///< of the container, 1 to 4; 0 when the format means nothing
  bool isSigned = false;    ///< two's complement, otherwise offset binary
  uint16_t resolution = 0;  ///< significant bits, 1 to 32
  uint32_t signBit = 0;     ///< 1 << (resolution - 1)
  uint32_t signExtend = 0;  ///< -signBit
  uint32_t valueMask = 0;   ///< the significant bits
  int32_t minValue = 0;     ///< -signBit
  int32_t maxValue = 0;     ///< signBit - 1

  SampleFormat() = default;

  /// A resolution of 0 or beyond 32 counts as 32. A container of 0 or more than
  /// 32 bits gives `bytes` 0: such a sound has no samples.
  SampleFormat(uint16_t resolutionBits, uint16_t containerBits, bool twosComplement);
  explicit SampleFormat(const I_WavInfo& info);

  /// Bits of the container above the resolution stay in the value, except for the
  /// sign extension of a negative number.
  int32_t Decode(uint32_t raw) const {
    return static_cast<int32_t>(isSigned ? raw | (0u - (raw & signBit)) : raw - signBit);
  }
  uint32_t Encode(int32_t value) const {
    const auto bits = static_cast<uint32_t>(value);
    return isSigned ? bits & valueMask : bits + signBit;
  }
  int32_t Clamp(int32_t value) const { return std::clamp(value, minValue, maxValue); }

  /// The container at `p`, lowest byte first; `bytes` bytes must be there.
  uint32_t Load(const std::byte* p) const {
    uint32_t raw = 0;
    switch (bytes) {
      case 1:
        return std::to_integer<uint32_t>(*p);
      case 2:
        return std::memcpy(&raw, p, 2), raw;
      case 3:
        return std::memcpy(&raw, p, 3), raw;
      case 4:
        return std::memcpy(&raw, p, 4), raw;
      default:
        return 0;
    }
  }
  void Store(std::byte* p, uint32_t raw) const {
    switch (bytes) {
      case 1:
        *p = static_cast<std::byte>(raw);
        break;
      case 2:
        std::memcpy(p, &raw, 2);
        break;
      case 3:
        std::memcpy(p, &raw, 3);
        break;
      case 4:
        std::memcpy(p, &raw, 4);
        break;
      default:
        break;
    }
  }
};

}  // namespace velora
