#include "audio/wavedata/RiffChunkBytes.h"

#include <new>

namespace velora {

std::optional<RiffChunkBytes> ReadRiffChunk(I_RiffChunk* chunk) {
  const uint32_t size = chunk ? chunk->GetSize() : 0;
  if (size == 0) return std::nullopt;
  std::byte last;
  if (!chunk->Read(&last, 1, size - 1)) return std::nullopt;
  RiffChunkBytes content{std::unique_ptr<std::byte[]>(new (std::nothrow) std::byte[size]), size};
  if (!content.bytes || !chunk->Read(content.bytes.get(), size, 0)) return std::nullopt;
  return content;
}

bool FillRiffChunk(I_RiffChunk* chunk, std::span<const std::byte> bytes) {
  if (!chunk || chunk->GetSize() != bytes.size()) return false;
  chunk->SetData(bytes.data());
  return true;
}

}  // namespace velora
