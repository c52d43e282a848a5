// The string hash lookup2.
#pragma once

#include <cstdint>
#include <string_view>

namespace velora {

/// Bob Jenkins' hash of 1996 over the bytes of the text, each taken as 0 to 255.
/// Same on every machine. `initial` is the starting value that chains hashes.
uint32_t HashLookup2(std::string_view text, uint32_t initial);

}  // namespace velora
