// A whole session through names and ids alone, against the development service.
#include <algorithm>
#include <string>
#include <vector>

#include "client_fixture.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

constexpr Guid kClientServiceRaw = ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");

struct Outcome {
  HRESULT code = S_OK;
  Variant result;
  EXCEPINFO failure;
  std::uint32_t argument = 99;
};

Outcome Call(IDispatch* object, const char16_t* name, std::vector<Variant> arguments = {},
             std::uint16_t flags = DISPATCH_METHOD) {
  Outcome outcome;
  DISPID id = DISPID_UNKNOWN;
  outcome.code = object->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
  if (Failed(outcome.code)) return outcome;
  std::reverse(arguments.begin(), arguments.end());
  DISPPARAMS given;
  given.rgvarg = arguments.data();
  given.cArgs = static_cast<std::uint32_t>(arguments.size());
  outcome.code =
      object->Invoke(id, Guid{}, 0, flags, &given, &outcome.result, &outcome.failure, &outcome.argument);
  return outcome;
}

Variant Text(const char16_t* text) {
  return Variant::FromString(text);
}

class LateBinding : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    client_ = CreateQvScriptwells();
    const Variant provider = Variant::FromObject(CreateSimpleServiceProvider(host_.get()).get());
    ASSERT_EQ(Does(As<IDispatch>(client_, kClientServiceRaw), u"init", {provider}), S_OK);
    const Variant server = Variant::FromString(FromUtf8(service_->Url()));
    ASSERT_EQ(Does(client_, u"ServerName", {server}, DISPATCH_PROPERTYPUT), S_OK);
    late_ = Made(u"ConnectionModel");
    ASSERT_NE(late_, nullptr);
    FillFormaters();  // another test of this process may have ended a model
  }
  void TearDown() override {
    late_.reset();
    client_.reset();
    ClientTest::TearDown();
  }

  // The code of a call that has nothing else to look at.
  static HRESULT Does(const IDispatchPtr& object, const char16_t* name, std::vector<Variant> arguments = {},
                      std::uint16_t flags = DISPATCH_METHOD) {
    return Call(object.get(), name, std::move(arguments), flags).code;
  }
  IDispatchPtr Made(const char16_t* member) {
    const Outcome outcome = Call(client_.get(), member);
    EXPECT_EQ(outcome.code, S_OK) << ToUtf8(member);
    return IDispatchPtr(DispatchOf(outcome.result));
  }
  Outcome Execute(const char16_t* script, const IDispatchPtr& parameters) {
    return Call(late_.get(), u"execute", {Text(u"JavaScript"), Text(script), FromDispatch(parameters.get())});
  }
  void Open() {
    ASSERT_EQ(Does(late_, u"CreateUserSession", {Text(u"Username=joe;Password=secret;")}), S_OK);
  }

  IDispatchPtr client_;
  IDispatchPtr late_;
};

TEST_F(LateBinding, SessionScriptAndClose) {
  Open();
  EXPECT_EQ(HostKnows().substr(0, 5), "open ");
  const IDispatchPtr parameters = Made(u"Parameters");
  EXPECT_EQ(Call(parameters.get(), u"ADD", {Text(u"a"), Variant::FromInt(2)}).result.Tag(), VT_DISPATCH);
  Call(parameters.get(), u"Add", {Text(u"b"), Variant::FromInt(40)});
  EXPECT_EQ(ShownValue(Execute(u"parameters.a + parameters.b", parameters).result), "VT_INT 42");
  EXPECT_EQ(Does(late_, u"CloseUserSession"), S_OK);
  EXPECT_EQ(HostKnows().substr(0, 7), "closed ");
}

