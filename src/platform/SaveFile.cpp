// Saving a person's file, and temporary files.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

#include "platform/File.h"
#include "platform/System.h"
#include "platform/TemporaryNames.h"

namespace velora {
namespace {

constexpr std::string_view kMarker = ".velora-";  // .NAME.velora-PID-N.tmp
constexpr std::string_view kEnding = ".tmp";
constexpr size_t kLongestName = 200;  // of the target within a temporary name

Status SystemError(const std::string& what) {
  return Status::Error(what + ": " + GetSystemErrorText());
}

struct Target {
  std::string directory;  // with its slash, or empty
  std::string name;
};

Target SplitTarget(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"", path};
  return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

/// Follows the links of a target, of which the last may lead to nothing yet.
std::string FollowLinks(std::string path) {
  for (int depth = 0; depth < 40; ++depth) {
    std::string link(4096, '\0');
    const ssize_t length = readlink(path.c_str(), link.data(), link.size());
    if (length < 0) return path;
    link.resize(static_cast<size_t>(length));
    path = link.starts_with('/') ? link : SplitTarget(path).directory + link;
  }
  return path;
}

std::string TemporaryStem(const std::string& name) {
  return "." + name.substr(0, kLongestName) + std::string(kMarker);
}

/// Removes what killed processes left of earlier saves to `target`. Each directory
/// is read once per process: only another process's death could add to it.
void RemoveLeftovers(const Target& target) {
  static std::mutex mutex;
  static std::map<std::string, std::multimap<std::string, std::string>> leftByDirectory;

  const std::scoped_lock lock(mutex);
  auto [known, fresh] = leftByDirectory.try_emplace(target.directory);
  if (fresh) {
    DIR* handle = opendir(target.directory.empty() ? "." : target.directory.c_str());
    if (!handle) return;
    while (const dirent* entry = readdir(handle)) {
      const std::string name = entry->d_name;
      const size_t marker = name.rfind(kMarker);
      if (marker == std::string::npos || !name.ends_with(kEnding)) continue;
      const size_t stemEnd = marker + kMarker.size();
      int pid = 0;
      const char* const digits = name.data() + stemEnd;
      const auto parsed = std::from_chars(digits, name.data() + name.size(), pid);
      if (parsed.ec != std::errc() || pid <= 0) continue;
      if (kill(pid, 0) == 0 || errno != ESRCH) continue;
      known->second.emplace(name.substr(0, stemEnd), name);
    }
    closedir(handle);
  }
  const auto [first, last] = known->second.equal_range(TemporaryStem(target.name));
  for (auto left = first; left != last; ++left) {
    unlink((target.directory + left->second).c_str());
  }
  known->second.erase(first, last);
}

/// A name that a person's eye and RemoveLeftovers recognise, created exclusively.
Result<std::string> CreateBeside(const Target& target) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string path = target.directory + TemporaryStem(target.name) +
                             std::to_string(GetProcessId()) + "-" + std::to_string(counter++) +
                             std::string(kEnding);
    const int handle = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (handle >= 0) {
      close(handle);
      return path;
    }
    if (errno != EEXIST) return SystemError("cannot create a file in its directory");
  }
  return Status::Error("no free temporary name in its directory");
}

/// Adds its own lifetime to a sum of seconds, if there is one.
class Stopwatch {
 public:
  explicit Stopwatch(double* sum) : sum_(sum), start_(sum ? GetClockSeconds() : 0) {}
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;
  ~Stopwatch() {
    if (sum_) *sum_ += GetClockSeconds() - start_;
  }

 private:
  double* sum_;
  double start_;
};

Status FlushPath(const std::string& path, int flags, const char* what) {
  const int handle = open(path.empty() ? "." : path.c_str(), flags | O_CLOEXEC);
  if (handle < 0) return SystemError(what);
  const bool flushed = fsync(handle) == 0 || errno == EINVAL;
  const Status status = flushed ? Status() : SystemError(what);
  close(handle);
  return status;
}

