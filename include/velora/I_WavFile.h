// A sound in a file: what every audio file class offers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velora {

class I_CUTime;
class I_WavData;
class I_WavInfo;
class I_WriteWavParam;

/// What is known of a file after its header was read. The pointers belong to the
/// file object; texts and the time stay valid until the next header is read.
///
/// The order of the operations is the contract. Six raw slots.
class I_WavFileInfo {
 public:
  /// Slot 0. The file actually read, which is the deciphered temporary file of an
  /// enciphered one. Empty before a file was taken over.
  virtual const char* GetPath() const = 0;

  /// Slot 1. When the file was last written.
  virtual I_CUTime* GetFileTime() = 0;

  /// Slot 2. Bytes of the file, the low 32 bits.
  virtual uint32_t GetFileSize() const = 0;

  /// Slot 3. What the last header read found, a format id: 2 for a wave file.
  virtual uint32_t GetSourceKind() const = 0;

  /// Slot 4. The form of its samples: of a wave file 0 for PCM, 3 and 6 for the two
  /// ADPCM forms.
  virtual uint32_t GetTargetKind() const = 0;

  /// Slot 5. The format of the sound; null without a sound.
  virtual I_WavInfo* GetWavInfo() = 0;

 protected:
  ~I_WavFileInfo() = default;
};

/// Reads a file into a sound and writes a sound into a file.
///
/// The object is counted by hand as I_WavData is: it starts at 0, and Release
/// deletes it when the count is below 1.
///
/// A file has one sound at most. It makes one when it needs one, and releases it at
/// its end; or it works on a sound that was attached and stays the caller's.
/// Flags are 1 for done and 0 for refused or failed. Paths use backslashes and have
/// at most 259 characters; a longer one is refused.
///
/// Two errors in the format of a wave file are exceptions derived from
/// std::exception when the file has no owner window: "Unsupported wave format!(%s)"
/// and "Unsupported %d-bit PCM format!(%s)", with the path. With an owner window they
/// are shown in a box, and the operation gives 0.
///
/// The order of the operations is the contract. 27 operations, 28 raw slots: the
/// destructor takes two.
class I_WavFile {
 public:
  /// Slots 0 and 1.
  virtual void AddRef() = 0;
  virtual void Release() = 0;

  /// Slots 2 to 7: as in I_WavFileInfo.
  virtual const char* GetPath() const = 0;
  virtual I_CUTime* GetFileTime() = 0;
  virtual uint32_t GetFileSize() const = 0;
  virtual uint32_t GetSourceKind() const = 0;
  virtual uint32_t GetTargetKind() const = 0;
  virtual I_WavInfo* GetWavInfo() = 0;

  /// Slot 8. Works on the caller's sound from now on; one of the file's own is
  /// released. The sound must be one that this library made, and stay alive until
  /// it is detached or the file is gone. Its events take over its sample rate.
  virtual void AttachWavData(I_WavData* data) = 0;

  /// Slot 9. Gives an attached sound back and forgets it; null without one.
  virtual I_WavData* DetachWavData() = 0;

  /// Slot 10. The sound, made if there is none. It lives as long as the file unless
  /// the caller adds a reference.
  virtual I_WavData* GetWavData() = 0;

  /// Slots 11 to 19: the operations of the sound with these names. Those that change
  /// the sound (Assign, SetWavInfo, SetFormat, SetData, CopyWriteParam) make one if
  /// there is none; the others then give 0 or null.
  virtual std::byte* GetData() = 0;
  virtual int32_t Assign(I_WavData* source) = 0;
  virtual void SetWavInfo(const I_WavInfo* info) = 0;
  virtual void SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                         uint16_t container, int32_t isSigned) = 0;
  virtual std::byte* SetData(const void* bytes, uint32_t size) = 0;
  virtual I_WriteWavParam* GetWriteParam() = 0;
  virtual int32_t SaveAs(uint32_t formatId, const char* path) = 0;
  virtual int32_t GetChunkInfo(uint32_t kind, void** out) = 0;
  virtual void CopyWriteParam(I_WavData* source) = 0;

  /// Slot 20. Shapes the level of a block of samples in place, as the sound's write
  /// settings say. `info` is the format of the block. Nothing happens when the
  /// settings switch it off or an argument is null.
  virtual void ConvertWithLsc(void* samples, const I_WavInfo* info) = 0;

  /// Slots 21 and 22.
  virtual ~I_WavFile() = default;

  /// Slot 23. Where the samples stand in the file, in bytes.
  virtual uint32_t GetDataOffset() const = 0;

  /// Slot 24. Finds out whether the file is of this class. With `load` set the format
  /// and the metadata go to the sound, which is emptied of events and metadata first.
  /// `out` may be null; what it gets is each class's matter.
  virtual int32_t ReadHeader(const char* path, int32_t load, uint32_t* out) = 0;

  /// Slot 25. Reads the samples and the events of the file whose header was read last
  /// with `load` set.
  virtual int32_t ReadData() = 0;

  /// Slot 26. Writes the sound. 0 without one; a file that could not be written whole
  /// may be left in part.
  virtual int32_t Save(const char* path) = 0;

  /// Slot 27. Runs the level enhancement over a block of 16-bit words in place, as the
  /// sound's write settings say, and leaves its three percents there. Flag 1: 12-bit
  /// offset binary.
  virtual void ApplyLve(void* samples, uint32_t frames, int32_t flag) = 0;
};

}  // namespace velora
