// The "cue " chunk: marked positions.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>

#include <velora/I_WavDataChunkInfo.h>
#include <velora/I_WavInfo.h>
#include "foundation/Lists.h"

namespace velora {

/// A point is looked up by its id in logarithmic time, so that labels of any number
/// find their points.
class C_WavDataCueInfo final : public I_WavDataCueInfo {
 public:
  class C_CuePoint final : public I_WavDataCuePoint, public C_CUItem {
   public:
    C_CuePoint(uint32_t id, const I_WavInfo* info) : cueId_(id), info_(info) {}

    uint32_t GetId() const override { return cueId_; }
    uint32_t GetPosition() const override { return position_; }
    const char* GetChunkTag() const override { return tagText_.data(); }
    uint32_t GetChunkStart() const override { return chunkStart_; }
    uint32_t GetBlockStart() const override { return blockStart_; }
    uint32_t GetSampleOffset() const override { return sampleOffset_; }

    /// The format of the sound that the point marks a position in.
    const I_WavInfo* GetWavInfo() const { return info_; }

   private:
    friend class C_WavDataCueInfo;

    uint32_t cueId_;
    uint32_t position_ = 0;
    uint32_t chunkStart_ = 0;
    uint32_t blockStart_ = 0;
    uint32_t sampleOffset_ = 0;
    const I_WavInfo* info_;
    std::array<char, 5> tagText_{};  ///< four bytes and a terminator
  };

  /// `info` is borrowed for life.
  explicit C_WavDataCueInfo(const I_WavInfo* info) : info_(info) {}

  int32_t HasPoints() const override { return !points_.IsEmpty(); }
  void Clear() override;
  uint32_t GetCount() const override { return static_cast<uint32_t>(points_.Count()); }
  C_CuePoint* GetAt(uint32_t index) override;
  C_CuePoint* FindById(uint32_t id) override;
  int32_t SetPoint(uint32_t id, uint32_t position, const char* tag, uint32_t chunkStart,
                   uint32_t blockStart, uint32_t sampleOffset) override;
  int32_t RemoveAt(uint32_t index) override;
  int32_t RemoveById(uint32_t id) override;
  uint32_t GetChunkSize() const override;
  int32_t Read(I_RiffChunk* chunk) override;
  int32_t Write(I_RiffChunk* chunk) const override;

  std::span<C_CuePoint* const> Points() const { return points_.Items(); }

 private:
  C_CuePoint* Append(uint32_t id);
  void RebuildIndex();

  const I_WavInfo* info_;
  C_CUList<C_CuePoint, I_WavDataCuePoint> points_;
  std::map<uint32_t, C_CuePoint*> firstById_;
};

}  // namespace velora
