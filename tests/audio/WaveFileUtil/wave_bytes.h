// RIFF files put together by hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velora::test {

/// Numbers as they stand in a file.
inline std::string U16(uint32_t value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
inline std::string U32(uint32_t value) { return U16(value & 0xFFFF) + U16(value >> 16); }

/// A chunk without padding.
inline std::string Chunk(std::string_view tag, std::string_view content) {
  return std::string(tag) + U32(static_cast<uint32_t>(content.size())) + std::string(content);
}

/// A chunk that claims another size than it has.
inline std::string ChunkClaiming(std::string_view tag, uint32_t size, std::string_view content) {
  return std::string(tag) + U32(size) + std::string(content);
}

inline std::string Riff(std::string_view chunks, std::string_view form = "WAVE") {
  return "RIFF" + U32(static_cast<uint32_t>(chunks.size() + 4)) + std::string(form) +
         std::string(chunks);
}

/// The 16 bytes of a "fmt " chunk.
inline std::string FormatBytes(uint32_t tag, uint32_t channels, uint32_t rate, uint32_t bits) {
  const uint32_t align = channels * ((bits + 7) / 8);
  return U16(tag) + U16(channels) + U32(rate) + U32(rate * align) + U16(align) + U16(bits);
}
inline std::string Format(uint32_t channels, uint32_t rate, uint32_t bits, uint32_t tag = 1) {
  return Chunk("fmt ", FormatBytes(tag, channels, rate, bits));
}

inline std::string CueRecord(uint32_t id, uint32_t position) {
  return U32(id) + U32(position) + "data" + U32(0) + U32(0) + U32(position);
}

/// A record of an "adtl" list, padded to even.
inline std::string ListRecord(std::string_view tag, std::string_view content) {
  std::string record = Chunk(tag, content);
  if (content.size() % 2) record += '\0';
  return record;
}
inline std::string Label(uint32_t id, std::string_view text) {
  return ListRecord("labl", U32(id) + std::string(text) + '\0');
}
inline std::string Length(uint32_t id, uint32_t frames) {
  return ListRecord("ltxt", U32(id) + U32(frames) + std::string(12, '\0'));
}

}  // namespace velora::test