TEST_F(LateBinding, ServerFaultArrivesInTheExceptionRecord) {
  Open();
  const Outcome outcome = Execute(u"throw new Error('no such customer')", Made(u"Parameters"));
  EXPECT_LT(outcome.code, 0);
  EXPECT_EQ(outcome.failure.scode, outcome.code);
  EXPECT_NE(ToUtf8(outcome.failure.bstrDescription).find("no such customer"), std::string::npos);
  EXPECT_EQ(outcome.result.Tag(), VT_EMPTY);
}

TEST_F(LateBinding, ScriptWithoutSessionHasItsWords) {
  const Outcome outcome = Execute(u"1", Made(u"Parameters"));
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(ToUtf8(outcome.failure.bstrDescription), "Session does not exist.");
}

TEST_F(LateBinding, NullParametersAreAMismatchOfTheLastArgument) {
  Open();
  const Outcome outcome =
      Call(late_.get(), u"Execute", {Text(u"JavaScript"), Text(u"1"), FromDispatch(nullptr)});
  EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(outcome.argument, 0U);
}

TEST_F(LateBinding, DurationGoesAndComesBack) {
  Open();
  const IDispatchPtr span = Made(u"Duration");
  EXPECT_EQ(Does(span, u"Day", {Text(u"12")}, DISPATCH_PROPERTYPUT), S_OK);
  const IDispatchPtr parameters = Made(u"Parameters");
  Call(parameters.get(), u"Add", {Text(u"span"), FromDispatch(span.get())});
  const Outcome outcome = Execute(u"parameters.span", parameters);
  ASSERT_EQ(outcome.result.Tag(), VT_UNKNOWN);
  const IDispatchPtr answer = As<IDispatch>(outcome.result.Object());
  EXPECT_EQ(ShownValue(Call(answer.get(), u"get_Day", {}, DISPATCH_PROPERTYGET).result), "VT_I2 12");
}

TEST_F(LateBinding, TableArrivesAsAnObject) {
  Open();
  const Outcome outcome = Execute(u"[{a: 1}]", Made(u"Parameters"));
  ASSERT_EQ(outcome.result.Tag(), VT_UNKNOWN);
  const IUnknownPtr table = As<IUnknown>(outcome.result.Object(), IRecordList::kIid);
  EXPECT_NE(table, nullptr);
}

TEST_F(LateBinding, UnreachableServerHasItsWords) {
  Call(client_.get(), u"ServerName", {Text(u"http://127.0.0.1:1")}, DISPATCH_PROPERTYPUT);
  late_ = Made(u"ConnectionModel");
  const Outcome outcome = Call(late_.get(), u"CreateUserSession", {Text(u"Username=joe;")});
  EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
  EXPECT_EQ(ToUtf8(outcome.failure.bstrDescription), "Cannot create a soap call.");
}

// What a host can hold, released in every order: nothing leaks and nothing is used after its end.
TEST_F(LateBinding, ObjectsMayEndInAnyOrder) {
  Open();
  std::vector<int> order = {0, 1, 2, 3, 4};
  do {
    const IDispatchPtr list = Made(u"Parameters");
    const Outcome added = Call(list.get(), u"Add", {Text(u"a"), FromDispatch(Made(u"Duration").get())});
    std::vector<IDispatchPtr> held = {list, IDispatchPtr(DispatchOf(added.result)), Made(u"ConnectionModel"),
                                      Made(u"ConnectionString"), Made(u"AttachedFile")};
    for (const int place : order) held[static_cast<std::size_t>(place)].reset();
  } while (std::next_permutation(order.begin(), order.end()));
  EXPECT_EQ(ShownValue(Execute(u"'alive'", Made(u"Parameters")).result), "VT_BSTR alive");
}

TEST_F(LateBinding, ModelOutlivesItsClient) {
  Open();
  const IDispatchPtr parameters = Made(u"Parameters");
  client_.reset();
  EXPECT_EQ(ShownValue(Execute(u"'alive'", parameters).result), "VT_BSTR alive");
  EXPECT_EQ(Does(late_, u"CloseUserSession"), S_OK);
}

}  // namespace
}  // namespace qv
