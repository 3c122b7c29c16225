// A look at a server without the client's strictness: its name, connection and certificate, and answers that
// the client does not read.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "scriptwells/options.h"
#include "tools/inspect/finding.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

// One of the chain, that of the server first. Texts are the server's.
struct Certificate {
  std::string subject, issuer, names, begins, ends;
};

enum class Reach { kNotResolved, kNotConnected, kNoTls, kReached };

struct ServerProbe {
  Reach reach = Reach::kReached;
  std::string message;  // why it was not reached
  bool isTimeout = false;
  std::vector<std::string> addresses;  // that were tried, "127.0.0.1:8080"
  bool usesTls = false;
  std::vector<Certificate> chain;  // also if it is not trusted
  std::chrono::microseconds name{}, connection{}, tls{};
};

// Connects, and sends nothing. Throws Failure (kInterrupted, kLocal).
ServerProbe ProbeServer(const SessionSettings& settings);

// Sends the request of the exchange once more and takes whatever is answered, at most 16 MiB. `failure` is
// why the answer ended. Throws Failure (kInterrupted).
RawAnswer AskAgain(const SessionSettings& settings, const scriptwells::Exchange& exchange,
                   std::string& failure);

}  // namespace qv::cli
