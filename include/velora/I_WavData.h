// A sound in memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include <velora/I_CUList.h>
#include <velora/I_SilenceSegment.h>

namespace velora {

class I_ActionEventMgr;
class I_ProgressCallback;
class I_WavDataBuffer;
class I_WavInfo;
class I_WriteWavParam;

/// Interleaved frames of samples, their format, and everything that travels with
/// a sound: events, silence, write settings, the chunks of a wave file.
///
/// The object is counted by hand and starts at 0: Release deletes it when the
/// count is below 1 and subtracts 1 otherwise. So one Release deletes a sound on
/// which nobody called AddRef. What an operation calls a new sound is the
/// caller's to Release; everything else handed out belongs to the sound.
///
/// Frames and channels count from 0, and every range includes its last one.
/// Progress callbacks may be null. Flags are 1 for done and 0 for refused, which
/// leaves the sound as it was.
///
/// The order of the operations is the contract. 45 operations, 46 raw slots: the
/// destructor takes two.
class I_WavData {
 public:
  /// Slots 0 and 1.
  virtual void AddRef() = 0;
  virtual void Release() = 0;

  /// Slot 2.
  virtual I_WavInfo* GetWavInfo() = 0;

  /// Slot 3. The sample bytes; null before there are any.
  virtual std::byte* GetData() = 0;

  /// Slot 4. Bytes of samples that are there, which is not what a format set
  /// without data says.
  virtual uint32_t GetDataSize() const = 0;

  /// Slots 5 and 6. Set the format, the size in it included, and pass the rate on
  /// to the events; samples and their size stay. Null is ignored.
  virtual void SetWavInfo(const I_WavInfo* info) = 0;
  virtual void SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                         uint16_t container, int32_t isSigned) = 0;

  /// Slot 7. Copies samples, format and write settings. 0 for null and while the
  /// block is a foreign one.
  virtual int32_t Assign(I_WavData* source) = 0;

  /// Slot 8. A new block of `size` bytes, not cleared, in place of the old one,
  /// which is freed unless foreign. Null, with no data left, when memory is short.
  virtual std::byte* AllocData(uint32_t size) = 0;

  /// Slot 9. A new block with a copy of the bytes, which may lie in the old one.
  /// Null while the block is a foreign one and when memory is short.
  virtual std::byte* SetData(const void* bytes, uint32_t size) = 0;

  /// Slot 10. Converts in place, see CreateConverted; 1 at once when the format
  /// is this one already. 0 while the block is a foreign one.
  virtual int32_t ChangeFormat(uint16_t resolution, uint16_t container, int32_t isSigned,
                               I_ProgressCallback* progress) = 0;

  /// Slot 11. A new sound by Assign; null when memory is short.
  virtual I_WavData* Clone() = 0;

  /// Slot 12. A new sound in another sample format, with the write settings. The
  /// magnitude of each sample is shifted and the sign restored, so that -1 becomes
  /// 0 on the way from 16 to 8 bits; nothing is rounded. Null unless both
  /// containers are 8, 16 or 32 bits and no resolution passes its container.
  virtual I_WavData* CreateConverted(uint16_t resolution, uint16_t container, int32_t isSigned,
                                     I_ProgressCallback* progress) = 0;

  /// Slot 13. A new mono sound with `frames` frames of a channel. Null when the
  /// channel is none of the sound's or the frames are not there. A sound of three
  /// or more channels is treated as one of two, channel 0 and the other.
  virtual I_WavData* ExtractChannel(uint16_t channel, uint32_t first, uint32_t frames) = 0;

  /// Slot 14. The reverse: overwrites a channel from `first` on with a mono sound
  /// of the same container. The last argument is ignored.
  virtual int32_t PasteChannel(I_WavData* mono, uint16_t channel, uint32_t first,
                               uint32_t ignored) = 0;

  /// Slot 15. Each frame becomes the mean of its channels, cut toward zero.
  virtual void MixToMono() = 0;

  /// Slot 16. Doubles a mono sound; of more than two channels the first two stay.
  virtual void ToStereo() = 0;

  /// Slot 17. Stereo with the sound on one side, left for 0, and silence on the
  /// other. The side of a sound that has both is taken.
  virtual void ToStereoOneSide(int32_t side) = 0;

  /// Slot 18.
  virtual I_WriteWavParam* GetWriteParam() = 0;

  /// Slot 19. Writes the sound in the format with this id. 0 without samples, for
  /// an id that cannot be written, and when writing fails.
  virtual int32_t SaveAs(uint32_t formatId, const char* path) = 0;

  /// Slot 20.
  virtual I_ActionEventMgr* GetEventMgr() = 0;

