// What errors know, and what what() says.
#include "scriptwells/error.h"

#include <gtest/gtest.h>

#include <map>

namespace scriptwells {
namespace {

TEST(Error, PhasesHaveNames) {
  const std::map<Phase, const char*> names = {{Phase::kAddress, "address"},
                                              {Phase::kConnect, "connect"},
                                              {Phase::kTls, "TLS"},
                                              {Phase::kSend, "send"},
                                              {Phase::kWait, "wait"},
                                              {Phase::kReceive, "receive"},
                                              {Phase::kAnswer, "answer"},
                                              {Phase::kSession, "session"},
                                              {Phase::kScript, "script"},
                                              {Phase::kLocalFile, "local file"},
                                              {Phase::kConversion, "conversion"},
                                              {Phase::kCancelled, "cancelled"}};
  EXPECT_EQ(names.size(), 12U);
  for (const auto& [phase, name] : names) EXPECT_STREQ(ToString(phase), name);
}

TEST(Error, HasMessageAndDetails) {
  ErrorDetails details;
  details.number = 5;
  details.result = 0x80040005;
  details.text = "fixed";
  details.transport = "Connection refused";
  details.status = 500;
  details.line = 3;
  const ScriptError error(Phase::kScript, "no such file", details);
  EXPECT_STREQ(error.what(), "no such file");
  EXPECT_EQ(error.message(), "no such file");
  EXPECT_EQ(error.phase(), Phase::kScript);
  EXPECT_EQ(error.remedy(), Remedy::kNone);
  EXPECT_EQ(error.number(), 5U);
  EXPECT_EQ(error.status(), 500);
  EXPECT_EQ(error.details().result, 0x80040005U);
  EXPECT_EQ(error.details().text, "fixed");
  EXPECT_EQ(error.details().transport, "Connection refused");
  EXPECT_EQ(error.details().line, 3);
  const Error plain(Phase::kAddress, "x");
  EXPECT_FALSE(plain.number().has_value());
  EXPECT_EQ(plain.status(), 0);
}

// A program with options of another name uses message() and remedy().
TEST(Error, WhatNamesTheRemedy) {
  const std::map<Remedy, const char*> words = {
      {Remedy::kNone, ""},
      {Remedy::kOwnAuthority, " (Options::authorities names your own authority)"},
      {Remedy::kOwnCertificate,
       " (the server wants to see a certificate: Options::certificate, Options::key)"},
      {Remedy::kReplaceFiles, " (Options::replaceFiles replaces it)"},
      {Remedy::kHiddenFiles, " (Options::hiddenFiles allows it)"},
      {Remedy::kTotalTime, " (Options::totalTimeout)"},
      {Remedy::kCredentials, " (without a user name: Credentials::user)"},
      {Remedy::kHomeDirectory, " (Options::homeDirectory names the directory that holds them)"},
      {Remedy::kOtherSession, " (a file belongs to the session that made it)"}};
  EXPECT_EQ(words.size(), 9U);
  for (const auto& [remedy, text] : words) {
    ErrorDetails details;
    details.remedy = remedy;
    const Error error(Phase::kTls, "it failed", details);
    EXPECT_EQ(error.what(), std::string("it failed") + text);
    EXPECT_EQ(error.message(), "it failed");
    EXPECT_EQ(error.remedy(), remedy);
  }
}

template <class Kind>
void ExpectKind() {
  try {
    throw Kind(Phase::kWait, "m");
  } catch (const Error& error) {
    EXPECT_NE(dynamic_cast<const Kind*>(&error), nullptr);
    EXPECT_EQ(error.phase(), Phase::kWait);
  }
}

TEST(Error, IsTheRootOfAllClasses) {
  ExpectKind<ConnectionError>();
  ExpectKind<TimeoutError>();
  ExpectKind<SessionError>();
  ExpectKind<ScriptError>();
  ExpectKind<CancelledError>();
  ExpectKind<ConversionError>();
  static_assert(std::is_base_of_v<std::runtime_error, Error>);
  static_assert(std::is_nothrow_copy_constructible_v<TimeoutError>);
}

TEST(Error, CopyKeepsItsContent) {
  const auto error = std::make_unique<Error>(Phase::kSend, "sent");
  Error copy = *error;
  Error assigned(Phase::kTls, "other");
  assigned = *error;
  for (const Error* one : {&copy, &assigned}) {
    EXPECT_STREQ(one->what(), "sent");
    EXPECT_EQ(one->message(), "sent");
    EXPECT_EQ(one->phase(), Phase::kSend);
  }
  // A move copies: the source stays whole.
  const Error moved = std::move(copy);  // NOLINT(performance-move-const-arg): what is tested
  EXPECT_EQ(moved.message() + copy.message(), "sentsent");  // NOLINT(bugprone-use-after-move)
}

}  // namespace
}  // namespace scriptwells
