#include "torture/answering_server.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace qv::torture {
namespace {

int Listen(std::uint16_t* port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (listener < 0 || bind(listener, plain, size) != 0 || listen(listener, 64) != 0 ||
      getsockname(listener, plain, &size) != 0)
    throw std::runtime_error("the server cannot listen");
  *port = ntohs(address.sin_port);
  return listener;
}

std::string Http(const std::string& body, const std::string& headers = "Content-Type: text/xml\r\n") {
  return "HTTP/1.1 200 OK\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

std::string Envelope(const std::string& body) {
  return Http("<soap:Envelope><soap:Body>" + body + "</soap:Body></soap:Envelope>");
}

std::string Answer(const std::string& type, const std::string& value) {
  return Envelope("<ExecuteResponse><r xsi:type=\"" + type + "\">" + value + "</r></ExecuteResponse>");
}

struct Row {
  const char* mark;  // in the request
  std::string answer;
};

// The first row whose mark is in the request has its answer.
std::vector<Row> Rows(std::uint16_t port) {
  const std::string upload = "http://127.0.0.1:" + std::to_string(port) + "/up?t=t1";
  return {
      {"GET /file", Http("abc", "Content-Disposition: attachment; filename=got.txt\r\n")},
      {"POST /up", Http("ok")},
      {"<CreateUserSession", Envelope("<CreateUserSessionResponse><CreateUserSessionResult>u1"
                                      "</CreateUserSessionResult></CreateUserSessionResponse>")},
      {"<CloseUserSession", Envelope("<CloseUserSessionResponse/>")},
      {"upload-script", Answer("xsd:string", upload)},
      {"give a table",
       Answer("SOF:RecordList",
              "<h><s><c xsd:name='a' xsd:type='xsd:int'/><c xsd:name='b' xsd:type='xsd:string'/></s></h>"
              "<d><i><a>5</a><b>five</b></i><i><a>6</a><b>six</b></i></d>")},
      {"give a duration", Answer("xsd:duration", "P1DT2H")},
      {"give a fault", Envelope("<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5"
                                "&lt;/errorCode&gt;&lt;description&gt;words&lt;/description&gt;"
                                "&lt;/ErrorObject&gt;</faultstring></soap:Fault>")},
      {"<Execute", Answer("xsd:string", "done")},
  };
}

// Length of a whole request at the front of `text`, 0 while it is not whole.
std::size_t RequestSize(const std::string& text) {
  const std::size_t end = text.find("\r\n\r\n");
  if (end == std::string::npos) return 0;
  const std::string name = "\r\nContent-Length: ";
  const std::size_t place = text.find(name);
  const bool announced = place != std::string::npos && place < end;
  const std::size_t body = announced ? std::strtoul(text.c_str() + place + name.size(), nullptr, 10) : 0;
  return text.size() >= end + 4 + body ? end + 4 + body : 0;
}

class Connections {
 public:
  Connections(int listener, std::uint16_t port) : rows_(Rows(port)), entries_{{listener, POLLIN, 0}} {}

  [[noreturn]] void Serve() {
    for (;;) {
      if (poll(entries_.data(), entries_.size(), -1) < 0) continue;
      for (std::size_t i = entries_.size() - 1; i > 0; --i)
        if (entries_[i].revents != 0 && !ServeOne(entries_[i].fd)) Drop(i);
      if (entries_[0].revents != 0) Accept();
    }
  }

 private:
  void Accept() {
    const int connection = accept4(entries_[0].fd, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    const int on = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
    entries_.push_back({connection, POLLIN, 0});
  }

  void Drop(std::size_t place) {
    close(entries_[place].fd);
    unread_.erase(entries_[place].fd);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(place));
  }

  // False when the connection is over.
  bool ServeOne(int connection) {
    char buffer[65536];
    const ssize_t got = recv(connection, buffer, sizeof(buffer), 0);
    if (got <= 0) return false;
    std::string& unread = unread_[connection];
    unread.append(buffer, static_cast<std::size_t>(got));
    while (const std::size_t size = RequestSize(unread)) {
      if (!Reply(connection, unread.substr(0, size))) return false;
      unread.erase(0, size);
    }
    return true;
  }

  bool Reply(int connection, const std::string& request) const {
    for (const Row& row : rows_) {
      if (request.find(row.mark) == std::string::npos) continue;
      const auto size = static_cast<ssize_t>(row.answer.size());
      return send(connection, row.answer.data(), row.answer.size(), MSG_NOSIGNAL) == size;
    }
    return false;
  }

  std::vector<Row> rows_;
  std::vector<pollfd> entries_;  // the listener first
  std::map<int, std::string> unread_;
};

}  // namespace

AnsweringServer::AnsweringServer() {
  const int listener = Listen(&port_);
  process_ = fork();
  if (process_ < 0) throw std::runtime_error("the server cannot start");
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Connections(listener, port_).Serve();
  }
  close(listener);
}

AnsweringServer::~AnsweringServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

}  // namespace qv::torture
