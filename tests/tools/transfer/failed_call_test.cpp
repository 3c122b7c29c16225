// Exit status, kind and message of the library's errors.
#include "tools/transfer/failed_call.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <tuple>

namespace qv::cli {
namespace {

using scriptwells::Error;
using scriptwells::ErrorDetails;
using scriptwells::Phase;
using scriptwells::Remedy;

// The exit status, the own kind in brackets, and the message.
std::string Shown(const Failure& failure) {
  const std::string kind = failure.OwnKind() == nullptr ? "" : std::string(" [") + failure.OwnKind() + "]";
  return std::to_string(static_cast<int>(failure.Status())) + kind + " " + failure.Message();
}

std::string Shown(const Error& error) {
  return Shown(FailureOf(error));
}

ErrorDetails With(Remedy remedy) {
  ErrorDetails details;
  details.remedy = remedy;
  return details;
}

TEST(FailedCall, PhaseDecidesOnTheExitStatus) {
  const std::pair<Phase, int> rows[] = {{Phase::kAddress, 6}, {Phase::kConnect, 3},   {Phase::kTls, 3},
                                        {Phase::kSend, 3},    {Phase::kWait, 3},      {Phase::kReceive, 3},
                                        {Phase::kAnswer, 7},  {Phase::kSession, 5},   {Phase::kLocalFile, 6},
                                        {Phase::kScript, 1},  {Phase::kConversion, 6}};
  for (const auto& [phase, exit] : rows)
    EXPECT_EQ(Shown(Error(phase, "why")), std::to_string(exit) + " why") << ToString(phase);
  EXPECT_EQ(Shown(scriptwells::CancelledError(Phase::kCancelled, "the call was cancelled")),
            "130 interrupted");
  for (const Phase phase : {Phase::kConnect, Phase::kSend, Phase::kReceive})
    EXPECT_EQ(Shown(scriptwells::TimeoutError(phase, "why")), "4 why");
}

TEST(FailedCall, RemediesAreOptionsOfTheCommandLine) {
  const std::tuple<Phase, Remedy, const char*> rows[] = {
      {Phase::kTls, Remedy::kOwnAuthority, "3 why (--ca-file FILE names your own authority)"},
      {Phase::kTls, Remedy::kOwnCertificate,
       "3 why (the server wants to see a certificate: --cert FILE, --key FILE)"},
      {Phase::kLocalFile, Remedy::kReplaceFiles, "6 [file exists] why (--force replaces it)"},
      {Phase::kAnswer, Remedy::kHiddenFiles, "7 why (--force saves it)"},
      {Phase::kSession, Remedy::kCredentials, "5 why (no --user given)"},
      {Phase::kAnswer, Remedy::kOtherSession, "1 [download refused] why"}};
  for (const auto& [phase, remedy, shown] : rows) EXPECT_EQ(Shown(Error(phase, "why", With(remedy))), shown);
}

TEST(FailedCall, TextForProgramsIsReplacedAtTheEnd) {
  EXPECT_EQ(Shown(Error(Phase::kAddress, "proxy must not hold a user name; credentials are given beside it")),
            "6 proxy must not hold a user name; use --user");
  EXPECT_EQ(Shown(scriptwells::TimeoutError(
                Phase::kWait, "no answer from http://h:1: the time that the call may take is over",
                With(Remedy::kTotalTime))),
            "4 no answer from http://h:1: the time that --max-time allows is over");
  const std::string quoted = "the time that the call may take is over";
  EXPECT_EQ(Shown(scriptwells::ScriptError(Phase::kScript, quoted)), "1 " + quoted);
}

TEST(FailedCall, NumberOfAFaultIsKept) {
  ErrorDetails fault;
  fault.number = 5;
  fault.result = 0x80040005;
  const Failure failure = FailureOf(scriptwells::ScriptError(Phase::kScript, "no such customer", fault));
  EXPECT_EQ(Shown(failure), "1 no such customer");
  EXPECT_EQ(failure.Code(), 0x80040005U);
  ErrorDetails other;
  other.result = 0x80020009;
  EXPECT_FALSE(FailureOf(scriptwells::ScriptError(Phase::kScript, "oops", other)).Code().has_value());
}

TEST(FailedCall, RequestThatIsTooLongHasAKind) {
  ErrorDetails details;
  details.status = 413;
  EXPECT_EQ(Shown(Error(Phase::kAnswer, "too long", details)), "7 [request too long] too long");
  EXPECT_EQ(Shown(scriptwells::ScriptError(Phase::kScript, "at most 1 MB", details)), "1 at most 1 MB");
}

std::string Thrown(const std::function<int()>& call) {
  try {
    return std::to_string(Translated(call));
  } catch (const Failure& failure) {
    return Shown(failure);
  } catch (const std::exception& error) {
    return error.what();
  }
}

TEST(FailedCall, OnlyErrorsOfTheLibraryAreTranslated) {
  EXPECT_EQ(Thrown([] { return 7; }), "7");
  EXPECT_EQ(Thrown([]() -> int { throw Error(Phase::kAnswer, "why"); }), "7 why");
  EXPECT_EQ(Thrown([]() -> int { throw std::bad_alloc(); }), "1 out of memory");
  EXPECT_EQ(Thrown([]() -> int { throw std::runtime_error("other"); }), "other");
}

}  // namespace
}  // namespace qv::cli
