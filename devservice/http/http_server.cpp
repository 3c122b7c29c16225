#include "devservice/http/http_server.h"

#include <httplib.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <thread>

#include "devservice/http/body_budget.h"
#include "devservice/http/connection.h"
#include "devservice/http/connection_threads.h"
#include "devservice/http/delivery.h"
#include "devservice/http/request_head.h"

namespace qv::devservice {
namespace {

constexpr int kBacklog = 256;
constexpr std::size_t kPieceBytes = 65536;
// Room for a request's head beside its body.
constexpr std::size_t kHeadBytes = 65536;
// The library counts down from here and closes at zero, which is never reached.
constexpr std::size_t kManyRequests = 1000000000;

// The connection that this thread serves: the library's handlers do not get it as an argument.
thread_local Connection* currentConnection = nullptr;

void SetSwitch(socket_t socket, int level, int option) {
  const int on = 1;
  setsockopt(socket, level, option, &on, sizeof on);
}

std::string ListenFailure(const HttpServerOptions& options) {
  return "Cannot listen on " + options.host + " port " + std::to_string(options.port) +
         ": the port is taken, not permitted, or the address is not one of this machine.";
}

HttpAnswer EarlyEnd(const Connection& connection) {
  if (connection.IsLate()) return PlainAnswer(408, "The request took too long.\n");
  return PlainAnswer(400, "The body ended before its announced length.\n");
}

HttpAnswer NoRoom() {
  return PlainAnswer(503, "The bodies of all requests together take too much memory. Try again later.\n");
}

}  // namespace

// cpp-httplib reads and routes. The loop over a connection is ours: the library's own does not end at once on
// a stop, and sends correct answers only.
class HttpServer::Implementation : public httplib::Server {
 public:
  Implementation(HttpServerOptions options, ServiceStats& stats, RequestHandler& handler)
      : options_(std::move(options)), stats_(stats), handler_(handler), budget_(options_.maxBodyBytes) {
    Configure();
    port_ = options_.port == 0 ? bind_to_any_port(options_.host) : BindTo(options_.port);
    if (port_ <= 0) throw std::runtime_error(ListenFailure(options_));
    // A second call makes the queue of connections longer, which the library keeps very short.
    ::listen(svr_sock_, kBacklog);
    thread_ = std::thread([this] { listen_after_bind(); });
    while (!is_running()) std::this_thread::sleep_for(std::chrono::microseconds(100));
  }

  ~Implementation() override { Stop(); }

  int Port() const { return port_; }

  void Stop() {
    if (!thread_.joinable()) return;
    sockets_.ShutdownAll();
    stop();
    thread_.join();
  }

