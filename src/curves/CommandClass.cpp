#include "curves/CommandClass.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace velora {
namespace {

constexpr size_t kIndices = 256;
constexpr uint8_t kCommand = 1;

struct ClassRange {
  uint8_t last;
  uint8_t commandClass;
};

/// Each range begins behind the one before.
constexpr ClassRange kRanges[] = {{127, 5}, {129, 4}, {200, 1}, {203, 3},
                                  {206, 1}, {207, 2}, {253, 1}, {255, 0}};

/// The commands by index; none is assigned yet.
constexpr std::array<uint8_t, kIndices> kCommands{};

[[noreturn]] void ThrowWrongIndex() { throw std::runtime_error("Wrong Command Index"); }

}  // namespace

uint8_t CommandClassOf(uint8_t index) {
  return std::ranges::find_if(kRanges,
                              [index](const ClassRange& range) { return index <= range.last; })
      ->commandClass;
}

bool IsCommandIndex(uint32_t index) {
  return index < kIndices && CommandClassOf(static_cast<uint8_t>(index)) == kCommand;
}

uint8_t GetCommand(uint32_t index) {
  if (!IsCommandIndex(index)) ThrowWrongIndex();
  return kCommands[index];
}

uint32_t FindCommandIndex(uint8_t command) {
  const auto found = std::ranges::find(kCommands, command);
  if (found == kCommands.end()) ThrowWrongIndex();
  return static_cast<uint32_t>(found - kCommands.begin());
}

}  // namespace velora
