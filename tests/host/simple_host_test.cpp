// The ready-made host services: a fixed user, and a record of the session.
#include "qvscriptwells/simple_host.h"

#include <gtest/gtest.h>

#include "fixtures/scarce_memory.h"
#include "fixtures/shown_text.h"
#include "qvscriptwells/com_call.h"

namespace qv {
namespace {

using Getter = HRESULT (IQvClientServices::*)(BStr*) noexcept;

class SimpleHost : public ::testing::Test {
 protected:
  void Make(const SimpleHostUser& user) {
    services_ = CreateSimpleHost(user);
    sink_ = As<IQvClientServicesSink>(services_);
    host_ = As<ISimpleHost>(services_);
    ASSERT_TRUE(sink_);
    ASSERT_TRUE(host_);
  }
  // What a caller reads: the in/out text of 256 zero units, up to the first null unit; null for no value.
  WideString Ask(Getter getter) {
    BStr text = AllocString(nullptr, 256);
    EXPECT_EQ((services_.get()->*getter)(&text), S_OK);
    WideString answer(static_cast<const char16_t*>(text));
    FreeString(text);
    return answer;
  }
  WideString UserName() { return Ask(&IQvClientServices::GetUserName); }
  std::string Usid() { return Shown(Ask(&IQvClientServices::GetUsid)); }
  std::string AllTexts() {
    return Shown(UserName()) + " " + Shown(Ask(&IQvClientServices::GetDatabaseId)) + " " +
           Shown(Ask(&IQvClientServices::GetReplicaId)) + " " + Usid();
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

TEST_F(SimpleHost, TextsOfTheUserAreReturned) {
  Make({u"joe", u"db-1", u"replica-2", u"usid-3"});
  EXPECT_EQ(AllTexts(), "joe db-1 replica-2 usid-3");
  Make({});
  EXPECT_EQ(AllTexts(), "<null> <null> <null> <null>");
  Make({u"", nullptr, nullptr, nullptr});
  EXPECT_EQ(AllTexts(), " <null> <null> <null>");
}

TEST_F(SimpleHost, TextThatFitsIsWrittenIntoTheCallersBlock) {
  const std::u16string longest(256, u'x');
  Make({WideString(longest), nullptr, u"replica", nullptr});
  BStr text = AllocString(nullptr, 256);
  char16_t* const block = text;
  EXPECT_EQ(services_->GetUserName(&text), S_OK);
  EXPECT_EQ(std::u16string(text), longest);
  EXPECT_EQ(services_->GetReplicaId(&text), S_OK);
  EXPECT_EQ(std::u16string(text), u"replica");
  EXPECT_EQ(text, block);
  FreeString(text);
}

TEST_F(SimpleHost, LongerTextReplacesTheBlock) {
  for (const std::size_t length : {257U, 300U}) {
    const std::u16string longer(length, u'x');
    Make({WideString(longer), nullptr, nullptr, nullptr});
    EXPECT_TRUE(UserName().view() == longer);
  }
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

TEST_F(SimpleHost, NullOutputParametersAreRefused) {
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

TEST_F(SimpleHost, SinkKeepsTheSession) {
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
  EXPECT_EQ(Usid(), "<null>");
}

TEST_F(SimpleHost, OpenedSessionReplacesTheHeldOneUntilItIsCleared) {
  Make({u"joe", nullptr, nullptr, u"held"});
  sink_->SetUsid(u"S1");
  sink_->SetUserName(u"joe");
  EXPECT_EQ(Usid(), "S1");
  EXPECT_EQ(sink_->ClearSession(), S_OK);
  EXPECT_FALSE(Session().open);
  EXPECT_TRUE(Session().usid.IsNull());
  EXPECT_TRUE(Session().userName.IsNull());
  EXPECT_EQ(Usid(), "<null>");
}

TEST_F(SimpleHost, InterfacesAreOneCountedObject) {
  Make({});
  const IUnknownPtr first = As<IUnknown>(services_);
  EXPECT_EQ(first, As<IUnknown>(sink_));
  EXPECT_EQ(first, As<IUnknown>(host_));
  void* object = this;
  EXPECT_EQ(services_->QueryInterface(IQvServiceProvider::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(services_->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
  const IQvClientServicesPtr other = CreateSimpleHost({});
  EXPECT_EQ(other->AddRef(), 2U);
  EXPECT_EQ(other->Release(), 1U);
}

}  // namespace
}  // namespace qv
