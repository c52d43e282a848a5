#include "Commands.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velora::cli {

extern const Command kInfoCommand;
extern const Command kConvertCommand;
extern const Command kVerifyCommand;
extern const Command kDumpCommand;
extern const Command kEventsCommand;
extern const Command kPlotCommand;
extern const Command kFormatsCommand;
extern const Command kHelpCommand;
extern const Command kManCommand;
extern const Command kCompletionCommand;

namespace {

constexpr const Command* kCommands[] = {
    &kInfoCommand, &kConvertCommand, &kVerifyCommand, &kDumpCommand, &kEventsCommand,
    &kPlotCommand, &kFormatsCommand, &kHelpCommand,   &kManCommand,  &kCompletionCommand};

/// Insertions, deletions and replacements that turn one word into the other.
size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

}  // namespace

std::span<const Command* const> AllCommands() { return kCommands; }

const Command* FindCommand(std::string_view name) {
  const auto* found = std::ranges::find_if(
      kCommands, [name](const Command* command) { return command->name == name; });
  return found == std::end(kCommands) ? nullptr : *found;
}

const Command* GuessCommand(std::string_view name) {
  constexpr size_t kNear = 2;
  const auto* nearest = std::ranges::min_element(
      kCommands, {}, [name](const Command* command) { return EditDistance(name, command->name); });
  return EditDistance(name, (*nearest)->name) <= kNear ? *nearest : nullptr;
}

}  // namespace velora::cli
