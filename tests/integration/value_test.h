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
  void ExpectOdd(std::initializer_list<std::pair<const char*, const char*>> namesAndOutcomes);
  // A script with this parameter fails with this message, no request is sent, and the next one works.
  void ExpectRefused(const Variant& value, const std::string& words);
  // The object that an answer holds.
  template <class Interface>
  static boost::intrusive_ptr<Interface> ObjectIn(const Variant& answer) {
    EXPECT_EQ(answer.Tag(), VT_UNKNOWN) << ShownValue(answer);
    return As<Interface>(answer.Object());
  }
  static void ExpectOnlyReference(const Variant& answer) {
    ASSERT_EQ(answer.Tag(), VT_UNKNOWN);
    EXPECT_EQ(answer.Object()->AddRef(), 2U);
    EXPECT_EQ(answer.Object()->Release(), 1U);
  }
  // The model and the service are gone.
  void EndEverything() {
    model_.reset();
    CloseKeptConnections();
    service_->Stop();
  }

 private:
  // How many requests the service was sent so far, this question among them.
  int Requests();
};

}  // namespace qv
