// The library tells a host that a call could not be made, and keeps the transport's words to itself. This
// program wants to say which server was not reached and why: it puts a class of its own behind the HTTP
// component's id, which hands every operation on to the built-in one and notes what came of it.
#pragma once

#include <optional>
#include <string>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/http_component.h"

namespace qv::cli {

// The last exchange, as far as it came.
struct ExchangeNote {
  std::string server;              // "http://host:port" of the last Open
  std::string proxy;               // "host[:port]" that Open was given; empty without one
  bool connected = false;          // Open went well
  std::optional<HRESULT> failure;  // of the first operation that failed
  std::string words;               // the transport's, may be empty
  std::string httpStatus;          // "200"; empty when no head of an answer came
  bool holdsFault = false;         // the body has a fault element
};

// Stands behind the component's class id for as long as it lives; one at a time, on the thread that uses the
// library.
class ReportingHttp {
 public:
  // `proxy`, "host:port", takes the place of what the library passes: its calls leave out the port.
  explicit ReportingHttp(std::string proxy);
  ~ReportingHttp();
  ReportingHttp(const ReportingHttp&) = delete;
  ReportingHttp& operator=(const ReportingHttp&) = delete;

  const ExchangeNote& Note() const noexcept { return note_; }
  void Forget() { note_ = ExchangeNote(); }

 private:
  static HRESULT Create(const Guid& iid, void** object);

  std::string proxy_;
  ExchangeNote note_;
  ClassCreator builtIn_;
};

}  // namespace qv::cli
