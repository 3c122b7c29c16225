// What one call of the library is done with.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "qvscriptwells/http_component.h"
#include "scriptwells/options.h"

namespace scriptwells {

class CallTape;

// Texts are UTF-8.
struct CallSettings {
  qv::HttpOptions http;  // totalTimeout: of the whole call with its uploads; 0 for no limit
  std::string proxy;     // "name:port"; empty for none
  std::string home;      // native path of the home directory; empty: the registry's
  bool hiddenFiles = false;
  ExchangeListener listener;
  bool showSecrets = false;    // to the listener
  bool listenerBodies = true;  // the listener gets heads and bodies
  ProgressListener progress;
  std::optional<CancelToken> cancel;  // none while closing
  std::vector<std::string> secrets;   // password, session id: masked
  // Tickets of the session's calls, masked too; a call adds its own. Null: each call knows only its own.
  std::vector<std::string>* tickets = nullptr;
  std::size_t files = 0;     // arguments that are uploaded
  CallTape* tape = nullptr;  // of the session; null for none
  bool keepAnswer = false;   // AnswerText is needed
  bool hasUser = true;       // for Remedy::kCredentials
};

}  // namespace scriptwells
