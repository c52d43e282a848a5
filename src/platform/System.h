// Process, clock, console and interrupt.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Status.h"

namespace velora {

int GetProcessId();
std::string GetProgramFile();  ///< native path of the running program
unsigned GetProcessorCount();  ///< processors this process may use, at least 1
std::optional<std::string> GetEnvironment(const char* name);

/// Local broken-down time, and UTC broken-down time of a count of seconds since
/// 1970; both thread-safe.
std::tm GetLocalTime();
std::tm GetUtcTime(int64_t seconds);

/// CPU seconds that this process has used, and a monotonic clock in seconds.
double GetCpuSeconds();
double GetClockSeconds();

bool IsTerminal(int stream);                     ///< 0 standard input, 1 output, 2 error
unsigned GetTerminalWidth();                     ///< of standard error, 80 when unknown
void WriteStandardError(std::string_view text);  ///< in one write where possible

/// After this an interrupt (Ctrl-C) or a request to end only sets a flag, which
/// long operations ask; a second one removes the temporary files and ends the
/// process with status 130.
void CatchInterrupts();
bool IsInterrupted();

/// The operating system's text for its last error.
std::string GetSystemErrorText();
std::string GetSystemErrorText(int code);

}  // namespace velora
