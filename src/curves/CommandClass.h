// Which bytes of an event stream are commands of the user's.
#pragma once

#include <cstdint>

namespace velora {

/// Class of a byte, 0 to 5; commands have class 1. There are 256 indices.
uint8_t CommandClassOf(uint8_t index);

/// True for an index whose class is that of commands.
bool IsCommandIndex(uint32_t index);

/// The command at an index; std::runtime_error unless IsCommandIndex(index).
uint8_t GetCommand(uint32_t index);

/// The first index with this command; std::runtime_error when there is none.
uint32_t FindCommandIndex(uint8_t command);

}  // namespace velora
