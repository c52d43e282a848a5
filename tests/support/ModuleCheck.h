// What a module looks like from outside.
#pragma once

#include <fstream>
#include <set>
#include <string>

#include "support/RunVelora.h"

namespace velora::test {

/// A file of the directory with the modules and their data.
inline std::string ModulePath(const std::string& name) {
  return std::string(VELORA_MODULE_DIR) + "/" + name;
}

/// Names of the symbols that a module defines for others, from the system's own tool.
inline std::set<std::string> ExportsOf(const std::string& path) {
  const Outcome run = RunProgram({"nm", "-D", "--defined-only", "--format=just-symbols", path});
  std::set<std::string> names;
  for (const std::string& line : Lines(run.out)) {
    if (!line.empty()) names.insert(line);
  }
  return names;
}

/// Whether any part of the file is mapped into this process.
inline bool IsMapped(const std::string& path) {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.ends_with(path)) return true;
  }
  return false;
}

}  // namespace velora::test
