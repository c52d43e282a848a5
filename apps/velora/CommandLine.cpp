#include "CommandLine.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <new>

#include "Commands.h"
#include "CommonOptions.h"
#include "Console.h"
#include "Help.h"
#include "platform/System.h"

namespace velora::cli {
namespace {

bool ParseNumber(const std::string& text, int64_t* number) {
  const char* end = text.data() + text.size();
  const auto [stopped, fault] = std::from_chars(text.data(), end, *number);
  return fault == std::errc() && stopped == end;
}

/// What is wrong with a value, in CLI11's manner: empty when nothing is.
std::string FaultOfValue(const Option& row, const std::string& value) {
  if (row.kind == ValueKind::kNumber) {
    int64_t number = 0;
    if (ParseNumber(value, &number) && number >= row.least && number <= row.most) return {};
    std::string range = "an integer";
    if (row.most != INT64_MAX) {
      range += " from " + std::to_string(row.least) + " to " + std::to_string(row.most);
    } else if (row.least != INT64_MIN) {
      range += " not below " + std::to_string(row.least);
    }
    return "'" + value + "' is not " + range;
  }
  if (row.kind == ValueKind::kChoice &&
      std::ranges::find(row.choices, value) == row.choices.end()) {
    return "'" + value + "' is none of " + JoinChoices(row.choices, ", ");
  }
  return {};
}

void AddOption(CLI::App& app, const Option& row, size_t* count, std::vector<std::string>* values) {
  std::string names = std::string("--") + row.name;
  if (row.letter) names += std::string(",-") + row.letter;
  if (row.kind == ValueKind::kNone) {
    app.add_flag_function(names, [count](int64_t times) { *count = static_cast<size_t>(times); })
        ->disable_flag_override();
    return;
  }
  CLI::Option* option = app.add_option(names, [count, values](const CLI::results_t& results) {
    *values = results;
    *count = results.size();
    return true;
  });
  option->type_size(1)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option->check([&row](const std::string& value) { return FaultOfValue(row, value); });
  if (!row.repeatable) option->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

/// What a person should read for a fault that CLI11 found.
std::string FaultMessage(const CLI::ParseError& error) {
  std::string message = error.what();
  std::ranges::replace(message, '\n', ' ');
  if (dynamic_cast<const CLI::ExtrasError*>(&error)) {
    return "there is no option " + message.substr(message.rfind(' ') + 1);
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
    const std::string name = message.substr(0, message.find_first_of(": "));
    // Of a flag CLI11 gives the name alone.
    if (!name.starts_with('-')) return "--" + name + " takes no value";
    const bool several = message.find("received") != std::string::npos;
    return name + (several ? " may be given once only" : " needs a value");
  }
  return message;
}

}  // namespace

Arguments::Arguments(const Command& command) : command_(&command) {
  given_.reserve(command.options.size() + std::size(kCommonOptions));
  for (const Option& row : command.options) given_.push_back({&row, 0, {}});
  for (const Option& row : kCommonOptions) given_.push_back({&row, 0, {}});
}

Result<Arguments> Arguments::Parse(const Command& command, std::span<const std::string> words) {
  Arguments arguments(command);
  CLI::App app;
  app.set_help_flag();
  for (Given& given : arguments.given_) {
    AddOption(app, *given.option, &given.count, &given.values);
  }
  app.add_option("operands", arguments.operands_);
  // CLI11 takes the words from the back.
  std::vector<std::string> reversed(words.rbegin(), words.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    return Status::Error(FaultMessage(error));
  }
  if (arguments.Has("help") || arguments.Has("version")) return arguments;
  if (Status operands = arguments.CheckOperands(); !operands) return operands;
  return arguments;
}

Status Arguments::CheckOperands() const {
  size_t index = 0;
  for (const Operand& row : command_->operands) {
    if (index >= operands_.size() && row.required) {
      return Status::Error(std::string(row.name) + " is missing");
    }
    const size_t end = row.repeatable ? operands_.size() : std::min(index + 1, operands_.size());
    for (; index < end; ++index) {
      const bool known = std::ranges::find(row.choices, operands_[index]) != row.choices.end();
      if (row.kind == ValueKind::kChoice && !known) {
        return Status::Error("'" + operands_[index] + "' is none of " +
                             JoinChoices(row.choices, ", "));
      }
    }
  }
  if (index < operands_.size()) {
    return Status::Error("'" + operands_[index] + "' is one argument too many");
  }
  return {};
}

const Arguments::Given& Arguments::Find(std::string_view option) const {
  const auto found =
      std::ranges::find_if(given_, [option](const Given& g) { return g.option->name == option; });
  if (found == given_.end()) std::abort();
  return *found;
}

bool Arguments::Knows(std::string_view option) const {
  return std::ranges::any_of(given_, [option](const Given& g) { return g.option->name == option; });
}

bool Arguments::Has(std::string_view option) const { return Find(option).count > 0; }

const std::vector<std::string>& Arguments::Texts(std::string_view option) const {
  return Find(option).values;
}

const std::string& Arguments::Text(std::string_view option) const {
  static const std::string kNone;
  const auto& values = Texts(option);
  return values.empty() ? kNone : values.back();
}

int64_t Arguments::Number(std::string_view option, int64_t otherwise) const {
  int64_t number = otherwise;
  if (Has(option)) (void)ParseNumber(Text(option), &number);
  return number;
}

namespace {

ExitStatus RunCommand(const Command& command, std::span<const std::string> words) {
  const Result<Arguments> arguments = Arguments::Parse(command, words);
  if (!arguments) {
    Console console(Verbosity::kNormal);
    console.Error(command.name, arguments.Message() + " (see 'velora help " + command.name + "')");
    return ExitStatus::kUsage;
  }
  const Verbosity verbosity = arguments->Has("quiet")     ? Verbosity::kQuiet
                              : arguments->Has("verbose") ? Verbosity::kVerbose
                                                          : Verbosity::kNormal;
  Console console(verbosity);
  if (arguments->Has("help")) {
    console.Print(CommandHelp(command));
    return console.Finish(ExitStatus::kDone);
  }
  if (arguments->Has("version")) {
    console.Print(VersionLine());
    return console.Finish(ExitStatus::kDone);
  }
  CatchInterrupts();
  try {
    const ExitStatus status = command.run(arguments.Value(), console);
    return console.Finish(IsInterrupted() ? ExitStatus::kInterrupted : status);
  } catch (const std::bad_alloc&) {
    console.Error(command.name, "out of memory");
  } catch (const std::exception& error) {
    console.Error(command.name, error.what());
  }
  return console.Finish(ExitStatus::kInput);
}

ExitStatus RunWords(std::span<const std::string> words) {
  Console console(Verbosity::kNormal);
  if (words.empty()) {
    console.Error("", "a command is missing (see 'velora help')");
    return ExitStatus::kUsage;
  }
  const std::string& name = words.front();
  if (name == "--help" || name == "-h") {
    console.Print(ProgramHelp());
    return console.Finish(ExitStatus::kDone);
  }
  if (name == "--version") {
    console.Print(VersionLine());
    return console.Finish(ExitStatus::kDone);
  }
  if (const Command* command = FindCommand(name)) return RunCommand(*command, words.subspan(1));
  std::string message = "no such command (see 'velora help')";
  if (const Command* guess = GuessCommand(name)) {
    message = std::string("no such command; did you mean '") + guess->name + "'?";
  }
  console.Error(name, message);
  return ExitStatus::kUsage;
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  return static_cast<int>(RunWords(words));
}

}  // namespace velora::cli
