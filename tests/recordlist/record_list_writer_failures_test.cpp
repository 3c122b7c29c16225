// Tables that cannot be written. A failure of the list passes through.
#include "fixtures/counting_object.h"
#include "qvscriptwells/error_info.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

using RecordListWriterFailures = RecordListTest;

struct StepRow {
  ListStep step;
  int nth;
  const char* lastCall;
};

TEST_F(RecordListWriterFailures, EachFailedCallPassesThroughWithItsMessage) {
  const StepRow rows[] = {
      {ListStep::kGetHeaders, 1, "List.GetHeaders"},
      {ListStep::kGetCount, 1, "Headers.GetCount"},
      {ListStep::kGetHeader, 1, "Headers.GetHeader(0)"},
      {ListStep::kGetType, 1, "Header(0).GetType"},
      {ListStep::kGetName, 1, "Header(0).GetName"},
      {ListStep::kGetDisplayName, 1, "Header(0).GetDisplayName"},
      {ListStep::kGetHeader, 2, "Headers.GetHeader(1)"},
      {ListStep::kGetDisplayName, 2, "Header(1).GetDisplayName"},
      {ListStep::kOpenCursor, 1, "List.OpenCursor(-1)"},
      {ListStep::kHasMore, 1, "Cursor.HasMore"},
      {ListStep::kNext, 1, "Cursor.Next"},
      {ListStep::kGetRecordHeaders, 1, "Record(0).GetHeaders"},
      {ListStep::kGetHeader, 3, "Headers.GetHeader(0)"},
      {ListStep::kGetType, 3, "Header(0).GetType"},
      {ListStep::kGetValue, 1, "Record(0).GetValue(0)"},
      {ListStep::kGetName, 3, "Header(0).GetName"},
      {ListStep::kGetRecordHeaders, 2, "Record(0).GetHeaders"},
      {ListStep::kGetValue, 2, "Record(0).GetValue(1)"},
      {ListStep::kHasMore, 2, "Cursor.HasMore"},
      {ListStep::kNext, 2, "Cursor.Next"},
      {ListStep::kGetValue, 4, "Record(1).GetValue(1)"},
      {ListStep::kHasMore, 3, "Cursor.HasMore"},
  };
  for (const StepRow& row : rows) {
    FakeRecordList fake;
    fake.Fail(row.step, E_UNEXPECTED, u"words of the component", row.nth);
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x8000FFFF words of the component") << row.lastCall;
    ExpectEnd(fake, row.lastCall);
  }
}

TEST_F(RecordListWriterFailures, FailureWithoutARecordHasNoMessage) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetCount, ListStep::kGetHeader, ListStep::kGetType,
        ListStep::kOpenCursor, ListStep::kNext, ListStep::kGetRecordHeaders, ListStep::kGetValue}) {
    FakeRecordList fake;
    fake.Fail(step, E_NOINTERFACE);
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x80004002 <null>");
  }
}

TEST_F(RecordListWriterFailures, RecordsOfOthersAreLeftWaiting) {
  for (const ListStep step : {ListStep::kGetHeaders, ListStep::kGetCount, ListStep::kGetHeader,
                              ListStep::kGetType, ListStep::kOpenCursor, ListStep::kHasMore, ListStep::kNext,
                              ListStep::kGetRecordHeaders, ListStep::kGetValue}) {
    FakeRecordList fake;
    fake.DenyRecords();
    fake.Fail(step, E_FAIL, u"words of somebody");
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "_com_error 0x80004005 <null>") << fake.Calls().back();
    ErrorInfo info;
    EXPECT_TRUE(GetErrorInfo(&info));
    EXPECT_EQ(Shown(info.description), "words of somebody");
  }
}

TEST_F(RecordListWriterFailures, SuccessCodesAreNoFailure) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetCount, ListStep::kGetHeader, ListStep::kGetType,
        ListStep::kGetName, ListStep::kGetDisplayName, ListStep::kOpenCursor, ListStep::kHasMore,
        ListStep::kNext, ListStep::kGetRecordHeaders, ListStep::kGetValue}) {
    FakeRecordList fake;
    fake.Fail(step, S_FALSE);
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), "nothing") << fake.Calls().back();
    EXPECT_EQ(fake.CallsWith("GetValue").size(), 4u);
  }
}

TEST_F(RecordListWriterFailures, NullInPlaceOfAnObjectIsNoObject) {
  const StepRow rows[] = {
      {ListStep::kGetHeaders, 1, "List.GetHeaders"},
      {ListStep::kGetHeader, 1, "Headers.GetHeader(0)"},
      {ListStep::kGetHeader, 2, "Headers.GetHeader(1)"},
      {ListStep::kOpenCursor, 1, "List.OpenCursor(-1)"},
      {ListStep::kGetRecordHeaders, 1, "Record(0).GetHeaders"},
      {ListStep::kGetHeader, 3, "Headers.GetHeader(0)"},
  };
  for (const StepRow& row : rows) {
    FakeRecordList fake;
    fake.GiveNull(row.step, row.nth);
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), kNoPointer) << row.lastCall;
    ExpectEnd(fake, row.lastCall);
  }
}

TEST_F(RecordListWriterFailures, AnythingButAListIsANullReference) {
  const CountingObjectPtr object(new CountingObject);
  for (const Variant& value : {Variant::FromObject(nullptr), Variant(), Variant::Null(), Variant::FromInt(5),
                               Variant::FromString(u"<RecordList/>"), Variant::FromObject(object.get())})
    EXPECT_EQ(WriteThrows(value), kNoPointer) << ShownValue(value);
  EXPECT_EQ(object->References(), 1u);
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
  EnsureFormaters();
  for (const auto& row : kFormaterFailures) {
    FakeRecordList fake;
    creator.formater.fail = row.fail;
    EXPECT_EQ(WriteThrows(fake, TwoByTwo()), row.thrown);
    ExpectEnd(fake, "Header(1).GetName");
  }
}

}  // namespace
}  // namespace qv
