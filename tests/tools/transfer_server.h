// A server that sends what the test says, and its canned answers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/raw_server.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/process.h"

namespace qv::cli::testing {

// Whole answers of a server.
std::string SessionOpened();  // its id is "u1"
std::string SessionClosed();
std::string ScriptAnswered(const std::string& type, const std::string& text);
std::string FileAnswer(const std::string& name, const std::string& body);
std::string StatusAnswer(const std::string& status, const std::string& body = "");
// The start of a file's answer whose whole body has `length` bytes.
std::string FileStart(const std::string& name, std::size_t length, const std::string& start);

class TransferServer : public ::testing::Test {
 protected:
  // One connection that serves all requests of a run: one answer for each, in order.
  void Answer(const std::vector<std::string>& answers);
  // The same for a session with these calls: it is opened and closed around them.
  void AnswerCalls(const std::vector<std::string>& answers);

  std::string Origin() const { return "http://127.0.0.1:" + std::to_string(server_.Port()); }
  std::string Url() const { return Origin() + "/f?t=1"; }
  // A client of the server, whose password is not asked for.
  Tool Joe(const std::string& line, const Words& more = {}) const;
  // A download into the folder: in a session that is open already, and in a new one.
  Tool Adopted(const std::string& options = "") const;
  Tool Download() const { return Tool("download " + Url() + " " + folder_.Path() + " --user joe"); }
  // Whether any request held the text.
  bool WasSent(const std::string& text) const { return Holds(server_.AllReceived(), text); }
  bool WasClosed() const { return WasSent("#CloseUserSession\r\n"); }

  TemporaryDirectory folder_;
  // Last, so that it ends first.
  test::RawServer server_;
};

}  // namespace qv::cli::testing
