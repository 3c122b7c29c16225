// Answers of the page's interface, and requests that it refuses.
#pragma once

#include <stdexcept>
#include <string>

#include "devservice/http/http_message.h"

namespace qv::cli {

// `what()` is for people, in UTF-8.
class PageError : public std::runtime_error {
 public:
  PageError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}

  int Status() const noexcept { return status_; }

 private:
  int status_;
};

// `json` is one value.
devservice::HttpAnswer JsonAnswer(const std::string& json, int status = 200);

// {"error": {"message": ...}}, in one line without unsafe characters: it may quote what a request holds.
devservice::HttpAnswer ErrorAnswer(int status, const std::string& message);

}  // namespace qv::cli
