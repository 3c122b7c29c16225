// What tests of single kinds of values share: an open session, answers as values, and odd answers.
#pragma once

#include <string>

#include "client_fixture.h"

namespace qv {

class ValueTest : public ClientTest {
 protected:
  void SetUp() override;

  // A script's answer. Fails the test, and gives VT_EMPTY, when there is none.
  Variant Answer(const WideString& script, NamedValues values = {});
  // The same for a script whose answer the service replaces by this odd one.
  Variant OddAnswer(const std::string& name);
  // What Run says for such a script. The one that follows it has to work.
  std::string OddOutcome(const std::string& name);
  // A script with this parameter ends in these words, no request goes out, and the next one works.
  void ExpectRefused(const Variant& value, const std::string& words);

 private:
  // How many requests the service was sent so far, this question among them.
  int Requests();
};

}  // namespace qv
