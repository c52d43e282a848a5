// Many files at once, reported one after the other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Command.h"
#include "Inputs.h"

namespace velora::cli {

/// Does work(0) to work(count - 1) on up to `jobs` threads and calls done(i) for
/// each, i ascending, on the calling thread as soon as work(0) to work(i) are
/// done. `tick` gets the number of finished works now and then, on the calling
/// thread. After an interrupt no further work begins, and what has not begun is
/// not reported. The result is how many were reported.
size_t RunInOrder(size_t count, unsigned jobs, const std::function<void(size_t)>& work,
                  const std::function<void(size_t)>& done, const std::function<void(size_t)>& tick);

/// What a command found out about one file. Filled on a worker's thread.
struct FileReport {
  ExitStatus status = ExitStatus::kDone;
  std::string error;                  ///< set when the file could not be dealt with
  std::string subject;                ///< whose error it is; empty for the input's
  std::vector<std::string> warnings;  ///< what was dropped but may be
  std::vector<std::string> notes;     ///< lines for --verbose
  std::string text;                   ///< for standard output, whole lines
  std::string json;                   ///< an object in text form; empty with `error`

  void Fail(ExitStatus why, std::string message, std::string whose = {}) {
    status = Worse(status, why);
    error = std::move(message);
    subject = std::move(whose);
  }
};

/// How RunOverFiles treats what the reports say.
struct FileRun {
  unsigned jobs = 1;
  bool json = false;      ///< print one array, in input order, in place of the texts
  bool strict = false;    ///< a warning makes the status at least kNo
  bool summary = true;    ///< a summary also when nothing failed
  const char* name = "";  ///< of the command, for the summary
};

/// The options --jobs, --json and --strict as far as the command has them.
FileRun FileRunFrom(const Arguments& arguments);

/// Runs `work` over all inputs on worker threads and prints errors, warnings, texts or JSON
/// in input order, the progress, and with several inputs a summary that names
/// those that failed. The result is the highest status.
ExitStatus RunOverFiles(Console& console, const std::vector<Input>& inputs, const FileRun& run,
                        const std::function<FileReport(size_t index)>& work);

}  // namespace velora::cli
