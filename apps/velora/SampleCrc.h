// A fingerprint of the samples of a sound, whatever form they are stored in.
#pragma once

#include <cstdint>

namespace velora {
class C_WavData;
}

namespace velora::cli {

/// CRC-32 (polynomial 0x04C11DB7 reflected, as in zip) over the values of all
/// samples, interleaved, each as a signed 32-bit little-endian number.
uint32_t SamplesCrc32(const C_WavData& sound);

}  // namespace velora::cli
