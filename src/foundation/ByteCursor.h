// Bounded reading of bytes that nobody has checked yet.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace velora {

/// A reading position in a span of bytes that it cannot leave. Every operation
/// either succeeds whole or fails and leaves the position where it was. Borrows
/// the bytes. Cheap to copy: a copy reads on independently.
class ByteCursor {
 public:
  ByteCursor() = default;

  /// `base` is the offset of the first byte in the file, for messages.
  explicit ByteCursor(std::span<const std::byte> bytes, uint64_t base = 0)
      : bytes_(bytes), base_(base) {}

  uint64_t Size() const { return bytes_.size(); }
  uint64_t Offset() const { return offset_; }  ///< bytes read so far, from the cursor's own start
  uint64_t FileOffset() const { return base_ + offset_; }  ///< position in the whole file
  uint64_t Remaining() const { return bytes_.size() - offset_; }
  bool AtEnd() const { return Remaining() == 0; }

  /// What has not been read yet.
  std::span<const std::byte> Rest() const { return bytes_.subspan(offset_); }

  /// Moves to an offset from the cursor's own start; the end itself is allowed.
  [[nodiscard]] bool Seek(uint64_t offset) {
    if (offset > bytes_.size()) return false;
    offset_ = static_cast<size_t>(offset);
    return true;
  }

  [[nodiscard]] bool Skip(uint64_t count) {
    if (count > Remaining()) return false;
    offset_ += static_cast<size_t>(count);
    return true;
  }

  /// The next `count` bytes, in place.
  std::optional<std::span<const std::byte>> ReadBytes(uint64_t count) {
    if (count > Remaining()) return std::nullopt;
    const auto bytes = bytes_.subspan(offset_, static_cast<size_t>(count));
    offset_ += bytes.size();
    return bytes;
  }

  /// A cursor over the next `count` bytes alone; this one moves behind them.
  std::optional<ByteCursor> Sub(uint64_t count) {
    const uint64_t start = FileOffset();
    const auto bytes = ReadBytes(count);
    if (!bytes) return std::nullopt;
    return ByteCursor(*bytes, start);
  }

  /// As Sub, held to what is there: for chunks whose stored size overshoots.
  ByteCursor SubUpTo(uint64_t count) { return *Sub(std::min(count, Remaining())); }

  /// The next record: a trivially copyable type, best one of little-endian fields.
  template <typename T>
  std::optional<T> ReadRecord() {
    T record;
    if (!Read(record)) return std::nullopt;
    return record;
  }

  /// As ReadRecord; `record` is untouched on failure.
  template <typename T>
  [[nodiscard]] bool Read(T& record) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (sizeof(T) > Remaining()) return false;
    std::memcpy(&record, bytes_.data() + offset_, sizeof(T));
    offset_ += sizeof(T);
    return true;
  }

 private:
  std::span<const std::byte> bytes_;
  uint64_t base_ = 0;
  size_t offset_ = 0;
};

}  // namespace velora
