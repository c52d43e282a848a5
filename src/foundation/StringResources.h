// The texts that this module keeps under numbers.
#pragma once

#include <cstdint>

namespace velora {

inline constexpr uint32_t kStringError = 40960;            ///< title or prefix of an error
inline constexpr uint32_t kStringWarning = 40961;          ///< title or prefix of a warning
inline constexpr uint32_t kStringNoSuchDirectory = 41217;  ///< format, one "%s": the path
inline constexpr uint32_t kStringNoSuchFile = 41218;       ///< format, one "%s": the path

/// The text, or null for a number without one.
const char* FindStringResource(uint32_t id);

}  // namespace velora
