// How the failures of real objects reach a host that calls by id: each kind of exception, through members of
// each kind of result.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/late_call.h"
#include "automation/waiting_record.h"
#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "session/session_answers.h"

namespace qv {
namespace {

class DispatchFailures : public testing::Test {
 protected:
  DispatchFailures() { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  // The failure has these words, no source, and the code that the call returned.
  void ExpectFailure(LateCall& call, const char* code, const char* words, const char* result) {
    EXPECT_EQ(call.Code(), code);
    EXPECT_EQ(ShownCode(call.failure.scode), code);
    EXPECT_EQ(Shown(call.failure.bstrDescription), words);
    EXPECT_TRUE(call.failure.bstrSource.IsEmpty());
    EXPECT_TRUE(call.failure.bstrHelpFile.IsEmpty());
    EXPECT_EQ(call.failure.dwHelpContext, 0u);
    EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
    EXPECT_EQ(call.failure.wCode, 11);
    EXPECT_EQ(call.index, kUntouchedIndex);
    EXPECT_EQ(ShownValue(call.result), result);
    EXPECT_EQ(TakenWords(), "no record");
  }
};

// The parameter list.

IParametersPtr ListOfThree() {
  const IParametersPtr list = CreateParameters();
  for (const char16_t* key : {u"a", u"b", u"c"}) EXPECT_EQ(list->Add(key, I2(1), nullptr), S_OK);
  LeaveStaleRecord();
  return list;
}

TEST_F(DispatchFailures, FindBeyondTheListIsAnExceptionWithANullObject) {
  const IParametersPtr list = ListOfThree();
  LateCall beyond(list.get(), 3);
  ExpectFailure(beyond.With({I2(100)}), "0x80020009", "The index is out of range.", "VT_DISPATCH null");
  LateCall at(list.get(), 3);
  ExpectFailure(at.With({I4(3)}), "0x80020009", "Cannot find parameter in the current index.",
                "VT_DISPATCH null");
  LateCall before(list.get(), 3);
  ExpectFailure(before.With({Text(u"-1")}), "0x80020009", "Cannot find parameter in the current index.",
                "VT_DISPATCH null");
}

TEST_F(DispatchFailures, RemoveIsAnExceptionWithoutResult) {
  const IParametersPtr list = ListOfThree();
  LateCall beyond(list.get(), 2);
  ExpectFailure(beyond.With({I2(4)}), "0x80020009", "The index is out of range.", "VT_EMPTY");
  LateCall at(list.get(), 2);
  ExpectFailure(at.With({I2(3)}), "0x80020009", "Cannot remove parameter.", "VT_EMPTY");
  const IParametersPtr none = CreateParameters();
  LateCall empty(none.get(), 2);
  ExpectFailure(empty.With({I2(0)}), "0x80020009", "The are no parameters.", "VT_EMPTY");
}

TEST_F(DispatchFailures, WordsWaitForAHostWithoutPlaceForThem) {
  const IParametersPtr list = ListOfThree();
  LateCall call(list.get(), 3);
  EXPECT_EQ(call.With({I2(100)}).Run(&call.result, nullptr, nullptr), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "The index is out of range.");
}

TEST_F(DispatchFailures, ValueThatCannotBeCopiedBringsTheCodeOfTheCopy) {
  const IParametersPtr list = ListOfThree();
  LateCall call(list.get(), 1);
  VariantData unknown;
  std::vector<Variant> block(2);
  block[0] = Variant::FromRaw(0x0FFF, unknown);
  block[1] = Text(u"k");
  DISPPARAMS arguments;
  arguments.rgvarg = block.data();
  arguments.cArgs = 2;
  EXPECT_EQ(ShownCode(list->Invoke(1, Guid{}, 0, 1, &arguments, &call.result, &call.failure, nullptr)),
            "0x80020008");
  EXPECT_EQ(ShownCode(call.failure.scode), "0x80020008");
  EXPECT_EQ(Shown(call.failure.bstrDescription), "Unknown Error");
  EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH null");
  std::int16_t size = 0;
  EXPECT_EQ(list->Size(&size), S_OK);
  EXPECT_EQ(size, 3);
}

// Durations and links.

struct Refusal {
  const char* name;
  DISPID id;
  Variant value;
  const char* words;
};
void PrintTo(const Refusal& row, std::ostream* out) {
  *out << row.name;
}
class RefusedCount : public DispatchFailures, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedCount, IsAnExceptionWithWords) {
  const IDurationPtr span = CreateDuration();
  LateCall call(span.get(), GetParam().id, DISPATCH_PROPERTYPUT);
  ExpectFailure(call.With({GetParam().value}), "0x80020009", GetParam().words, "VT_EMPTY");
  LateCall read(span.get(), GetParam().id, DISPATCH_PROPERTYGET);
  EXPECT_EQ(read.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(read.result), GetParam().id == 8 ? "VT_R8 0" : "VT_I2 0");
}

INSTANTIATE_TEST_SUITE_P(
    Units, RefusedCount,
    testing::Values(Refusal{"Day", 3, I2(-1), "Invalid duration format: day can't be negative."},
                    Refusal{"Month", 4, I4(-2), "Invalid duration format: month can't be negative."},
                    Refusal{"Year", 5, Text(u"-3"), "Invalid duration format: year can't be negative."},
                    Refusal{"Hour", 6, I2(-4), "Invalid duration format: hour can't be negative."},
                    Refusal{"Min", 7, I2(-5), "Invalid duration format: minutes can't be negative."},
                    Refusal{"Sec", 8, R8(-0.5), "Invalid duration format: seconds can't be negative."}),
    [](const testing::TestParamInfo<Refusal>& row) { return std::string(row.param.name); });

TEST_F(DispatchFailures, LinkThatIsNoneIsAnExceptionWithWords) {
  const IUrlPtr link = CreateUrl();
  LateCall call(link.get(), 3, DISPATCH_PROPERTYPUT);
  ExpectFailure(call.With({Text(u"nowhere")}), "0x80020009",
                "Cannot parse url, expecting 'http://' after protocol name.", "VT_EMPTY");
}

// The model.

class DispatchModelFailures : public DispatchFailures {
 protected:
  DispatchModelFailures() : host_(new FakeHost), model_(CreateConnectionModel()), list_(CreateParameters()) {
    EnsureFormaters();
    const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model_);
    EXPECT_EQ(raw->SetServer(u"http://srv", u""), S_OK);
    EXPECT_EQ(raw->SetClientServices(host_->Unknown()), S_OK);
    LeaveStaleRecord();
  }
  void AdoptSession() { EXPECT_EQ(model_->SetUSID(u"u1"), S_OK); }
  LateCall Execute() {
    LateCall call(model_.get(), 3);
    call.With({Text(u"VBScript"), Text(u"a<b"), FromDispatch(list_.get())});
    return call;
  }

