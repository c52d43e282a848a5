// A sound in memory.
//
// The implementation is spread over files by subject: WavData.cpp (format, memory,
// counting), WavDataConvert.cpp, WavDataChannels.cpp, WavDataGain.cpp,
// WavDataSilence.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include <velora/I_WavData.h>
#include <velora/I_WindowHost.h>
#include "audio/wavedata/ActionEventMgr.h"
#include "audio/wavedata/SilenceSegment.h"
#include "audio/wavedata/WavDataBuffer.h"
#include "audio/wavedata/WavDataCueInfo.h"
#include "audio/wavedata/WavDataExtraChunkInfo.h"
#include "audio/wavedata/WavDataListInfo.h"
#include "audio/wavedata/WavDataSamplerInfo.h"
#include "audio/wavedata/WavDataTextInfo.h"
#include "audio/wavedata/WavInfo.h"
#include "audio/wavedata/WriteWavParam.h"
#include "platform/Path.h"

namespace velora {

class C_WavData;

/// Writes a sound in the format with this id; false when there is no such format
/// or writing fails.
using SaveSoundFunction = bool (*)(uint32_t formatId, C_WavData& sound, const Path& path);

/// Tells sounds how to save themselves; called once at start-up by the layer that
/// knows the file formats. Until then SaveAs is false.
void SetSaveSoundFunction(SaveSoundFunction function);

/// A sound that is released with its pointer.
struct WavDataRelease {
  void operator()(C_WavData* sound) const;
};
using WavDataPtr = std::unique_ptr<C_WavData, WavDataRelease>;

class C_WavData final : public I_WavData {
 public:
  C_WavData();
  ~C_WavData() override;
  C_WavData(const C_WavData&) = delete;
  C_WavData& operator=(const C_WavData&) = delete;

  /// A new empty sound; null when memory is short.
  static WavDataPtr Create();

  // The interface; see there.
  void AddRef() override { ++refCount_; }
  void Release() override;
  C_WavInfo* GetWavInfo() override { return &info_; }
  std::byte* GetData() override { return buffer_.Bytes().data(); }
  uint32_t GetDataSize() const override { return dataSize_; }
  void SetWavInfo(const I_WavInfo* info) override;
  void SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                 uint16_t container, int32_t isSigned) override;
  int32_t Assign(I_WavData* source) override;
  std::byte* AllocData(uint32_t size) override;
  std::byte* SetData(const void* bytes, uint32_t size) override;
  int32_t ChangeFormat(uint16_t resolution, uint16_t container, int32_t isSigned,
                       I_ProgressCallback* progress) override;
  C_WavData* Clone() override;
  C_WavData* CreateConverted(uint16_t resolution, uint16_t container, int32_t isSigned,
                             I_ProgressCallback* progress) override;
  C_WavData* ExtractChannel(uint16_t channel, uint32_t first, uint32_t frames) override;
  int32_t PasteChannel(I_WavData* mono, uint16_t channel, uint32_t first,
                       uint32_t ignored) override;
  void MixToMono() override;
  void ToStereo() override;
  void ToStereoOneSide(int32_t side) override;
  C_WriteWavParam* GetWriteParam() override { return &writeParam_; }
  int32_t SaveAs(uint32_t formatId, const char* path) override;
  C_ActionEventMgr* GetEventMgr() override { return &eventMgr_; }
  C_SilenceSegmentList* DetectSilence(uint32_t threshold, uint32_t minLength,
                                      I_ProgressCallback* progress) override;
  C_SilenceSegmentList* DetectSilenceRange(uint32_t threshold, uint32_t minLength, uint32_t first,
                                           uint32_t last, uint16_t firstChannel,
                                           uint16_t lastChannel,
                                           I_ProgressCallback* progress) override;
  void AttachData(void* bytes, uint32_t size) override;
  std::byte* DetachData() override;
  C_WavDataBuffer* GetBuffer() override { return &buffer_; }
  int32_t ApplyGain(double start, double end, I_ProgressCallback* progress) override;
  int32_t ApplyGainRange(double start, double end, uint32_t first, uint32_t last,
                         uint16_t firstChannel, uint16_t lastChannel,
                         I_ProgressCallback* progress) override;
  int32_t Normalize() override;
  int32_t NormalizeRange(uint32_t first, uint32_t last, uint16_t firstChannel,
                         uint16_t lastChannel) override;
  C_SilenceSegmentList* GetSilenceSegments() override { return &detected_; }
  void SetSilenceSegments(I_CUList<I_SilenceSegment>* segments) override;
  int32_t GetChunkInfo(uint32_t kind, void** out) override;
  int32_t GetDCOffset() override;
  void RemoveDCOffset() override;
  void ClearSilence() override;
  uint32_t GetSilenceRegionCount() override;
  C_SilenceSegmentList* MergeSilenceRegions() override;
  void CopySegments(I_CUList<I_SilenceSegment>* segments, C_SilenceSegmentList* target) override;
  void MergeSegmentLists(I_CUList<I_SilenceSegment>* a, I_CUList<I_SilenceSegment>* b,
                         C_SilenceSegmentList* target, int32_t active) override;
  void CopyWriteParam(I_WavData* source) override;
  void InsertBytes(const void* bytes, int32_t offset, int32_t length) override;
  void DeleteBytes(int32_t offset, int32_t length) override;
  void SetSilenceRegions(I_CUList<I_SilenceSegment>* segments) override;

