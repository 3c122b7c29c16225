// What Invoke gives back: the result under the tag of its member, also of a member that failed, and the words
// of the failure.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>

#include "automation/noting_faces.h"
#include "automation/waiting_record.h"
#include "fixtures/counting_object.h"

namespace qv {
namespace {

constexpr char kOk[] = "0x00000000";

struct ResultRow {
  const char* name;
  Face face;
  DISPID id;
  int flags;
  int count;             // of arguments, all texts "1"
  const char* expected;  // of a member that gave its prepared result
  const char* nothing;   // of one that wrote nothing
};
void PrintTo(const ResultRow& row, std::ostream* out) {
  *out << row.name;
}

class DispatchResults : public testing::TestWithParam<ResultRow> {
 protected:
  DispatchResults() : list_(new NotingParameters(&listScript_)) {
    ClearErrorInfo();
    script_.text = u"given";
    script_.shortValue = -1;
    script_.longValue = 70000;
    script_.realValue = 2.5;
    script_.value = Variant::FromInt(9);
    object_ = MakeNoting(GetParam().face, &script_);
  }
  LateCall Call() {
    LateCall call(object_.get(), GetParam().id, static_cast<std::uint16_t>(GetParam().flags));
    std::vector<Variant> arguments(static_cast<std::size_t>(GetParam().count), Text(u"1"));
    const bool wantsObject =
        GetParam().face == Face::kQvClientServiceRaw ||
        (GetParam().face == Face::kConnectionModel && (GetParam().id == 3 || GetParam().id == 4));
    if (wantsObject) arguments.back() = FromDispatch(list_.get());
    call.With(arguments);
    return call;
  }

  Script listScript_;
  boost::intrusive_ptr<NotingParameters> list_;
  Script script_;
  IDispatchPtr object_;
};

TEST_P(DispatchResults, SuccessGivesTheResultAndLeavesTheFailureAlone) {
  LateCall call = Call();
  EXPECT_EQ(call.Run(&call.result, &call.failure, &call.index), S_OK);
  EXPECT_EQ(ShownValue(call.result), GetParam().expected);
  EXPECT_EQ(call.index, kUntouchedIndex);
  EXPECT_EQ(call.failure.scode, 14);
  EXPECT_EQ(call.failure.dwHelpContext, 13u);
  EXPECT_EQ(Shown(call.failure.bstrDescription), "untouched");
  EXPECT_EQ(call.failure.pfnDeferredFillIn, DeferredFillIn);
}

TEST_P(DispatchResults, FailureGivesTheResultToo) {
  script_.code = MakeResult(0x80040123);
  LateCall call = Call();
  EXPECT_EQ(call.Code(), "0x80040123");
  EXPECT_EQ(ShownValue(call.result), GetParam().expected);
}

TEST_P(DispatchResults, FailureThatWroteNothingGivesZeroOrNull) {
  script_.code = E_FAIL;
  script_.writeNothing = true;
  LateCall call = Call();
  EXPECT_EQ(call.Code(), "0x80004005");
  EXPECT_EQ(ShownValue(call.result), GetParam().nothing);
}

TEST_P(DispatchResults, CodesOfSuccessAreGivenAsTheyAre) {
  script_.code = S_FALSE;
  LateCall call = Call();
  EXPECT_EQ(call.Code(), "0x00000001");
  EXPECT_EQ(ShownValue(call.result), GetParam().expected);
  EXPECT_EQ(call.failure.scode, 14);
}

TEST_P(DispatchResults, NobodyHasToWantTheResult) {
  LateCall call = Call();
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), S_OK);
  script_.code = E_FAIL;
  EXPECT_EQ(call.Run(nullptr, nullptr, nullptr), E_FAIL);
  EXPECT_EQ(script_.calls.size(), 2u);
}

