// What the standard and private chunks of a wave file carry beside the samples.
//
// Each chunk info reads its own chunk and fills one for writing. What a damaged
// or foreign chunk claims beyond its end is left out: whatever is whole is kept.
// A chunk to be written must have been made with the size GetChunkSize gives;
// Write is 0 for any other. All infos are embedded in the sound, and everything
// they hand out is theirs.
#pragma once

#include <cstdint>

#include <velora/I_CUList.h>
#include <velora/I_RiffChunk.h>

namespace velora {

/// The kinds that I_WavData::GetChunkInfo knows, and the interface behind each.
enum WavChunkKind : uint32_t {
  kCueChunk = 1,      ///< I_WavDataCueInfo
  kTextChunk = 2,     ///< I_WavDataTextInfo
  kSamplerChunk = 3,  ///< I_WavDataSamplerInfo
  kListChunk = 4,     ///< I_WavDataListInfo
  kExtraChunks = 5,   ///< I_WavDataExtraChunkInfo
};

/// A marked position. Valid until the point is removed or its list read anew. The
/// order of the operations is the contract. Six raw slots.
class I_WavDataCuePoint {
 public:
  virtual uint32_t GetId() const = 0;            ///< slot 0; unique in well-made files
  virtual uint32_t GetPosition() const = 0;      ///< slot 1; in frames
  virtual const char* GetChunkTag() const = 0;   ///< slot 2; up to four characters, "data"
  virtual uint32_t GetChunkStart() const = 0;    ///< slot 3
  virtual uint32_t GetBlockStart() const = 0;    ///< slot 4
  virtual uint32_t GetSampleOffset() const = 0;  ///< slot 5

 protected:
  ~I_WavDataCuePoint() = default;
};

/// The "cue " chunk: points in the order in which they were added. The order of
/// the operations is the contract. 12 operations, 13 raw slots: the destructor
/// takes two.
class I_WavDataCueInfo {
 public:
  /// Slots 0 to 2.
  virtual int32_t HasPoints() const = 0;
  virtual void Clear() = 0;
  virtual uint32_t GetCount() const = 0;

  /// Slot 3. Null beyond the end.
  virtual I_WavDataCuePoint* GetAt(uint32_t index) = 0;

  /// Slot 4. The first point with the id, or null.
  virtual I_WavDataCuePoint* FindById(uint32_t id) = 0;

  /// Slot 5. Changes the first point with the id in its place, or appends one. Up
  /// to four characters of `tag` are taken; null is empty. 0 when memory is short.
  virtual int32_t SetPoint(uint32_t id, uint32_t position, const char* tag, uint32_t chunkStart,
                           uint32_t blockStart, uint32_t sampleOffset) = 0;

  /// Slots 6 and 7. 0 when there is no such point; the first one with the id.
  virtual int32_t RemoveAt(uint32_t index) = 0;
  virtual int32_t RemoveById(uint32_t id) = 0;

  /// Slot 8. 4 + 24 bytes a point.
  virtual uint32_t GetChunkSize() const = 0;

  /// Slot 9. Replaces all points. 0, and no change, when the chunk is empty or
  /// cannot be read.
  virtual int32_t Read(I_RiffChunk* chunk) = 0;

  /// Slot 10.
  virtual int32_t Write(I_RiffChunk* chunk) const = 0;

  /// Slots 11 and 12.
  virtual ~I_WavDataCueInfo() = default;
};

/// A place holder: no chunk of a wave file reaches it. The order of the
/// operations is the contract. Four operations, five raw slots: the destructor
/// takes two.
class I_WavDataTextInfo {
 public:
  virtual uint32_t GetChunkSize() const = 0;            ///< slot 0; 4
  virtual int32_t Read(I_RiffChunk* chunk) = 0;         ///< slot 1; 1, nothing is read
  virtual int32_t Write(I_RiffChunk* chunk) const = 0;  ///< slot 2; 0, nothing is written
  virtual ~I_WavDataTextInfo() = default;               ///< slots 3 and 4
};

/// A loop of a sampler. Valid until the loop is removed or its list read anew. The
/// order of the operations is the contract. Six raw slots.
class I_WavDataSampleLoop {
 public:
  virtual uint32_t GetCueId() const = 0;      ///< slot 0
  virtual uint32_t GetLoopType() const = 0;   ///< slot 1; 0 forward, 1 back and forth, 2 backward
  virtual uint32_t GetLoopStart() const = 0;  ///< slot 2; the first frame
  virtual uint32_t GetLoopEnd() const = 0;    ///< slot 3; the last frame, played too
  virtual uint32_t GetFraction() const = 0;   ///< slot 4; of a sample, 0x80000000 a half
  virtual uint32_t GetPlayCount() const = 0;  ///< slot 5; 0 forever

 protected:
  ~I_WavDataSampleLoop() = default;
};

/// The "smpl" chunk: words about the sampler, and loops. The order of the
/// operations is the contract. 27 operations, 28 raw slots: the destructor takes
/// two.
class I_WavDataSamplerInfo {
 public:
  /// Slot 0.
  virtual int32_t HasLoops() const = 0;

  /// Slots 1 and 2. Everything; the loops alone.
  virtual void Clear() = 0;
  virtual void ClearLoops() = 0;

