// SPDX-License-Identifier: Apache-2.0
// A development service for the tests of a program: starts the installed service as a child process.
//
//   scriptwells::DevelopmentService service;
//   scriptwells::Session session = service.Connect();
//
// In the archive of QvScriptwells::testing. The service ends with the object, or with this process. The console of
// its scripts is lost. Failure: throws Error, of the phase kLocalFile if the service is not installed or does not
// start. Threads: one at a time per object.
#pragma once

#include <map>

#include "scriptwells/session.h"

namespace scriptwells {

struct ServiceOptions {
  std::filesystem::path program;   // empty: the variable SCRIPTWELLS_PROGRAM, then `scriptwells` in PATH
  std::vector<Credentials> users;  // empty: every user name but an empty one may open a session
};

// A request that the service saw.
struct SeenRequest {
  std::string method, target;
  std::string action;  // "Execute"; empty for one that is not SOAP
  std::string body;
};

// A fault for one request that comes next. After the first two kinds nothing is run.
struct OrderedFault {
  enum class Kind {
    kFault,      // a fault of the protocol, with number and text
    kStatus,     // the HTTP status `number`, with `text` as body
    kCutAnswer,  // the connection closes in the middle of the answer
    kSilence,    // `number` milliseconds until the answer
  };
  Kind kind = Kind::kFault;
  std::uint32_t number = 5;
  std::string text;
  std::string action = "Execute";  // of the request; empty for any
};

// Odd answers of the service for requests to come, by their names: "cut", "stall", "drip", "spoil", "slow", "refuse"
// (no answer), "short" and "long" (wrong lengths), "strictxml" and many more; an unknown one is refused with a list.
struct OddOrder {
  std::string names;               // "cut", or several: "drip+ns2"; empty: no more of all that was ordered
  std::uint32_t requests = 1;      // so many get them; 0: all to come; with a chance it has no meaning
  double chance = 1;               // below 1: each request to come gets them with this chance
  std::uint32_t seed = 1;          // the chances are the same for the same seed and order of requests
  std::string action = "Execute";  // as in OrderedFault; names about files meet any transfer
};

class DevelopmentService {
 public:
  explicit DevelopmentService(const ServiceOptions& options = {});
  ~DevelopmentService();
  DevelopmentService(DevelopmentService&& other) noexcept;
  DevelopmentService& operator=(DevelopmentService&& other) noexcept;

  const std::string& Url() const noexcept;
  // A directory with the service's upload scripts, for Options::homeDirectory.
  const std::filesystem::path& HomeDirectory() const noexcept;
  Session Connect(Options options = {}) const;  // for the first user; the home directory is set

  // How many requests the service saw, by action ("Execute", ...), since its start.
  std::map<std::string, std::int64_t> Counts() const;
  // The last requests, the oldest first; at most 1000 of at most 1 MB.
  std::vector<SeenRequest> Requests() const;
  void Order(const OrderedFault& fault);
  void Order(const OddOrder& order);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace scriptwells
