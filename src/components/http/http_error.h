// The component's failures: one exception inside, one table from libcurl's codes and the system's error
// numbers to result codes, and one function that leaves a result code and an error record at the edge.
#pragma once

#include <curl/curl.h>

#include <stdexcept>
#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/result_codes.h"

namespace qv {

// Carried from where it happens to the edge. The words never hold a header, a body or user information.
class HttpFailure : public std::runtime_error {
 public:
  HttpFailure(HRESULT code, const std::string& words) : std::runtime_error(words), code_(code) {}
  HRESULT Code() const noexcept { return code_; }

 private:
  HRESULT code_;
};

// A call that the object's state does not allow (E_UNEXPECTED), and an argument that is refused
// (E_INVALIDARG).
[[noreturn]] void ThrowWrongState(const char* words);
[[noreturn]] void ThrowBadArgument(const char* words);

HRESULT ResultFromCurl(CURLcode code) noexcept;
// HRESULT from `error` (errno), `otherwise` for numbers without a row of their own.
HRESULT ResultFromErrno(int error, HRESULT otherwise) noexcept;

// Throws what `code` stands for. `words` is libcurl's message; null or empty takes libcurl's name of the
// code.
[[noreturn]] void ThrowCurl(CURLcode code, const char* words = nullptr);
[[noreturn]] void ThrowCurl(CURLcode code, const std::string& words);
// Throws for a local file: "`doing` `path`: <the system's words for `error`>".
[[noreturn]] void ThrowFile(int error, HRESULT otherwise, const char* doing, const std::string& path);

// For a catch-all clause: the result code of the exception that is being handled, with its words posted as
// this thread's error record for `interfaceId`.
HRESULT ReportCurrentException(const Guid& interfaceId) noexcept;

}  // namespace qv
