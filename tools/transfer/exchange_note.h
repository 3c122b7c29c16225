// What the HTTP component observed of the library's exchanges.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "qvscriptwells/result_codes.h"
#include "tools/transfer/saved_name.h"

namespace qv::cli {

// How the library sees the text of an answer. It compares only these names.
enum class Envelope {
  kNone,
  kKnown,    // soap:Envelope or SOAP:Envelope
  kForeign,  // an envelope with another prefix
};

// The last exchange, as far as it got.
struct ExchangeNote {
  std::string server;                      // "http://host:port" of the last Open
  std::string proxy;                       // "host[:port]" that Open was given; empty without one
  bool connected = false;                  // Open went well
  std::optional<HRESULT> failure;          // of the first operation that failed
  std::string message;                     // of that failure, may be empty
  std::string httpStatus;                  // "200"; empty if no head of an answer came
  Envelope envelope = Envelope::kNone;     // of the body
  bool holdsFault = false;                 // the body has a fault element
  std::string fileHeader;                  // the Content-Disposition that the library read
  NameFault nameFault = NameFault::kNone;  // why the file was not saved
};

// An upload that the server answered with an error status.
struct RefusedUpload {
  std::string server;  // "http://host:port"
  std::string path;    // of the file
  std::string status;  // "403"
};

// "200" to "299"
inline bool IsSuccess(const std::string& httpStatus) {
  return httpStatus.size() == 3 && httpStatus[0] == '2';
}

}  // namespace qv::cli
