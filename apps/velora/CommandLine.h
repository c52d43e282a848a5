// From the words of the command line to a command that runs.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Command.h"
#include "platform/Status.h"

namespace velora::cli {

/// The parsed words of one command. Asking for an option that the command's
/// table has no row for is a mistake in the program and ends it.
class Arguments {
 public:
  /// Checks number and kinds of options and operands against the table. The
  /// message says what is wrong with the line. With --help or --version among
  /// the words nothing else is required.
  static Result<Arguments> Parse(const Command& command, std::span<const std::string> words);

  bool Has(std::string_view option) const;

  /// The last value given; empty without one.
  const std::string& Text(std::string_view option) const;

  /// All values given, in order.
  const std::vector<std::string>& Texts(std::string_view option) const;

  /// The value of a kNumber option, `otherwise` without one.
  int64_t Number(std::string_view option, int64_t otherwise) const;

  const std::vector<std::string>& Operands() const { return operands_; }

  const Command& GetCommand() const { return *command_; }

  /// Whether the command has such an option at all.
  bool Knows(std::string_view option) const;

 private:
  struct Given {
    const Option* option = nullptr;
    size_t count = 0;
    std::vector<std::string> values;
  };

  explicit Arguments(const Command& command);
  const Given& Find(std::string_view option) const;
  Status CheckOperands() const;

  const Command* command_;
  std::vector<Given> given_;  // one for each row of the command, then the common ones
  std::vector<std::string> operands_;
};

/// Runs the whole program; the result is its exit status.
int RunCommandLine(int argc, char** argv);

}  // namespace velora::cli
