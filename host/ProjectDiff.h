// What two projects differ in.
#pragma once

#include <string>
#include <vector>

namespace velora {

class Project;

/// One difference, in words: what, and what it is on either side.
struct ProjectDifference {
  std::string what;  ///< "pin 3: sample frequency"
  std::string first;
  std::string second;
};

/// All differences of what the two projects mean, in the order of a project file: remarks,
/// order and spelling don't count, nor do values of pins that neither side uses. Of a pin
/// that one side uses, that alone is told.
std::vector<ProjectDifference> CompareProjects(Project& first, Project& second);

}  // namespace velora
