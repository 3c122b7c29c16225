// What passed between this program and a server, for a listener (Options::listener).
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "scriptwells/export.h"

namespace scriptwells {

enum class Purpose {
  kOpenSession,
  kCloseSession,
  kExecute,
  kUploadAddress,  // a script that asks where to upload a file
  kUpload,
  kDownload,
};

// "open session", "close session", "execute", "upload address", "upload", "download"
SCRIPTWELLS_API const char* ToString(Purpose purpose) noexcept;

// One HTTP exchange, as far as it got. Heads and bodies are the bytes of the connection, but for secrets:
// each password, session id and upload ticket is "***" wherever it occurs, also escaped. Bodies of files are
// left out.
struct Exchange {
  Purpose purpose = Purpose::kExecute;
  std::string server;       // "http://host:port"
  std::string proxy;        // "host:port"; empty without one
  std::string requestHead;  // the request line, headers and the empty line
  std::string requestBody;
  std::string answerHead;
  std::string answerBody;
  int status = 0;                  // 0: no answer
  std::string file;                // the local path of an upload or download
  std::int64_t sentBytes = 0;      // of the request's body
  std::int64_t receivedBytes = 0;  // of the answer's body
  std::string failure;             // the message of the connection; empty for none
  std::chrono::system_clock::time_point begin;
  std::chrono::microseconds connecting{};  // 0 on a kept connection
  std::chrono::microseconds waiting{};     // from the request's first byte to the answer's first
  std::chrono::microseconds total{};       // with connecting
};

// Called at the end of each exchange, on the thread of the call. An exception that it throws ends the call
// and reaches the caller of Run.
using ExchangeListener = std::function<void(const Exchange&)>;

// One line: "POST http://127.0.0.1:8080/... execute 200, 912 bytes sent, 1204 received, 3 ms".
SCRIPTWELLS_API std::string Summary(const Exchange& exchange);

}  // namespace scriptwells
