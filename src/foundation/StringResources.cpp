#include "foundation/StringResources.h"

namespace velora {

const char* FindStringResource(uint32_t id) {
  switch (id) {
    case kStringError:
      return "Error";
    case kStringWarning:
      return "Warning";
    case kStringNoSuchDirectory:
      return "Directory not found: '%s'";
    case kStringNoSuchFile:
      return "File not found: '%s'";
    default:
      return nullptr;
  }
}

}  // namespace velora
