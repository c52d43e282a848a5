// One chunk of a RIFF file, as the readers and writers of its content see it.
#pragma once

#include <cstdint>

namespace velora {

/// A chunk that was found in a file, or one of a fixed size that is being filled
/// for writing. Borrowed for the call it is passed to.
///
/// The order of the operations is the contract. Four operations, five raw slots:
/// the destructor takes two.
class I_RiffChunk {
 public:
  /// Slot 0. Bytes of content, without tag and size field.
  virtual uint32_t GetSize() = 0;

  /// Slot 1. Copies `length` bytes from `offset` of the content into `buffer`.
  /// 1, or 0 when the chunk is empty or its content cannot be read. The range is
  /// the caller's to keep within GetSize().
  virtual int32_t Read(void* buffer, uint32_t length, uint32_t offset) = 0;

  /// Slot 2. Takes GetSize() bytes as the content; they are copied.
  virtual void SetData(const void* bytes) = 0;

  /// Slots 3 and 4.
  virtual ~I_RiffChunk() = default;
};

}  // namespace velora
