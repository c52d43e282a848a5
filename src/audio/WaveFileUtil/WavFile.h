// Wave files, and the base of all audio file classes.
//
// A file object reads a file into a C_WavData and writes one into a file. The class
// itself does so for RIFF wave files. Action events and silence regions live there as
// cue points with labels (see WaveLabels.h), so that any wave editor keeps them.
//
// A class of another format derives from C_WavFile and overrides what differs:
//
//   OnReadHeader   is this file of the class? its format and where things stand
//   OnReadSamples  the samples, into the sound
//   OnReadEvents   events, silence and whatever else needs no samples
//   OnSave         the sound into a file
//
// The operations of I_WavFile are thin over these: they take paths of the system's own
// of at most 259 characters, turn a Status into a flag and keep it (LastStatus), and
// pass on or show the exceptions of a header. The C++ operations below take any path,
// give the Status, and neither throw nor show anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <velora/I_LevelTreatment.h>
#include <velora/I_WavFile.h>
#include "audio/WaveFileUtil/WaveLabels.h"
#include "foundation/CUTime.h"
#include "platform/File.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

class C_RiffChunk;
class C_RiffChunkList;
class C_WavData;
class I_WindowHost;

/// A wave file in a format that this system does not read.
class WaveFormatError : public std::runtime_error {
 public:
  /// `text` is what a person sees, with the path; `reason` the same fault for a
  /// Status, with the place and without the path.
  WaveFormatError(const std::string& text, std::string reason)
      : std::runtime_error(text), reason_(std::move(reason)) {}

  const std::string& Reason() const { return reason_; }

 private:
  std::string reason_;
};

/// Which samples of a chip file a load takes. A wave file has one kind only.
enum class SampleView {
  kDecoded,  ///< what the chip plays
  kSource,   ///< what the chip's stream was made from
};

/// Saves a sound in the format with this id through a file object of its class; false
/// for an id without a class and when saving fails. What C_WavData::SaveAs does.
bool SaveSound(uint32_t formatId, C_WavData& sound, const Path& path);

/// The longest path that the operations of I_WavFile take.
inline constexpr size_t kMaxPathLength = 259;

class C_WavFile : public I_WavFile, public I_WavFileInfo {
 public:
  C_WavFile();
  ~C_WavFile() override;
  C_WavFile(const C_WavFile&) = delete;
  C_WavFile& operator=(const C_WavFile&) = delete;

  // I_WavFile and I_WavFileInfo.
  void AddRef() final { ++refCount_; }
  void Release() final;
  const char* GetPath() const final { return path_.Text().c_str(); }
  I_CUTime* GetFileTime() final { return &fileTime_; }
  uint32_t GetFileSize() const final { return static_cast<uint32_t>(fileSize_); }
  uint32_t GetSourceKind() const final { return sourceKind_; }
  uint32_t GetTargetKind() const final { return targetKind_; }
  I_WavInfo* GetWavInfo() final;
  void AttachWavData(I_WavData* data) final;
  I_WavData* DetachWavData() final;
  I_WavData* GetWavData() final;
  std::byte* GetData() final;
  int32_t Assign(I_WavData* source) final;
  void SetWavInfo(const I_WavInfo* info) final;
  void SetFormat(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                 uint16_t container, int32_t isSigned) final;
  std::byte* SetData(const void* bytes, uint32_t size) final;
  I_WriteWavParam* GetWriteParam() final;
  int32_t SaveAs(uint32_t formatId, const char* path) final;
  int32_t GetChunkInfo(uint32_t kind, void** out) final;
  void CopyWriteParam(I_WavData* source) final;
  void ConvertWithLsc(void* samples, const I_WavInfo* info) final;
  uint32_t GetDataOffset() const final { return static_cast<uint32_t>(dataOffset_); }
  int32_t ReadHeader(const char* path, int32_t load, uint32_t* out) final;
  int32_t ReadData() final;
  int32_t Save(const char* path) final;
  void ApplyLve(void* samples, uint32_t frames, int32_t flag) final;

  /// ReadHeader with `load`, then ReadData, with the same flags and exceptions.
  int32_t Load(const char* path, uint32_t* out);

  /// Why the last operation that gives a flag gave 0.
  const Status& LastStatus() const { return lastStatus_; }

  /// Reads the whole file: header, samples, events. `out` may be null; the source
  /// classes put there whether the file is enciphered.
  Status LoadFile(const Path& path, uint32_t* out = nullptr);

  /// Reads all but the samples: format, events, silence, metadata. The format states
  /// the size of the samples, the sound holds none.
  Status LoadMetadata(const Path& path, uint32_t* out = nullptr);

  /// Finds out whether the file is of this class; the sound is left alone.
  Status ReadInfoFile(const Path& path, uint32_t* out = nullptr);

  Status ReadHeaderFile(const Path& path, bool load, uint32_t* out);
  Status SaveFile(const Path& path);

  /// What a file written by this object would leave out of the sound, a sentence each
  /// without full stop; empty when the format holds all of it. Rounding to the format's
  /// sample width is no loss in this sense.
  virtual std::vector<std::string> ListLosses(const C_WavData& sound) const;

