// The module's log across the boundary.
#pragma once

#include <cstdint>

namespace velora {

/// Levels of a log line. Higher ones have no name and show as "Lv6:".
enum LogLevel : int32_t {
  kLogFatal = 0,
  kLogError = 1,
  kLogWarning = 2,
  kLogInfo = 3,
  kLogDebug = 4,
  kLogTrace = 5,
};

/// Writes lines of text. Nothing tells a caller whether a line was written.
/// Usable from several threads at once. `format` and its arguments are those of
/// printf.
///
/// The order of the operations is the contract: two raw slots, and no destructor.
class I_ZuLog {
 public:
  /// Slot 0. One line.
  virtual void Log(const char* format, int32_t level, ...)
      __attribute__((format(printf, 2, 4))) = 0;

  /// Slot 1. One line that ends with a position in the source.
  virtual void LogAt(const char* format, int32_t level, const char* file, int32_t line, ...)
      __attribute__((format(printf, 2, 6))) = 0;

 protected:
  ~I_ZuLog() = default;
};

}  // namespace velora
