// Private chunks of a wave file, kept as they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include <velora/I_WavDataChunkInfo.h>
#include "foundation/Lists.h"

namespace velora {

class C_WavDataExtraChunk final : public I_WavDataExtraChunk, public C_CUItem {
 public:
  /// Takes the bytes over; null for none.
  C_WavDataExtraChunk(const char* tag, std::unique_ptr<std::byte[]> bytes, uint32_t size);

  const char* GetTag() const override { return tag_.data(); }
  uint32_t GetData(const void** bytes) const override;

  /// All four characters, zeros included.
  std::string_view Tag() const { return {tag_.data(), 4}; }
  std::span<const std::byte> Bytes() const { return {bytes_.get(), size_}; }

 private:
  std::array<char, 5> tag_{};
  uint32_t size_;
  std::unique_ptr<std::byte[]> bytes_;
};

class C_WavDataExtraChunkInfo final
    : public C_CUCustomList<I_WavDataExtraChunkInfo, C_WavDataExtraChunk, I_WavDataExtraChunk,
                            kOwning> {
 public:
  int32_t AddFromBytes(const char* tag, const void* bytes, uint32_t size) override;
  int32_t Remove(const char* tag) override;
  int32_t AddFromChunk(const char* tag, I_RiffChunk* chunk) override;
  C_WavDataExtraChunk* Find(const char* tag) override;

 private:
  int32_t IndexOfTag(const char* tag) const;
  bool AddOwned(const char* tag, std::unique_ptr<std::byte[]> bytes, uint32_t size);
};

}  // namespace velora
