// JSON as the program prints it. Only .cpp files that build values include the
// library itself.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace velora::cli {

/// Two-space indent, no newline at the end; a byte that is not UTF-8 becomes
/// U+FFFD.
std::string JsonText(const nlohmann::ordered_json& value);

}  // namespace velora::cli
