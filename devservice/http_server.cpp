#include "devservice/http_server.h"

#include <httplib.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

#include "devservice/connection.h"

namespace qv::devservice {
namespace {

constexpr int kBacklog = 256;
// Room for a request's head beside its body.
constexpr std::size_t kHeadBytes = 65536;
// The library counts down from here and closes at zero; that is never reached.
constexpr std::size_t kManyRequests = 1000000000;

// The connection that this thread serves; the library's handlers get no argument that would tell.
thread_local Connection* currentConnection = nullptr;

void SetSwitch(socket_t socket, int level, int option) {
  const int on = 1;
  setsockopt(socket, level, option, &on, sizeof on);
}

// Threads for connections: a new one whenever none is free, up to a number, then a queue. A kept connection
// holds its thread, so a fixed small pool would starve the next client.
class ConnectionThreads : public httplib::TaskQueue {
 public:
  explicit ConnectionThreads(std::size_t most) : most_(most) {}

  void enqueue(std::function<void()> task) override {
    const std::lock_guard<std::mutex> lock(mutex_);
    tasks_.push_back(std::move(task));
    if (tasks_.size() > free_ && threads_.size() < most_) {
      threads_.emplace_back(&ConnectionThreads::Work, this);
      ++free_;
    }
    changed_.notify_one();
  }

  void shutdown() override {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

 private:
  void Work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return ended_ || !tasks_.empty(); });
      if (tasks_.empty()) return;
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      --free_;
      lock.unlock();
      task();
      lock.lock();
      ++free_;
    }
  }

  const std::size_t most_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> tasks_;
  std::vector<std::thread> threads_;
  std::size_t free_ = 0;  // Threads that wait for a task, or will as soon as they run.
  bool ended_ = false;
};

// The sockets that are being served, so that a stop reaches them all.
class OpenSockets {
 public:
  // False when the server is stopping; the socket is then not to be served.
  bool Add(socket_t socket) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!stopping_) sockets_.insert(socket);
    return !stopping_;
  }
  // Closes under the lock: a shutdown must not hit the next socket of the same number.
  void Close(socket_t socket) {
    const std::lock_guard<std::mutex> lock(mutex_);
    sockets_.erase(socket);
    close(socket);
  }
  void ShutdownAll() {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
    for (const socket_t socket : sockets_) shutdown(socket, SHUT_RDWR);
  }

 private:
  std::mutex mutex_;
  std::set<socket_t> sockets_;
  bool stopping_ = false;
};

std::string Refusal(const HttpServerOptions& options) {
  return "Cannot listen on " + options.host + " port " + std::to_string(options.port) +
         ": the port is taken, not permitted, or the address is not one of this machine.";
}

// A request that came by way of a proxy names the whole URL.
std::string PathOf(const std::string& path) {
  constexpr std::string_view kScheme = "http://";
  if (path.compare(0, kScheme.size(), kScheme) != 0) return path;
  const std::size_t slash = path.find('/', kScheme.size());
  return slash == std::string::npos ? "/" : path.substr(slash);
}

}  // namespace

// cpp-httplib reads and routes; the loop over a connection is ours, since the library's own neither ends at
// once on a stop nor lets an answer be anything but correct.
class HttpServer::Implementation : public httplib::Server {
 public:
  Implementation(HttpServerOptions options, ServiceStats& stats, HttpServer::Handler handler)
      : options_(std::move(options)), stats_(stats), handler_(std::move(handler)) {
    Configure();
    port_ = options_.port == 0 ? bind_to_any_port(options_.host) : BindTo(options_.port);
    if (port_ <= 0) throw std::runtime_error(Refusal(options_));
    // A second call widens the queue of connections not yet accepted, which the library makes very short.
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
    Post("/", [this](const httplib::Request& request, httplib::Response& response,
                     const httplib::ContentReader& reader) { ServePost(request, response, reader); });
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
    Connection connection(socket);
    currentConnection = &connection;
    while (connection.WaitForRequest(options_.keepAliveTime) && ServeOne(connection)) {
    }
    currentConnection = nullptr;
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
    return connection.Finish(options_.stallTime);
  }

  HttpRequest MakeRequest(const httplib::Request& request) const {
    return {request.method, currentConnection->Path(), request.get_header_value("Content-Type"),
            request.get_header_value("SOAPAction"), ""};
  }

  void ServePost(const httplib::Request& request, httplib::Response& response,
                 const httplib::ContentReader& reader) {
    if (request.is_multipart_form_data()) return Refuse(response, 415);
    HttpRequest whole = MakeRequest(request);
    bool tooLong = false;
    const bool complete = reader([&](const char* bytes, std::size_t count) {
      tooLong = count > options_.maxRequestBytes - whole.body.size();
      if (!tooLong) whole.body.append(bytes, count);
      return !tooLong;
    });
    if (!complete) return Refuse(response, tooLong || response.status == 413 ? 413 : 400);
    Serve(whole, response);
  }

  // The rest of such a request is not read, so nothing may follow it.
  void Refuse(httplib::Response& response, int status) {
    response.status = status;
    currentConnection->CloseAfterwards();
  }

  void Serve(const HttpRequest& request, httplib::Response& response) {
    ++stats_.requests;
    HttpAnswer answer = handler_(request);
    if (answer.delivery != Delivery::kPlain || answer.delayed)
      return currentConnection->TakeOver(std::move(answer));
    response.status = answer.status;
    response.set_content(answer.body, answer.contentType);
  }

  const HttpServerOptions options_;
  ServiceStats& stats_;
  const HttpServer::Handler handler_;
  int port_ = 0;
  OpenSockets sockets_;
  std::thread thread_;
};

HttpServer::HttpServer(HttpServerOptions options, ServiceStats& stats, Handler handler)
    : implementation_(std::make_unique<Implementation>(std::move(options), stats, std::move(handler))) {}

HttpServer::~HttpServer() = default;
int HttpServer::Port() const {
  return implementation_->Port();
}
void HttpServer::Stop() {
  implementation_->Stop();
}

}  // namespace qv::devservice