 private:
  void Configure() {
    // The library's default would let two services listen on one port.
    set_socket_options([](socket_t socket) { SetSwitch(socket, SOL_SOCKET, SO_REUSEADDR); });
    set_keep_alive_max_count(kManyRequests);
    set_keep_alive_timeout(std::chrono::duration_cast<std::chrono::seconds>(options_.keepAliveTime).count());
    set_payload_max_length(options_.maxRequestBytes);
    new_task_queue = [this] { return new ConnectionThreads(options_.maxConnections); };
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response&) {
      return Admit(request) ? HandlerResponse::Unhandled : HandlerResponse::Handled;
    });
    Post("/", [this](const httplib::Request& request, httplib::Response& response,
                     const httplib::ContentReader& reader) { ServePost(request, response, reader); });
    // Some versions of the library wait for a body that nobody announced, unless the handler reads it.
    Delete("/", [this](const httplib::Request& request, httplib::Response& response,
                       const httplib::ContentReader&) { ServeDelete(request, response); });
    Get("/", [this](const httplib::Request& request, httplib::Response& response) {
      Serve(MakeRequest(request), response);
    });
  }

  int BindTo(int port) { return bind_to_port(options_.host, port) ? port : -1; }

  // Called by the library for each accepted socket, on one of the connection threads.
  bool process_and_close_socket(socket_t socket) override {
    if (!sockets_.Add(socket)) {
      close(socket);
      return false;
    }
    ++stats_.connections;
    SetSwitch(socket, IPPROTO_TCP, TCP_NODELAY);
    Connection connection(socket, options_.requestTime);
    currentConnection = &connection;
    while (connection.WaitForRequest(options_.keepAliveTime) && ServeOne(connection)) {
    }
    currentConnection = nullptr;
    connection.DrainRest();
    shutdown(socket, SHUT_RDWR);
    sockets_.Close(socket);
    return true;
  }

  bool ServeOne(Connection& connection) {
    connection.BeginRequest(options_.maxRequestBytes + kHeadBytes);
    bool closed = false;
    const bool served = process_request(connection, false, closed, [&connection](httplib::Request& request) {
      // One route serves every path: matching by regular expression could be driven into deep recursion.
      connection.SetPath(PathOf(request.path));
      request.path = "/";
      request.ranges.clear();
    });
    if (!served || closed) connection.CloseAfterwards();
    if (connection.IsLate()) RefuseWith(EarlyEnd(connection));
    if (const HttpAnswer* answer = connection.BeginDelivery())
      Deliver(connection, *answer, options_.stallTime, stats_.downloadedBytes);
    return connection.Finish();
  }

  HttpRequest MakeRequest(const httplib::Request& request) const {
    return MakeRequestHead(request, currentConnection->Path(), OwnHost());
  }

  std::string OwnHost() const {
    const bool bracketed = options_.host.find(':') != std::string::npos;
    return (bracketed ? "[" + options_.host + "]" : options_.host) + ":" + std::to_string(port_);
  }

  // Decides by the head alone. The body of a request that is refused is not read.
  bool Admit(const httplib::Request& request) {
    std::optional<HttpAnswer> refusal = handler_.Refuse(MakeRequest(request));
    if (!refusal) return true;
    refusal->headOnly = request.method == "HEAD";
    RefuseWith(std::move(*refusal));
    return false;
  }

  void ServePost(const httplib::Request& request, httplib::Response& response,
                 const httplib::ContentReader& reader) {
    HttpRequest whole = MakeRequest(request);
    BodyPlan plan = handler_.PlanBody(whole);
    if (plan.refusal) return RefuseWith(std::move(*plan.refusal));
    if (plan.sink) return ServeStream(whole.bodyLength.value_or(0), *plan.sink);
    if (request.is_multipart_form_data()) return Refuse(response, 415);
    BodyShare share(budget_);
    bool tooLong = false;
    bool crowded = false;
    const bool complete = reader([&](const char* bytes, std::size_t count) {
      tooLong = count > options_.maxRequestBytes - whole.body.size();
      crowded = !tooLong && !share.Take(count);
      if (!tooLong && !crowded) whole.body.append(bytes, count);
      return !tooLong && !crowded;
    });
    if (crowded) return RefuseWith(NoRoom());
    if (tooLong || response.status == 413) return Refuse(response, 413);
    if (!complete) return RefuseWith(EarlyEnd(*currentConnection));
    Serve(whole, response);
  }

  void ServeDelete(const httplib::Request& request, httplib::Response& response) {
    const HttpRequest whole = MakeRequest(request);
    if (whole.bodyLength.value_or(0) > 0 || request.has_header("Transfer-Encoding"))
      return RefuseWith(PlainAnswer(400, "A request with DELETE has no body.\n"));
    Serve(whole, response);
  }

  // Reads without the library, which would parse some kinds of bodies.
  void ServeStream(std::uint64_t length, BodySink& sink) {
    currentConnection->AllowBody(length);
    std::array<char, kPieceBytes> piece;
    for (std::uint64_t left = length; left > 0;) {
      const ssize_t got = currentConnection->read(piece.data(), std::min<std::uint64_t>(piece.size(), left));
      if (got <= 0) return RefuseWith(EarlyEnd(*currentConnection));
      std::optional<HttpAnswer> answer = sink.Write(piece.data(), static_cast<std::size_t>(got));
      if (answer) return RefuseWith(std::move(*answer));
      left -= static_cast<std::uint64_t>(got);
    }
    ++stats_.requests;
    currentConnection->TakeOver(sink.Finish());
  }

  // Nothing may follow a request whose body was not read to its end.
  static void RefuseWith(HttpAnswer answer) {
    if (answer.delivery != Delivery::kDrop) currentConnection->AbandonRest();
    currentConnection->TakeOver(std::move(answer));
  }

  // The rest of such a request is not read, so nothing may follow it.
  static void Refuse(httplib::Response& response, int status) {
    response.status = status;
    currentConnection->CloseAfterwards();
  }

  void Serve(const HttpRequest& request, httplib::Response& response) {
    ++stats_.requests;
    HttpAnswer answer = handler_.Handle(request);
    answer.headOnly = request.method == "HEAD";
    if (answer.file || answer.stream || !answer.headers.empty() || answer.delivery != Delivery::kPlain ||
        answer.delayed || answer.silence.count() > 0)
      return currentConnection->TakeOver(std::move(answer));
    response.status = answer.status;
    response.set_content(answer.body, answer.contentType);
  }

  const HttpServerOptions options_;
  ServiceStats& stats_;
  RequestHandler& handler_;
  BodyBudget budget_;
  int port_ = 0;
  OpenSockets sockets_;
  std::thread thread_;
};

HttpServer::HttpServer(HttpServerOptions options, ServiceStats& stats, RequestHandler& handler)
    : implementation_(std::make_unique<Implementation>(std::move(options), stats, handler)) {}

HttpServer::~HttpServer() = default;
int HttpServer::Port() const {
  return implementation_->Port();
}
void HttpServer::Stop() {
  implementation_->Stop();
}

}  // namespace qv::devservice
