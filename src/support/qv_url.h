// The small URL parser: protocol, host, port, path. No decoding, no folding, no knowledge of any scheme.
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
  // expecting 'http://' after protocol name." Each field is written at its step, so a failure keeps the later
  // ones as they were.
  bool SetUrl(const WideString& text);

  WideString protocol;
  WideString host;
  WideString path;
  WideString url;
  WideString firstSpareText;  // no operation fills the spare texts; they travel to the HTTP component
  WideString secondSpareText;
  std::int32_t port = -1;
};

}  // namespace qv
