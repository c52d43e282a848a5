// Reading a file of any size through a buffer of fixed size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

#include "platform/File.h"
#include "platform/Status.h"

namespace velora {

/// A window that moves over a file. Borrows the file. Cheap for readers that
/// move forward in small steps: one read of the file for each `capacity` bytes.
class FileWindow {
 public:
  static constexpr size_t kDefaultCapacity = 65536;

  explicit FileWindow(const InputFile& file, size_t capacity = kDefaultCapacity)
      : file_(&file), capacity_(capacity) {}

  uint64_t FileSize() const { return file_->Size(); }

  /// The bytes from `offset` on, at most `count` and at most the capacity;
  /// fewer at the end of the file, none behind it or after a read error. Valid
  /// until the next call.
  std::span<const std::byte> Get(uint64_t offset, size_t count);

  /// A whole record at `offset`, or nothing when the file ends before.
  template <typename T>
  std::optional<T> Record(uint64_t offset) {
    static_assert(std::is_trivially_copyable_v<T>);
    const std::span<const std::byte> bytes = Get(offset, sizeof(T));
    if (bytes.size() < sizeof(T)) return std::nullopt;
    T record;
    std::memcpy(&record, bytes.data(), sizeof(T));
    return record;
  }

  std::optional<uint8_t> Byte(uint64_t offset) { return Record<uint8_t>(offset); }

  /// Good until a read of the file failed.
  const Status& GetStatus() const { return status_; }

 private:
  const InputFile* file_;
  size_t capacity_;
  uint64_t start_ = 0;
  std::vector<std::byte> bytes_;
  Status status_;
};

}  // namespace velora
