#include "support/RunVelora.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "support/TempDir.h"

namespace velora::test {
namespace {

/// The child's end of a run: does not return.
[[noreturn]] void Execute(const std::vector<std::string>& words, const RunOptions& options,
                          const std::string& in, const std::string& out, const std::string& err) {
  const auto redirect = [](const std::string& path, int flags, int to) {
    const int handle = open(path.c_str(), flags, 0600);
    if (handle < 0 || dup2(handle, to) < 0) _exit(127);
    close(handle);
  };
  redirect(in, O_RDONLY, STDIN_FILENO);
  redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
  redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
  if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) _exit(127);
  for (const std::string& variable : options.environment) {
    const size_t equals = variable.find('=');
    setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
  }
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

int ExitStatusOf(int waited) {
  return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}

std::vector<std::string> WithProgram(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {VeloraProgram()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

}  // namespace

std::string VeloraProgram() { return std::string(VELORA_BINARY_DIR) + "/apps/velora/velora"; }

Outcome RunProgram(const std::vector<std::string>& words, const RunOptions& options) {
  const TempDir dir;
  WriteText(dir / "in", options.input);
  const pid_t pid = fork();
  if (pid < 0) throw std::runtime_error("cannot fork");
  if (pid == 0) Execute(words, options, dir / "in", dir / "out", dir / "err");
  int waited = 0;
  while (waitpid(pid, &waited, 0) < 0) {
  }
  return {ExitStatusOf(waited), ReadText(dir / "out"), ReadText(dir / "err")};
}

Outcome RunVelora(const std::vector<std::string>& arguments, const RunOptions& options) {
  return RunProgram(WithProgram(arguments), options);
}

RunningVelora::RunningVelora(const std::vector<std::string>& arguments) {
  pid_ = fork();
  if (pid_ < 0) throw std::runtime_error("cannot fork");
  if (pid_ == 0) Execute(WithProgram(arguments), {}, "/dev/null", "/dev/null", "/dev/null");
}

RunningVelora::~RunningVelora() {
  if (status_ >= 0) return;
  kill(pid_, SIGKILL);
  (void)Wait();
}

void RunningVelora::Signal(int number) const { kill(pid_, number); }

bool RunningVelora::IsRunning() {
  int waited = 0;
  if (status_ >= 0) return false;
  if (waitpid(pid_, &waited, WNOHANG) != pid_) return true;
  status_ = ExitStatusOf(waited);
  return false;
}

int RunningVelora::Wait() {
  int waited = 0;
  if (status_ < 0) {
    while (waitpid(pid_, &waited, 0) < 0) {
    }
    status_ = ExitStatusOf(waited);
  }
  return status_;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace velora::test
