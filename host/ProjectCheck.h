// What a person should be told of a project file that has been read.
#pragma once

#include "host/ProjectData.h"

namespace velora {

class C_VeloraPinMapInfoMgr;
class ProjectStore;

/// To be called when all sections have been read: what stands in a section of the
/// project without having been read, twice, or as a number that it is not; and numbers of
/// the pin map that do not fit their fields.
void CheckProjectText(const ProjectStore& store, C_VeloraPinMapInfoMgr& pinMap,
                      ProjectReport& report);

}  // namespace velora
