// The log of the module.
//
// Lines look like "[2024/01/31 13:05:09] ERROR:text", with "[PID_01234]" in front
// of the text where the process id is wanted, and "(file:line)" behind it where
// there is a source position.
//
// What is written where says ZuLog.ini in the module's directory; without that
// file nothing is. Its section has the module's base name. Keys:
//   Level    highest level written; needed
//   ShowPID  1: with the process id
//   Type     sum of 1: to a file, 2: to the console; needed
//   File     the log file, relative to the module's directory; up to 259 bytes.
//            Empty: the module's base name and ".log" in its directory.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include <velora/I_ZuLog.h>

namespace velora {

/// Builds the lines; a subclass writes them. A line waits at most 500
/// milliseconds for the lines of other threads and is dropped after that.
class C_ZuLogger : public I_ZuLog {
 public:
  void Log(const char* format, int32_t level, ...) override __attribute__((format(printf, 2, 4)));
  void LogAt(const char* format, int32_t level, const char* file, int32_t line, ...) override
      __attribute__((format(printf, 2, 6)));

  /// Takes a finished line with its line feed. Called under the lock.
  virtual void Write(const std::string& text);

  /// Reads the settings. 1, or 0 when there are none for this logger.
  virtual int32_t Configure();

  virtual ~C_ZuLogger() = default;

  int32_t GetLevel() const { return level_; }

 private:
  void WriteLine(const char* format, int32_t level, const std::string& position,
                 std::va_list arguments) __attribute__((format(printf, 2, 0)));

  int32_t level_ = kLogError;
  int32_t showPID_ = 0;
  std::string line_;  ///< of the lock, as the sink is
  std::timed_mutex mutex_;
};

/// The console of this platform is standard error. It is obtained where there
/// are settings, and then begins with a line of the module's base name.
class C_ZuConsoleLogger : public C_ZuLogger {
 public:
  C_ZuConsoleLogger() { ObtainConsole(); }
  void Write(const std::string& text) override;
  int32_t Configure() override { return ObtainConsole(); }

 private:
  int32_t ObtainConsole();

  bool allocated_ = false;
};

/// Opens the file anew for each line, so that it may be moved in between. A file
/// that cannot be opened at Configure stays off until the next Configure.
class C_ZuFileLogger : public C_ZuLogger {
 public:
  C_ZuFileLogger() = default;

  /// `fileName` is what counts where the settings name no file.
  explicit C_ZuFileLogger(std::string fileName) : fileName_(std::move(fileName)) {}

  void Write(const std::string& text) override;
  int32_t Configure() override;

  const std::string& GetFileName() const { return fileName_; }

 private:
  std::string fileName_;
  bool valid_ = false;
};

/// Hands each line to the file and then to the console, as far as the settings
/// want them. Its own level and lock apply.
class C_ZuMultiLogger : public C_ZuLogger {
 public:
  C_ZuMultiLogger() { ConfigureSinks(); }
  void Write(const std::string& text) override;
  int32_t Configure() override { return ConfigureSinks(); }

 private:
  int32_t ConfigureSinks();

  // The console goes before the file.
  std::unique_ptr<C_ZuFileLogger> file_;
  std::unique_ptr<C_ZuConsoleLogger> console_;
};

/// The one logger of the module, configured at the first call. Never null.
I_ZuLog* GetZuLog();

}  // namespace velora
