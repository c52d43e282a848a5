// The content of a chunk as bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include <velora/I_RiffChunk.h>

namespace velora {

/// Bytes of a chunk, owned.
struct RiffChunkBytes {
  std::unique_ptr<std::byte[]> bytes;
  uint32_t size = 0;

  std::span<const std::byte> Span() const { return {bytes.get(), size}; }
};

/// All of a chunk's content; nothing when the chunk is null or empty, cannot be
/// read, or memory is short. A chunk that claims more than its file holds costs no
/// memory: its last byte is asked for first.
std::optional<RiffChunkBytes> ReadRiffChunk(I_RiffChunk* chunk);

/// Fills a chunk made for exactly these bytes; false for null and any other size.
bool FillRiffChunk(I_RiffChunk* chunk, std::span<const std::byte> bytes);

}  // namespace velora