  /// The sound, or null. Borrowed: add a reference to keep it beyond the file.
  C_WavData* Sound() const { return wavData_; }

  /// The sound, made if there is none.
  C_WavData& EnsureSound();

  /// Owner of error boxes and of those of the sounds that this object makes. Null: no
  /// box, exceptions are passed on.
  void SetOwnerWindow(I_WindowHost* window) { ownerWindow_ = window; }
  I_WindowHost* OwnerWindow() const { return ownerWindow_; }

  void SetSampleView(SampleView view) { sampleView_ = view; }
  SampleView GetSampleView() const { return sampleView_; }

  /// A new file has the converter of the module's CueFormatRegex.ini, if there is one;
  /// null switches the conversion of foreign labels off.
  void SetLabelConverter(std::unique_ptr<LabelConverter> converter) {
    labelConverter_ = std::move(converter);
  }

  /// The treatments behind ConvertWithLsc and ApplyLve; null leaves samples alone.
  void SetLscMgr(std::unique_ptr<I_LSCMgr> manager) { lscMgr_ = std::move(manager); }
  void SetLveMgr(std::unique_ptr<I_LVEMgr> manager) { lveMgr_ = std::move(manager); }

  /// Bytes of the file, and where the samples stand in it.
  uint64_t FileSize() const { return fileSize_; }
  uint64_t DataOffset() const { return dataOffset_; }

  /// Of the "fmt " chunk: 1 PCM, 2 and 17 ADPCM; 0 when the file has none.
  uint16_t FormatTag() const { return formatTag_; }

 protected:
  // --- what a class of another format overrides -------------------------------

  /// First of all calls OpenInput. An error says why the file is not one of this class.
  /// With `load` it calls BeginSound and SetKinds. May throw a WaveFormatError.
  virtual Status OnReadHeader(const Path& path, bool load, uint32_t* out);

  /// Both come after an OnReadHeader with `load`, with the input open and a sound; first
  /// the samples, unless only the metadata are wanted.
  virtual Status OnReadSamples();
  virtual Status OnReadEvents();

  /// Only with a sound.
  virtual Status OnSave(const Path& path);

  // --- what they build on -----------------------------------------------------

  /// Opens the file and takes over path, time and size.
  Status OpenInput(const Path& path);

  /// The file; only from OpenInput to the end of the operation.
  const InputFile& Input() const { return *input_; }

  /// The sound, emptied of events, regions, segments and metadata, with this format.
  C_WavData& BeginSound(uint32_t rate, uint32_t size, uint16_t channels, uint16_t resolution,
                        uint16_t container, bool isSigned);

  void SetKinds(uint32_t source, uint32_t target) {
    sourceKind_ = source;
    targetKind_ = target;
  }
  void SetDataOffset(uint64_t offset) { dataOffset_ = offset; }

  /// Reads `size` bytes at the offset straight into a new block of the sound. An error,
  /// with nothing allocated, when the file does not hold them.
  Status ReadSamplesAt(uint64_t offset, uint64_t size);

 private:
  friend bool SaveSound(uint32_t formatId, C_WavData& sound, const Path& path);

  /// Runs the steps and keeps their Status; a path too long is refused.
  template <typename Steps>
  int32_t AtBoundary(const char* path, const Steps& steps);
  /// As AtBoundary, with the exceptions of a header shown in a box where there is one.
  template <typename Steps>
  int32_t WithErrorBox(const char* path, const Steps& steps);

  // These let exceptions through.
  Status HeaderSteps(const Path& path, bool load, uint32_t* out);
  Status DataSteps(bool samples);
  Status LoadSteps(const Path& path, bool samples, uint32_t* out);
  Status SaveSteps(const Path& path);

  /// As OpenInput; an enciphered file is deciphered into a temporary one, and that is
  /// the input.
  Status OpenPlain(const Path& path);
  Status FindFormatAndData(C_RiffChunkList& chunks);
  Status ReadFormat(C_RiffChunk& chunk);
  Status ReadMetadata(C_RiffChunkList& chunks);
  void ReleaseSound();

  std::unique_ptr<I_LSCMgr> lscMgr_;
  std::unique_ptr<I_LVEMgr> lveMgr_;
  I_WindowHost* ownerWindow_ = nullptr;
  uint32_t sourceKind_ = 0;
  uint32_t targetKind_ = 0;
  uint16_t formatTag_ = 0;
  Path path_;
  uint64_t formatOffset_ = 0;
  uint64_t dataOffset_ = 0;
  C_WavData* wavData_ = nullptr;  ///< ours unless attached
  bool attached_ = false;
  int32_t refCount_ = 0;
  C_CUTime fileTime_;
  uint64_t fileSize_ = 0;

  // What one operation hands to the next.
  std::optional<TemporaryFile> temporary_;  ///< until the next header, or the end
  std::optional<InputFile> input_;
  uint64_t dataSize_ = 0;  ///< bytes of samples that the file really holds
  uint16_t channels_ = 0;
  uint32_t rate_ = 0;
  uint16_t bits_ = 0;

  SampleView sampleView_ = SampleView::kDecoded;
  std::unique_ptr<LabelConverter> labelConverter_;
  Status lastStatus_;
};

}  // namespace velora
