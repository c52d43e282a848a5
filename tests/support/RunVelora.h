// Runs the program as a person does.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velora::test {

struct Outcome {
  int status = -1;  ///< exit status; 128 + signal when a signal ended it
  std::string out;
  std::string err;
};

struct RunOptions {
  std::string input = {};                     ///< standard input; empty by default
  std::string directory = {};                 ///< working directory; the test's own by default
  std::vector<std::string> environment = {};  ///< "NAME=value", beside the test's own
};

/// Runs `velora ARGUMENTS...` to its end.
Outcome RunVelora(const std::vector<std::string>& arguments, const RunOptions& options = {});

/// The same for another program found on the path, with its name in front.
Outcome RunProgram(const std::vector<std::string>& words, const RunOptions& options = {});

/// A run that is still going; a test interrupts it with Signal.
class RunningVelora {
 public:
  explicit RunningVelora(const std::vector<std::string>& arguments);
  ~RunningVelora();
  RunningVelora(const RunningVelora&) = delete;
  RunningVelora& operator=(const RunningVelora&) = delete;

  void Signal(int number) const;
  /// True as long as the program has not ended.
  bool IsRunning();
  /// Waits for the end; output is not kept.
  int Wait();

 private:
  int pid_ = -1;
  int status_ = -1;
};

/// Path of the program under test.
std::string VeloraProgram();

std::vector<std::string> Lines(const std::string& text);

}  // namespace velora::test
