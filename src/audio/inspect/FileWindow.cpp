#include "audio/inspect/FileWindow.h"

#include <algorithm>

namespace velora {

std::span<const std::byte> FileWindow::Get(uint64_t offset, size_t count) {
  if (offset >= file_->Size() || !status_) return {};
  const uint64_t left = file_->Size() - offset;
  count = static_cast<size_t>(std::min<uint64_t>({count, left, capacity_}));
  if (offset < start_ || offset + count > start_ + bytes_.size()) {
    bytes_.resize(static_cast<size_t>(std::min<uint64_t>(capacity_, left)));
    const Result<size_t> read = file_->ReadAt(offset, bytes_);
    bytes_.resize(read ? read.Value() : 0);
    if (!read) status_ = read.GetStatus();
    start_ = offset;
    count = std::min(count, bytes_.size());
  }
  return std::span(bytes_).subspan(static_cast<size_t>(offset - start_), count);
}

}  // namespace velora
