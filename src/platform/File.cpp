#include "platform/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/System.h"

namespace velora {
namespace {

constexpr size_t kBufferSize = 64 * 1024;

FileTimes TimesOf(const struct stat& facts) {
  return {facts.st_ctim.tv_sec, facts.st_atim.tv_sec, facts.st_mtim.tv_sec};
}

Status SystemError(const std::string& what) {
  return Status::Error(what + ": " + GetSystemErrorText());
}

}  // namespace

// --- InputFile ---------------------------------------------------------------

Result<InputFile> InputFile::Open(const Path& path) {
  const std::string native = NativeForReading(path);
  const int handle = open(native.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) return SystemError("cannot open");
  InputFile file;
  file.handle_ = handle;
  struct stat facts;
  if (fstat(handle, &facts) != 0) return SystemError("cannot examine");
  if (S_ISDIR(facts.st_mode)) return Status::Error("is a directory");
  if (!S_ISREG(facts.st_mode)) return Status::Error("is no regular file");
  file.size_ = static_cast<uint64_t>(facts.st_size);
  file.times_ = TimesOf(facts);
  return file;
}

InputFile InputFile::FromBytes(std::vector<std::byte> bytes) {
  InputFile file;
  file.size_ = bytes.size();
  file.bytes_ = std::move(bytes);
  return file;
}

InputFile::InputFile(InputFile&& other) noexcept
    : handle_(std::exchange(other.handle_, -1)),
      size_(std::exchange(other.size_, 0)),
      times_(other.times_),
      bytes_(std::move(other.bytes_)) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(size_, other.size_);
  std::swap(times_, other.times_);
  std::swap(bytes_, other.bytes_);
  return *this;
}

InputFile::~InputFile() {
  if (handle_ >= 0) close(handle_);
}

Result<size_t> InputFile::ReadAt(uint64_t offset, std::span<std::byte> into) const {
  if (offset >= size_ || into.empty()) return size_t{0};
  const size_t wanted = static_cast<size_t>(std::min<uint64_t>(into.size(), size_ - offset));
  if (handle_ < 0) {
    std::memcpy(into.data(), bytes_.data() + offset, wanted);
    return wanted;
  }
  size_t done = 0;
  while (done < wanted) {
    const ssize_t got =
        pread(handle_, into.data() + done, wanted - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return SystemError("cannot read at offset " + std::to_string(offset + done));
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

Status InputFile::ReadExactly(uint64_t offset, std::span<std::byte> into) const {
  const Result<size_t> got = ReadAt(offset, into);
  if (!got) return got.GetStatus();
  if (got.Value() == into.size()) return {};
  return Status::Error("ends at byte " + std::to_string(size_) + ", but " +
                       std::to_string(into.size()) + " bytes are wanted at offset " +
                       std::to_string(offset));
}

// --- OutputFile --------------------------------------------------------------

Result<OutputFile> OutputFile::Create(const Path& path) {
  const std::string native = NativeForWriting(path);
  const int handle = open(native.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (handle < 0) return SystemError("cannot create");
  OutputFile file;
  file.handle_ = handle;
  return file;
}

Result<OutputFile> OutputFile::Append(const Path& path) {
  const std::string native = NativeForWriting(path);
  const int handle = open(native.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (handle < 0) return SystemError("cannot open for writing");
  OutputFile file;
  file.handle_ = handle;
  return file;
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : handle_(std::exchange(other.handle_, -1)),
      position_(other.position_),
      buffer_(std::move(other.buffer_)),
      error_(std::move(other.error_)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(position_, other.position_);
  std::swap(buffer_, other.buffer_);
  std::swap(error_, other.error_);
  return *this;
}

OutputFile::~OutputFile() {
  if (handle_ >= 0) close(handle_);
}

Status OutputFile::WriteThrough(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t put = write(handle_, bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return error_ = SystemError("cannot write");
    bytes = bytes.subspan(static_cast<size_t>(put));
  }
  return {};
}

Status OutputFile::Flush() {
  if (!error_) return error_;
  const Status status = WriteThrough(buffer_);
  buffer_.clear();
  return status;
}

Status OutputFile::Write(std::span<const std::byte> bytes) {
  if (!error_) return error_;
  position_ += bytes.size();
  if (buffer_.size() + bytes.size() > kBufferSize) {
    if (Status status = Flush(); !status) return status;
    if (bytes.size() >= kBufferSize) return WriteThrough(bytes);
  }
  buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  return {};
}

Status OutputFile::Close() {
  if (handle_ < 0) return error_;
  Status status = Flush();
  if (close(std::exchange(handle_, -1)) != 0 && status) status = SystemError("cannot close");
  error_ = status;
  return status;
}

// --- whole files and facts ---------------------------------------------------

Result<std::vector<std::byte>> ReadWholeFile(const Path& path, uint64_t limit) {
  Result<InputFile> file = InputFile::Open(path);
  if (!file) return file.GetStatus();
  if (file->Size() > limit) {
    return Status::Error("is too large: " + std::to_string(file->Size()) + " bytes, at most " +
                         std::to_string(limit) + " are read");
  }
  std::vector<std::byte> bytes(static_cast<size_t>(file->Size()));
  if (Status status = file->ReadExactly(0, bytes); !status) return status;
  return bytes;
}

Result<std::string> ReadWholeText(const Path& path, uint64_t limit) {
  Result<std::vector<std::byte>> bytes = ReadWholeFile(path, limit);
  if (!bytes) return bytes.GetStatus();
  return std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

bool FileExists(const Path& path) {
  const int handle = open(NativeForReading(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) return false;
  struct stat facts;
  const bool file = fstat(handle, &facts) == 0 && !S_ISDIR(facts.st_mode);
  close(handle);
  return file;
}

bool DirectoryExists(const Path& path) {
  struct stat facts;
  return stat(NativeForReading(path).c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

Status CreateDirectories(const Path& path) {
  std::error_code error;
  std::filesystem::create_directories(NativeForWriting(path), error);
  if (error)
    return Status::Error("cannot create the directory: " + GetSystemErrorText(error.value()));
  return {};
}

Status RemoveFile(const Path& path) {
  if (unlink(NativeForReading(path).c_str()) != 0) return SystemError("cannot remove");
  return {};
}

bool IsSameFile(const Path& a, const Path& b) {
  struct stat first;
  struct stat second;
  if (stat(NativeForReading(a).c_str(), &first) != 0) return false;
  if (stat(NativeForReading(b).c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

Result<FileFacts> GetFileFacts(const Path& path) {
  struct stat facts;
  if (stat(NativeForReading(path).c_str(), &facts) != 0) return SystemError("cannot examine");
  return FileFacts{static_cast<uint64_t>(facts.st_size), TimesOf(facts),
                   S_ISREG(facts.st_mode) != 0};
}

}  // namespace velora
