// The first model of a process when memory runs out while it registers the value types. Each attempt is the
// first one of its process, so each has its own process.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <optional>

#include "fixtures/fake_http.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/soap_texts.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/value_types_hold.h"

namespace qv {
namespace {

enum Outcome { kRegistered = 0, kFailedThenWorked = 1, kTypesLost = 2, kWrongFailure = 3 };

// A script's answer is read as the text that it is.
bool TypesAreThere() {
  FakeHttp http;
  const IConnectionModelPtr model = CreateConnectionModel(u"http://srv", u"", nullptr);
  if (Failed(model->SetUSID(u"u1"))) return false;
  http.Answer(kScriptDone);
  Variant answer;
  return Succeeded(model->Execute(u"VBScript", u"1", nullptr, &answer)) && answer.Tag() == VT_BSTR;
}

struct Attempt {
  std::function<void()> action;
  std::function<void()> before = [] {};  // with all the memory that it wants
};

bool Succeeds(long limit, const Attempt& attempt) {
  attempt.before();
  const ScarceMemory scarce(Memory::kBoth, limit);
  try {
    attempt.action();
    return true;
  } catch (...) {
    return false;
  }
}

Outcome OutcomeOf(long limit, const Attempt& attempt) {
  const bool succeeded = Succeeds(limit, attempt);
  if (!TypesAreThere()) return kTypesLost;
  return succeeded ? kRegistered : kFailedThenWorked;
}

int InAProcessOfItsOwn(long limit, const Attempt& attempt) {
  const pid_t child = fork();
  if (child == 0) _exit(OutcomeOf(limit, attempt));
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Lets the attempt have 0, 1, 2 ... allocations, as long as it fails and the next one works. The number that
// ended this, with its outcome.
long AllocationsUntil(Outcome expected, const Attempt& attempt) {
  long limit = 0;
  int outcome = kFailedThenWorked;
  while (outcome == kFailedThenWorked && limit < 1000) outcome = InAProcessOfItsOwn(limit++, attempt);
  EXPECT_EQ(outcome, expected) << "with " << limit - 1 << " allocations";
  return limit - 1;
}

constexpr long kTypes = 27;  // each of which takes memory

TEST(ScarceRegistration, TypesThatTheFirstServerCouldNotRegisterComeWithTheNext) {
  const WideString server(u"http://srv");
  const IConnectionModelRawPtr model = As<IConnectionModelRaw>(CreateConnectionModel());
  ASSERT_NE(model, nullptr);
  const Attempt set{[&] { ThrowIfFailed(model->SetServer(server, server)); }};
  EXPECT_GT(AllocationsUntil(kRegistered, set), kTypes);
}

// A model that cannot be made ends, which unregisters all types; before they are registered it does nothing.
TEST(ScarceRegistration, TypesThatAFailedCreationCouldNotRegisterComeWithTheNext) {
  const WideString server(u"http://srv");
  static IConnectionModelPtr made;
  const Attempt create{[&] { made = CreateConnectionModel(server, server, nullptr); }};
  EXPECT_GT(AllocationsUntil(kTypesLost, create), kTypes);
}

TEST(ScarceRegistration, FailedCreationUnderAHoldLosesNothing) {
  const WideString server(u"http://srv");
  static std::optional<ValueTypesHold> hold;
  static IConnectionModelPtr made;
  const Attempt create{[&] { made = CreateConnectionModel(server, server, nullptr); },
                       [] { hold.emplace(); }};
  EXPECT_GT(AllocationsUntil(kRegistered, create), 0);
}

TEST(ScarceRegistration, HoldThatCouldNotBeMadeSaysSoAndLosesNothing) {
  static std::optional<ValueTypesHold> hold;
  const Attempt make{[] {
    try {
      hold.emplace();
    } catch (const _com_error& error) {
      if (error.Error() != E_OUTOFMEMORY) _exit(kWrongFailure);
      throw;
    } catch (...) {
      _exit(kWrongFailure);
    }
  }};
  EXPECT_GT(AllocationsUntil(kRegistered, make), kTypes);
}

}  // namespace
}  // namespace qv
