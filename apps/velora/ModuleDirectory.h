// Where the module, its siblings and their data files lie.
#pragma once

#include "platform/Path.h"

namespace velora::cli {

/// The directory with ChipInfo.cfg: where an installed program has it, beside the
/// program, or where the build put it. Of those that lack it the first, so that a
/// message about a missing file names the place where it belongs.
Path FindModuleDirectory();

/// A file of a directory.
Path FileIn(const Path& directory, const char* name);

}  // namespace velora::cli
