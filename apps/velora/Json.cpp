#include "Json.h"

#include <nlohmann/json.hpp>

namespace velora::cli {

std::string JsonText(const nlohmann::ordered_json& value) {
  return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace velora::cli
