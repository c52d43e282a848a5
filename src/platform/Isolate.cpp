#include "platform/Isolate.h"

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

#include "platform/System.h"

// There in a build with the address sanitizer alone, whose heap mallinfo2 does not see.
extern "C" [[gnu::weak]] size_t __sanitizer_get_current_allocated_bytes();

namespace velora {
namespace {

// What goes through the pipe: steps, each with kStepEnd behind it, and in the end kDone
// and the result.
constexpr char kDone = 'D';
constexpr char kStepEnd = '\1';

int stepPipe = -1;  // within the work of a child alone

void WriteAll(int handle, const char* bytes, size_t size) {
  while (size > 0) {
    const ssize_t written = write(handle, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes += written;
    size -= static_cast<size_t>(written);
  }
}

[[noreturn]] void RunInChild(const std::function<std::string()>& work, int result) {
  const rlimit noCore{0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nowhere, STDIN_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  stepPipe = result;
  std::string text = kDone + work();
  std::ranges::replace(text, kStepEnd, '?');
  WriteAll(result, text.data(), text.size());
  _exit(0);
}

/// Reads to the end of the pipe; false when the time is up.
bool ReadUntil(int handle, double deadline, std::string& text) {
  while (true) {
    const double left = deadline - GetClockSeconds();
    if (left <= 0) return false;
    pollfd wait{handle, POLLIN, 0};
    const int ready = poll(&wait, 1, static_cast<int>(std::min(left, 60.0) * 1000) + 1);
    if (ready < 0 && errno != EINTR) return false;
    if (ready <= 0) continue;
    char buffer[4096];
    const ssize_t count = read(handle, buffer, sizeof buffer);
    if (count == 0) return true;
    if (count > 0) text.append(buffer, static_cast<size_t>(count));
  }
}

/// What the process did last, as the beginning of a sentence.
std::string LastStep(std::string_view steps) {
  if (!steps.ends_with(kStepEnd)) return {};
  steps.remove_suffix(1);
  return std::string(steps.substr(steps.rfind(kStepEnd) + 1)) + ": ";
}

Status EndOf(int status, const std::string& during) {
  if (WIFSIGNALED(status)) {
    const bool aborted = WTERMSIG(status) == SIGABRT;
    return Status::Error(during + "the process was ended by signal " +
                         std::to_string(WTERMSIG(status)) + " (" + strsignal(WTERMSIG(status)) +
                         (aborted ? "), as by an exception that nobody catches" : ")"));
  }
  return Status::Error(during + "the process ended itself with status " +
                       std::to_string(WEXITSTATUS(status)));
}

}  // namespace

Result<std::string> RunIsolated(const std::function<std::string()>& work, double seconds) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return Status::Error("no pipe: " + GetSystemErrorText());
  const pid_t child = fork();
  if (child < 0) {
    close(ends[0]);
    close(ends[1]);
    return Status::Error("no process: " + GetSystemErrorText());
  }
  if (child == 0) {
    close(ends[0]);
    RunInChild(work, ends[1]);
  }
  close(ends[1]);
  std::string text;
  const bool inTime = ReadUntil(ends[0], GetClockSeconds() + seconds, text);
  close(ends[0]);
  if (!inTime) kill(child, SIGKILL);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const size_t result = text.rfind(kStepEnd) + 1;
  if (inTime && result < text.size() && text[result] == kDone) return text.substr(result + 1);
  const std::string during = LastStep(text);
  if (!inTime) {
    return Status::Error(during + "took longer than " + std::to_string(static_cast<int>(seconds)) +
                         " seconds");
  }
  return EndOf(status, during);
}

void NoteStep(const char* step) {
  if (stepPipe < 0) return;
  WriteAll(stepPipe, step, std::strlen(step));
  WriteAll(stepPipe, &kStepEnd, 1);
}

uint64_t GetHeapBytesInUse() {
  if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace velora
