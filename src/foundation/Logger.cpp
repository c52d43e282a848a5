#include "foundation/Logger.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <iterator>
#include <limits>
#include <optional>
#include <span>

#include "foundation/AsciiText.h"
#include "foundation/IniFile.h"
#include "foundation/PathText.h"
#include "foundation/StringHelpers.h"
#include "platform/File.h"
#include "platform/System.h"

namespace velora {
namespace {

constexpr std::chrono::milliseconds kLockWait{500};
constexpr int32_t kNotConfigured = std::numeric_limits<int32_t>::max();
constexpr int32_t kFileSink = 1;
constexpr int32_t kConsoleSink = 2;

/// The module's section of ZuLog.ini. Keys are found without regard to case.
class LogSettings {
 public:
  LogSettings() : section_(GetModuleBaseName()) {
    exists_ = file_.Load(Path::System(JoinPath(GetModuleDir(true), {"ZuLog.ini"})));
  }

  bool Exists() const { return exists_; }

  std::optional<std::string> Text(std::string_view key) {
    for (int32_t place = 0;; ++place) {
      const char* const label = file_.GetLabelName(section_.c_str(), place);
      if (!label) return std::nullopt;
      if (!EqualsNoCase(label, key)) continue;
      return file_.GetString(section_.c_str(), label, kIniText, kMsgNone);
    }
  }

  int32_t Number(std::string_view key, int32_t defaultValue) {
    const std::optional<std::string> text = Text(key);
    return text ? ReadInt(*text) : defaultValue;
  }

 private:
  C_CUIniFile file_;
  std::string section_;
  bool exists_ = false;
};

std::string TimeStamp() {
  std::array<char, 128> buffer;
  const std::tm now = GetLocalTime();
  const size_t length = std::strftime(buffer.data(), buffer.size(), "[%Y/%m/%d %H:%M:%S] ", &now);
  return std::string(buffer.data(), length);
}

std::string LevelText(int32_t level) {
  constexpr const char* kNames[] = {"FETAL", "ERROR", "WARNING", "INFO", "DEBUG", "TRACE"};
  if (level < 0 || level >= std::ssize(kNames)) return "Lv" + std::to_string(level) + ":";
  return std::string(kNames[level]) + ":";
}

std::string ProcessText() {
  std::array<char, 32> buffer;
  std::snprintf(buffer.data(), buffer.size(), "[PID_%.5d]", GetProcessId());
  return buffer.data();
}

__attribute__((format(printf, 2, 0))) void AppendFormatted(std::string& text, const char* format,
                                                           std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  if (length > 0) {
    const size_t before = text.size();
    text.resize(before + static_cast<size_t>(length));
    std::vsnprintf(text.data() + before, static_cast<size_t>(length) + 1, format, again);
  }
  va_end(again);
}

}  // namespace

// Building lines.

void C_ZuLogger::Log(const char* format, int32_t level, ...) {
  if (level > level_) return;
  std::va_list arguments;
  va_start(arguments, level);
  WriteLine(format, level, "\n", arguments);
  va_end(arguments);
}

void C_ZuLogger::LogAt(const char* format, int32_t level, const char* file, int32_t line, ...) {
  if (level > level_) return;
  std::va_list arguments;
  va_start(arguments, line);
  WriteLine(format, level, std::string("(") + file + ":" + std::to_string(line) + ")\n", arguments);
  va_end(arguments);
}

void C_ZuLogger::WriteLine(const char* format, int32_t level, const std::string& position,
                           std::va_list arguments) {
  const std::unique_lock lock(mutex_, kLockWait);
  if (!lock) return;
  line_ = TimeStamp() + LevelText(level);
  if (showPID_ == 1) line_ += ProcessText();
  AppendFormatted(line_, format, arguments);
  line_ += position;
  Write(line_);
}

void C_ZuLogger::Write(const std::string& /*text*/) {}

int32_t C_ZuLogger::Configure() {
  LogSettings settings;
  const int32_t level = settings.Number("Level", kNotConfigured);
  if (level == kNotConfigured) return 0;
  level_ = level;
  showPID_ = settings.Number("ShowPID", 0);
  return 1;
}

// Sinks.

void C_ZuConsoleLogger::Write(const std::string& text) {
  if (allocated_) WriteStandardError(text);
}

int32_t C_ZuConsoleLogger::ObtainConsole() {
  if (C_ZuLogger::Configure() && !allocated_) {
    allocated_ = true;
    WriteStandardError("--- " + GetModuleBaseName() + " ---\n");
  }
  return allocated_ ? 1 : 0;
}

void C_ZuFileLogger::Write(const std::string& text) {
  if (!valid_) return;
  Result<OutputFile> file = OutputFile::Append(Path::System(fileName_));
  if (!file) return;
  // A line that cannot be written is lost; a log has nobody to tell.
  if (file->Write(std::as_bytes(std::span(text)))) static_cast<void>(file->Close());
}

int32_t C_ZuFileLogger::Configure() {
  C_ZuLogger::Configure();
  LogSettings settings;
  if (settings.Exists()) {
    fileName_ = settings.Text("File").value_or(fileName_);
    if (fileName_.empty()) fileName_ = JoinPath(GetModuleDir(true), {GetModuleBaseName() + ".log"});
    std::replace(fileName_.begin(), fileName_.end(), '/', '\\');
    if (IsRelativePath(fileName_)) fileName_ = JoinPath(GetModuleDir(true), {fileName_});
  }
  valid_ = !fileName_.empty() && fileName_.size() < kShortPathRoom;
  if (valid_) {
    Result<OutputFile> file = OutputFile::Append(Path::System(fileName_));
    valid_ = file && file->Close();
  }
  return valid_ ? 1 : 0;
}

void C_ZuMultiLogger::Write(const std::string& text) {
  if (file_) file_->Write(text);
  if (console_) console_->Write(text);
}

int32_t C_ZuMultiLogger::ConfigureSinks() {
  console_.reset();
  file_.reset();
  if (!C_ZuLogger::Configure()) return 0;
  const int32_t type = LogSettings().Number("Type", kNotConfigured);
  if (type == kNotConfigured) return 0;
  if (type & kFileSink) {
    file_ = std::make_unique<C_ZuFileLogger>();
    file_->Configure();
  }
  if (type & kConsoleSink) {
    console_ = std::make_unique<C_ZuConsoleLogger>();
    console_->Configure();
  }
  return 1;
}

I_ZuLog* GetZuLog() {
  static const std::shared_ptr<C_ZuMultiLogger> logger = std::make_shared<C_ZuMultiLogger>();
  return logger.get();
}

}  // namespace velora
