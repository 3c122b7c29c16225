// Tables that cannot be written. A failure of the list passes through.
#include "fixtures/counting_object.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

class RecordListWriterFailures : public RecordListTest {
 protected:
  // Writes TwoByTwo as often as that takes calls, and fails another one each time. Queries are left out,
  // since their failures have other results.
  template <class Check>
  void ForEachCall(HRESULT code, const WideString& message, const Check& check) {
    EXPECT_EQ(WriteThrows(TwoByTwo()), "nothing");
    const Lines calls = fake_.Calls();
    ASSERT_EQ(calls.size(), 39U);
    for (std::size_t i = 0; i < calls.size(); ++i) {
      if (calls[i].find("Query") != std::string::npos) continue;
      SCOPED_TRACE(calls[i]);
      FakeRecordList fake;
      fake.FailCall(i, code, message);
      check(fake);
      EXPECT_EQ(fake.Calls().size(), Failed(code) ? i + 1 : calls.size());
      EXPECT_EQ(fake.LiveObjects(), 0);
    }
  }
};

TEST_F(RecordListWriterFailures, EachFailedCallPassesThroughWithItsMessage) {
  ForEachCall(E_UNEXPECTED, u"words of the component", [this](FakeRecordList& fake) {
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x8000FFFF words of the component");
  });
}

TEST_F(RecordListWriterFailures, FailureWithoutARecordHasNoMessage) {
  ForEachCall(E_NOINTERFACE, WideString(), [this](FakeRecordList& fake) {
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x80004002 <null>");
  });
}

TEST_F(RecordListWriterFailures, RecordsOfOthersAreLeftWaiting) {
  ForEachCall(E_FAIL, u"words of somebody", [this](FakeRecordList& fake) {
    fake.DenyRecords();
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x80004005 <null>");
    ErrorInfo info;
    EXPECT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(Shown(info.description), "words of somebody");
  });
}

TEST_F(RecordListWriterFailures, SuccessCodesAreNoFailure) {
  ForEachCall(S_FALSE, WideString(),
              [this](FakeRecordList& fake) { EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "nothing"); });
}

TEST_F(RecordListWriterFailures, NullInPlaceOfAnObjectIsNoObject) {
  const struct {
    ListStep step;
    int nth;
    const char* lastCall;
  } rows[] = {
      {ListStep::kGetHeaders, 1, "List.GetHeaders"},
      {ListStep::kGetHeader, 1, "Headers.GetHeader(0)"},
      {ListStep::kGetHeader, 2, "Headers.GetHeader(1)"},
      {ListStep::kOpenCursor, 1, "List.OpenCursor(-1)"},
      {ListStep::kGetRecordHeaders, 1, "Record(0).GetHeaders"},
      {ListStep::kGetHeader, 3, "Headers.GetHeader(0)"},
  };
  for (const auto& row : rows) {
    FakeRecordList fake;
    fake.GiveNull(row.step, row.nth);
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), kNoPointer) << row.lastCall;
    ExpectEnd(fake, row.lastCall);
  }
}

TEST_F(RecordListWriterFailures, AnythingButAListIsANullReference) {
  const CountingObjectPtr object(new CountingObject);
  for (const Variant& value : {Variant::FromObject(nullptr), Variant(), Variant::Null(), Int(5),
                               Text(u"<RecordList/>"), Variant::FromObject(object.get())})
    EXPECT_EQ(WriteThrows(value), kNoPointer) << ShownValue(value);
  EXPECT_EQ(object->References(), 1U);
}

TEST_F(RecordListWriterFailures, FailedQuestionBringsItsCode) {
  fake_.Fail(ListStep::kQueryList, E_OUTOFMEMORY);
  EXPECT_EQ(WriteThrows(TwoByTwo()).substr(0, 21), "_com_error 0x8007000E");
  const CountingObjectPtr object(new CountingObject);
  object->FailQueries(E_FAIL);
  EXPECT_EQ(WriteThrows(Variant::FromObject(object.get())).substr(0, 21), "_com_error 0x80004005");
}

TEST_F(RecordListWriterFailures, FailedQuestionForARecordBringsItsCode) {
  fake_.Fail(ListStep::kQueryRecord, E_OUTOFMEMORY, WideString(), 2);
  EXPECT_EQ(WriteThrows(TwoByTwo()).substr(0, 21), "_com_error 0x8007000E");
  EXPECT_EQ(fake_.Calls().back(), "Record(1).Query");
}

TEST_F(RecordListWriterFailures, CountBeyondTheColumnsFailsAtTheMissingOne) {
  fake_.SayCount(3);
  EXPECT_EQ(WriteThrows(TwoByTwo()), "_com_error 0x8002000B <null>");
  EXPECT_EQ(fake_.Calls().back(), "Headers.GetHeader(2)");
}

TEST_F(RecordListWriterFailures, NameThatTheEscapeWouldChangeIsRefused) {
  for (const char16_t* name : {u"a&b", u"<a", u"a>", u"a\"b", u"a'", u"&amp;", u"\u00E9"})
    EXPECT_EQ(WriteThrows(FakeTable{{{name, 10, u"A"}}, {}}), kBadHeader) << Shown(name);
}

TEST_F(RecordListWriterFailures, BadNameEndsTheWritingAtItsColumn) {
  FakeTable table = TwoByTwo();
  table.columns.insert(table.columns.begin() + 1, {u"a&b", 10, u"bad"});
  EXPECT_EQ(WriteThrows(table), kBadHeader);
  EXPECT_EQ(fake_.Calls(), (Lines{"List.Query", "List.GetHeaders", "Headers.GetCount", "Headers.GetHeader(0)",
                                  "Header(0).GetType", "Header(0).GetName", "Header(0).GetDisplayName",
                                  "Headers.GetHeader(1)", "Header(1).GetType", "Header(1).GetName",
                                  "Header(1).GetDisplayName"}));
}

TEST_F(RecordListWriterFailures, DisplayNameMayHoldAnything) {
  EXPECT_EQ(WriteThrows(FakeTable{{{u"a", 10, u"A&B"}}, {}}), "nothing");
}

TEST_F(RecordListWriterFailures, FailureOfAFormaterIsItsOwnOrHasOneMessage) {
  Factory()->Clear();
  FailingFormaterCreator creator(u"string");
  FillFormaters();
  for (const auto& row : kFormaterFailures) {
    FakeRecordList fake;
    creator.formater.fail = row.fail;
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), row.thrown);
    ExpectEnd(fake, "Header(1).GetName");
  }
}

}  // namespace
}  // namespace qv
