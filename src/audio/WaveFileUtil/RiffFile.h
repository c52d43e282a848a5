// RIFF files: a form of chunks, one after the other.
//
//   offset 0   "RIFF"
//          4   32-bit size of all that follows
//          8   form type, "WAVE"
//         12   chunks: 4-byte tag, 32-bit size, that many bytes
//
// All numbers are little-endian. Nothing is padded on writing; on reading, any run of
// zero bytes in front of a chunk is passed over.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <velora/I_RiffChunk.h>
#include "foundation/CUItem.h"
#include "foundation/Lists.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

class C_RiffChunkList;

/// A tag of a chunk or a form: four bytes as they stand in the file.
using RiffTag = std::array<char, 4>;

constexpr std::string_view TextOf(const RiffTag& tag) { return {tag.data(), tag.size()}; }

/// For messages: `"fmt "`, with bytes that are no printable ASCII shown as "?".
std::string QuotedTag(const RiffTag& tag);

/// A chunk of an open file, or one that is being filled for writing.
class C_RiffChunk final : public C_CUItem, public I_RiffChunk {
 public:
  /// A chunk to be written; its content comes by SetData, Borrow or Children.
  C_RiffChunk(const RiffTag& tag, uint32_t size);

  /// A chunk that stands in a file. `dataOffset` is that of its content, which may
  /// reach beyond the end of the file. The file must outlive the chunk's reading.
  C_RiffChunk(const RiffTag& tag, uint32_t size, const InputFile& file, uint64_t dataOffset);

  ~C_RiffChunk() override;
  C_RiffChunk(const C_RiffChunk&) = delete;
  C_RiffChunk& operator=(const C_RiffChunk&) = delete;

  // The interface.
  uint32_t GetSize() override { return size_; }
  int32_t Read(void* buffer, uint32_t length, uint32_t offset) override;
  void SetData(const void* bytes) override;

  const RiffTag& Tag() const { return tag_; }
  bool HasTag(std::string_view tag) const;  ///< without regard to case

  /// Where the content stands: in the file read, or written last.
  uint64_t DataOffset() const { return dataOffset_; }

  /// Bytes of the content that the file really holds, at most GetSize().
  uint64_t SizeInFile() const;

  /// The whole content, read on the first call. An error for a chunk of size 0 and
  /// for one that reaches beyond the end of its file.
  Result<std::span<const std::byte>> Content();

  /// The content stays the caller's until the chunk is written; GetSize() bytes.
  void Borrow(std::span<const std::byte> bytes);

  /// Chunks inside this one; empty unless parsed or added.
  C_RiffChunkList& Children();

  /// Takes the content of a chunk of a file for chunks.
  Status ParseChildren();

 private:
  friend class C_RiffChunkList;
  Status Load();
  Status Write(OutputFile& file);

  RiffTag tag_;
  uint32_t size_;
  uint64_t dataOffset_ = 0;
  const InputFile* file_ = nullptr;
  std::vector<std::byte> cache_;
  std::span<const std::byte> content_;  ///< of the cache, or borrowed
  std::unique_ptr<C_RiffChunkList> children_;
};

/// Chunks in file order, which the list owns.
class C_RiffChunkList : public C_CUList<C_RiffChunk, I_RiffChunk> {
 public:
  /// Appends a chunk to be written. The list keeps it.
  C_RiffChunk* AddChunk(const RiffTag& tag, uint32_t size);

  /// Bytes that the chunks take in a file, their headers included.
  uint64_t GetTotalSize() const;

  /// Appends the chunks that stand in the file from `offset` on, until their sizes use
  /// up `length`. The last one is listed whole, even when it reaches beyond; a header
  /// cut off by the end of the file ends the walk without an error.
  Status Parse(const InputFile& file, uint64_t offset, uint32_t length);

  /// Appends the chunks to the file. An error for a chunk with a size and no content.
  Status Write(OutputFile& file);
};

/// The chunks of a file. Chunks of a file read can be used until the object is opened
/// or saved anew, or is gone.
class C_RiffFile {
 public:
  C_RiffFile() = default;
  C_RiffFile(const C_RiffFile&) = delete;
  C_RiffFile& operator=(const C_RiffFile&) = delete;

  /// Lists the chunks of the file. "RIFF" and the form are compared without regard to
  /// case. On failure there is no open file.
  Status Open(const Path& path, std::string_view form);
  Status Open(InputFile file, std::string_view form);

  /// Lists the chunks of a file that stays the caller's.
  Status OpenBorrowed(const InputFile& file, std::string_view form);

  /// Writes the chunks into a new file. A file that would pass 4 GB is refused before
  /// anything is written; after a failure in writing a part of the file stays.
  Status Save(const Path& path, const RiffTag& form);

  C_RiffChunkList& Chunks() { return chunks_; }

 private:
  std::optional<InputFile> file_;
  C_RiffChunkList chunks_;
};

}  // namespace velora
