#include "qvscriptwells/simple_host.h"

#include <gtest/gtest.h>

#include "fixtures/scarce_memory.h"
#include "qvscriptwells/com_call.h"

namespace qv {
namespace {

using Getter = HRESULT (IQvClientServices::*)(BStr*) noexcept;

// What a caller reads: the in/out text of 256 zero units, up to the first null unit; "(null)" for no value.
std::u16string Ask(IQvClientServices* services, Getter getter) {
  BStr text = AllocString(nullptr, 256);
  EXPECT_EQ((services->*getter)(&text), S_OK);
  const std::u16string answer = text == nullptr ? u"(null)" : std::u16string(text);
  FreeString(text);
  return answer;
}

class SimpleHost : public ::testing::Test {
 protected:
  void Make(const SimpleHostUser& user) {
    services_ = CreateSimpleHost(user);
    sink_ = As<IQvClientServicesSink>(services_);
    host_ = As<ISimpleHost>(services_);
    ASSERT_TRUE(sink_);
    ASSERT_TRUE(host_);
  }
  SimpleHostSession Session() {
    SimpleHostSession session;
    EXPECT_EQ(host_->GetSession(&session), S_OK);
    return session;
  }

  IQvClientServicesPtr services_;
  IQvClientServicesSinkPtr sink_;
  ISimpleHostPtr host_;
};

TEST_F(SimpleHost, TextsOfTheUserAreAnswered) {
  Make({u"joe", u"db-1", u"replica-2", u"usid-3"});
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUserName), u"joe");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetDatabaseId), u"db-1");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetReplicaId), u"replica-2");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUsid), u"usid-3");
}

TEST_F(SimpleHost, TextThatFitsIsWrittenIntoTheBlockThatCame) {
  const std::u16string longest(256, u'x');
  Make({WideString(longest), nullptr, u"replica", nullptr});
  BStr text = AllocString(nullptr, 256);
  const BStr block = text;
  EXPECT_EQ(services_->GetUserName(&text), S_OK);
  EXPECT_EQ(std::u16string(text), longest);
  EXPECT_EQ(services_->GetReplicaId(&text), S_OK);
  EXPECT_EQ(std::u16string(text), u"replica");
  EXPECT_EQ(text, block);
  FreeString(text);
}

TEST_F(SimpleHost, LongerTextReplacesTheBlock) {
  const std::u16string longer(257, u'x');
  Make({WideString(longer), nullptr, nullptr, nullptr});
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUserName), longer);
}

TEST_F(SimpleHost, TextThatCannotBeCopiedIsNoValue) {
  const std::u16string longer(257, u'x');
  Make({WideString(longer), nullptr, u"replica", nullptr});
  BStr text = AllocString(nullptr, 256);
  EXPECT_EQ(services_->GetReplicaId(&text), S_OK);
  {
    const ScarceMemory scarce(Memory::kTexts, 0);
    EXPECT_EQ(services_->GetUserName(&text), E_OUTOFMEMORY);
  }
  EXPECT_EQ(text, nullptr);
  FreeString(text);
}

TEST_F(SimpleHost, NullTextsAnswerNoValue) {
  Make({});
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUserName), u"(null)");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetDatabaseId), u"(null)");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetReplicaId), u"(null)");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUsid), u"(null)");
}

TEST_F(SimpleHost, EmptyTextIsAnsweredAsEmptyAndNotAsNoValue) {
  Make({u"", nullptr, nullptr, nullptr});
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUserName), u"");
}

TEST_F(SimpleHost, TextLongerThanTheCallersRoomIsAnsweredWhole) {
  const std::u16string name(300, u'n');
  Make({name, nullptr, nullptr, nullptr});
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUserName), name);
}

TEST_F(SimpleHost, NullOutTextsAreRefused) {
  Make({});
  EXPECT_EQ(services_->GetUserName(nullptr), E_POINTER);
  EXPECT_EQ(services_->GetUsid(nullptr), E_POINTER);
  EXPECT_EQ(host_->GetSession(nullptr), E_POINTER);
}

TEST_F(SimpleHost, NewHostHasNoSession) {
  Make({u"joe", nullptr, nullptr, u"held"});
  EXPECT_FALSE(Session().open);
  EXPECT_TRUE(Session().usid.IsNull());
}

TEST_F(SimpleHost, SinkRemembersTheSession) {
  Make({});
  EXPECT_EQ(sink_->SetUsid(u"S1"), S_OK);
  EXPECT_EQ(sink_->SetUserName(u"joe"), S_OK);
  EXPECT_EQ(sink_->SetDatabaseIds(u"db", u"rep"), S_OK);
  EXPECT_EQ(sink_->SetDatabaseName(u"unused"), S_OK);
  const SimpleHostSession session = Session();
  EXPECT_TRUE(session.open);
  EXPECT_EQ(session.usid, WideString(u"S1"));
  EXPECT_EQ(session.userName, WideString(u"joe"));
  EXPECT_EQ(session.databaseId, WideString(u"db"));
  EXPECT_EQ(session.replicaId, WideString(u"rep"));
}

TEST_F(SimpleHost, EmptyUsidIsNoSession) {
  Make({});
  sink_->SetUsid(u"S1");
  sink_->SetUsid(u"");
  EXPECT_FALSE(Session().open);
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUsid), u"(null)");
}

TEST_F(SimpleHost, ClearSessionForgetsAllOfIt) {
  Make({u"joe", nullptr, nullptr, u"held"});
  sink_->SetUsid(u"S1");
  sink_->SetUserName(u"joe");
  EXPECT_EQ(sink_->ClearSession(), S_OK);
  EXPECT_FALSE(Session().open);
  EXPECT_TRUE(Session().usid.IsNull());
  EXPECT_TRUE(Session().userName.IsNull());
}

TEST_F(SimpleHost, OpenedSessionTakesThePlaceOfTheHeldOne) {
  Make({nullptr, nullptr, nullptr, u"held"});
  sink_->SetUsid(u"S1");
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUsid), u"S1");
}

TEST_F(SimpleHost, ClosedSessionIsNotOfferedAgain) {
  Make({nullptr, nullptr, nullptr, u"held"});
  sink_->ClearSession();
  EXPECT_EQ(Ask(services_.get(), &IQvClientServices::GetUsid), u"(null)");
}

TEST_F(SimpleHost, InterfacesAreOneObject) {
  Make({});
  IUnknownPtr first = As<IUnknown>(services_);
  IUnknownPtr second = As<IUnknown>(sink_);
  IUnknownPtr third = As<IUnknown>(host_);
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(first.get(), third.get());
}

TEST_F(SimpleHost, UnknownInterfaceGivesNull) {
  Make({});
  void* object = this;
  EXPECT_EQ(services_->QueryInterface(IQvServiceProvider::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(services_->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
}

TEST_F(SimpleHost, ReferencesAreCountedOverAllInterfaces) {
  services_ = CreateSimpleHost({});
  EXPECT_EQ(services_->AddRef(), 2u);
  EXPECT_EQ(services_->Release(), 1u);
}

}  // namespace
}  // namespace qv
