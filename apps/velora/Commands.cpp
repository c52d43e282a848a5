#include "Commands.h"

#include <algorithm>
#include <vector>

#include "Spelling.h"

namespace velora::cli {

extern const Command kInfoCommand;
extern const Command kConvertCommand;
extern const Command kVerifyCommand;
extern const Command kDumpCommand;
extern const Command kEventsCommand;
extern const Command kPlotCommand;
extern const Command kCurveCommand;
extern const Command kChipsCommand;
extern const Command kFormatsCommand;
extern const Command kProjectCommand;
extern const Command kModuleCommand;
extern const Command kEncipherCommand;
extern const Command kDecipherCommand;
extern const Command kPasswordsCommand;
extern const Command kHelpCommand;
extern const Command kManCommand;
extern const Command kCompletionCommand;

namespace {

constexpr const Command* kCommands[] = {
    &kInfoCommand,   &kConvertCommand,   &kVerifyCommand,   &kDumpCommand,      &kEventsCommand,
    &kPlotCommand,   &kCurveCommand,     &kFormatsCommand,  &kChipsCommand,     &kProjectCommand,
    &kModuleCommand, &kEncipherCommand,  &kDecipherCommand, &kPasswordsCommand, &kHelpCommand,
    &kManCommand,    &kCompletionCommand};

}  // namespace

std::span<const Command* const> AllCommands() { return kCommands; }

const Command* FindCommand(std::string_view name) {
  const auto* found = std::ranges::find_if(
      kCommands, [name](const Command* command) { return command->name == name; });
  return found == std::end(kCommands) ? nullptr : *found;
}

const Command* GuessCommand(std::string_view name) {
  std::vector<const char*> names;
  for (const Command* command : kCommands) names.push_back(command->name);
  const char* const nearest = NearestWord(name, names);
  return nearest ? FindCommand(nearest) : nullptr;
}

}  // namespace velora::cli
