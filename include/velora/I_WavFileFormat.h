// Finds out what kind of sound a file holds, and opens it.
#pragma once

#include <cstdint>

namespace velora {

class I_WavFile;

/// The factory of file objects. Files of the two wave formats that are refused with
/// an exception (see I_WavFile) end every operation here with it when the factory has
/// no owner window.
///
/// The order of the operations is the contract. Six operations, seven raw slots: the
/// destructor takes two.
class I_WavFileFormat {
 public:
  /// Slot 0. Destroys the factory; files that it opened live on.
  virtual void Release() = 0;

  /// Slot 1. The format id of the first class that takes the file for its own; 0 when
  /// none does.
  virtual uint32_t DetectFormat(const char* path) = 0;

  /// Slot 2. 1 when the first class for this format id takes the file for its own.
  virtual int32_t IsFormat(uint32_t id, const char* path) = 0;

  /// Slot 3. The file object of the first class that can read the file, the caller's
  /// to Release; null when none can. With `loadData` the samples and events are read,
  /// without it the header and the metadata. `out` starts the value that the class may
  /// write to while it reads the header.
  virtual I_WavFile* OpenFile(const char* path, int32_t loadData, uint32_t out) = 0;

  /// Slot 4. OpenFile(path, 0, 1).
  virtual I_WavFile* OpenFileByPath(const char* path) = 0;

  /// Slots 5 and 6.
  virtual ~I_WavFileFormat() = default;
};

}  // namespace velora
