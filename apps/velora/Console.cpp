#include "Console.h"

#include <algorithm>
#include <cstdio>

#include "platform/System.h"

namespace velora::cli {
namespace {

constexpr int kStandardError = 2;
constexpr double kBarInterval = 0.1;  // seconds between two drawings
constexpr const char* kClearLine = "\r\x1b[K";

/// A message is one line whatever a file's own texts put into it, and no escape
/// sequence out of a file reaches the terminal.
std::string OneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
  return text;
}

}  // namespace

void Console::Print(std::string_view text) {
  if (barShown_) EndProgress();
  if (!printFault_.empty() || text.empty()) return;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
    printFault_ = GetSystemErrorText();
  }
}

void Console::Say(std::string line) {
  if (barShown_) EndProgress();
  line += '\n';
  WriteStandardError(line);
}

void Console::Error(std::string_view subject, std::string_view message) {
  std::string line = "velora: ";
  if (!subject.empty()) line.append(subject).append(": ");
  Say(OneLine(line.append(message)));
}

void Console::Warning(std::string_view subject, std::string_view message) {
  ++warnings_;
  if (verbosity_ == Verbosity::kQuiet) return;
  Error(subject, std::string("warning: ").append(message));
}

void Console::Summary(std::string_view text) {
  if (verbosity_ != Verbosity::kQuiet) Say(OneLine(std::string("velora: ").append(text)));
}

void Console::Note(std::string_view text) {
  if (verbosity_ == Verbosity::kVerbose) Say(OneLine(std::string(text)));
}

void Console::Progress(size_t done, size_t total) {
  if (verbosity_ == Verbosity::kQuiet || total == 0 || !IsTerminal(kStandardError)) return;
  const double now = GetClockSeconds();
  if (barShown_ && now - barTime_ < kBarInterval) return;
  barTime_ = now;
  const std::string count = " " + std::to_string(done) + "/" + std::to_string(total);
  const size_t width = GetTerminalWidth();
  std::string line = kClearLine;
  // The bar takes what the brackets, the count and the last column leave.
  if (width > count.size() + 13) {
    const size_t bar = std::min<size_t>(width - count.size() - 3, 60);
    const size_t filled = bar * done / total;
    line.append("[").append(filled, '#').append(bar - filled, '.').append("]");
  }
  WriteStandardError(line += count);
  barShown_ = true;
}

void Console::EndProgress() {
  if (!barShown_) return;
  barShown_ = false;
  WriteStandardError(kClearLine);
}

ExitStatus Console::Finish(ExitStatus status) {
  EndProgress();
  if (std::fflush(stdout) != 0 && printFault_.empty()) printFault_ = GetSystemErrorText();
  if (printFault_.empty()) return status;
  Error("standard output", printFault_);
  return Worse(status, ExitStatus::kOutput);
}

}  // namespace velora::cli
