// NAME=VALUE: how the command line changes a project.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Status.h"

namespace velora {
class Project;
}

namespace velora::cli {

/// The names of a chip's ports by position; empty where they are not known.
using PortNames = std::vector<std::string>;

/// Makes one change. The message says what is wrong with the name or the value; the
/// project must then not be saved.
///
///   pinN=PORT.PIN, pinN=none   where a curve goes, N from 0 to 31; the port by its
///                              position or its name
///   pinN.type, .frequency, .levels, .stop, .keep, .action, .multi, .gamma
///   method, timer, pwm-frequency
///   SECTION.KEY                            an entry of the file; empty: without it
Status ApplyAssignment(std::string_view assignment, const PortNames& ports, Project& project);

}  // namespace velora::cli
