#include "audio/wavedata/WavDataExtraChunkInfo.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "audio/wavedata/RiffChunkBytes.h"
#include "audio/wavedata/RiffTag.h"

namespace velora {

C_WavDataExtraChunk::C_WavDataExtraChunk(const char* tag, std::unique_ptr<std::byte[]> bytes,
                                         uint32_t size)
    : tag_(MakeRiffTag(tag)), size_(size), bytes_(std::move(bytes)) {}

uint32_t C_WavDataExtraChunk::GetData(const void** bytes) const {
  if (bytes) *bytes = bytes_.get();
  return size_;
}

bool C_WavDataExtraChunkInfo::AddOwned(const char* tag, std::unique_ptr<std::byte[]> bytes,
                                       uint32_t size) {
  auto* const chunk = new (std::nothrow) C_WavDataExtraChunk(tag, std::move(bytes), size);
  if (chunk) Add(chunk);
  return chunk != nullptr;
}

int32_t C_WavDataExtraChunkInfo::AddFromBytes(const char* tag, const void* bytes, uint32_t size) {
  if (size == 0) return AddOwned(tag, nullptr, 0);
  if (!bytes) return 0;
  std::unique_ptr<std::byte[]> copy(new (std::nothrow) std::byte[size]);
  if (!copy) return 0;
  std::memcpy(copy.get(), bytes, size);
  return AddOwned(tag, std::move(copy), size);
}

int32_t C_WavDataExtraChunkInfo::AddFromChunk(const char* tag, I_RiffChunk* chunk) {
  if (!chunk) return 0;
  if (chunk->GetSize() == 0) return AddOwned(tag, nullptr, 0);
  auto content = ReadRiffChunk(chunk);
  return content && AddOwned(tag, std::move(content->bytes), content->size);
}

int32_t C_WavDataExtraChunkInfo::IndexOfTag(const char* tag) const {
  const auto wanted = MakeRiffTag(tag);
  for (int32_t i = 0; i < Count(); ++i) {
    if (ItemAt(i)->Tag() == std::string_view(wanted.data(), 4)) return i;
  }
  return -1;
}

int32_t C_WavDataExtraChunkInfo::Remove(const char* tag) { return RemoveAt(IndexOfTag(tag)); }

C_WavDataExtraChunk* C_WavDataExtraChunkInfo::Find(const char* tag) {
  return ItemAt(IndexOfTag(tag));
}

}  // namespace velora