TEST_P(DispatchResults, FailureIsFilledFromTheWaitingRecord) {
  script_.code = MakeResult(0x80040123);
  script_.leaveRecord = true;
  script_.record.source = u"a source";
  script_.record.description = u"some words";
  script_.record.helpFile = u"a file";
  script_.record.helpContext = 77;
  LateCall call = Call();
  EXPECT_EQ(call.Code(), "0x80040123");
  EXPECT_EQ(Shown(call.failure.bstrSource), "a source");
  EXPECT_EQ(Shown(call.failure.bstrDescription), "some words");
  EXPECT_EQ(Shown(call.failure.bstrHelpFile), "a file");
  EXPECT_EQ(call.failure.dwHelpContext, 77u);
  EXPECT_EQ(static_cast<std::uint32_t>(call.failure.scode), 0x80040123u);
  EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_P(DispatchResults, FailureWithoutRecordKeepsTheOtherFields) {
  script_.code = E_FAIL;
  LateCall call = Call();
  call.Run();
  EXPECT_EQ(call.failure.scode, E_FAIL);
  EXPECT_EQ(call.failure.pfnDeferredFillIn, nullptr);
  EXPECT_EQ(Shown(call.failure.bstrSource), "untouched");
  EXPECT_EQ(Shown(call.failure.bstrDescription), "untouched");
  EXPECT_EQ(Shown(call.failure.bstrHelpFile), "untouched");
  EXPECT_EQ(call.failure.dwHelpContext, 13u);
}

TEST_P(DispatchResults, RecordWaitsForWhoeverGaveNoPlaceForTheFailure) {
  script_.code = E_FAIL;
  script_.leaveRecord = true;
  script_.record.description = u"some words";
  LateCall call = Call();
  EXPECT_EQ(call.Run(&call.result, nullptr, &call.index), E_FAIL);
  EXPECT_EQ(TakenWords(), "some words");
}

TEST_P(DispatchResults, RecordWithNullTextsGivesNullTexts) {
  script_.code = E_FAIL;
  script_.leaveRecord = true;
  LateCall call = Call();
  call.Run();
  EXPECT_TRUE(call.failure.bstrSource.IsEmpty());
  EXPECT_TRUE(call.failure.bstrDescription.IsEmpty());
  EXPECT_TRUE(call.failure.bstrHelpFile.IsEmpty());
  EXPECT_EQ(call.failure.dwHelpContext, 0u);
}

constexpr char kNull[] = "VT_DISPATCH null";

INSTANTIATE_TEST_SUITE_P(
    Members, DispatchResults,
    testing::Values(
        ResultRow{"ConnectionModel", Face::kQvScriptwells, 1, 1, 0, kNull, kNull},
        ResultRow{"ClientUrl", Face::kQvScriptwells, 2, 1, 0, kNull, kNull},
        ResultRow{"ClientDuration", Face::kQvScriptwells, 3, 1, 0, kNull, kNull},
        ResultRow{"ClientConnectionString", Face::kQvScriptwells, 4, 1, 0, kNull, kNull},
        ResultRow{"ClientAttachedFile", Face::kQvScriptwells, 5, 1, 0, kNull, kNull},
        ResultRow{"ClientParameters", Face::kQvScriptwells, 6, 1, 0, kNull, kNull},
        ResultRow{"get_ServerName", Face::kQvScriptwells, 7, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_ServerName", Face::kQvScriptwells, 7, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Proxy", Face::kQvScriptwells, 8, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_Proxy", Face::kQvScriptwells, 8, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"ClientInit", Face::kQvClientServiceRaw, 1, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"CreateUserSession", Face::kConnectionModel, 1, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"CloseUserSession", Face::kConnectionModel, 2, 1, 0, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"Execute", Face::kConnectionModel, 3, 1, 3, "VT_INT 9", "VT_EMPTY"},
        ResultRow{"ExecuteFile", Face::kConnectionModel, 4, 1, 2, "VT_INT 9", "VT_EMPTY"},
        ResultRow{"SetUSID", Face::kConnectionModel, 5, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"DownloadFile", Face::kConnectionModel, 7, 1, 2, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"get_UserName", Face::kConnectionString, 1, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_UserName", Face::kConnectionString, 1, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_UserPassword", Face::kConnectionString, 2, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_UserPassword", Face::kConnectionString, 2, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_DatabaseName", Face::kConnectionString, 3, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_DatabaseName", Face::kConnectionString, 3, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_ReplicaID", Face::kConnectionString, 4, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_ReplicaID", Face::kConnectionString, 4, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_DatabaseID", Face::kConnectionString, 5, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_DatabaseID", Face::kConnectionString, 5, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"ConnectionStringToString", Face::kConnectionString, 6, 1, 0, "VT_BSTR given",
                  "VT_BSTR <null>"},
        ResultRow{"ToStringByFallThrough", Face::kConnectionString, 2, 1, 0, "VT_BSTR given",
                  "VT_BSTR <null>"},
        ResultRow{"Initialize", Face::kConnectionStringRaw, 1, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Day", Face::kDuration, 3, 2, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"put_Day", Face::kDuration, 3, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Month", Face::kDuration, 4, 2, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"put_Month", Face::kDuration, 4, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Year", Face::kDuration, 5, 2, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"put_Year", Face::kDuration, 5, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Hour", Face::kDuration, 6, 2, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"put_Hour", Face::kDuration, 6, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Min", Face::kDuration, 7, 2, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"put_Min", Face::kDuration, 7, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Sec", Face::kDuration, 8, 2, 0, "VT_R8 2.5", "VT_R8 0"},
        ResultRow{"put_Sec", Face::kDuration, 8, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Negative", Face::kDuration, 9, 2, 0, "VT_BOOL -1", "VT_BOOL 0"},
        ResultRow{"put_Negative", Face::kDuration, 9, 4, 1, "VT_EMPTY", "VT_EMPTY"}),
    [](const testing::TestParamInfo<ResultRow>& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    MoreMembers, DispatchResults,
    testing::Values(
        ResultRow{"get_UrlCaption", Face::kUrl, 2, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_UrlCaption", Face::kUrl, 2, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Url", Face::kUrl, 3, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_Url", Face::kUrl, 3, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"UrlToString", Face::kUrl, 4, 1, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"FileInit", Face::kAttachedFile, 1, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_Filename", Face::kAttachedFile, 2, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_Filename", Face::kAttachedFile, 2, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_FileId", Face::kAttachedFile, 3, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_FileId", Face::kAttachedFile, 3, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_SourceFileLifeTime", Face::kAttachedFile, 4, 2, 0, "VT_I4 70000", "VT_I4 0"},
        ResultRow{"put_SourceFileLifeTime", Face::kAttachedFile, 4, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_CleanUp", Face::kAttachedFile, 5, 2, 0, "VT_I4 70000", "VT_I4 0"},
        ResultRow{"put_CleanUp", Face::kAttachedFile, 5, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_TicketId", Face::kAttachedFile, 6, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"put_TicketId", Face::kAttachedFile, 6, 4, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"IsTicketId", Face::kAttachedFile, 7, 1, 0, "VT_BOOL -1", "VT_BOOL 0"},
        ResultRow{"IsTicketIdByFallThrough", Face::kAttachedFile, 4, 1, 0, "VT_BOOL -1", "VT_BOOL 0"},
        ResultRow{"SetValues", Face::kParameter, 1, 1, 2, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"get_ParamKey", Face::kParameter, 2, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"get_ParamValue", Face::kParameter, 3, 2, 0, "VT_INT 9", "VT_EMPTY"},
        ResultRow{"get_ParamTypeAsString", Face::kParameter, 4, 2, 0, "VT_BSTR given", "VT_BSTR <null>"},
        ResultRow{"Add", Face::kParameters, 1, 1, 2, kNull, kNull},
        ResultRow{"Remove", Face::kParameters, 2, 1, 1, "VT_EMPTY", "VT_EMPTY"},
        ResultRow{"Find", Face::kParameters, 3, 1, 1, kNull, kNull},
        ResultRow{"Size", Face::kParameters, 4, 1, 0, "VT_I2 -1", "VT_I2 0"},
        ResultRow{"Clear", Face::kParameters, 5, 1, 0, "VT_EMPTY", "VT_EMPTY"}),
    [](const testing::TestParamInfo<ResultRow>& row) { return std::string(row.param.name); });

// Results that own something.

TEST(DispatchResult, ObjectIsHandedOverWithItsReference) {
  Script inner;
  const boost::intrusive_ptr<NotingParameter> found(new NotingParameter(&inner));
  Script script;
  script.object = found.get();
  for (const HRESULT code : {S_OK, E_FAIL}) {
    script.code = code;
    const IDispatchPtr list = MakeNoting(Face::kParameters, &script);
    LateCall call(list.get(), 3);
    EXPECT_EQ(call.With({I2(0)}).Run(), code);
    EXPECT_EQ(ShownValue(call.result), "VT_DISPATCH object");
    EXPECT_EQ(DispatchOf(call.result), static_cast<IDispatch*>(found.get()));
    EXPECT_EQ(found->AddRef(), 3u);
    found->Release();
    call.result.Clear();
    // Without a place for the result the reference is given back.
    call.Run(nullptr, nullptr, nullptr);
    EXPECT_EQ(found->AddRef(), 2u);
    found->Release();
  }
}

TEST(DispatchResult, ObjectsOfTheClientAreHandedOver) {
  const Face kinds[] = {Face::kConnectionModel,  Face::kUrl,          Face::kDuration,
                        Face::kConnectionString, Face::kAttachedFile, Face::kParameters};
  DISPID id = 1;
  for (const Face kind : kinds) {
    Script inner;
    const IDispatchPtr made = MakeNoting(kind, &inner);
    Script script;
    script.object = made.get();
    const IDispatchPtr client = MakeNoting(Face::kQvScriptwells, &script);
    LateCall call(client.get(), id++);
    EXPECT_EQ(call.Code(), kOk);
    EXPECT_EQ(DispatchOf(call.result), made.get()) << NameOf(kind);
    EXPECT_EQ(made->AddRef(), 3u);
    made->Release();
  }
}

TEST(DispatchResult, ValueKeepsItsTagAndItsObject) {
  const CountingObjectPtr content(new CountingObject);
  Script script;
  const IDispatchPtr parameter = MakeNoting(Face::kParameter, &script);
  const Variant values[] = {Variant(),
                            Variant::Null(),
                            I2(3),
                            Text(u"t"),
                            Variant::FromObject(content.get()),
                            Variant::FromObject(nullptr)};
  const char* const shown[] = {"VT_EMPTY",  "VT_NULL",           "VT_I2 3",
                               "VT_BSTR t", "VT_UNKNOWN object", "VT_UNKNOWN null"};
  for (std::size_t i = 0; i < 6; ++i) {
    script.value = values[i];
    LateCall call(parameter.get(), 3, DISPATCH_PROPERTYGET);
    EXPECT_EQ(call.Code(), kOk);
    EXPECT_EQ(ShownValue(call.result), shown[i]);
  }
}

TEST(DispatchResult, OldContentIsReleased) {
  const CountingObjectPtr old(new CountingObject);
  Script script;
  const IDispatchPtr list = MakeNoting(Face::kParameters, &script);
  LateCall call(list.get(), 4);
  call.result = Variant::FromObject(old.get());
  EXPECT_EQ(old->References(), 2u);
  EXPECT_EQ(call.Code(), kOk);
  EXPECT_EQ(old->References(), 1u);
  // Also by a call that is refused behind the test of the limit.
  LateCall refused(list.get(), 9);
  refused.result = Variant::FromObject(old.get());
  EXPECT_EQ(refused.Code(), "0x80020003");
  EXPECT_EQ(old->References(), 1u);
}

// The result is cleared before the arguments are read; a host that gives one place for both loses the
// argument, and nothing else.
TEST(DispatchResult, ArgumentInThePlaceOfTheResultDoesNotHurt) {
  Script script;
  for (const Face face : kAllFaces) {
    const IDispatchPtr object = MakeNoting(face, &script);
    for (DISPID id = 0; id < 10; ++id) {
      Variant shared = Text(u"1");
      DISPPARAMS block;
      block.rgvarg = &shared;
      block.cArgs = 1;
      object->Invoke(id, Guid{}, 0, DISPATCH_PROPERTYPUT, &block, &shared, nullptr, nullptr);
    }
  }
  for (const std::string& line : script.calls) EXPECT_EQ(line.find("(1"), std::string::npos) << line;
}

TEST(DispatchResult, EarlyRefusalLeavesTheRecordAndTheFailure) {
  Script script;
  const IDispatchPtr span = MakeNoting(Face::kDuration, &script);
  struct Early {
    DISPID id;
    std::vector<Variant> arguments;
  };
  for (const Early& row : {Early{3, {Text(u"abc")}}, Early{3, {}}, Early{77, {}}}) {
    LateCall call(span.get(), row.id, DISPATCH_PROPERTYPUT);
    EXPECT_TRUE(Failed(call.With(row.arguments).Run()));
    EXPECT_TRUE(call.FailureUntouched());
    EXPECT_EQ(TakenWords(), "no record");
  }
}

TEST(DispatchResult, NothingIsLeftAlive) {
  EXPECT_EQ(Noting::Live(), 0);
  EXPECT_EQ(CountingObject::Live(), 0);
}

}  // namespace
}  // namespace qv
