// The small URL parser: protocol, host, port, path. No decoding, no case conversion, no scheme-specific
// rules.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

class CQvUrl {
 public:
  CQvUrl();                                 // empty texts, port -1
  explicit CQvUrl(const WideString& text);  // null texts, port -1, then the parse
  CQvUrl(const CQvUrl&) = default;
  CQvUrl& operator=(const CQvUrl&) = default;
  virtual ~CQvUrl() = default;

  // True whenever it returns; an empty text changes nothing. EQvException, code 0: "Cannot parse url,
  // expecting 'http://' after protocol name." Fields are set one by one, so after a failure the later ones
  // are unchanged.
  bool SetUrl(const WideString& text);

  WideString protocol;
  WideString host;
  WideString path;
  WideString url;
  WideString firstSpareText;  // no operation sets the spare texts; the HTTP component gets them
  WideString secondSpareText;
  std::int32_t port = -1;
};

}  // namespace qv
