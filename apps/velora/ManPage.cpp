// `velora man`: manual pages in roff, made from the command table.
#include <cctype>
#include <string>
#include <string_view>

#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "Help.h"

namespace velora::cli {
namespace {

/// Text that roff sets as it stands: no escapes, no hyphenation of options, no
/// line taken for a request.
std::string Roff(std::string_view text) {
  std::string out;
  if (text.starts_with('.') || text.starts_with('\'')) out += "\\&";
  for (const char c : text) {
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else {
      out += c;
    }
  }
  return out;
}

std::string Section(const char* title) { return std::string(".SH ") + title + "\n"; }

std::string Heading(const std::string& name, const std::string& summary) {
  std::string title = name;
  for (char& c : title) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return ".TH " + Roff(title) + " 1 \"\" \"velora " + VersionText() + "\"\n" + Section("NAME") +
         Roff(name) + " \\- " + Roff(summary) + "\n";
}

std::string Tagged(const std::string& tag, const std::string& text) {
  return ".TP\n" + tag + "\n" + Roff(text) + "\n";
}

std::string OptionTag(const Option& row) {
  std::string tag;
  if (row.letter) tag += std::string("\\fB\\-") + row.letter + "\\fR, ";
  tag += "\\fB\\-\\-" + Roff(row.name) + "\\fR";
  if (row.value) tag += " \\fI" + Roff(row.value) + "\\fR";
  return tag;
}

std::string ExitStatusSection() {
  std::string page = Section("EXIT STATUS");
  for (const StatusRow& row : ExitStatusRows()) {
    page += Tagged("\\fB" + std::to_string(row.status) + "\\fR", row.meaning);
  }
  return page;
}

std::string ProgramPage() {
  std::string page = Heading("velora", "sounds, their events, and the files that sound chips play");
  page += Section("SYNOPSIS") +
          "\\fBvelora\\fR \\fICOMMAND\\fR [\\fIOPTION\\fR...] "
          "[\\fIARGUMENT\\fR...]\n";
  page += Section("COMMANDS");
  for (const Command* command : AllCommands()) {
    page += Tagged("\\fB" + Roff(command->name) + "\\fR", command->summary);
  }
  page += ExitStatusSection() + Section("SEE ALSO");
  std::string also;
  for (const Command* command : AllCommands()) {
    also += (also.empty() ? "" : ",\n") + ("\\fBvelora\\-" + Roff(command->name) + "\\fR(1)");
  }
  return page + also + "\n";
}

std::string CommandPage(const Command& command) {
  std::string page = Heading(std::string("velora-") + command.name, command.summary);
  page += Section("SYNOPSIS") + "\\fBvelora " + Roff(command.name) + "\\fR [\\fIOPTION\\fR...] " +
          Roff(OperandSynopsis(command)) + "\n";
  page += Section("DESCRIPTION");
  for (const std::string& paragraph : Paragraphs(command.description)) {
    page += ".PP\n" + Roff(paragraph) + "\n";
  }
  for (const Operand& row : command.operands) {
    std::string meaning = row.help;
    if (!row.choices.empty()) meaning += ": " + JoinChoices(row.choices, ", ");
    page += Tagged("\\fI" + Roff(row.name) + "\\fR", meaning);
  }
  page += Section("OPTIONS");
  for (const Option* row : ListedOptions(command)) page += Tagged(OptionTag(*row), FullHelp(*row));
  if (!command.examples.empty()) page += Section("EXAMPLES");
  for (const Example& example : command.examples) {
    page += Tagged("\\fB" + Roff(example.line) + "\\fR", example.meaning);
  }
  page += ExitStatusSection();
  return page + Section("SEE ALSO") + "\\fBvelora\\fR(1)\n";
}

ExitStatus RunMan(const Arguments& arguments, Console& console) {
  if (arguments.Operands().empty()) {
    console.Print(ProgramPage());
    return ExitStatus::kDone;
  }
  const std::string& name = arguments.Operands().front();
  const Command* command = FindCommand(name);
  if (!command) {
    console.Error(name, "no such command (see 'velora help')");
    return ExitStatus::kUsage;
  }
  console.Print(CommandPage(*command));
  return ExitStatus::kDone;
}

constexpr Operand kOperands[] = {{.name = "COMMAND",
                                  .kind = ValueKind::kCommand,
                                  .help = "the command; without it, the page of the program",
                                  .required = false}};
constexpr Example kExamples[] = {{"velora man convert | man -l -", "read the page of a command"}};

}  // namespace

extern const Command kManCommand;
constinit const Command kManCommand = {
    .name = "man",
    .summary = "print a manual page",
    .operands = kOperands,
    .description = "Prints the manual page of the program or of a command in roff.",
    .examples = kExamples,
    .run = RunMan,
};

}  // namespace velora::cli