  FakeHttp http_;
  FakeHostPtr host_;
  IConnectionModelPtr model_;
  IParametersPtr list_;
};

TEST_F(DispatchModelFailures, NoSessionIsAnExceptionWithAnEmptyValue) {
  LateCall script = Execute();
  ExpectFailure(script, "0x80020009", "Session does not exist.", "VT_EMPTY");
  LateCall file(model_.get(), 4);
  ExpectFailure(file.With({Text(u"f"), FromDispatch(list_.get())}), "0x80020009", "Session does not exist.",
                "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FaultBringsTheServersNumberAndWords) {
  AdoptSession();
  http_.Answer(kFaultFive);
  LateCall call = Execute();
  ExpectFailure(call, "0x80040005", "server words", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FaultWithoutWordsIsAnUnknownError) {
  AdoptSession();
  http_.Answer(u"<soap:Envelope><soap:Body><soap:Fault/></soap:Body></soap:Envelope>");
  LateCall call = Execute();
  ExpectFailure(call, "0x80040000", "Unknown Error", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FailingHostBringsItsCodeAndWords) {
  host_->Fail("SetUserName", E_INVALIDARG, u"host words");
  http_.Answer(kSessionOpened);
  LateCall call(model_.get(), 1);
  ExpectFailure(call.With({Text(u"Username=joe;")}), "0x80070057", "host words", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, FailingHostWithoutWordsIsAnUnknownError) {
  host_->Fail("ClearSession", E_ACCESSDENIED);
  AdoptSession();
  http_.Answer(kSessionClosed);
  LateCall call(model_.get(), 2);
  ExpectFailure(call, "0x80070005", "Unknown Error", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, BrokenTransferBringsTheComponentsWords) {
  http_.Fail(HttpStep::kRead, E_FAIL, u"cut off");
  http_.Answer(kSessionOpened);
  LateCall call(model_.get(), 1);
  ExpectFailure(call.With({Text(u"")}), "0x80020009", "cut off", "VT_EMPTY");
}

TEST_F(DispatchModelFailures, RefusedDownloadGivesANullText) {
  LateCall call(model_.get(), 7);
  EXPECT_EQ(call.With({Text(u"nowhere"), Text(u"/tmp")}).Code(), "0x80004003");
  EXPECT_EQ(ShownValue(call.result), "VT_BSTR <null>");
  EXPECT_EQ(ShownCode(call.failure.scode), "0x80004003");
}

TEST_F(DispatchModelFailures, SuccessLeavesNoWordsBehind) {
  AdoptSession();
  http_.Answer(kScriptRan);
  LateCall call = Execute();
  EXPECT_EQ(call.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(call.result), "VT_BSTR done");
  EXPECT_EQ(call.failure.scode, 14);
  EXPECT_EQ(Shown(call.failure.bstrDescription), "untouched");
}

// Whole uses by name.

std::string ReadByName(IDispatch* object, const char16_t* name) {
  LateCall call(object, IdOf(object, name), DISPATCH_PROPERTYGET);
  const std::string code = call.Code();
  return code == "0x00000000" ? ShownValue(call.result) : code;
}
std::string WriteByName(IDispatch* object, const char16_t* name, const Variant& value) {
  LateCall call(object, IdOf(object, name), DISPATCH_PROPERTYPUT);
  return call.With({value}).Code();
}

TEST(DispatchUse, TicketOfAFile) {
  const IAttachedFilePtr file = CreateAttachedFile();
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL 0");
  EXPECT_EQ(ReadByName(file.get(), u"SourceFileLifeTime"), "VT_I4 1");
  EXPECT_EQ(ReadByName(file.get(), u"CleanUp"), "VT_I4 1");
  EXPECT_EQ(ReadByName(file.get(), u"get_Filename"), "VT_BSTR <null>");
  EXPECT_EQ(WriteByName(file.get(), u"TicketId", Text(u"x")), "0x00000000");
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL -1");
  EXPECT_EQ(ReadByName(file.get(), u"TicketId"), "VT_BSTR x");
  EXPECT_EQ(ReadByName(file.get(), u"IsTicketId"), "VT_BOOL 0");
  EXPECT_EQ(WriteByName(file.get(), u"put_Filename", Text(u"a.txt")), "0x00000000");
  EXPECT_EQ(ReadByName(file.get(), u"get_filename"), "VT_BSTR a.txt");
  LateCall init(file.get(), 1);
  EXPECT_EQ(init.With({Text(u"b.txt")}).Code(), "0x00000000");
  EXPECT_EQ(ReadByName(file.get(), u"GET_FILENAME"), "VT_BSTR b.txt");
}

TEST(DispatchUse, CountsOfADuration) {
  const IDurationPtr span = CreateDuration();
  EXPECT_EQ(WriteByName(span.get(), u"day", Text(u"12")), "0x00000000");
  EXPECT_EQ(WriteByName(span.get(), u"Sec", I2(3)), "0x00000000");
  EXPECT_EQ(WriteByName(span.get(), u"Negative", I2(1)), "0x00000000");
  EXPECT_EQ(ReadByName(span.get(), u"Day"), "VT_I2 12");
  EXPECT_EQ(ReadByName(span.get(), u"Sec"), "VT_R8 3");
  EXPECT_EQ(ReadByName(span.get(), u"Negative"), "VT_BOOL -1");
  EXPECT_EQ(WriteByName(span.get(), u"Day", Text(u"abc")), "0x80020005");
  EXPECT_EQ(ReadByName(span.get(), u"Day"), "VT_I2 12");
}

TEST(DispatchUse, TextOfAConnectionStringGrows) {
  const IConnectionStringPtr credentials = CreateConnectionString();
  EXPECT_EQ(WriteByName(credentials.get(), u"UserName", Text(u"u")), "0x00000000");
  EXPECT_EQ(WriteByName(credentials.get(), u"UserPassword", Text(u"p")), "0x00000000");
  EXPECT_EQ(WriteByName(credentials.get(), u"ReplicaID", Text(u"r")), "0x00000000");
  EXPECT_EQ(ReadByName(credentials.get(), u"ToString"), "VT_BSTR DbReplicationId=r;Username=u;Password=p;");
  // Called as a method the property runs the last member.
  LateCall method(credentials.get(), IdOf(credentials.get(), u"UserName"));
  EXPECT_EQ(method.Code(), "0x00000000");
  EXPECT_EQ(ShownValue(method.result),
            "VT_BSTR DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
  const IConnectionStringRawPtr raw = As<IConnectionStringRaw>(credentials);
  LateCall initialize(raw.get(), IdOf(raw.get(), u"Initialize"));
  EXPECT_EQ(initialize.With({Text(u"Username=joe;")}).Code(), "0x00000000");
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
  EXPECT_EQ(LateCall(list.get(), 5).Code(), "0x00000000");
  EXPECT_EQ(ReadByName(list.get(), u"Size"), "VT_I2 0");
  EXPECT_EQ(ReadByName(parameter, u"ParamKey"), "VT_BSTR k");
}

TEST(DispatchUse, ObjectUnderDispatchIsStoredUnderUnknown) {
  const IDurationPtr span = CreateDuration();
  const IParameterPtr parameter = CreateParameter();
  LateCall set(parameter.get(), 1);
  EXPECT_EQ(set.With({Text(u"k"), FromDispatch(span.get())}).Code(), "0x00000000");
  EXPECT_EQ(ReadByName(parameter.get(), u"ParamValue"), "VT_UNKNOWN object");
  EXPECT_EQ(ReadByName(parameter.get(), u"ParamTypeAsString"), "VT_BSTR duration");
}

// Nobody is to throw the words of another call.
TEST(DispatchRecord, RefusalsLeaveNoWordsOfAnEarlierFailure) {
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
