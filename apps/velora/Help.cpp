#include "Help.h"

#include <algorithm>
#include <string_view>

#include "CommandLine.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Console.h"

namespace velora::cli {
namespace {

constexpr size_t kColumns = 80;
constexpr size_t kHelpColumn = 26;  // where the help of an option begins

constexpr StatusRow kStatusRows[] = {
    {0, "done; what was dropped but may be is a warning"},
    {1, "the answer is no: a check found a fault, or --strict met a warning"},
    {2, "wrong usage"},
    {3, "an input could not be read"},
    {4, "an output could not be written, exists, or its format cannot hold the sound"},
    {130, "interrupted"},
};

/// `text` broken at blanks, each line behind `indent` blanks but the first, which
/// starts at column `used`.
std::string Wrap(std::string_view text, size_t indent, size_t used) {
  std::string out;
  size_t column = used;
  while (!text.empty()) {
    const size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const bool first = column == used && out.empty();
    if (!first && column + 1 + word.size() > kColumns) {
      out.append("\n").append(indent, ' ');
      column = indent;
    } else if (!first) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
  }
  return out += '\n';
}

/// "  LEFT      HELP", the help in a column of its own.
std::string TwoColumns(const std::string& left, const std::string& right, size_t column) {
  std::string line = "  " + left;
  if (line.size() + 2 > column) {
    line.append("\n").append(column, ' ');
  } else {
    line.append(column - line.size(), ' ');
  }
  return line + Wrap(right, column, column);
}

std::string OptionNames(const Option& row) {
  std::string names = row.letter ? std::string("-") + row.letter + ", " : "    ";
  names.append("--").append(row.name);
  if (row.value) names.append(" ").append(row.value);
  return names;
}

std::string Usage(const Command& command) {
  std::string usage = std::string("velora ") + command.name + " [OPTION...]";
  const std::string operands = OperandSynopsis(command);
  return operands.empty() ? usage : usage + " " + operands;
}

/// A vertical bar would end the cell of a table.
std::string MarkdownCell(const std::string& text) {
  std::string cell;
  for (const char c : text) {
    if (c == '|') cell += '\\';
    cell += c;
  }
  return cell;
}

ExitStatus RunHelp(const Arguments& arguments, Console& console) {
  if (arguments.Operands().empty()) {
    console.Print(ProgramHelp());
    return ExitStatus::kDone;
  }
  const std::string& name = arguments.Operands().front();
  const Command* command = FindCommand(name);
  if (!command) {
    console.Error(name, "no such command (see 'velora help')");
    return ExitStatus::kUsage;
  }
  console.Print(arguments.Has("markdown") ? MarkdownOptions(*command) : CommandHelp(*command));
  return ExitStatus::kDone;
}

constexpr Option kOptions[] = {
    {.name = "markdown", .help = "Print the options section of the command's page", .hidden = true},
};
constexpr Operand kOperands[] = {{.name = "COMMAND",
                                  .kind = ValueKind::kCommand,
                                  .help = "the command to explain; without it, all in a line each",
                                  .required = false}};
constexpr Example kExamples[] = {{"velora help convert", "how sounds are converted"}};

}  // namespace

extern const Command kHelpCommand;
constinit const Command kHelpCommand = {
    .name = "help",
    .summary = "explain the program or a command",
    .operands = kOperands,
    .description = "Prints what `velora COMMAND --help` prints.",
    .options = kOptions,
    .examples = kExamples,
    .run = RunHelp,
};

const char* VersionText() { return VELORA_VERSION; }

std::string VersionLine() { return std::string("velora ") + VersionText() + "\n"; }

std::span<const StatusRow> ExitStatusRows() { return kStatusRows; }

std::string JoinChoices(std::span<const char* const> choices, const char* between) {
  std::string joined;
  for (const char* choice : choices) joined.append(joined.empty() ? "" : between).append(choice);
  return joined;
}

std::string OperandSynopsis(const Command& command) {
  std::string synopsis;
  for (const Operand& row : command.operands) {
    std::string part = row.name;
    if (row.repeatable) part += "...";
    if (!row.required) part = "[" + part + "]";
    synopsis += (synopsis.empty() ? "" : " ") + part;
  }
  return synopsis;
}

std::vector<const Option*> ListedOptions(const Command& command) {
  std::vector<const Option*> rows;
  const auto list = [&rows](std::span<const Option> options) {
    for (const Option& row : options) {
      if (!row.hidden) rows.push_back(&row);
    }
  };
  list(command.options);
  list(kCommonOptions);
  return rows;
}

std::string FullHelp(const Option& row) {
  std::string help = row.help;
  if (!row.choices.empty()) help += ": " + JoinChoices(row.choices, ", ");
  if (row.repeatable) help += " (may be repeated)";
  return help;
}

std::vector<std::string> Paragraphs(const char* text) {
  std::vector<std::string> paragraphs;
  std::string_view rest = text;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find("\n\n"), rest.size());
    paragraphs.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 2, rest.size()));
  }
  return paragraphs;
}

std::string ProgramHelp() {
  std::string help =
      "velora: sounds, their events, and the files that sound chips play\n"
      "\n"
      "usage: velora COMMAND [OPTION...] [ARGUMENT...]\n"
      "\n";
  for (const Command* command : AllCommands()) {
    help += TwoColumns(command->name, command->summary, 14);
  }
  return help +
         "\n'velora help COMMAND' explains one of them, 'velora --version' names the version.\n";
}

std::string CommandHelp(const Command& command) {
  std::string help = std::string("velora ") + command.name + ": " + command.summary + "\n\n";
  help += "usage: " + Usage(command) + "\n";
  for (const std::string& paragraph : Paragraphs(command.description)) {
    help += "\n" + Wrap(paragraph, 0, 0);
  }
  if (!command.operands.empty()) help += "\nArguments:\n";
  for (const Operand& row : command.operands) {
    std::string meaning = row.help;
    if (!row.choices.empty()) meaning += ": " + JoinChoices(row.choices, ", ");
    help += TwoColumns(row.name, meaning, kHelpColumn);
  }
  help += "\nOptions:\n";
  for (const Option* row : ListedOptions(command)) {
    help += TwoColumns(OptionNames(*row), FullHelp(*row), kHelpColumn);
  }
  if (!command.examples.empty()) help += "\nExamples:\n";
  for (const Example& example : command.examples) {
    help += std::string("  ") + example.line + "\n      " + Wrap(example.meaning, 6, 6);
  }
  help += "\nExit status:\n";
  for (const StatusRow& row : kStatusRows) {
    help += TwoColumns(std::to_string(row.status), row.meaning, 8);
  }
  return help;
}

std::string MarkdownOptions(const Command& command) {
  std::string page = "## Options\n\n```\n" + Usage(command) + "\n```\n\n";
  if (!command.operands.empty()) page += "| argument | meaning |\n|---|---|\n";
  for (const Operand& row : command.operands) {
    std::string meaning = row.help;
    if (!row.choices.empty()) meaning += ": " + JoinChoices(row.choices, ", ");
    page += std::string("| `") + row.name + "` | " + MarkdownCell(meaning) + " |\n";
  }
  if (!command.operands.empty()) page += "\n";
  page += "| option | meaning |\n|---|---|\n";
  for (const Option* row : ListedOptions(command)) {
    const std::string value = row->value ? std::string(" ") + row->value : "";
    std::string names = row->letter ? std::string("`-") + row->letter + "`, " : "";
    names += std::string("`--") + row->name + value + "`";
    page += "| " + names + " | " + MarkdownCell(FullHelp(*row)) + " |\n";
  }
  return page;
}

}  // namespace velora::cli
