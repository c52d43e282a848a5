#include "foundation/EncryptReader.h"

#include <algorithm>

namespace velora {

bool EncryptReader::Skip(uint64_t count) {
  if (count > Remaining()) return false;
  position_ += count;
  return true;
}

bool EncryptReader::Read(std::span<std::byte> into) {
  if (into.size() > Remaining()) return false;
  const uint64_t start = position_;
  while (!into.empty()) {
    const bool inWindow = position_ >= windowStart_ && position_ < windowStart_ + windowSize_;
    if (!inWindow && !FillWindow()) {
      position_ = start;
      return false;
    }
    const auto offset = static_cast<size_t>(position_ - windowStart_);
    const size_t count = std::min(into.size(), windowSize_ - offset);
    std::copy_n(window_.begin() + static_cast<ptrdiff_t>(offset), count, into.begin());
    into = into.subspan(count);
    position_ += count;
  }
  return true;
}

bool EncryptReader::FillWindow() {
  const Result<size_t> read = file_->ReadAt(position_, window_);
  windowStart_ = position_;
  windowSize_ = read ? read.Value() : 0;
  return windowSize_ > 0;
}

}  // namespace velora
