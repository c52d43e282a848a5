// Reads the header of an enciphered file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include "platform/File.h"

namespace velora {

/// A reading position in a file that it cannot leave. Each operation succeeds
/// whole or fails and leaves the position where it was. Reads the file in small
/// pieces, so that looking at a header costs the same in front of any amount of
/// data. Borrows the file.
class EncryptReader {
 public:
  explicit EncryptReader(const InputFile& file) : file_(&file) {}

  uint64_t Position() const { return position_; }
  uint64_t Remaining() const { return file_->Size() - position_; }

  [[nodiscard]] bool Read(std::span<std::byte> into);
  [[nodiscard]] bool Skip(uint64_t count);

  template <typename Record>
  [[nodiscard]] bool ReadRecord(Record& record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    return Read(std::as_writable_bytes(std::span(&record, 1)));
  }

 private:
  static constexpr size_t kWindowSize = 4096;

  bool FillWindow();

  const InputFile* file_;
  uint64_t position_ = 0;
  uint64_t windowStart_ = 0;
  size_t windowSize_ = 0;
  std::array<std::byte, kWindowSize> window_;
};

}  // namespace velora
