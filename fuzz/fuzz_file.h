// Fuzz input as a file, for readers that take a path.
#pragma once

#include <signal.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Path.h"

namespace velora::fuzz {

/// A directory of the process's own, in memory where the system offers that. The fuzzer
/// ends a process without destructors, so what ended processes left is removed first.
class FuzzDirectory {
 public:
  FuzzDirectory() {
    const std::filesystem::path memory = "/dev/shm";
    const bool inMemory = std::filesystem::is_directory(memory);
    const auto base = inMemory ? memory : std::filesystem::temp_directory_path();
    RemoveLeftovers(base);
    path_ = base / (kPrefix + std::to_string(getpid()));
    std::filesystem::create_directories(path_);
  }
  FuzzDirectory(const FuzzDirectory&) = delete;
  FuzzDirectory& operator=(const FuzzDirectory&) = delete;

  Path At(const char* name) const { return Path::Native((path_ / name).string()); }

  Path Write(const char* name, const uint8_t* data, size_t size) const {
    std::ofstream file(path_ / name, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    file.flush();
    if (!file) std::abort();
    return At(name);
  }

 private:
  static inline const std::string kPrefix = "velora-fuzz-";

  static void RemoveLeftovers(const std::filesystem::path& base) {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(base, ignored)) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with(kPrefix)) continue;
      const pid_t process = std::atoi(name.c_str() + kPrefix.size());
      if (process > 0 && kill(process, 0) != 0) std::filesystem::remove_all(entry.path(), ignored);
    }
  }

  std::filesystem::path path_;
};

}  // namespace velora::fuzz
