// How the failures of real objects reach a host that calls by id: each kind of exception, through members of
// each kind of result. Then whole uses by name.
#include <gtest/gtest.h>

#include "automation/late_call.h"
#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/soap_texts.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

class DispatchFailures : public testing::Test {
 protected:
  DispatchFailures() { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  // The failure has this message, no source, and the code that the call returned.
  static void ExpectFailure(LateCall call, const char* code, const char* message, const char* result) {
    EXPECT_EQ(call.Code(), code);
    EXPECT_EQ(ShownCode(call.failure.scode), code);
    EXPECT_EQ(Shown(call.failure.bstrDescription), message);
    EXPECT_TRUE(call.failure.bstrSource.IsEmpty());
    EXPECT_TRUE(call.failure.bstrHelpFile.IsEmpty());
    EXPECT_EQ(call.failure.dwHelpContext, 0U);
    EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
    EXPECT_EQ(call.failure.wCode, 11);
    EXPECT_EQ(call.index, kUntouchedIndex);
    EXPECT_EQ(ShownValue(call.result), result);
    EXPECT_EQ(TakenWords(), "no record");
  }
};

// The parameter list.

class DispatchListFailures : public DispatchFailures {
 protected:
  DispatchListFailures() {
    for (const char16_t* key : {u"a", u"b", u"c"}) EXPECT_EQ(list_->Add(key, I2(1), nullptr), S_OK);
    LeaveStaleRecord();
  }
  LateCall Find(const Variant& index) { return LateCall(list_.get(), 3).With({index}); }
  LateCall Remove(const Variant& index) { return LateCall(list_.get(), 2).With({index}); }

  const IParametersPtr list_ = CreateParameters();
};

TEST_F(DispatchListFailures, FindOutsideTheListIsAnExceptionWithANullObject) {
  constexpr char kNotFound[] = "Cannot find parameter in the current index.";
  ExpectFailure(Find(I2(100)), "0x80020009", "The index is out of range.", "VT_DISPATCH null");
  ExpectFailure(Find(I4(3)), "0x80020009", kNotFound, "VT_DISPATCH null");
  ExpectFailure(Find(Text(u"-1")), "0x80020009", kNotFound, "VT_DISPATCH null");
}

TEST_F(DispatchListFailures, RemoveIsAnExceptionWithoutResult) {
  ExpectFailure(Remove(I2(4)), "0x80020009", "The index is out of range.", "VT_EMPTY");
  ExpectFailure(Remove(I2(3)), "0x80020009", "Cannot remove parameter.", "VT_EMPTY");
  EXPECT_EQ(list_->Clear(), S_OK);
  ExpectFailure(Remove(I2(0)), "0x80020009", "The are no parameters.", "VT_EMPTY");
}

TEST_F(DispatchListFailures, MessageWaitsForAHostWithoutFailureParameter) {
  LateCall call = Find(I2(100));
  EXPECT_EQ(call.Run(&call.result, nullptr, nullptr), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "The index is out of range.");
}

// The block is made in place, since such a value cannot be copied.
TEST_F(DispatchListFailures, ValueThatCannotBeCopiedBringsTheCodeOfTheCopy) {
  LateCall call(list_.get(), 1);
  std::vector<Variant> block(2);
  block[0] = Variant::FromRaw(0x0FFF, VariantData());
  block[1] = Text(u"k");
  DISPPARAMS arguments;
  arguments.rgvarg = block.data();
  arguments.cArgs = 2;
  EXPECT_EQ(ShownCode(list_->Invoke(1, Guid{}, 0, 1, &arguments, &call.result, &call.failure, nullptr)),
            "0x80020008");
  EXPECT_EQ(ShownCode(call.failure.scode), "0x80020008");
  EXPECT_EQ(Shown(call.failure.bstrDescription), "Unknown Error");
  EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH null");
  std::int16_t size = 0;
  EXPECT_EQ(list_->Size(&size), S_OK);
  EXPECT_EQ(size, 3);
}

// Durations and links.

TEST_F(DispatchFailures, NegativeCountIsAnExceptionWithAMessage) {
  struct {
    DISPID id;
    Variant value;
    const char* message;
    const char* kept = "VT_I2 0";
  } const rows[] = {{3, I2(-1), "Invalid duration format: day can't be negative."},
                    {4, I4(-2), "Invalid duration format: month can't be negative."},
                    {5, Text(u"-3"), "Invalid duration format: year can't be negative."},
                    {6, I2(-4), "Invalid duration format: hour can't be negative."},
                    {7, I2(-5), "Invalid duration format: minutes can't be negative."},
                    {8, R8(-0.5), "Invalid duration format: seconds can't be negative.", "VT_R8 0"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.message);
    const IDurationPtr span = CreateDuration();
    LeaveStaleRecord();
    LateCall write(span.get(), row.id, DISPATCH_PROPERTYPUT);
    ExpectFailure(write.With({row.value}), "0x80020009", row.message, "VT_EMPTY");
    LateCall read(span.get(), row.id, DISPATCH_PROPERTYGET);
    EXPECT_EQ(read.Code(), "0x00000000");
    EXPECT_EQ(ShownValue(read.result), row.kept);
  }
}

TEST_F(DispatchFailures, TextThatIsNotALinkIsAnExceptionWithAMessage) {
  const IUrlPtr link = CreateUrl();
  LateCall call(link.get(), 3, DISPATCH_PROPERTYPUT);
  ExpectFailure(call.With({Text(u"nowhere")}), "0x80020009",
                "Cannot parse url, expecting 'http://' after protocol name.", "VT_EMPTY");
}

// The model.

class DispatchModelFailures : public DispatchFailures {
 protected:
  DispatchModelFailures() {
    FillFormaters();
    const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model_);
    EXPECT_EQ(raw->SetServer(u"http://srv", u""), S_OK);
    EXPECT_EQ(raw->SetClientServices(host_->Unknown()), S_OK);
    LeaveStaleRecord();
  }
  void AdoptSession() { EXPECT_EQ(model_->SetUSID(u"u1"), S_OK); }
  LateCall Call(DISPID id, const std::vector<Variant>& arguments) {
    return LateCall(model_.get(), id).With(arguments);
  }
  LateCall Execute() { return Call(3, {Text(u"VBScript"), Text(u"a<b"), FromDispatch(list_.get())}); }

