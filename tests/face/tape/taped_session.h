// Sessions that are recorded on a development service, and played without one.
#pragma once

#include <functional>
#include <string>

#include "face/session/session_fixture.h"

namespace scriptwells::test {

using Act = std::function<void(Session&)>;

class TapedSession : public SessionTest {
 protected:
  std::string Tape(const std::string& name = "a.tape") const { return directory_.Path(name); }
  std::string TapeContent(const std::string& name = "a.tape") const { return directory_.Read(name); }
  // One session that is recorded at the end of the tape.
  void Record(const Act& act, const std::string& name = "a.tape");
  // From now on nothing listens there.
  void EndService() { service_.reset(); }
  // One session that is played, and recorded on another tape if one is named.
  void Play(const Act& act, const std::string& name = "a.tape", const std::string& record = "");
  std::string url_;  // the address that the service had
  std::filesystem::path home_;

  void SetUp() override;
};

// The message of the error; "no error" without one.
std::string ErrorOf(const std::function<void()>& act);
// The lines without those of times.
std::string WithoutTimes(const std::string& tape);

}  // namespace scriptwells::test
