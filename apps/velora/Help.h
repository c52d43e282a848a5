// The texts that come from the command table: help and the options section of
// the pages in docs/commands.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "Command.h"

namespace velora::cli {

/// "velora 1.2.3\n"
std::string VersionLine();
const char* VersionText();

/// All commands, a line each.
std::string ProgramHelp();

/// Usage, description, arguments, options, examples; 80 columns.
std::string CommandHelp(const Command& command);

/// The section "## Options" of docs/commands/NAME.md.
std::string MarkdownOptions(const Command& command);

/// The pieces that every form of help shares.

/// "FILE...", "[COMMAND]": the operands as a synopsis shows them.
std::string OperandSynopsis(const Command& command);

/// The command's own rows, then the common ones, without the hidden.
std::vector<const Option*> ListedOptions(const Command& command);

/// A row's help with what follows from the rest of the row: the choices, "may be
/// repeated".
std::string FullHelp(const Option& row);

std::string JoinChoices(std::span<const char* const> choices, const char* between);

/// The paragraphs of a description.
std::vector<std::string> Paragraphs(const char* text);

struct StatusRow {
  int status;
  const char* meaning;
};
std::span<const StatusRow> ExitStatusRows();

}  // namespace velora::cli
