#include "ModuleDirectory.h"

#include <string>

#include "platform/File.h"
#include "platform/System.h"

namespace velora::cli {

Path FileIn(const Path& directory, const char* name) {
  return Path::Native(directory.Text() + "/" + name);
}

Path FindModuleDirectory() {
  const std::string program = GetProgramFile();
  const std::string own = program.substr(0, program.rfind('/'));
  const Path installed = Path::Native(own + "/" VELORA_MODULE_DIR_FROM_PROGRAM);
  for (const Path& directory :
       {installed, Path::Native(own), Path::Native(own + "/../lib/velora")}) {
    if (FileExists(FileIn(directory, "ChipInfo.cfg"))) return directory;
  }
  return installed;
}

}  // namespace velora::cli
