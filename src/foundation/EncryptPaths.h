// Names of enciphered files and of what is made from them.
#pragma once

#include <string>
#include <string_view>

#include "platform/Path.h"

namespace velora {

// A native path is parted at slashes alone, one of the system's own also at
// backslashes and behind a drive.

/// The directory in front of the name, with its separator; may be empty.
Path FolderOf(const Path& path);

/// Name and extension: a part of the path's own text.
std::string_view NameOf(const Path& path);
std::string_view NameOf(Path&&) = delete;

/// From the last dot of the name on; empty without one. A part of the path's text.
std::string_view ExtensionOf(const Path& path);
std::string_view ExtensionOf(Path&&) = delete;

/// The path with another extension, which begins with a dot.
Path WithExtension(const Path& path, std::string_view extension);

/// `name` in the folder, which is a path of the same kind with or without a
/// separator at its end.
Path InFolder(const Path& folder, std::string_view name);

/// The last component of a name that a file claims to have had, which anybody
/// may have written there; empty when that is no name for a file.
std::string_view SafeName(std::string_view claimed);

}  // namespace velora
