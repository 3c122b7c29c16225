// The client when memory runs out: the one failure of reading the model that does not come from elsewhere.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "fixtures/known_failures.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/simple_host.h"
#include "session/qv_scriptwells_impl.h"

namespace qv {
namespace {

constexpr char16_t kMessage[] = u"Cannot create ConnectionModel object.";

// The first allocation is refused, and no other.
HRESULT WithoutOneBlock(const std::function<HRESULT()>& call) {
  const ScarceMemory scarce(Memory::kObjects, 0, Refusal::kOne);
  return call();
}

TEST(ScarceClient, ModelThatCannotBeMadeIsAnExceptionWithAMessage) {
  QvScriptwellsImpl client;
  client.put_ServerName(u"http://srv");
  EXPECT_EQ(Thrown([&] {
              const ScarceMemory scarce(Memory::kObjects, 0, Refusal::kOne);
              client.get_ConnectionModel();
            }),
            Refused(ToUtf8(kMessage)));
  EXPECT_TRUE(ScarceMemory::HasRefused());
  // The next read is one as before Init.
  EXPECT_EQ(Thrown([&] { client.get_ConnectionModel(); }), kNoPointer);
}

TEST(ScarceClient, ModelThatCannotBeMadeReachesTheHostAsAnException) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  IConnectionModel* model = nullptr;
  EXPECT_EQ(WithoutOneBlock([&] { return client->ConnectionModel(&model); }), DISP_E_EXCEPTION);
  ErrorInfo record;
  ASSERT_TRUE(GetErrorInfo(&record));
  EXPECT_EQ(record.description, WideString(kMessage));
}

TEST(ScarceClient, ValueThatCannotBeMadeIsUnexpectedAndLeavesNoRecord) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  IUrl* url = nullptr;
  EXPECT_EQ(WithoutOneBlock([&] { return client->Url(&url); }), E_UNEXPECTED);
  ErrorInfo record;
  EXPECT_FALSE(GetErrorInfo(&record));
}

// Results of the host's services are not looked at, so the ready-made ones must not need memory to answer.
TEST(ScarceClient, ConnectionStringHasItsUserOrFails) {
  const IQvClientServicesPtr services = CreateSimpleHost({u"joe", nullptr, u"replica", nullptr});
  const IQvServiceProviderPtr provider = CreateSimpleServiceProvider(services.get());
  const IQvScriptwellsPtr client = CreateQvScriptwells(u"http://srv", u"", provider.get());
  const auto read = [&] {
    IConnectionStringPtr fields;
    const HRESULT code = client->ConnectionString(Put(fields));
    if (Failed(code)) _com_raise_error(code);
    WideString user;
    WideString replica;
    ThrowIfFailed(fields->get_UserName(&user));
    ThrowIfFailed(fields->get_ReplicaID(&replica));
    if (user.view() != u"joe" || replica.view() != u"replica") throw EQvException(user);
  };
  EXPECT_EQ(ThrownWithout(Memory::kTexts, read), std::set<std::string>{"_com_error 0x8007000E <null>"});
  ClearErrorInfo();
}

// The same by id: the message of the host's record stays, and the result is a null object.
TEST(ScarceClient, UnexpectedFailureKeepsTheMessageOfTheHostsRecord) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  for (DISPID id = 2; id <= 6; ++id) {
    DISPPARAMS none;
    Variant result = Variant::FromBool(true);
    EXCEPINFO failure;
    failure.bstrDescription = u"untouched";
    const HRESULT code = WithoutOneBlock(
        [&] { return client->Invoke(id, Guid{}, 0, DISPATCH_METHOD, &none, &result, &failure, nullptr); });
    EXPECT_EQ(code, E_UNEXPECTED) << id;
    EXPECT_EQ(failure.scode, E_UNEXPECTED);
    EXPECT_EQ(failure.bstrDescription, WideString(u"untouched"));
    EXPECT_EQ(result.Tag(), VT_DISPATCH);
    EXPECT_EQ(result.Object(), nullptr);
  }
}

TEST(ScarceClient, ListThatCannotGrowIsUnexpected) {
  const IParametersPtr list = CreateParameters();
  const Variant block[] = {Variant::FromShort(1), Variant::FromString(u"k")};
  DISPPARAMS arguments;
  arguments.rgvarg = block;
  arguments.cArgs = 2;
  Variant result;
  EXCEPINFO failure;
  const HRESULT code = WithoutOneBlock(
      [&] { return list->Invoke(1, Guid{}, 0, DISPATCH_METHOD, &arguments, &result, &failure, nullptr); });
  EXPECT_EQ(code, E_UNEXPECTED);
  EXPECT_EQ(failure.scode, E_UNEXPECTED);
  EXPECT_EQ(result.Tag(), VT_DISPATCH);
  EXPECT_EQ(result.Object(), nullptr);
  std::int16_t size = 7;
  EXPECT_EQ(list->Size(&size), S_OK);
  EXPECT_EQ(size, 0);
}

}  // namespace
}  // namespace qv