mode_t NewFileMode() {
  static const mode_t mask = [] {
    const mode_t current = umask(0);
    umask(current);
    return current;
  }();
  return 0666 & ~mask;
}

/// Puts the finished temporary file in the target's place.
Status Commit(const std::string& temporary, const std::string& target, mode_t mode,
              const SaveOptions& options) {
  if (chmod(temporary.c_str(), mode) != 0) return SystemError("cannot set the mode");
  if (options.flush) {
    const Stopwatch stopwatch(options.flushSeconds);
    if (Status status = FlushPath(temporary, O_RDONLY, "cannot flush"); !status) return status;
  }
  if (IsInterrupted()) return Status::Error("interrupted");
  if (!options.replace) {
    // A hard link fails where the name exists, which a rename would replace.
    if (link(temporary.c_str(), target.c_str()) == 0) {
      unlink(temporary.c_str());
    } else if (errno == EEXIST) {
      return Status::Error("exists already");
    } else if ((errno != EPERM && errno != EOPNOTSUPP) ||  // no links in this file system
               rename(temporary.c_str(), target.c_str()) != 0) {
      return SystemError("cannot create");
    }
  } else if (rename(temporary.c_str(), target.c_str()) != 0) {
    return SystemError("cannot replace");
  }
  if (!options.flush) return {};
  const Stopwatch stopwatch(options.flushSeconds);
  return FlushPath(SplitTarget(target).directory, O_RDONLY | O_DIRECTORY,
                   "cannot flush the directory");
}

}  // namespace

Status SaveAtomically(const Path& target, const std::function<Status(const Path&)>& write,
                      const SaveOptions& options) {
  const std::string path = FollowLinks(NativeForWriting(target));
  struct stat old;
  const bool exists = stat(path.c_str(), &old) == 0;
  if (exists && !options.replace) return Status::Error("exists already");
  if (exists && S_ISDIR(old.st_mode)) return Status::Error("is a directory");
  if (exists && !S_ISREG(old.st_mode)) return write(Path::Native(path));
  if (exists && access(path.c_str(), W_OK) != 0) return SystemError("cannot write");

  const Target parts = SplitTarget(path);
  RemoveLeftovers(parts);
  const Result<std::string> created = CreateBeside(parts);
  if (!created) return created.GetStatus();
  const std::string& temporary = created.Value();
  const RegisteredName registered(temporary);

  Status status = write(Path::Native(temporary));
  if (status)
    status = Commit(temporary, path, exists ? old.st_mode & 07777 : NewFileMode(), options);
  if (!status) unlink(temporary.c_str());
  return status;
}

Status SaveAtomically(const Path& target, std::string_view text, const SaveOptions& options) {
  const auto write = [text](const Path& temporary) {
    Result<OutputFile> file = OutputFile::Create(temporary);
    if (!file) return file.GetStatus();
    if (Status status = file->Write(std::as_bytes(std::span(text))); !status) return status;
    return file->Close();
  };
  return SaveAtomically(target, write, options);
}

// --- TemporaryFile -----------------------------------------------------------

Result<TemporaryFile> TemporaryFile::Create(std::string_view prefix) {
  const char* const directory = std::getenv("TMPDIR");
  std::string path = directory && *directory ? directory : "/tmp";
  path += "/" + std::string(prefix) + "XXXXXX";
  const int handle = mkostemp(path.data(), O_CLOEXEC);
  if (handle < 0) return SystemError("cannot create a temporary file");
  close(handle);
  RememberTemporary(path);
  TemporaryFile file;
  file.path_ = Path::Native(path);
  return file;
}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept {
  std::swap(path_, other.path_);
  return *this;
}

TemporaryFile::~TemporaryFile() {
  if (path_.Empty()) return;
  unlink(path_.Text().c_str());
  ForgetTemporary(path_.Text());
}

}  // namespace velora
