// Tables in answers that cannot be read. Whatever fails, nothing of the list stays.
#include "format/probe_formater.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

using RecordListReaderFailures = RecordListTest;

TEST_F(RecordListReaderFailures, NullNodeIsAnEmptyResponse) {
  EXPECT_EQ(Thrown([this] { formater_.ReadValue(XmlNode()); }),
            Refused("Cannot deserializer - empty response."));
  EXPECT_TRUE(fake_.Calls().empty());
}

TEST_F(RecordListReaderFailures, EachFailedCallEndsTheReading) {
  ReadAway(TwoByTwoXml());
  const Lines calls = fake_.Calls();
  ASSERT_EQ(calls.size(), 32U);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    for (const HRESULT code : {E_FAIL, E_OUTOFMEMORY, E_NOINTERFACE}) {
      FakeRecordList fake;
      fake.FailCall(i, code, u"words of the component");
      EXPECT_EQ(ReadThrows(TwoByTwoXml()), kCannotCreate) << calls[i];
      EXPECT_EQ(fake.Calls(), Lines(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(i) + 1));
      EXPECT_EQ(fake.LiveObjects(), 0) << calls[i];
    }
  }
}

TEST_F(RecordListReaderFailures, NullInPlaceOfAnObjectFailsAtItsFirstUse) {
  const struct {
    ListStep step;
    int nth;
    const char* lastCall;
  } rows[] = {
      {ListStep::kGetHeaders, 1, "List.GetHeaders"},
      {ListStep::kAddHeader, 1, "Headers.AddHeader(a, 10)"},
      {ListStep::kAddHeader, 2, "Headers.AddHeader(b, 1)"},
      {ListStep::kNewRecord, 1, "List.NewRecord"},
      {ListStep::kNewRecord, 2, "List.NewRecord"},
      {ListStep::kGetHeader, 1, "Headers.GetHeader(0)"},
      {ListStep::kGetHeader, 4, "Headers.GetHeader(1)"},
  };
  for (const auto& row : rows) {
    FakeRecordList fake;
    fake.GiveNull(row.step, row.nth);
    EXPECT_EQ(ReadThrows(TwoByTwoXml()), kCannotCreate) << row.lastCall;
    ExpectEnd(fake, row.lastCall);
  }
}

TEST_F(RecordListReaderFailures, SuccessCodesAreNoFailure) {
  ReadAway(TwoByTwoXml());
  for (std::size_t i = 0; i < fake_.Calls().size(); ++i) {
    FakeRecordList fake;
    fake.FailCall(i, S_FALSE);
    EXPECT_EQ(ReadThrows(TwoByTwoXml()), "nothing") << fake_.Calls()[i];
    EXPECT_EQ(fake.CallsWith("SetValue").size(), 4U);
  }
}

TEST_F(RecordListReaderFailures, MissingClassFails) {
  const ClassCreator before = RegisterClassCreator(CLSID_RecordList, nullptr);
  EXPECT_EQ(ReadThrows(TwoByTwoXml()), kCannotCreate);
  EXPECT_EQ(Thrown([] { CreateRecordList(); }).substr(0, 21), "_com_error 0x80040154");
  RegisterClassCreator(CLSID_RecordList, before);
}

TEST_F(RecordListReaderFailures, MissingBlocksFail) {
  for (const char16_t* content : {u"", u"<h/>", u"<h></h><d/>", u"<h><s/></h>", u"text", u" <h><s/></h><d/>",
                                  u"<h> <s/></h>", u"<!--c--><h><s/></h><d/>", u"<h>text</h>"})
    EXPECT_EQ(ReadThrows(content), kCannotCreate) << Shown(content);
}

// A schema in text form has no columns, and a block of records in text form has no records.
TEST_F(RecordListReaderFailures, TextInPlaceOfABlockHasNothingInIt) {
  for (const char16_t* content : {u"<h>text</h><d/>", u"<h> <s/></h><d/>", u"<h><s/></h>text",
                                  u"<h><s/></h> <d><i><a>5</a></i></d>", u"<h><!--c--></h><!--c-->"}) {
    ReadAway(content);
    EXPECT_EQ(fake_.Table().columns.size(), 0U) << Shown(content);
    EXPECT_EQ(fake_.Table().rows.size(), 0U) << Shown(content);
  }
}

TEST_F(RecordListReaderFailures, ColumnWithoutItsAttributesFails) {
  for (const char16_t* column :
       {u"<c/>", u"<c xsd:name='a'/>", u"<c xsd:type='xsd:int'/>", u"<c name='a' type='xsd:int'/>",
        u"<c xsd:Name='a' xsd:type='xsd:int'/>", u"<c xsd:name='a' XSD:type='xsd:int'/>",
        u"<c x:name='a' x:type='xsd:int'/>", u" ", u"text", u"<!--c-->", u"<?p i?>", u"<![CDATA[c]]>"}) {
    EXPECT_EQ(ReadThrows(TableXml(column, u"")), kCannotCreate) << Shown(column);
    EXPECT_EQ(fake_.Calls().back(), "Headers.SetLocked(0)") << Shown(column);
  }
}