  /// As AllocData, at an address that modulo 4096 is `pagePhase`: copying from a
  /// source of the same phase is faster. Empty when memory is short or the size
  /// passes 32 bits.
  std::span<std::byte> AllocDataAt(uint64_t size, unsigned pagePhase);

  /// The sample bytes, for walking.
  std::span<std::byte> Bytes() { return buffer_.Bytes(); }
  std::span<const std::byte> Bytes() const { return buffer_.Bytes(); }

  /// The stored 16-bit containers as they are, without the bytes of a last one cut
  /// short. Empty for other containers, and for a block at an odd address, which
  /// only AllocDataAt and AttachData can bring about.
  std::span<uint16_t> Words();
  std::span<const uint16_t> Words() const;

  const C_WavInfo& Info() const { return info_; }
  const C_WavDataBuffer& Buffer() const { return buffer_; }
  const C_ActionEventMgr& EventMgr() const { return eventMgr_; }
  const C_WriteWavParam& WriteParam() const { return writeParam_; }
  std::span<C_SilenceSegment* const> SilenceSegments() const { return detected_.Items(); }

  C_WavDataCueInfo& CueInfo() { return cueInfo_; }
  C_WavDataSamplerInfo& SamplerInfo() { return samplerInfo_; }
  C_WavDataListInfo& ListInfo() { return listInfo_; }
  C_WavDataExtraChunkInfo& ExtraChunks() { return extraChunks_; }

  /// Frames that the format counts and the block really holds.
  uint64_t FrameCount() const;

  /// Where a file object that this sound saves itself with shows its errors; null
  /// for nowhere. Borrowed.
  I_WindowHost* OwnerWindow() const { return ownerWindow_; }
  void SetOwnerWindow(I_WindowHost* window) { ownerWindow_ = window; }

  /// SaveAs for a path that is no text of the system's own.
  bool SaveAsPath(uint32_t formatId, const Path& path);

  /// Replaces the target by segments of the regions, which stand in ascending order:
  /// one for each, or with `merge` one for all that touch. Clipped to the sound.
  void BuildSegments(std::span<C_ActionSilenceRegion* const> regions, C_SilenceSegmentList& target,
                     bool merge) const;

 private:
  void OnFormatChanged();
  void SetSize(uint64_t size);
  void TakeBlock(C_WavDataBuffer& block, uint16_t channels);
  void MakeStereo(ConstSamples left, ConstSamples right);

  C_SilenceSegmentList merged_;
  C_WavDataBuffer buffer_;
  uint32_t dataSize_ = 0;
  C_WavInfo info_;
  C_ActionEventMgr eventMgr_;
  C_WriteWavParam writeParam_;
  C_SilenceSegmentList detected_;
  C_WavDataCueInfo cueInfo_;
  C_WavDataTextInfo textInfo_;
  C_WavDataSamplerInfo samplerInfo_;
  C_WavDataListInfo listInfo_;
  C_WavDataExtraChunkInfo extraChunks_;
  int32_t refCount_ = 0;
  I_WindowHost* ownerWindow_ = nullptr;
};

}  // namespace velora
