// The chunks of a RIFF file and the records of its "adtl" list, in file order,
// nothing left out.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "audio/inspect/FileWindow.h"
#include "audio/inspect/Layouts.h"

namespace velora {

/// A stretch of a RIFF file behind its head.
struct RiffItem {
  enum class Kind : uint8_t {
    kChunk,
    kPadding,   ///< zero bytes between chunks, inside the form
    kScrap,     ///< bytes inside the form that are too few for a chunk head
    kTrailing,  ///< bytes behind the form
  };

  Kind kind = Kind::kChunk;
  uint64_t offset = 0;
  uint64_t size = 0;  ///< bytes that are there, the head included
  layout::FileTag tag{};
  uint64_t dataOffset = 0;
  uint64_t declared = 0;   ///< the chunk's size field
  uint64_t available = 0;  ///< data bytes that the file holds

  uint64_t DataEnd() const { return dataOffset + available; }
  bool Is(std::string_view name) const;  ///< blind to case
};

/// Walks the items. Borrows the window; other uses of the window in between do
/// no harm.
class RiffWalker {
 public:
  /// `formSize` is the size field of the file's head; 0 stands for the whole file.
  RiffWalker(FileWindow& window, uint64_t formSize);

  /// False at the end of the file.
  bool Next(RiffItem& item);

 private:
  bool NextPadding(RiffItem& item);
  void ReadChunk(RiffItem& item, uint64_t left);

  FileWindow* window_;
  uint64_t offset_;
  uint64_t formEnd_;
};

/// A record of a "LIST" chunk of the form "adtl".
struct ListRecord {
  uint64_t offset = 0;
  uint64_t size = 0;  ///< bytes that are there, head and pad byte included
  layout::FileTag tag{};
  uint64_t declared = 0;    ///< the record's size field
  uint64_t available = 0;   ///< data bytes that the chunk holds
  uint32_t id = 0;          ///< cue id; 0 when cut off
  uint32_t length = 0;      ///< "ltxt": samples
  std::string text;         ///< "labl": up to 63 characters, as far as the first zero byte
  bool terminated = false;  ///< "labl": a zero byte ends the text

  bool Is(std::string_view name) const { return name == std::string_view(tag.data(), tag.size()); }
};

/// Characters of a label that a sound keeps.
inline constexpr uint64_t kLabelLimit = 63;

/// Walks the records of a chunk for which IsAdtl says yes.
class ListWalker {
 public:
  ListWalker(FileWindow& window, const RiffItem& chunk)
      : window_(&window),
        offset_(std::min(chunk.dataOffset + 4, chunk.DataEnd())),
        end_(chunk.DataEnd()) {}

  /// False at the end, also when fewer than 8 bytes are left: see Left.
  bool Next(ListRecord& record);

  /// Bytes of the chunk that the walk left over.
  uint64_t Left() const { return end_ - offset_; }
  uint64_t Offset() const { return offset_; }

  static bool IsAdtl(FileWindow& window, const RiffItem& chunk);

 private:
  void ReadLabel(ListRecord& record);

  FileWindow* window_;
  uint64_t offset_;
  uint64_t end_;
};

}  // namespace velora
