#include "tools/report/json_text.h"

#include <nlohmann/json.hpp>

#include "tools/report/unsafe_characters.h"

namespace qv::cli {

std::string JsonText(const nlohmann::ordered_json& value) {
  return EscapeForJson(value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

}  // namespace qv::cli