  /// Slots 3 to 9.
  virtual uint32_t GetManufacturer() const = 0;
  virtual uint32_t GetProduct() const = 0;
  virtual uint32_t GetSamplePeriod() const = 0;  ///< nanoseconds
  virtual uint32_t GetMidiUnityNote() const = 0;
  virtual uint32_t GetMidiPitchFraction() const = 0;
  virtual uint32_t GetSmpteFormat() const = 0;
  virtual uint32_t GetSmpteOffset() const = 0;

  /// Slot 10.
  virtual uint32_t GetLoopCount() const = 0;

  /// Slots 11 and 12. Bytes of private data behind the loops. The data themselves
  /// are not kept; zeros are written for them.
  virtual void SetSamplerDataSize(uint32_t size) = 0;
  virtual uint32_t GetSamplerDataSize() const = 0;

  /// Slots 13 to 19.
  virtual void SetManufacturer(uint32_t value) = 0;
  virtual void SetProduct(uint32_t value) = 0;
  virtual void SetSamplePeriod(uint32_t nanoseconds) = 0;
  virtual void SetMidiUnityNote(uint32_t value) = 0;
  virtual void SetMidiPitchFraction(uint32_t value) = 0;
  virtual void SetSmpteFormat(uint32_t value) = 0;
  virtual void SetSmpteOffset(uint32_t value) = 0;

  /// Slot 20. Null beyond the end.
  virtual I_WavDataSampleLoop* GetLoopAt(uint32_t index) = 0;

  /// Slot 21. 0 when memory is short.
  virtual int32_t AddLoop(uint32_t id, uint32_t type, uint32_t start, uint32_t end,
                          uint32_t fraction, uint32_t playCount) = 0;

  /// Slot 22. 0 when there is no such loop.
  virtual int32_t RemoveLoopAt(uint32_t index) = 0;

  /// Slot 23. 36 + 24 bytes a loop + the private data.
  virtual uint32_t GetChunkSize() const = 0;

  /// Slot 24. Replaces everything. 0, and no change, when the chunk is empty or
  /// cannot be read.
  virtual int32_t Read(I_RiffChunk* chunk) = 0;

  /// Slot 25.
  virtual int32_t Write(I_RiffChunk* chunk) const = 0;

  /// Slots 26 and 27.
  virtual ~I_WavDataSamplerInfo() = default;
};

/// The "LIST" chunk of form "adtl": labels and lengths for cue points. The order
/// of the operations is the contract. 12 operations, 13 raw slots: the destructor
/// takes two.
class I_WavDataListInfo {
 public:
  /// Slot 0. All records written, labels first, with the form's four bytes.
  virtual uint32_t GetChunkSize() const = 0;

  /// Slots 1 and 2.
  virtual uint32_t GetLabelCount() const = 0;
  virtual void ClearLabels() = 0;

  /// Slot 3. The text, up to 63 characters, valid until the label is dropped;
  /// null beyond the end. `id` gets the cue point's id and may be null.
  virtual const char* GetLabelAt(uint32_t index, uint32_t* id) const = 0;

  /// Slot 4. Text beyond 63 characters is cut; null is empty. 0 when memory is
  /// short.
  virtual int32_t AddLabel(uint32_t id, const char* text) = 0;

  /// Slot 5. Replaces labels and texts. A list of another form changes nothing
  /// and gives 1. 0 when the chunk is empty or cannot be read.
  virtual int32_t Read(I_RiffChunk* chunk) = 0;

  /// Slot 6.
  virtual int32_t Write(I_RiffChunk* chunk) const = 0;

  /// Slots 7 and 8.
  virtual uint32_t GetTextCount() const = 0;
  virtual void ClearTexts() = 0;

  /// Slot 9. The length that the first text record of this cue id states; 0
  /// without one.
  virtual uint32_t GetTextLength(uint32_t id) const = 0;

  /// Slot 10. 0 when memory is short.
  virtual int32_t AddText(uint32_t id, uint32_t length) = 0;

  /// Slots 11 and 12.
  virtual ~I_WavDataListInfo() = default;
};

/// A chunk kept as it is. Valid until it is removed. The order of the operations
/// is the contract. Two raw slots.
class I_WavDataExtraChunk {
 public:
  /// Slot 0. Four characters and a terminator.
  virtual const char* GetTag() const = 0;

  /// Slot 1. The size in bytes; `bytes` gets the content, null when it is empty.
  virtual uint32_t GetData(const void** bytes) const = 0;

 protected:
  ~I_WavDataExtraChunk() = default;
};

/// The private chunks of a wave file, in file order. The order of the operations
/// is the contract: the list's own come first, slots 0 to 10, with the destructor
/// at the list's slots 9 and 10. 15 raw slots.
class I_WavDataExtraChunkInfo : public I_CUList<I_WavDataExtraChunk> {
 public:
  /// Slot 11. Appends a copy. Four characters of `tag` are taken, fewer are
  /// filled with zeros. `bytes` may be null for size 0. 0 when memory is short.
  virtual int32_t AddFromBytes(const char* tag, const void* bytes, uint32_t size) = 0;

  /// Slot 12. Drops the first chunk with exactly this tag; 0 when there is none.
  virtual int32_t Remove(const char* tag) = 0;

  /// Slot 13. Appends a copy of the chunk's content. 0, and nothing is added, when
  /// it cannot be read; an empty chunk is added.
  virtual int32_t AddFromChunk(const char* tag, I_RiffChunk* chunk) = 0;

  /// Slot 14. The first chunk with exactly this tag, or null.
  virtual I_WavDataExtraChunk* Find(const char* tag) = 0;
};

}  // namespace velora