  FakeHttp http_;
  const FakeHostPtr host_{new FakeHost};
  const IConnectionModelPtr model_ = CreateConnectionModel();
  const IParametersPtr list_ = CreateParameters();
};

TEST_F(DispatchModelFailures, NoSessionIsAnExceptionWithAnEmptyValue) {
  for (const LateCall& call : {Execute(), Call(4, {Text(u"f"), FromDispatch(list_.get())})})
    ExpectFailure(call, "0x80020009", "Session does not exist.", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FaultBringsTheServersNumberAndMessage) {
  AdoptSession();
  http_.Answer(kFaultFive);
  ExpectFailure(Execute(), "0x80040005", "server words", "VT_EMPTY");
  http_.Answer(u"<soap:Envelope><soap:Body><soap:Fault/></soap:Body></soap:Envelope>");
  ExpectFailure(Execute(), "0x80040000", "Unknown Error", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FailingHostBringsItsCodeAndMessage) {
  host_->Fail("SetUserName", E_INVALIDARG, u"host words");
  http_.Answer(kSessionOpened);
  ExpectFailure(Call(1, {Text(u"Username=joe;")}), "0x80070057", "host words", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FailingHostWithoutMessageIsAnUnknownError) {
  host_->Fail("ClearSession", E_ACCESSDENIED);
  AdoptSession();
  http_.Answer(kSessionClosed);
  ExpectFailure(Call(2, {}), "0x80070005", "Unknown Error", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, BrokenTransferBringsTheComponentsMessage) {
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kSessionOpened);
  ExpectFailure(Call(1, {Text(u"")}), "0x80020009", "cut off", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, RefusedDownloadGivesANullText) {
  LateCall call = Call(7, {Text(u"nowhere"), Text(u"/tmp")});
  EXPECT_EQ(call.Code(), "0x80004003");
  EXPECT_EQ(ShownValue(call.result), "VT_BSTR <null>");
  EXPECT_EQ(ShownCode(call.failure.scode), "0x80004003");
}

TEST_F(DispatchModelFailures, SuccessLeavesTheFailureAlone) {
  AdoptSession();
  http_.Answer(kScriptDone);
  LateCall call = Execute();
  EXPECT_EQ(call.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(call.result), "VT_BSTR done");
  EXPECT_EQ(call.failure.scode, 14);
  EXPECT_EQ(Shown(call.failure.bstrDescription), "untouched");
}

// Whole uses by name.

TEST(DispatchUse, TicketOfAFile) {
  const IAttachedFilePtr file = CreateAttachedFile();
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL 0");
  EXPECT_EQ(ReadByName(file.get(), u"SourceFileLifeTime"), "VT_I4 1");
  EXPECT_EQ(ReadByName(file.get(), u"CleanUp"), "VT_I4 1");
  EXPECT_EQ(ReadByName(file.get(), u"get_Filename"), "VT_BSTR <null>");
  EXPECT_EQ(WriteByName(file.get(), u"TicketId", Text(u"x")), "VT_EMPTY");
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL -1");
  EXPECT_EQ(ReadByName(file.get(), u"TicketId"), "VT_BSTR x");
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL 0");
  EXPECT_EQ(WriteByName(file.get(), u"put_Filename", Text(u"a.txt")), "VT_EMPTY");
  EXPECT_EQ(ReadByName(file.get(), u"get_filename"), "VT_BSTR a.txt");
  EXPECT_EQ(CallByName(file.get(), u"Init", {Text(u"b.txt")}), "VT_EMPTY");
  EXPECT_EQ(ReadByName(file.get(), u"GET_FILENAME"), "VT_BSTR b.txt");
}

TEST(DispatchUse, CountsOfADuration) {
  const IDurationPtr span = CreateDuration();
  EXPECT_EQ(WriteByName(span.get(), u"day", Text(u"12")), "VT_EMPTY");
  EXPECT_EQ(WriteByName(span.get(), u"Sec", I2(3)), "VT_EMPTY");
  EXPECT_EQ(WriteByName(span.get(), u"Negative", I2(1)), "VT_EMPTY");
  EXPECT_EQ(ReadByName(span.get(), u"Day"), "VT_I2 12");
  EXPECT_EQ(ReadByName(span.get(), u"Sec"), "VT_R8 3");
  EXPECT_EQ(ReadByName(span.get(), u"Negative"), "VT_BOOL -1");
  EXPECT_EQ(WriteByName(span.get(), u"Day", Text(u"abc")), "0x80020005");
  EXPECT_EQ(ReadByName(span.get(), u"Day"), "VT_I2 12");
}

TEST(DispatchUse, TextOfAConnectionStringGrows) {
  const IConnectionStringPtr credentials = CreateConnectionString();
  EXPECT_EQ(WriteByName(credentials.get(), u"UserName", Text(u"u")), "VT_EMPTY");
  EXPECT_EQ(WriteByName(credentials.get(), u"UserPassword", Text(u"p")), "VT_EMPTY");
  EXPECT_EQ(WriteByName(credentials.get(), u"ReplicaID", Text(u"r")), "VT_EMPTY");
  EXPECT_EQ(ReadByName(credentials.get(), u"ToString"), "VT_BSTR DbReplicationId=r;Username=u;Password=p;");
  // Called as a method the property runs the last member.
  EXPECT_EQ(CallByName(credentials.get(), u"UserName"),
            "VT_BSTR DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
  const IConnectionStringRawPtr raw = As<IConnectionStringRaw>(credentials);
  EXPECT_EQ(CallByName(raw.get(), u"Initialize", {Text(u"Username=joe;")}), "VT_EMPTY");
  EXPECT_EQ(ReadByName(credentials.get(), u"UserName"), "VT_BSTR joe");
}

TEST(DispatchUse, ListIsFilledAndRead) {
  const IParametersPtr list = CreateParameters();
  LateCall add(list.get(), 1);
  EXPECT_EQ(add.With({Text(u"k"), I2(5)}).Code(), "0x00000000");
  ASSERT_EQ(ShownValue(add.result), "VT_DISPATCH object");
  IDispatch* parameter = DispatchOf(add.result);
  EXPECT_EQ(ReadByName(parameter, u"ParamKey"), "VT_BSTR k");
  EXPECT_EQ(ReadByName(parameter, u"ParamValue"), "VT_I2 5");
  EXPECT_EQ(ReadByName(parameter, u"ParamTypeAsString"), "VT_BSTR short");
  EXPECT_EQ(ReadByName(list.get(), u"Size"), "VT_I2 1");
  LateCall find(list.get(), 3);
  EXPECT_EQ(find.With({I2(0)}).Code(), "0x00000000");
  EXPECT_EQ(DispatchOf(find.result), parameter);
  LateCall three(list.get(), 1);
  EXPECT_EQ(three.With({Text(u"k"), I2(5), I2(6)}).Code(), "0x8002000E");
  EXPECT_EQ(ShownValue(three.result), "VT_EMPTY");
  EXPECT_EQ(CallByName(list.get(), u"Clear"), "VT_EMPTY");
  EXPECT_EQ(ReadByName(list.get(), u"Size"), "VT_I2 0");
  EXPECT_EQ(ReadByName(parameter, u"ParamKey"), "VT_BSTR k");
}

TEST(DispatchUse, ObjectUnderDispatchIsStoredUnderUnknown) {
  const IDurationPtr span = CreateDuration();
  const IParameterPtr parameter = CreateParameter();
  EXPECT_EQ(CallByName(parameter.get(), u"SetValues", {Text(u"k"), FromDispatch(span.get())}), "VT_EMPTY");
  EXPECT_EQ(ReadByName(parameter.get(), u"ParamValue"), "VT_UNKNOWN object");
  EXPECT_EQ(ReadByName(parameter.get(), u"ParamTypeAsString"), "VT_BSTR duration");
}

// Otherwise a host would throw the message of another call.
TEST(DispatchRecord, RefusalsClearTheRecordOfAnEarlierFailure) {
  const IParametersPtr list = CreateParameters();
  const DISPPARAMS none;
  LeaveStaleRecord();
  EXPECT_EQ(list->Invoke(99, Guid{}, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(list->Invoke(4, Guid{}, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            DISP_E_BADVARTYPE);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  const char16_t* const name = u"NoSuchMember";
  DISPID id = 0;
  EXPECT_EQ(list->GetIDsOfNames(Guid{}, &name, 1, 0, &id), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(TakenWords(), "no record");
}

}  // namespace
}  // namespace qv
