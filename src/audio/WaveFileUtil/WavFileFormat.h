// The factory of audio file objects: by format id, and by trying the classes.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include <velora/I_WavFileFormat.h>
#include "audio/WaveFileUtil/WavFile.h"
#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

class I_WindowHost;

/// A new object of the class that writes the format; null for an id without a class.
std::unique_ptr<C_WavFile> MakeWavFile(uint32_t id);

/// Whether files of the format can be opened, and written.
bool CanRead(uint32_t id);
bool CanWrite(uint32_t id);

/// The format id of the first class that takes the file for its own, 0 for none; a
/// faulty wave file counts as none.
uint32_t DetectSoundFormat(const Path& path);

/// How much of a file to read.
enum class LoadScope {
  kHeader,    ///< format and chunks
  kMetadata,  ///< and events and silence
  kAll,       ///< and the samples
};

struct OpenOptions {
  LoadScope scope = LoadScope::kAll;
  SampleView view = SampleView::kDecoded;
};

/// Opens a sound file of any kind. When no class can read it the error is that of the
/// class whose tag the file bears; without such a class it says that the format is
/// unknown. Neither throws nor shows anything.
Result<std::unique_ptr<C_WavFile>> OpenSound(const Path& path, const OpenOptions& options = {});

class C_WavFileFormat final : public I_WavFileFormat {
 public:
  explicit C_WavFileFormat(I_WindowHost* ownerWindow = nullptr) : ownerWindow_(ownerWindow) {}

  void Release() override { delete this; }
  uint32_t DetectFormat(const char* path) override;
  int32_t IsFormat(uint32_t id, const char* path) override;
  I_WavFile* OpenFile(const char* path, int32_t loadData, uint32_t out) override;
  I_WavFile* OpenFileByPath(const char* path) override { return OpenFile(path, 0, 1); }

  /// The window that every file object made here is given.
  void SetOwnerWindow(I_WindowHost* window) { ownerWindow_ = window; }

 private:
  I_WindowHost* ownerWindow_;
};

}  // namespace velora
