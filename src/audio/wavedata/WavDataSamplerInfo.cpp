#include "audio/wavedata/WavDataSamplerInfo.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "audio/wavedata/RiffChunkBytes.h"
#include "foundation/ByteCursor.h"

namespace velora {

void C_WavDataSamplerInfo::Clear() {
  head_ = {};
  loops_.Clear();
}

void C_WavDataSamplerInfo::ClearLoops() { loops_.Clear(); }

C_WavDataSamplerInfo::C_SampleLoop* C_WavDataSamplerInfo::GetLoopAt(uint32_t index) {
  return index < GetLoopCount() ? loops_.ItemAt(static_cast<int32_t>(index)) : nullptr;
}

bool C_WavDataSamplerInfo::Append(const LoopRecord& record) {
  auto* const loop = new (std::nothrow) C_SampleLoop(record);
  if (loop) loops_.Add(loop);
  return loop != nullptr;
}

int32_t C_WavDataSamplerInfo::AddLoop(uint32_t id, uint32_t type, uint32_t start, uint32_t end,
                                      uint32_t fraction, uint32_t playCount) {
  return Append({id, type, start, end, fraction, playCount});
}

int32_t C_WavDataSamplerInfo::RemoveLoopAt(uint32_t index) {
  return GetLoopAt(index) && loops_.RemoveAt(static_cast<int32_t>(index));
}

uint32_t C_WavDataSamplerInfo::GetChunkSize() const {
  return static_cast<uint32_t>(sizeof(Head) + sizeof(LoopRecord) * loops_.Items().size() +
                               head_.samplerDataSize);
}

int32_t C_WavDataSamplerInfo::Read(I_RiffChunk* chunk) {
  const auto content = ReadRiffChunk(chunk);
  if (!content) return 0;
  Clear();
  ByteCursor cursor(content->Span());
  // A head cut short gives the words that are there.
  const auto words = *cursor.ReadBytes(std::min<uint64_t>(sizeof(Head), cursor.Remaining()));
  std::memcpy(&head_, words.data(), words.size());
  for (uint32_t i = 0; i < head_.loopCount; ++i) {
    const auto record = cursor.ReadRecord<LoopRecord>();
    if (!record) break;
    if (!Append(*record)) return 0;
  }
  // Writing makes as many bytes as are announced, so no more than there were.
  head_.samplerDataSize =
      static_cast<uint32_t>(std::min<uint64_t>(head_.samplerDataSize, cursor.Remaining()));
  return 1;
}

int32_t C_WavDataSamplerInfo::Write(I_RiffChunk* chunk) const {
  // Checked first, so that a size nobody made a chunk for costs no memory.
  if (!chunk || chunk->GetSize() != GetChunkSize()) return 0;
  std::vector<std::byte> bytes;
  bytes.reserve(GetChunkSize());
  const auto append = [&](const auto& record) {
    const auto raw = std::as_bytes(std::span(&record, 1));
    bytes.insert(bytes.end(), raw.begin(), raw.end());
  };
  Head head = head_;
  head.loopCount = GetLoopCount();
  append(head);
  for (const C_SampleLoop* loop : loops_) append(loop->Record());
  bytes.resize(GetChunkSize());
  return FillRiffChunk(chunk, bytes);
}

}  // namespace velora
