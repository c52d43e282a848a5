// Files read at any offset and files written from front to back.
//
// Sizes and offsets are 64-bit bytes. Every message names what failed and the
// operating system's reason; the caller puts the path in front.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// A point in time as files carry it: seconds since 1970-01-01 UTC.
struct FileTimes {
  int64_t creation = 0;  ///< status change where the system keeps no creation time
  int64_t access = 0;
  int64_t write = 0;
};

/// An open file that is read by offset. Movable; closes itself.
class InputFile {
 public:
  static Result<InputFile> Open(const Path& path);

  /// A file that lives in memory.
  static InputFile FromBytes(std::vector<std::byte> bytes);

  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) noexcept;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  /// Bytes in the file when it was opened.
  uint64_t Size() const { return size_; }
  const FileTimes& Times() const { return times_; }

  /// Fills as much of `into` as the file holds from `offset` on and returns the
  /// bytes read, fewer than asked for only at the end of the file.
  Result<size_t> ReadAt(uint64_t offset, std::span<std::byte> into) const;

  /// As ReadAt, but a short read is an error.
  Status ReadExactly(uint64_t offset, std::span<std::byte> into) const;

 private:
  InputFile() = default;

  int handle_ = -1;
  uint64_t size_ = 0;
  FileTimes times_;
  std::vector<std::byte> bytes_;
};

/// A file written from front to back, buffered. Errors stick: after the first
/// one every call gives it again, and Close reports it.
class OutputFile {
 public:
  /// Creates the file or empties an existing one.
  static Result<OutputFile> Create(const Path& path);

  /// Opens the file, made if missing, to write behind what it holds. Each flush
  /// goes to the end that the file has at that moment.
  static Result<OutputFile> Append(const Path& path);

  OutputFile(OutputFile&& other) noexcept;
  OutputFile& operator=(OutputFile&& other) noexcept;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// Large spans go to the system straight from the caller's memory.
  Status Write(std::span<const std::byte> bytes);

  /// Bytes written so far.
  uint64_t Position() const { return position_; }

  /// Writes what is buffered and closes. Must be called: a file that dies open
  /// is closed without a word.
  Status Close();

 private:
  OutputFile() = default;
  Status Flush();
  Status WriteThrough(std::span<const std::byte> bytes);

  int handle_ = -1;
  uint64_t position_ = 0;
  std::vector<std::byte> buffer_;
  Status error_;
};

/// What SaveAtomically does beyond replacing the file.
struct SaveOptions {
  bool flush = true;               ///< flush file and directory to the disk before returning
  bool replace = true;             ///< false: an existing target is an error
  double* flushSeconds = nullptr;  ///< where set, the time that flushing took is added
};

/// Replaces a person's file as a whole or leaves it as it was.
///
/// `write` gets the path of an empty file beside the target (created
/// exclusively, mode 0600) and fills it. Then the file is flushed, given the
/// old target's mode (0666 less the umask for a new one) and renamed over the
/// target; the directory is flushed. Symbolic links are followed. A target that
/// exists and is no regular file is written directly. When anything fails, or
/// an interrupt came in, the temporary file is removed and the target untouched.
/// Temporary files that killed processes left for the same target are removed.
Status SaveAtomically(const Path& target, const std::function<Status(const Path& temporary)>& write,
                      const SaveOptions& options = {});

/// The same for a file whose whole content is at hand.
Status SaveAtomically(const Path& target, std::string_view text, const SaveOptions& options = {});

/// An empty file of mode 0600 in the system's temporary directory that is
/// removed with this object.
class TemporaryFile {
 public:
  static Result<TemporaryFile> Create(std::string_view prefix);
  TemporaryFile(TemporaryFile&& other) noexcept : path_(std::move(other.path_)) {
    other.path_ = {};
  }
  TemporaryFile& operator=(TemporaryFile&& other) noexcept;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  const Path& GetPath() const { return path_; }

 private:
  TemporaryFile() = default;
  Path path_;
};

/// The whole file; an error when it is larger than `limit` bytes.
Result<std::vector<std::byte>> ReadWholeFile(const Path& path, uint64_t limit = UINT64_MAX);
Result<std::string> ReadWholeText(const Path& path, uint64_t limit = UINT64_MAX);

bool FileExists(const Path& path);  ///< a file that opens for reading
bool DirectoryExists(const Path& path);
Status CreateDirectories(const Path& path);
Status RemoveFile(const Path& path);

/// True when both name one file, by whatever name or link.
bool IsSameFile(const Path& a, const Path& b);

/// Size in bytes and times without opening; an error where there is no such file.
struct FileFacts {
  uint64_t size = 0;
  FileTimes times;
  bool regular = false;
};
Result<FileFacts> GetFileFacts(const Path& path);

}  // namespace velora
