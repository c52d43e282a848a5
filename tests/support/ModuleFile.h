// The module's own file, set for the length of a test.
#pragma once

#include <string>

#include "platform/Path.h"

namespace velora::test {

class ModuleFile {
 public:
  explicit ModuleFile(const std::string& nativePath) : before_(GetModuleFile()) {
    SetModuleFile(nativePath);
  }
  ~ModuleFile() { SetModuleFile(before_); }
  ModuleFile(const ModuleFile&) = delete;
  ModuleFile& operator=(const ModuleFile&) = delete;

 private:
  std::string before_;
};

}  // namespace velora::test