TEST_F(RecordListReaderFailures, WhiteSpaceBetweenColumnsFails) {
  EXPECT_EQ(ReadThrows(TableXml(ColumnXml(u"a", u"xsd:int") + u"\n" + ColumnXml(u"b", u"xsd:int"), u"")),
            kCannotCreate);
  EXPECT_EQ(fake_.CallsWith("AddHeader"), Lines{"Headers.AddHeader(a, 10)"});
}

TEST_F(RecordListReaderFailures, MoreCellsThanColumnsFail) {
  EXPECT_EQ(ReadThrows(TableXml(ColumnXml(u"a", u"xsd:int"), u"<i><a>5</a><b>6</b></i>")), kCannotCreate);
  EXPECT_EQ(fake_.Calls().back(), "Headers.GetHeader(1)");
  EXPECT_EQ(ReadThrows(TableXml(u"", u"<i><a/></i>")), kCannotCreate);
  EXPECT_EQ(ReadThrows(TableXml(ColumnXml(u"a", u"xsd:int"), u"<i><a>5</a> </i>")), kCannotCreate);
}

TEST_F(RecordListReaderFailures, FailureOfAFormaterIsItsOwnOrHasOneMessage) {
  Factory()->Clear();
  FailingFormaterCreator creator(u"double");
  FillFormaters();
  for (const auto& row : kFormaterFailures) {
    creator.formater.fail = row.fail;
    EXPECT_EQ(ReadThrows(OneCellXml(u"xsd:double", u"5")), row.thrown);
    EXPECT_EQ(fake_.LiveObjects(), 0);
  }
}

TEST_F(RecordListReaderFailures, NullFromAFormaterIsRefusedWithItsType) {
  const struct {
    const char16_t* formater;
    const char16_t* type;
    const char16_t* content;
    const char* message;
  } rows[] = {{u"double", u"xsd:double", u"5", "Value from type 4 doesn't exist."},
              {u"double", u"qvdt:Money", u"", "Value from type 4 doesn't exist."},
              {u"url", u"sof:URL", u"6", "Value from type 23 doesn't exist."}};
  for (const auto& row : rows) {
    Factory()->Clear();
    ProbeFormaterCreator creator(row.formater);
    creator.formater.read = [](const XmlNode&) { return Variant::Null(); };
    FillFormaters();
    FakeRecordList fake;
    EXPECT_EQ(ReadThrows(TableXml(ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", row.type),
                                  u"<i><a>5</a><b>" + std::u16string(row.content) + u"</b></i>")),
              Refused(row.message));
    EXPECT_EQ(fake.CallsWith("SetValue"), Lines{"Record(0).SetValue(0, VT_INT 5)"});
    ExpectEnd(fake, "Header(1).GetType");
  }
}

TEST_F(RecordListReaderFailures, EmptyFromAFormaterIsSet) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"double");
  creator.formater.read = [](const XmlNode&) { return Variant(); };
  ReadAway(OneCellXml(u"xsd:double", u"5"));
  EXPECT_EQ(fake_.CallsWith("SetValue"), Lines{"Record(0).SetValue(0, VT_EMPTY)"});
}

using CreateRecordListTest = RecordListTest;

TEST_F(CreateRecordListTest, ListIsMadeStartedAndAsked) {
  const IRecordListPtr list = CreateRecordList();
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(fake_.Calls(), (Lines{"CoCreate IUnknown", "Run", "List.Query"}));
  EXPECT_EQ(list->AddRef(), 2U);
  EXPECT_EQ(list->Release(), 1U);
}

TEST_F(CreateRecordListTest, FailedStepIsReportedWithItsCode) {
  const struct {
    ListStep step;
    HRESULT code;
    const char* error;
  } rows[] = {{ListStep::kCreate, E_FAIL, "_com_error 0x80004005"},
              {ListStep::kCreate, E_NOINTERFACE, "_com_error 0x80004002"},
              {ListStep::kRun, E_OUTOFMEMORY, "_com_error 0x8007000E"},
              {ListStep::kRun, E_NOINTERFACE, "_com_error 0x80004002"},
              {ListStep::kQueryList, E_UNEXPECTED, "_com_error 0x8000FFFF"}};
  for (const auto& row : rows) {
    FakeRecordList fake;
    fake.Fail(row.step, row.code);
    EXPECT_EQ(Thrown([] { CreateRecordList(); }).substr(0, 21), row.error);
    EXPECT_EQ(fake.LiveObjects(), 0);
  }
  fake_.Fail(ListStep::kQueryList, E_NOINTERFACE);
  EXPECT_EQ(CreateRecordList(), nullptr);
}

}  // namespace
}  // namespace qv
