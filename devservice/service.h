// The development service: a local server that runs JavaScript scripts and speaks the Scriptwells protocol.
//
// It is meant for development and tests: it listens on loopback, keeps everything in memory, files in a
// private temporary directory, and forgets all of it when it stops. devservice/README.md describes the
// protocol, the script API and the limits.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "devservice/control/page_handler.h"
#include "devservice/values/console_message.h"
#include "devservice/values/credentials.h"
#include "devservice/values/odd_order.h"
#include "devservice/workers/started_worker.h"

namespace qv::devservice {

// The options of a service. Values are copied; a later change has no effect.
struct ServiceOptions {
  // Address or name to listen on. Anything but loopback opens the service to the network, and it runs the
  // code that it is sent.
  std::string host = "127.0.0.1";
  // Further names by which clients call this host, without a port. A request whose Host header is none of
  // these, nor `host`, "localhost" or an IP address, is answered with status 403, and so is one from a web
  // page of another origin.
  std::vector<std::string> names;
  // TCP port, 0 to 65535; 0 takes a free one, see Port().
  int port = 0;
  // Wall-clock time that one script may take, from its arrival at the worker to its answer.
  std::chrono::milliseconds scriptTimeLimit{5000};
  // Bytes of resident memory that a worker may take beyond what it had when it was fresh.
  std::size_t scriptMemoryLimit = std::size_t{256} << 20;
  // Gets the console messages of scripts while they run: at most 1000 messages of 8 KiB each for one run.
  // Called on threads of the service, one call at a time. Must not throw; scripts wait for it. May be empty.
  ConsoleSink console;
  // Who may open a session. Empty: every non-empty user name, with any password.
  std::vector<ServiceUser> users;
  // Program and arguments of the script worker: the path of scriptwells-script-worker. A name without "/" is
  // looked up in PATH. Required.
  std::vector<std::string> workerCommand;
  // Most workers alive at one time; further scripts wait for a free one.
  std::size_t maxWorkers = 4;
  // Host in front of the paths of all namespaces. Has to equal the client's constant.
  std::string namespaceHost = "http://quorvane.example";
  // Largest request body in bytes; more is answered with status 413.
  std::size_t maxRequestBytes = std::size_t{64} << 20;
  // Largest sum of the bodies of all current requests; a request beyond it is answered with status 503.
  // Uploads go to files and do not count.
  std::size_t maxBodyBytes = std::size_t{256} << 20;
  // Time for the head and body of a request together, and for an answer, each from its first byte. Every 64
  // KiB that were moved add a second. What takes longer is answered with status 408, or closed.
  std::chrono::milliseconds requestTime{60000};
  // Most open sessions. One more ends the session that was not used for the longest time; it is a fault only
  // when requests are running in all of them.
  std::size_t maxSessions = 1000;
  // Largest file that can be uploaded, in bytes; more is answered with status 413.
  std::uint64_t maxUploadBytes = std::uint64_t{4} << 30;
  // Most upload tickets of one session, and most files that its scripts can publish.
  std::size_t maxTickets = 1000;
  // Most connections served at one time; further ones wait.
  std::size_t maxConnections = 128;
  // How long a kept connection may stay without a request before it is closed.
  std::chrono::milliseconds keepAliveTime{60000};
  // Whether there is a control interface, see ControlUrl. Who knows its address sees all requests.
  bool control = false;
  // Answers all requests below "/page/"; borrowed, and has to outlive the running service. Null: there are no
  // such pages. With them the service keeps its last requests, as it does for the control interface.
  PageHandler* page = nullptr;
  // Odd answers for requests to come, as a test orders them.
  std::vector<OddOrder> odds;
  // How long odd answers that stall are silent.
  std::chrono::milliseconds stallTime{30000};
};

// A service that can be started and stopped any number of times. The object is not copyable. Start and Stop
// belong to one thread at a time; Port and Url may be called from any thread while it runs.
class Service {
 public:
  // Only keeps the options; nothing is opened.
  explicit Service(ServiceOptions options);
  // Stops a running service.
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  // Opens the port and returns as soon as connections are accepted. Throws std::runtime_error with a message
  // when that fails (port taken, bad host, no worker command, worker program not found, no room for
  // files); nothing is left open then. Starting a running service does nothing. `first`, if the host has
  // started a worker already, becomes the first worker; without it, the first script starts one.
  void Start(StartedWorker first = {});

  // Ends every connection and every running script, and returns when all threads and workers are gone: at
  // once, also while a script loops or an answer stalls. Sessions and counts are forgotten. Stopping a
  // stopped service does nothing.
  void Stop();

  // The port in use, 0 when stopped.
  int Port() const;

  // "http://host:port" without a path, in the form that a client takes as server name; empty when stopped.
  std::string Url() const;

  // The same with the path of the control interface, which nobody can guess; empty without it.
  std::string ControlUrl() const;

 private:
  class Running;
  ServiceOptions options_;
  std::unique_ptr<Running> running_;
};

}  // namespace qv::devservice
