// A project for a person, and as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace velora {
class Project;
}

namespace velora::cli {

std::string ProjectText(Project& project);

/// The keys that docs/commands/project.md lists, without the path.
nlohmann::ordered_json ProjectJson(Project& project);

}  // namespace velora::cli
