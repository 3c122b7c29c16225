#include "tools/page/page_error.h"

#include <nlohmann/json.hpp>

#include "tools/report/json_text.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

devservice::HttpAnswer JsonAnswer(const std::string& json, int status) {
  devservice::HttpAnswer answer = devservice::PlainAnswer(status, json + "\n");
  answer.contentType = "application/json";
  return answer;
}

devservice::HttpAnswer ErrorAnswer(int status, const std::string& message) {
  return JsonAnswer(JsonText({{"error", {{"message", OneLine(message)}}}}), status);
}

}  // namespace qv::cli
