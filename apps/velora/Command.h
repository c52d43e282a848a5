// What a row of the command table says.
//
// A command is one file that defines one constant `Command`, and one line in
// Commands.cpp. Parsing, help, the manual pages, the completions of three shells
// and the options section of docs/commands/NAME.md all read these rows; nothing
// about a command's arguments is written anywhere else.
#pragma once

#include <cstdint>
#include <span>

namespace velora::cli {

class Arguments;
class Console;

/// How the program ends. With several inputs the highest one counts.
enum class ExitStatus : int {
  kDone = 0,
  kNo = 1,      ///< the answer is no: a fault, a conflict, a difference
  kUsage = 2,   ///< the command line makes no sense
  kInput = 3,   ///< an input could not be read
  kOutput = 4,  ///< an output could not be written, exists, or cannot hold the sound
  kInterrupted = 130,
};

constexpr ExitStatus Worse(ExitStatus a, ExitStatus b) { return a < b ? b : a; }

/// What an option's value or an operand is; decides checks and completion.
enum class ValueKind : uint8_t {
  kNone,     ///< a flag, no value
  kText,     ///< anything
  kNumber,   ///< a decimal integer from `least` to `most`
  kPath,     ///< a file or a directory
  kFormat,   ///< the FORMAT of a sound (FormatArgument.h)
  kChoice,   ///< one of `choices`
  kCommand,  ///< the name of a command
};

/// One option. `name` is the long name without its dashes and the key under
/// which Arguments hands out the value.
struct Option {
  const char* name;
  char letter = 0;              ///< short form, 0 for none
  const char* value = nullptr;  ///< placeholder in help; null for a flag
  ValueKind kind = ValueKind::kNone;
  const char* help = "";  ///< a sentence without its full stop
  std::span<const char* const> choices = {};
  int64_t least = 0;         ///< kNumber: smallest value, inclusive
  int64_t most = INT64_MAX;  ///< kNumber: largest value, inclusive
  bool repeatable = false;   ///< may be given more than once, all values count
  bool hidden = false;       ///< works, but no text lists it
};

/// One operand, in the order of the command line. Only the last may repeat.
struct Operand {
  const char* name;  ///< as the synopsis shows it: FILE
  ValueKind kind = ValueKind::kPath;
  const char* help = "";
  std::span<const char* const> choices = {};
  bool required = true;
  bool repeatable = false;
};

struct Example {
  const char* line;
  const char* meaning;
};

struct Command {
  const char* name;
  const char* summary;  ///< one line, no full stop
  std::span<const Operand> operands = {};
  const char* description = "";  ///< paragraphs with a blank line between
  std::span<const Option> options = {};
  std::span<const Example> examples = {};
  ExitStatus (*run)(const Arguments& arguments, Console& console) = nullptr;
};

}  // namespace velora::cli
