// The component's failures: one exception inside, one table from libcurl's codes and the system's error
// numbers to result codes, and one function that turns exceptions into a result code and an error record.
#pragma once

#include <curl/curl.h>

#include <stdexcept>
#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// Thrown inside the component; no interface operation lets it out. The message never contains a header, a
// body or user information.
class HttpFailure : public std::runtime_error {
 public:
  HttpFailure(HRESULT code, const std::string& words) : std::runtime_error(words), code_(code) {}
  HRESULT Code() const noexcept { return code_; }

 private:
  HRESULT code_;
};

// A call in a wrong state (E_UNEXPECTED), and an invalid argument (E_INVALIDARG).
[[noreturn]] void ThrowWrongState(const char* words);
[[noreturn]] void ThrowBadArgument(const char* words);

HRESULT ResultFromCurl(CURLcode code) noexcept;
// HRESULT from `error` (errno), `otherwise` for numbers that are not in the table.
HRESULT ResultFromErrno(int error, HRESULT otherwise) noexcept;

// Throws the failure for `code`. The second argument is libcurl's message; null or empty means libcurl's name
// of the code.
[[noreturn]] void ThrowCurl(CURLcode code, const char* words = nullptr);
[[noreturn]] void ThrowCurl(CURLcode code, const std::string& words);
// Throws for a local file: "`doing` `path`: <the system's message for `error`>".
[[noreturn]] void ThrowFile(int error, HRESULT otherwise, const char* doing, const std::string& path);

// For a catch-all clause: returns the result code of the current exception and posts its message as this
// thread's error record for `interfaceId`.
HRESULT ReportCurrentException(const Guid& interfaceId) noexcept;

}  // namespace qv
