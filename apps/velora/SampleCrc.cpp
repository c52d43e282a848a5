#include "SampleCrc.h"

#include <algorithm>
#include <array>
#include <vector>

#include "audio/wavedata/SampleBlock.h"
#include "audio/wavedata/WavData.h"

namespace velora::cli {
namespace {

constexpr uint32_t kPolynomial = 0xEDB88320;
constexpr size_t kBlock = 4096;  // samples decoded at a time

using CrcTables = std::array<std::array<uint32_t, 256>, 4>;

/// Table k: what a byte gives once k further zero bytes have passed.
constexpr CrcTables MakeTables() {
  CrcTables tables{};
  for (uint32_t byte = 0; byte < 256; ++byte) {
    uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) ? kPolynomial : 0);
    tables[0][byte] = crc;
  }
  for (size_t k = 1; k < tables.size(); ++k) {
    for (size_t byte = 0; byte < 256; ++byte) {
      const uint32_t before = tables[k - 1][byte];
      tables[k][byte] = (before >> 8) ^ tables[0][before & 0xFF];
    }
  }
  return tables;
}

constexpr CrcTables kTables = MakeTables();

/// The four bytes of one sample at once.
uint32_t AddWord(uint32_t crc, uint32_t word) {
  crc ^= word;
  return kTables[3][crc & 0xFF] ^ kTables[2][(crc >> 8) & 0xFF] ^ kTables[1][(crc >> 16) & 0xFF] ^
         kTables[0][crc >> 24];
}

}  // namespace

uint32_t SamplesCrc32(const C_WavData& sound) {
  const SampleFormat format(sound.Info());
  if (format.bytes == 0) return 0;
  const uint64_t samples = sound.FrameCount() * sound.Info().GetChannels();
  const std::byte* at = sound.Bytes().data();
  std::vector<int32_t> values(kBlock);
  uint32_t crc = 0xFFFFFFFF;
  for (uint64_t done = 0; done < samples;) {
    const auto count = static_cast<size_t>(std::min<uint64_t>(kBlock, samples - done));
    DecodeBlock({at, format.bytes, count}, format, values.data());
    for (size_t i = 0; i < count; ++i) crc = AddWord(crc, static_cast<uint32_t>(values[i]));
    at += count * format.bytes;
    done += count;
  }
  return ~crc;
}

}  // namespace velora::cli
