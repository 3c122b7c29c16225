// A server that answers from a script of the test's, for transfers that no well-behaved service shows.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fixtures/raw_server.h"
#include "tests/tools/fresh_directory.h"
#include "tests/tools/process.h"

namespace qv::cli::testing {

// Whole answers of a server.
std::string SessionOpened();  // its id is "u1"
std::string SessionClosed();
std::string ScriptAnswered(const std::string& type, const std::string& text);
std::string FileAnswer(const std::string& name, const std::string& body);
// The head of a file's answer whose body is longer than `start`.
std::string FileStart(const std::string& name, std::size_t length, const std::string& start);
std::string StatusAnswer(const std::string& status);

class TransferServer : public ::testing::Test {
 protected:
  // The connection that serves all requests of a run: one answer for each, in order.
  void Answer(const std::vector<std::string>& answers);

  std::string Origin() const { return "http://127.0.0.1:" + std::to_string(server_.Port()); }
  std::string Url() const { return Origin() + "/f?t=1"; }
  // The words of a download in a session that is open already.
  Words Adopted(const Words& more = {}) const;
  Words AsJoe(const std::string& command, const Words& more) const;
  // All that the server was sent holds it.
  bool WasSent(const std::string& text) const {
    return server_.AllReceived().find(text) != std::string::npos;
  }
  static std::string Read(const std::string& path);
  // Names in the directory that downloads go to.
  std::ptrdiff_t Count() const;

  FreshDirectory folder_;
  // Last, so that it ends first.
  test::RawServer server_;
};

}  // namespace qv::cli::testing
