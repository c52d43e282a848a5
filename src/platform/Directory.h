// Directories, links, and the standard streams as files.
#pragma once

#include <string>
#include <vector>

#include "platform/Path.h"
#include "platform/Status.h"

namespace velora {

struct DirectoryEntry {
  std::string name;
  bool directory = false;  ///< a directory itself, not a link to one
  bool link = false;
};

/// The entries of a directory without "." and "..", by name in byte order.
Result<std::vector<DirectoryEntry>> ListDirectory(const Path& path);

/// The absolute native path with the links of all that exists of it followed; a
/// file's or a future file's one name.
std::string ResolveLinks(const Path& path);

/// Copies all of standard input into a file, and a file to standard output.
Status CopyStandardInputTo(const Path& file);
Status CopyToStandardOutput(const Path& file);

}  // namespace velora
