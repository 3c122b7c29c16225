// What the transport saw of the library's exchanges.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "qvscriptwells/result_codes.h"
#include "tools/saved_name.h"

namespace qv::cli {

// What an answer's text is to the library, which goes by these names alone.
enum class Envelope {
  kNone,
  kKnown,    // soap:Envelope or SOAP:Envelope
  kForeign,  // an envelope whose prefix it does not know
};

// The last exchange, as far as it came.
struct ExchangeNote {
  std::string server;                      // "http://host:port" of the last Open
  std::string proxy;                       // "host[:port]" that Open was given; empty without one
  bool connected = false;                  // Open went well
  std::optional<HRESULT> failure;          // of the first operation that failed
  std::string words;                       // the transport's, may be empty
  std::string httpStatus;                  // "200"; empty when no head of an answer came
  Envelope envelope = Envelope::kNone;     // of the body, once it is read
  bool holdsFault = false;                 // the body has a fault element
  std::string fileHeader;                  // the Content-Disposition that the library asked for
  NameFault nameFault = NameFault::kNone;  // of the file that was not saved for it
};

// An upload that a server took and then answered with another status than success.
struct RefusedUpload {
  std::string server;  // "http://host:port"
  std::string path;    // of the file
  std::string status;  // "403"
};

// "200" to "299"
bool IsSuccess(const std::string& httpStatus);

}  // namespace qv::cli
