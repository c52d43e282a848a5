// Bytes of a file under construction, kept in memory until they are complete.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

#include "foundation/LittleEndian.h"

namespace velora {

class ByteSink {
 public:
  /// Bytes put so far, which is the offset of the next one.
  size_t Size() const { return bytes_.size(); }
  std::span<const std::byte> Bytes() const { return bytes_; }
  void Reserve(size_t bytes) { bytes_.reserve(bytes); }

  void Put8(unsigned value) { bytes_.push_back(static_cast<std::byte>(value)); }
  void Put16(unsigned value) { Put(le16(static_cast<uint16_t>(value))); }
  void PutBytes(std::span<const std::byte> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  void PutWords(std::span<const uint16_t> words) {
    const size_t at = Grow(words.size_bytes());
    for (size_t i = 0; i < words.size(); ++i) {
      const le16 word(words[i]);
      std::memcpy(bytes_.data() + at + 2 * i, &word, 2);
    }
  }
  /// The same word `count` times.
  void PutWordRun(uint16_t value, size_t count) {
    const size_t at = Grow(2 * count);
    const le16 word(value);
    for (size_t i = 0; i < count; ++i) std::memcpy(bytes_.data() + at + 2 * i, &word, 2);
  }

  /// A record of little-endian fields.
  template <typename T>
  void Put(const T& record) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) == 1);
    const size_t at = Grow(sizeof record);
    std::memcpy(bytes_.data() + at, &record, sizeof record);
  }

  /// Replaces a record that was put at `offset`.
  template <typename T>
  void Patch(size_t offset, const T& record) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) == 1);
    std::memcpy(bytes_.data() + offset, &record, sizeof record);
  }

  /// Room for `count` bytes more, to be written through the span.
  std::span<std::byte> Extend(size_t count) {
    const size_t at = Grow(count);
    return std::span(bytes_).subspan(at);
  }

 private:
  size_t Grow(size_t count) {
    const size_t at = bytes_.size();
    bytes_.resize(at + count);
    return at;
  }

  std::vector<std::byte> bytes_;
};

}  // namespace velora
