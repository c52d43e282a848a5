// The table of all commands.
#pragma once

#include <span>
#include <string_view>

#include "Command.h"

namespace velora::cli {

/// In the order in which help lists them.
std::span<const Command* const> AllCommands();

/// Null when there is none of that name.
const Command* FindCommand(std::string_view name);

/// The command whose name is nearest to a mistyped one; null when none is near.
const Command* GuessCommand(std::string_view name);

}  // namespace velora::cli
