#include "audio/inspect/RiffWalk.h"

namespace velora {

namespace {

constexpr uint64_t kFormHead = 8;  // tag and size, which the form size does not count
constexpr uint64_t kHead = sizeof(layout::ChunkHeadRecord);

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

}  // namespace

bool RiffItem::Is(std::string_view name) const {
  return std::equal(tag.begin(), tag.end(), name.begin(), name.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

RiffWalker::RiffWalker(FileWindow& window, uint64_t formSize)
    : window_(&window), offset_(sizeof(layout::RiffHeadRecord)), formEnd_(window.FileSize()) {
  if (formSize != 0) formEnd_ = std::min(formEnd_, std::max(formSize + kFormHead, offset_));
}

bool RiffWalker::Next(RiffItem& item) {
  item = {};
  item.offset = offset_;
  if (offset_ >= window_->FileSize()) return false;
  if (offset_ >= formEnd_) {
    item.kind = RiffItem::Kind::kTrailing;
    item.size = window_->FileSize() - offset_;
  } else if (NextPadding(item)) {
    item.kind = RiffItem::Kind::kPadding;
  } else {
    ReadChunk(item, formEnd_ - offset_);
  }
  // A file that cannot be read any more ends the walk.
  if (item.size == 0) return false;
  offset_ += item.size;
  return true;
}

bool RiffWalker::NextPadding(RiffItem& item) {
  uint64_t at = offset_;
  while (at < formEnd_) {
    const std::span<const std::byte> bytes = window_->Get(
        at, static_cast<size_t>(std::min<uint64_t>(formEnd_ - at, FileWindow::kDefaultCapacity)));
    const auto end =
        std::find_if(bytes.begin(), bytes.end(), [](std::byte b) { return b != std::byte{0}; });
    at += static_cast<uint64_t>(end - bytes.begin());
    if (bytes.empty() || end != bytes.end()) break;
  }
  item.size = at - offset_;
  return item.size > 0;
}

void RiffWalker::ReadChunk(RiffItem& item, uint64_t left) {
  const auto head = window_->Record<layout::ChunkHeadRecord>(offset_);
  if (left < kHead || !head) {
    item.kind = RiffItem::Kind::kScrap;
    item.size = left;
    return;
  }
  item.tag = head->tag;
  item.declared = head->size;
  item.dataOffset = offset_ + kHead;
  item.available = std::min(item.declared, window_->FileSize() - item.dataOffset);
  item.size = kHead + item.available;
}

bool ListWalker::IsAdtl(FileWindow& window, const RiffItem& chunk) {
  const auto form = window.Record<layout::FileTag>(chunk.dataOffset);
  return chunk.Is("LIST") && chunk.available >= 4 && form &&
         std::string_view(form->data(), form->size()) == "adtl";
}

bool ListWalker::Next(ListRecord& record) {
  record = {};
  if (Left() < kHead) return false;
  const auto head = window_->Record<layout::ChunkHeadRecord>(offset_);
  if (!head) return false;
  record.offset = offset_;
  record.tag = head->tag;
  record.declared = head->size;
  record.available = std::min(record.declared, Left() - kHead);
  if (record.available >= 4) record.id = window_->Record<le32>(offset_ + kHead).value_or(le32{});
  if (record.Is("labl")) ReadLabel(record);
  if (record.Is("ltxt") && record.available >= 8) {
    record.length = window_->Record<le32>(offset_ + kHead + 4).value_or(le32{});
  }
  // A record of odd size is followed by a pad byte.
  record.size = std::min(kHead + record.declared + record.declared % 2, Left());
  offset_ += record.size;
  return true;
}

void ListWalker::ReadLabel(ListRecord& record) {
  constexpr uint64_t kIdSize = 4;
  if (record.available <= kIdSize) return;
  const uint64_t size = record.available - kIdSize;
  const std::span<const std::byte> bytes =
      window_->Get(record.offset + kHead + kIdSize,
                   static_cast<size_t>(std::min<uint64_t>(size, FileWindow::kDefaultCapacity)));
  const auto end = std::find(bytes.begin(), bytes.end(), std::byte{0});
  record.terminated = end != bytes.end();
  const auto length = std::min<uint64_t>(static_cast<uint64_t>(end - bytes.begin()), kLabelLimit);
  record.text.assign(reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(length));
}

}  // namespace velora
