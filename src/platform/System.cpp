#include "platform/System.h"

#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <system_error>

#include "platform/TemporaryNames.h"

namespace velora {
namespace {

double ReadClock(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Paths in fixed memory, since a signal handler may neither lock nor allocate. A
// slot's state is taken last when entering and first when leaving.
struct TemporarySlot {
  std::atomic<int> state{0};  // 0 free, 1 being written, 2 in use
  std::array<char, 1024> path{};
};
std::array<TemporarySlot, 256> temporarySlots;

std::atomic<int> interrupts{0};

extern "C" void OnInterrupt(int) {
  if (interrupts.fetch_add(1) == 0) return;
  RemoveRememberedTemporaries();
  _exit(130);
}

}  // namespace

int GetProcessId() { return static_cast<int>(getpid()); }

std::string GetProgramFile() {
  std::string path(PATH_MAX, '\0');
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  path.resize(length > 0 ? static_cast<size_t>(length) : 0);
  return path;
}

unsigned GetProcessorCount() {
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) != 0) return 1;
  const int count = CPU_COUNT(&set);
  return count > 0 ? static_cast<unsigned>(count) : 1;
}

std::optional<std::string> GetEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  if (!value) return std::nullopt;
  return std::string(value);
}

std::tm GetLocalTime() {
  const time_t now = time(nullptr);
  std::tm broken{};
  localtime_r(&now, &broken);
  return broken;
}

std::tm GetUtcTime(int64_t seconds) {
  const time_t point = static_cast<time_t>(seconds);
  std::tm broken{};
  gmtime_r(&point, &broken);
  return broken;
}

double GetCpuSeconds() { return ReadClock(CLOCK_PROCESS_CPUTIME_ID); }
double GetClockSeconds() { return ReadClock(CLOCK_MONOTONIC); }

bool IsTerminal(int stream) { return isatty(stream) == 1; }

unsigned GetTerminalWidth() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

void WriteStandardError(std::string_view text) {
  while (!text.empty()) {
    const ssize_t put = write(STDERR_FILENO, text.data(), text.size());
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return;
    text.remove_prefix(static_cast<size_t>(put));
  }
}

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool IsInterrupted() { return interrupts.load(std::memory_order_relaxed) != 0; }

std::string GetSystemErrorText() { return GetSystemErrorText(errno); }
std::string GetSystemErrorText(int code) { return std::generic_category().message(code); }

// --- temporary names ---------------------------------------------------------

void RememberTemporary(const std::string& path) {
  if (path.size() >= temporarySlots[0].path.size()) return;
  for (TemporarySlot& slot : temporarySlots) {
    int expected = 0;
    if (!slot.state.compare_exchange_strong(expected, 1)) continue;
    std::memcpy(slot.path.data(), path.c_str(), path.size() + 1);
    slot.state = 2;
    return;
  }
}

void ForgetTemporary(const std::string& path) {
  for (TemporarySlot& slot : temporarySlots) {
    if (slot.state == 2 && path == slot.path.data()) {
      slot.state = 0;
      return;
    }
  }
}

void RemoveRememberedTemporaries() {
  for (TemporarySlot& slot : temporarySlots) {
    if (slot.state == 2) unlink(slot.path.data());
  }
}

}  // namespace velora
