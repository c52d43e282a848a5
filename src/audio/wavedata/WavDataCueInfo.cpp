#include "audio/wavedata/WavDataCueInfo.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "audio/wavedata/RiffChunkBytes.h"
#include "audio/wavedata/RiffTag.h"
#include "foundation/ByteCursor.h"
#include "foundation/LittleEndian.h"

namespace velora {
namespace {

/// A point as it stands in the chunk, behind the 32-bit count.
struct CueRecord {
  le32 cueId;
  le32 position;  // in frames
  std::array<char, 4> chunkTag;
  le32 chunkStart;
  le32 blockStart;
  le32 sampleOffset;  // in frames
};
static_assert(sizeof(CueRecord) == 24);

}  // namespace

void C_WavDataCueInfo::Clear() {
  firstById_.clear();
  points_.Clear();
}

C_WavDataCueInfo::C_CuePoint* C_WavDataCueInfo::GetAt(uint32_t index) {
  return index < GetCount() ? points_.ItemAt(static_cast<int32_t>(index)) : nullptr;
}

C_WavDataCueInfo::C_CuePoint* C_WavDataCueInfo::FindById(uint32_t id) {
  const auto found = firstById_.find(id);
  return found == firstById_.end() ? nullptr : found->second;
}

C_WavDataCueInfo::C_CuePoint* C_WavDataCueInfo::Append(uint32_t id) {
  auto* const point = new (std::nothrow) C_CuePoint(id, info_);
  if (!point) return nullptr;
  points_.Add(point);
  firstById_.try_emplace(firstById_.end(), id, point);  // ids mostly ascend
  return point;
}

int32_t C_WavDataCueInfo::SetPoint(uint32_t id, uint32_t position, const char* tag,
                                   uint32_t chunkStart, uint32_t blockStart,
                                   uint32_t sampleOffset) {
  C_CuePoint* point = FindById(id);
  if (!point) point = Append(id);
  if (!point) return 0;
  point->position_ = position;
  point->tagText_ = MakeRiffTag(tag);
  point->chunkStart_ = chunkStart;
  point->blockStart_ = blockStart;
  point->sampleOffset_ = sampleOffset;
  return 1;
}

int32_t C_WavDataCueInfo::RemoveAt(uint32_t index) {
  if (!GetAt(index)) return 0;
  points_.RemoveAt(static_cast<int32_t>(index));
  RebuildIndex();  // another point may have had the same id
  return 1;
}

int32_t C_WavDataCueInfo::RemoveById(uint32_t id) {
  const C_CuePoint* const point = FindById(id);
  return point ? RemoveAt(static_cast<uint32_t>(points_.IndexOf(point))) : 0;
}

void C_WavDataCueInfo::RebuildIndex() {
  firstById_.clear();
  for (C_CuePoint* point : points_) firstById_.try_emplace(point->cueId_, point);
}

uint32_t C_WavDataCueInfo::GetChunkSize() const {
  return static_cast<uint32_t>(sizeof(le32) + sizeof(CueRecord) * points_.Items().size());
}

int32_t C_WavDataCueInfo::Read(I_RiffChunk* chunk) {
  const auto content = ReadRiffChunk(chunk);
  if (!content) return 0;
  Clear();
  ByteCursor cursor(content->Span());
  const auto count = cursor.ReadRecord<le32>();
  if (!count) return 1;
  for (uint32_t i = 0; i < *count; ++i) {
    const auto record = cursor.ReadRecord<CueRecord>();
    if (!record) break;
    C_CuePoint* const point = Append(record->cueId);
    if (!point) return 0;
    point->position_ = record->position;
    std::copy(record->chunkTag.begin(), record->chunkTag.end(), point->tagText_.begin());
    point->chunkStart_ = record->chunkStart;
    point->blockStart_ = record->blockStart;
    point->sampleOffset_ = record->sampleOffset;
  }
  return 1;
}

int32_t C_WavDataCueInfo::Write(I_RiffChunk* chunk) const {
  std::vector<CueRecord> records;
  records.reserve(points_.Items().size());
  for (const C_CuePoint* point : points_) {
    CueRecord& record = records.emplace_back();
    record.cueId = point->cueId_;
    record.position = point->position_;
    std::copy_n(point->tagText_.begin(), record.chunkTag.size(), record.chunkTag.begin());
    record.chunkStart = point->chunkStart_;
    record.blockStart = point->blockStart_;
    record.sampleOffset = point->sampleOffset_;
  }
  std::vector<std::byte> bytes(GetChunkSize());
  const le32 count = GetCount();
  std::memcpy(bytes.data(), &count, sizeof count);
  std::ranges::copy(std::as_bytes(std::span(records)), bytes.begin() + sizeof count);
  return FillRiffChunk(chunk, bytes);
}

}  // namespace velora
