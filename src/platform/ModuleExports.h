// What a module file exports, read from the file without loading it.
#pragma once

#include <string>
#include <vector>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

/// The names that other modules can bind to, sorted. An error for a file that is no module
/// of this machine.
Result<std::vector<std::string>> ListModuleExports(const Path& path);

}  // namespace velora
