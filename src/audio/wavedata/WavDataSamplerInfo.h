// The "smpl" chunk: what a sampler is told of a sound.
#pragma once

#include <cstdint>
#include <span>

#include <velora/I_WavDataChunkInfo.h>
#include "foundation/Lists.h"
#include "foundation/LittleEndian.h"

namespace velora {

class C_WavDataSamplerInfo final : public I_WavDataSamplerInfo {
 public:
  /// The head of the chunk as it stands in the file.
  struct Head {
    le32 manufacturer;
    le32 product;
    le32 samplePeriod;  // nanoseconds
    le32 midiUnityNote;
    le32 midiPitchFraction;
    le32 smpteFormat;
    le32 smpteOffset;
    le32 loopCount;
    le32 samplerDataSize;  // bytes behind the loops
  };
  static_assert(sizeof(Head) == 36);

  /// A loop as it stands in the file.
  struct LoopRecord {
    le32 cueId;
    le32 loopType;
    le32 loopStart;  // first frame
    le32 loopEnd;    // last frame
    le32 fraction;
    le32 playCount;  // 0 is forever
  };
  static_assert(sizeof(LoopRecord) == 24);

  class C_SampleLoop final : public I_WavDataSampleLoop, public C_CUItem {
   public:
    explicit C_SampleLoop(const LoopRecord& record) : record_(record) {}

    uint32_t GetCueId() const override { return record_.cueId; }
    uint32_t GetLoopType() const override { return record_.loopType; }
    uint32_t GetLoopStart() const override { return record_.loopStart; }
    uint32_t GetLoopEnd() const override { return record_.loopEnd; }
    uint32_t GetFraction() const override { return record_.fraction; }
    uint32_t GetPlayCount() const override { return record_.playCount; }

    const LoopRecord& Record() const { return record_; }

   private:
    LoopRecord record_;
  };

  int32_t HasLoops() const override { return !loops_.IsEmpty(); }
  void Clear() override;
  void ClearLoops() override;
  uint32_t GetManufacturer() const override { return head_.manufacturer; }
  uint32_t GetProduct() const override { return head_.product; }
  uint32_t GetSamplePeriod() const override { return head_.samplePeriod; }
  uint32_t GetMidiUnityNote() const override { return head_.midiUnityNote; }
  uint32_t GetMidiPitchFraction() const override { return head_.midiPitchFraction; }
  uint32_t GetSmpteFormat() const override { return head_.smpteFormat; }
  uint32_t GetSmpteOffset() const override { return head_.smpteOffset; }
  uint32_t GetLoopCount() const override { return static_cast<uint32_t>(loops_.Count()); }
  void SetSamplerDataSize(uint32_t size) override { head_.samplerDataSize = size; }
  uint32_t GetSamplerDataSize() const override { return head_.samplerDataSize; }
  void SetManufacturer(uint32_t value) override { head_.manufacturer = value; }
  void SetProduct(uint32_t value) override { head_.product = value; }
  void SetSamplePeriod(uint32_t nanoseconds) override { head_.samplePeriod = nanoseconds; }
  void SetMidiUnityNote(uint32_t value) override { head_.midiUnityNote = value; }
  void SetMidiPitchFraction(uint32_t value) override { head_.midiPitchFraction = value; }
  void SetSmpteFormat(uint32_t value) override { head_.smpteFormat = value; }
  void SetSmpteOffset(uint32_t value) override { head_.smpteOffset = value; }
  C_SampleLoop* GetLoopAt(uint32_t index) override;
  int32_t AddLoop(uint32_t id, uint32_t type, uint32_t start, uint32_t end, uint32_t fraction,
                  uint32_t playCount) override;
  int32_t RemoveLoopAt(uint32_t index) override;
  uint32_t GetChunkSize() const override;
  int32_t Read(I_RiffChunk* chunk) override;
  int32_t Write(I_RiffChunk* chunk) const override;

  std::span<C_SampleLoop* const> Loops() const { return loops_.Items(); }

 private:
  bool Append(const LoopRecord& record);

  Head head_;
  C_CUList<C_SampleLoop, I_WavDataSampleLoop> loops_;
};

}  // namespace velora
