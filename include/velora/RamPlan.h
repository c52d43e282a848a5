// The RAM plan of a chip family: the export of a sibling module.
#pragma once

#include <cstdint>

namespace velora {

class I_ProjectHost;

/// Fills in the RAM that a project leaves to the curves on chips of one family:
/// `workingRam` in units of 1,024 bytes, `normalRam` in bytes, below 1,024.
/// `reserved` is 0; `outPins` is 1 for a run over the OUT pins of the board, else 0. An
/// output that the module has nothing for stays as it was.
using GetAvailableRamFunction = void (*)(I_ProjectHost* project, const char* partNumber,
                                         int32_t* workingRam, int32_t* normalRam, int32_t reserved,
                                         int32_t outPins);
inline constexpr char kGetAvailableRam[] = "GetAvailableRam";

}  // namespace velora