  /// Slots 21 and 22. Find stretches in which the mean of the channels stays in
  /// the band -threshold - 1 to threshold, `threshold` being a 12-bit magnitude
  /// from 0 to 2047. A stretch counts from `minLength` frames on; one of two
  /// frames or more at the end of the range counts always. The result replaces
  /// the sound's detected list and is that list. Null, with the list untouched,
  /// for a threshold above 2047, fewer than two frames, and ranges outside the
  /// sound.
  virtual I_CUList<I_SilenceSegment>* DetectSilence(uint32_t threshold, uint32_t minLength,
                                                    I_ProgressCallback* progress) = 0;
  virtual I_CUList<I_SilenceSegment>* DetectSilenceRange(uint32_t threshold, uint32_t minLength,
                                                         uint32_t first, uint32_t last,
                                                         uint16_t firstChannel,
                                                         uint16_t lastChannel,
                                                         I_ProgressCallback* progress) = 0;

  /// Slot 23. Works on a foreign block from now on: it is neither copied nor
  /// freed, and must stay until DetachData or the next allocation.
  virtual void AttachData(void* bytes, uint32_t size) = 0;

  /// Slot 24. Gives the foreign block back and is left without data; null when
  /// the block is the sound's own.
  virtual std::byte* DetachData() = 0;

  /// Slot 25.
  virtual I_WavDataBuffer* GetBuffer() = 0;

  /// Slots 26 and 27. Multiply, cut toward zero and clamp. The gain rises from
  /// `start` to `end` in steps, one every 1024 frames. 0 for a range outside the
  /// sound.
  virtual int32_t ApplyGain(double start, double end, I_ProgressCallback* progress) = 0;
  virtual int32_t ApplyGainRange(double start, double end, uint32_t first, uint32_t last,
                                 uint16_t firstChannel, uint16_t lastChannel,
                                 I_ProgressCallback* progress) = 0;

  /// Slots 28 and 29. The gain that brings the peak of the range to full scale. As
  /// in GetPeak the last frame does not count for the peak; it is scaled with the
  /// others. 0 for a range outside the sound, 1 for a silent one.
  virtual int32_t Normalize() = 0;
  virtual int32_t NormalizeRange(uint32_t first, uint32_t last, uint16_t firstChannel,
                                 uint16_t lastChannel) = 0;

  /// Slot 30. The detected list, or the one set.
  virtual I_CUList<I_SilenceSegment>* GetSilenceSegments() = 0;

  /// Slot 31. Replaces the detected list by a copy; null empties it.
  virtual void SetSilenceSegments(I_CUList<I_SilenceSegment>* segments) = 0;

  /// Slot 32. `out` gets the interface that belongs to the WavChunkKind; null and
  /// 0 for any other kind.
  virtual int32_t GetChunkInfo(uint32_t kind, void** out) = 0;

  /// Slot 33. The mean of channel 0, cut toward zero; 0 without frames.
  virtual int32_t GetDCOffset() = 0;

  /// Slot 34. Subtracts GetDCOffset from every sample of every channel, clamped.
  virtual void RemoveDCOffset() = 0;

  /// Slot 35. Sets the samples of all detected segments to 0, in all channels.
  virtual void ClearSilence() = 0;

  /// Slot 36. Of the event manager's regions.
  virtual uint32_t GetSilenceRegionCount() = 0;

  /// Slot 37. The event manager's regions as segments, those that touch joined, in
  /// a list of the sound's own; null without regions.
  virtual I_CUList<I_SilenceSegment>* MergeSilenceRegions() = 0;

  /// Slot 38. Appends a copy of each segment to the target.
  virtual void CopySegments(I_CUList<I_SilenceSegment>* segments, C_SilenceSegmentList* target) = 0;

  /// Slot 39. Replaces the target by the segments of both lists, those that touch
  /// joined. Either list may be null; nothing happens when both are or when
  /// `active` is 0.
  virtual void MergeSegmentLists(I_CUList<I_SilenceSegment>* a, I_CUList<I_SilenceSegment>* b,
                                 C_SilenceSegmentList* target, int32_t active) = 0;

  /// Slot 40. Copies all write settings; null is ignored.
  virtual void CopyWriteParam(I_WavData* source) = 0;

  /// Slot 41. Puts `length` bytes in front of the byte at `offset`, which is held
  /// to the data. Nothing happens for null or a negative length.
  virtual void InsertBytes(const void* bytes, int32_t offset, int32_t length) = 0;

  /// Slot 42. Nothing happens unless the range lies in the data and starts below
  /// their end.
  virtual void DeleteBytes(int32_t offset, int32_t length) = 0;

  /// Slots 43 and 44.
  virtual ~I_WavData() = default;

  /// Slot 45. Replaces the event manager's regions by one for each segment.
  virtual void SetSilenceRegions(I_CUList<I_SilenceSegment>* segments) = 0;
};

}  // namespace velora
