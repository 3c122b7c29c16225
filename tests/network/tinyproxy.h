// A running tinyproxy on loopback, for one test.
#pragma once

#include <cstdint>
#include <string>

#include "child_process.h"
#include "fixtures/temporary_directory.h"

namespace qv::test {

class Tinyproxy {
 public:
  // `more` are further lines of its configuration, each with its line end. A `fixedPort` of 0 means a free
  // one. Throws std::runtime_error.
  explicit Tinyproxy(const std::string& more = "", const std::string& address = "127.0.0.1",
                     std::uint16_t fixedPort = 0);

  // "127.0.0.1:8888"
  std::string Address() const;
  std::uint16_t Port() const { return server_.Port(); }
  // The request lines that clients sent, in order, such as "GET http://h/ HTTP/1.1". Waits for `count`.
  Words Requests(std::size_t count) const;
  // How many connections clients have made since the start.
  std::size_t Connections() const;

 private:
  Words Command(std::uint16_t port, const std::string& more) const;
  Words LogLines(const std::string& mark) const;

  TemporaryDirectory files_;
  std::string address_;
  ServerProcess server_;
  std::size_t before_ = 0;  // connections that looked whether it is up
};

}  // namespace qv::test
