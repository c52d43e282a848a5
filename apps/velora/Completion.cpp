// `velora completion`: scripts for bash, zsh and fish, made from the command
// table.
#include <span>
#include <string>
#include <string_view>

#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FormatArgument.h"
#include "Help.h"

namespace velora::cli {
namespace {

/// `text` with a backslash before each of `special`.
std::string Escape(std::string_view text, std::string_view special) {
  std::string out;
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

/// For text inside single quotes of bash and zsh, where nothing can be escaped.
std::string ShellQuoted(std::string_view text) {
  std::string out;
  for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out;
}

std::string CommandNames() {
  std::string names;
  for (const Command* command : AllCommands()) {
    names.append(names.empty() ? "" : " ").append(command->name);
  }
  return names;
}

/// The words that a value can be; empty where the shell offers files or nothing.
std::string ValueWords(ValueKind kind, std::span<const char* const> choices) {
  switch (kind) {
    case ValueKind::kChoice:
      return JoinChoices(choices, " ");
    case ValueKind::kFormat:
      return FormatWords();
    case ValueKind::kCommand:
      return CommandNames();
    case ValueKind::kNone:
    case ValueKind::kText:
    case ValueKind::kNumber:
    case ValueKind::kPath:
      return {};
  }
  return {};
}

// ---- bash -------------------------------------------------------------------

std::string BashOptionCase(const Option& row) {
  std::string names = std::string("--") + row.name;
  if (row.letter) names += std::string("|-") + row.letter;
  const std::string words = ValueWords(row.kind, row.choices);
  std::string action = "return";  // an empty answer makes bash offer files
  if (!words.empty()) {
    action = "words='" + words + "'";
  } else if (row.kind != ValueKind::kPath) {
    action = "compopt +o default; return";
  }
  return "        " + names + ") " + action + " ;;\n";
}

std::string BashCommandCase(const Command& command) {
  std::string values;
  std::string options;
  for (const Option* row : ListedOptions(command)) {
    options += std::string(options.empty() ? "" : " ") + "--" + row->name;
    if (row->value) values += BashOptionCase(*row);
  }
  std::string operands;
  for (const Operand& row : command.operands) {
    const std::string words = ValueWords(row.kind, row.choices);
    if (!words.empty()) operands += (operands.empty() ? "" : " ") + words;
  }
  std::string out = std::string("    ") + command.name + ")\n      case \"$previous\" in\n";
  return out + values + "        *) if [[ $current == -* ]]; then words='" + options +
         "'; else words='" + operands + "'; fi ;;\n      esac ;;\n";
}

std::string BashCompletion() {
  std::string script =
      "# bash completion for velora\n"
      "_velora() {\n"
      "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words=\n"
      "  COMPREPLY=()\n"
      "  if ((COMP_CWORD == 1)); then\n"
      "    COMPREPLY=($(compgen -W '" +
      CommandNames() +
      " --help --version' -- \"$current\"))\n"
      "    return\n"
      "  fi\n"
      "  case \"${COMP_WORDS[1]}\" in\n";
  for (const Command* command : AllCommands()) script += BashCommandCase(*command);
  return script +
         "  esac\n"
         "  [[ -n $words ]] && COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
         "}\n"
         "complete -o default -o bashdefault -F _velora velora\n";
}

// ---- zsh --------------------------------------------------------------------

std::string ZshAction(ValueKind kind, std::span<const char* const> choices) {
  const std::string words = ValueWords(kind, choices);
  if (!words.empty()) return "(" + words + ")";
  return kind == ValueKind::kPath ? "_files" : "( )";
}

std::string ZshOption(const Option& row) {
  const std::string longName = std::string("--") + row.name;
  const std::string repeat = row.repeatable ? "\\*" : "";
  std::string tail = "'[" + ShellQuoted(Escape(row.help, "[]:\\")) + "]";
  if (row.value) {
    tail += ":" + Escape(row.value, ":\\") + ":" + ZshAction(row.kind, row.choices);
  }
  tail += "'";
  if (!row.letter) return "        " + repeat + longName + tail;
  const std::string letter = std::string("-") + row.letter;
  const std::string apart = row.repeatable ? "" : "'(" + letter + " " + longName + ")'";
  return "        " + apart + repeat + "{" + letter + "," + longName + "}" + tail;
}

std::string ZshCommandCase(const Command& command) {
  std::string out = std::string("      ") + command.name + ")\n        _arguments -s -S";
  for (const Option* row : ListedOptions(command)) out += " \\\n" + ZshOption(*row);
  for (const Operand& row : command.operands) {
    out += std::string(" \\\n        '") + (row.repeatable ? "*" : "") + ":" +
           ShellQuoted(Escape(row.name, ":\\")) + ":" + ZshAction(row.kind, row.choices) + "'";
  }
  return out + " ;;\n";
}

std::string ZshCompletion() {
  std::string script =
      "#compdef velora\n"
      "_velora() {\n"
      "  local context state line\n"
      "  local -a commands\n"
      "  commands=(\n";
  for (const Command* command : AllCommands()) {
    script += std::string("    '") + command->name + ":" +
              ShellQuoted(Escape(command->summary, ":\\")) + "'\n";
  }
  script +=
      "  )\n"
      "  _arguments -C '(- *)'{-h,--help}'[print help]' '(- *)--version[print the version]' \\\n"
      "    '1:command:->command' '*::argument:->arguments'\n"
      "  case $state in\n"
      "    command) _describe command commands ;;\n"
      "    arguments)\n"
      "      case $line[1] in\n";
  for (const Command* command : AllCommands()) script += ZshCommandCase(*command);
  return script +
         "      esac ;;\n"
         "  esac\n"
         "}\n"
         "if [[ $funcstack[1] == _velora ]]; then _velora \"$@\"; else compdef _velora velora; "
         "fi\n";
}

// ---- fish -------------------------------------------------------------------

std::string FishQuoted(std::string_view text) { return "'" + Escape(text, "\\'") + "'"; }

std::string FishCommand(const Command& command) {
  const std::string name = command.name;
  const std::string when = "complete -c velora -n '__fish_seen_subcommand_from " + name + "'";
  std::string out = "complete -c velora -n __fish_use_subcommand -f -a " + name + " -d " +
                    FishQuoted(command.summary) + "\n";
  for (const Option* row : ListedOptions(command)) {
    out += when + " -l " + row->name;
    if (row->letter) out += std::string(" -s ") + row->letter;
    const std::string words = ValueWords(row->kind, row->choices);
    if (row->kind == ValueKind::kPath) {
      out += " -r -F";
    } else if (row->value) {
      out += " -x";
    }
    if (!words.empty()) out += " -a " + FishQuoted(words);
    out += " -d " + FishQuoted(row->help) + "\n";
  }
  bool files = false;
  for (const Operand& row : command.operands) {
    files |= row.kind == ValueKind::kPath;
    const std::string words = ValueWords(row.kind, row.choices);
    if (!words.empty()) out += when + " -f -a " + FishQuoted(words) + "\n";
  }
  return files ? out : out + when + " -f\n";
}

std::string FishCompletion() {
  std::string script =
      "# fish completion for velora\n"
      "complete -c velora -n __fish_use_subcommand -l help -s h -d 'print help'\n"
      "complete -c velora -n __fish_use_subcommand -l version -d 'print the version'\n";
  for (const Command* command : AllCommands()) script += FishCommand(*command);
  return script;
}

ExitStatus RunCompletion(const Arguments& arguments, Console& console) {
  const std::string& shell = arguments.Operands().front();
  console.Print(shell == "bash"  ? BashCompletion()
                : shell == "zsh" ? ZshCompletion()
                                 : FishCompletion());
  return ExitStatus::kDone;
}

constexpr const char* kShells[] = {"bash", "zsh", "fish"};
constexpr Operand kOperands[] = {{.name = "SHELL",
                                  .kind = ValueKind::kChoice,
                                  .help = "the shell to complete in",
                                  .choices = kShells}};
constexpr Example kExamples[] = {
    {"source <(velora completion bash)", "complete in this bash"},
    {"velora completion fish > ~/.config/fish/completions/velora.fish", "complete in every fish"}};

}  // namespace

extern const Command kCompletionCommand;
constinit const Command kCompletionCommand = {
    .name = "completion",
    .summary = "print a completion script for a shell",
    .operands = kOperands,
    .description =
        "Prints a script that teaches the shell the commands, options and formats of "
        "velora. An installed velora brings the scripts along.",
    .examples = kExamples,
    .run = RunCompletion,
};

}  // namespace velora::cli
