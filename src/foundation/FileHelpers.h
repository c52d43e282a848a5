// What is at a path.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Path.h"

namespace velora {

// Paths given as text are the system's own, with backslashes.

bool FileExists(std::string_view path);  ///< a file that opens for reading
bool DirExists(std::string_view path);

/// Makes `path` absolute if it is relative or empty, as seen from `directory`,
/// and checks it as the IniKeyType asks. A failed check is reported on the
/// channel that `errorMode`, a MsgErrorMode, names; the answer is then false. So
/// it is, without a report, for a path that grows past 2,079 bytes, which stays
/// as it was.
bool ResolvePath(std::string_view directory, std::string& path, int32_t keyType, int32_t errorMode);

/// A point in time as files carry it: steps of 100 nanoseconds since 1601-01-01 UTC.
using FileTime = uint64_t;
inline constexpr int64_t kSecondsFrom1601To1970 = 11644473600;

/// From seconds since 1970-01-01 UTC.
FileTime FileTimeFromSeconds(int64_t seconds);

/// Size and times of files, through the module FileStamp.dll beside this module
/// where there is one, and otherwise directly.
///
/// The module's exports take a native file name:
///   int64_t GetFileLen(const char* file);                             // -1: failure
///   int32_t GetFileTimes(const char* file, FileTime* creation, FileTime* access,
///                        FileTime* write);                            // 0: failure
class C_CUFileStamp {
 public:
  C_CUFileStamp();
  ~C_CUFileStamp();
  C_CUFileStamp(const C_CUFileStamp&) = delete;
  C_CUFileStamp& operator=(const C_CUFileStamp&) = delete;

  /// In bytes; -1 on failure.
  int64_t GetFileLength(const Path& file) const;

  /// False on failure. The outputs must not be null.
  bool GetFileTimes(const Path& file, FileTime* creation, FileTime* access, FileTime* write) const;

 private:
  void* module_;
};

/// The same of the one C_CUFileStamp of this module.
int64_t GetFileLength(const Path& file);
bool GetFileTimes(const Path& file, FileTime* creation, FileTime* access, FileTime* write);

}  // namespace velora
