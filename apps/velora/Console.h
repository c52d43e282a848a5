// What the program says to the person: results on standard output, everything
// else on standard error, one line a message.
//
// A console belongs to the main thread. Jobs on other threads collect what they
// have to say and the main thread says it, in input order.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Command.h"

namespace velora::cli {

enum class Verbosity { kQuiet, kNormal, kVerbose };

class Console {
 public:
  explicit Console(Verbosity verbosity) : verbosity_(verbosity) {}
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console() { EndProgress(); }

  bool IsVerbose() const { return verbosity_ == Verbosity::kVerbose; }

  /// Results, to standard output. A failure is remembered for Finish.
  void Print(std::string_view text);

  /// "velora: SUBJECT: MESSAGE" to standard error; an empty subject is left out.
  void Error(std::string_view subject, std::string_view message);

  /// As Error with "warning: "; not with --quiet. Counted in any case.
  void Warning(std::string_view subject, std::string_view message);
  size_t Warnings() const { return warnings_; }

  /// A line of the summary to standard error; not with --quiet.
  void Summary(std::string_view text);

  /// A line to standard error with --verbose only.
  void Note(std::string_view text);

  /// Draws or moves the progress bar: only on a terminal, not with --quiet, and
  /// at most ten times a second. Any message clears it for its own line.
  void Progress(size_t done, size_t total);
  void EndProgress();

  /// Hands everything printed to the system. kOutput and a message when standard
  /// output took not all of it, otherwise `status`.
  ExitStatus Finish(ExitStatus status);

 private:
  void Say(std::string line);

  Verbosity verbosity_;
  size_t warnings_ = 0;
  std::string printFault_;
  bool barShown_ = false;
  double barTime_ = 0;
};

}  // namespace velora::cli
