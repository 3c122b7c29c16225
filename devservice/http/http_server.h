// The HTTP server: connections, and the reading of requests.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "devservice/http/http_message.h"
#include "devservice/values/service_stats.h"

namespace qv::devservice {

struct HttpServerOptions {
  std::string host;
  int port = 0;
  std::size_t maxRequestBytes = 0;
  std::size_t maxConnections = 1;
  std::chrono::milliseconds keepAliveTime{0};
  std::chrono::milliseconds stallTime{0};
  std::chrono::milliseconds requestTime{0};
  std::size_t maxBodyBytes = 0;  // Of all current requests together.
};

// Handles the requests: on the threads of connections, several at a time. Must not throw.
class RequestHandler {
 public:
  virtual ~RequestHandler() = default;
  // Called with the head of each request. Returns an answer to refuse it.
  virtual std::optional<HttpAnswer> Refuse(const HttpRequest& head) = 0;
  // Called with the head of a POST, before its body is read.
  virtual BodyPlan PlanBody(const HttpRequest& head) = 0;
  // Called with the whole request, but not when its body had a sink or was refused.
  virtual HttpAnswer Handle(const HttpRequest& request) = 0;
};

// A running server from construction to destruction.
class HttpServer {
 public:
  // Listens and accepts when the constructor returns; throws std::runtime_error otherwise. `stats` and
  // `handler` are borrowed.
  HttpServer(HttpServerOptions options, ServiceStats& stats, RequestHandler& handler);
  // Stops, see Stop.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  int Port() const;

  // Ends all connections and waits for their threads, and so for running handlers.
  void Stop();

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace qv::devservice
