#include "face/tape/taped_session.h"

#include <sstream>

namespace scriptwells::test {

void TapedSession::SetUp() {
  SessionTest::SetUp();
  url_ = Url();
  home_ = Home();
}

void TapedSession::Record(const Act& act, const std::string& name) {
  Options options;
  options.record = Tape(name);
  options.homeDirectory = home_;
  Session session = Open(options);
  act(session);
}

void TapedSession::Play(const Act& act, const std::string& name, const std::string& record) {
  Options options;
  options.replay = Tape(name);
  if (!record.empty()) options.record = Tape(record);
  options.homeDirectory = home_;
  Session session(url_, {"joe", "secret"}, options);
  act(session);
}

std::string ErrorOf(const std::function<void()>& act) {
  try {
    act();
    return "no error";
  } catch (const Error& error) {
    return std::string(ToString(error.phase())) + ": " + error.message();
  }
}

std::string WithoutTimes(const std::string& tape) {
  std::istringstream lines(tape);
  std::string kept;
  for (std::string line; std::getline(lines, line);)
    if (line.rfind("@ ", 0) != 0) kept += line + "\n";
  return kept;
}

}  // namespace scriptwells::test
