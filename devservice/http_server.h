// The HTTP side: connections, requests and the ways in which an answer can go out.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "devservice/service_stats.h"

namespace qv::devservice {

// A whole request. Texts are as they came, the path percent-decoded and without host, query cut off.
struct HttpRequest {
  std::string method;
  std::string path;
  std::string contentType;
  std::string soapAction;
  std::string body;
};

// How the bytes of an answer go out. All but kPlain and kChunked close the connection.
enum class Delivery {
  kPlain,           // Head with Content-Length, whole body.
  kCloseDelimited,  // No Content-Length: the end of the connection ends the body.
  kChunked,         // Transfer-Encoding: chunked, in pieces.
  kCut,             // Announces the whole body, sends half of it.
  kStall,           // Head and half of the body, then silence until the stall time is over.
  kDrop,            // Nothing at all.
};

struct HttpAnswer {
  int status = 200;
  std::string contentType = "text/plain; charset=utf-8";
  std::string body;
  Delivery delivery = Delivery::kPlain;
  bool delayed = false;  // Silence for the stall time before the first byte.
};

struct HttpServerOptions {
  std::string host;
  int port = 0;
  std::size_t maxRequestBytes = 0;
  std::size_t maxConnections = 1;
  std::chrono::milliseconds keepAliveTime{0};
  std::chrono::milliseconds stallTime{0};
};

// A running server from construction to destruction.
class HttpServer {
 public:
  // Called on the connection's thread, several at a time. Must not throw.
  using Handler = std::function<HttpAnswer(const HttpRequest&)>;

  // Listens and accepts when the constructor returns; throws std::runtime_error otherwise. `stats` is
  // borrowed.
  HttpServer(HttpServerOptions options, ServiceStats& stats, Handler handler);
  // Stops, see Stop.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  int Port() const;

  // Ends all connections and waits for their threads. A handler that is under way is waited for.
  void Stop();

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace qv::devservice
