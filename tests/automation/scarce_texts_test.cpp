// Calls that only make texts fail with E_OUTOFMEMORY wherever memory runs out in them, and change nothing
// then.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

const std::set<std::string> kOnlyOutOfMemory{"_com_error 0x8007000E <null>"};
// A refusal keeps its code when memory ran out only in the search for the source of its record.
const std::set<std::string> kRefusedOrOutOfMemory{"_com_error 0x8007000E <null>",
                                                  "_com_error 0x80020009 <null>"};

// The codes of all runs in which an allocation was refused.
std::set<std::string> CodesWithout(Memory memory, const std::function<HRESULT()>& call) {
  auto codes = ThrownWithout(memory, [&] {
    const HRESULT code = call();
    if (Failed(code)) _com_raise_error(code);
  });
  ClearErrorInfo();
  return codes;
}

void ExpectOnlyOutOfMemory(const std::function<HRESULT()>& call) {
  EXPECT_EQ(CodesWithout(Memory::kBoth, call), kOnlyOutOfMemory);
}

TEST(ScarceTexts, ServerNameAndProxy) {
  FillFormaters();
  const auto raw = As<IConnectionModelRaw>(CreateConnectionModel());
  const WideString server(u"http://server.example:8080/some/long/path");
  const WideString proxy(u"proxy.example:3128");
  ASSERT_EQ(raw->SetServer(server, proxy), S_OK);
  ExpectOnlyOutOfMemory([&] { return raw->SetServer(server, proxy); });
  EXPECT_EQ(raw->SetServer(server, proxy), S_OK);
}

TEST(ScarceTexts, RefusedServerName) {
  FillFormaters();
  const auto raw = As<IConnectionModelRaw>(CreateConnectionModel());
  const WideString server(u"a server name without a scheme");
  const WideString none(u"");
  EXPECT_EQ(CodesWithout(Memory::kBoth, [&] { return raw->SetServer(server, none); }), kRefusedOrOutOfMemory);
  EXPECT_EQ(raw->SetServer(server, u""), DISP_E_EXCEPTION);
  ClearErrorInfo();
}

TEST(ScarceTexts, ConnectionStringIsWritten) {
  const IConnectionStringPtr fields = CreateConnectionString();
  ASSERT_EQ(fields->put_UserName(u"joe"), S_OK);
  WideString text;
  ExpectOnlyOutOfMemory([&] { return fields->ToString(&text); });
  // One call of each round succeeded, when nothing was refused any more.
  EXPECT_EQ(text, WideString(u"DbReplicationId=;Username=joe;Password=;"
                             u"DbReplicationId=;Username=joe;Password=;"));
}

TEST(ScarceTexts, ConnectionStringIsRead) {
  const IConnectionStringPtr fields = CreateConnectionString();
  const auto raw = As<IConnectionStringRaw>(fields);
  const WideString text(u"Username=joe;Password=secret;DbReplicationId=r;");
  ExpectOnlyOutOfMemory([&] { return raw->Initialize(text); });
  WideString password;
  EXPECT_EQ(fields->get_UserPassword(&password), S_OK);
  EXPECT_EQ(password, WideString(u"secret"));
}

TEST(ScarceTexts, Url) {
  const IUrlPtr url = CreateUrl();
  for (const WideString& text :
       {WideString(u"http://server.example:8080/path"), WideString(u"http:\\\\server.example/path")})
    ExpectOnlyOutOfMemory([&] { return url->put_Url(text); });
}

TEST(ScarceTexts, Duration) {
  const IDurationPtr duration = CreateDuration();
  const auto raw = As<IDurationRaw>(duration);
  const WideString text(u"-P12Y11M10DT9H8M7.5S");
  ExpectOnlyOutOfMemory([&] { return raw->SetText(text); });
  WideString written;
  ExpectOnlyOutOfMemory([&] { return raw->GetText(&written); });
  EXPECT_EQ(written, text);
  EXPECT_EQ(CodesWithout(Memory::kTexts, [&] { return duration->put_Hour(-1); }), kRefusedOrOutOfMemory);
  EXPECT_EQ(duration->put_Hour(-1), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "Invalid duration format: hour can't be negative.");
}

TEST(ScarceTexts, TypeName) {
  const IParameterPtr parameter = CreateParameter();
  ASSERT_EQ(parameter->SetValues(u"key", Variant::FromBool(true)), S_OK);
  WideString name;
  ExpectOnlyOutOfMemory([&] { return parameter->get_ParamTypeAsString(&name); });
  EXPECT_EQ(name, WideString(u"boolean"));
}

}  // namespace
}  // namespace qv
