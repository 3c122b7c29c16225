// What was seen of one exchange, as far as it got.
#pragma once

#include <optional>
#include <string>

#include "components/http/secret_bytes.h"
#include "face/exchange/saved_name.h"
#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/wide_string.h"
#include "scriptwells/options.h"

namespace scriptwells {

struct ExchangeRecord {
  Purpose purpose = Purpose::kExecute;
  qv::WideString protocol;
  qv::WideString host;
  std::uint16_t port = 0;
  qv::WideString proxy;  // "host[:port]"; empty without one

  bool inHandshake = false;  // of TLS, when connecting failed
  bool connected = false;
  bool sent = false;       // all of the request
  bool answering = false;  // the first byte of the answer came
  int status = 0;
  std::string contentType;
  std::string disposition;  // the header with the name of a file; of downloads only
  qv::SecretBytes body;     // of the answer, or its start
  std::string file;         // the local path of an upload or download

  NameFault nameFault = NameFault::kNone;  // why the file was not saved
  std::optional<qv::HRESULT> failure;      // of the first operation that failed
  std::string message;                     // of that failure, may be empty

  // How far it got, for a failure of the connection.
  Phase Reached() const noexcept;
  bool Succeeded() const noexcept { return status >= 200 && status < 300; }
  // "http://host:port"
  std::string Server() const;
  // The same, with " through the proxy host:port" if there was one.
  std::string Way() const;
  // In UTF-8, whatever its charset was.
  std::string BodyText() const;
};

// The value of a header of the answer, in UTF-8.
std::string HeaderText(std::string_view value);

}  // namespace scriptwells
