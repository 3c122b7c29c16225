// Tables as answers of scripts and as parameters.
#include "format/response_value_reader.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/record_list_test.h"
#include "script/fake_parameters.h"
#include "session/model_test.h"

namespace qv {
namespace {

class RecordListAnswer : public RecordListTest {
 protected:
  static Variant Answered(const std::u16string& typeName, const std::u16string& content) {
    const XmlText xml(u"<r><v xsi:type='" + typeName + u"'>" + content + u"</v></r>");
    return ReadResponseValue(xml.Root());
  }
  static std::string AnsweredThrows(const std::u16string& content) {
    return Thrown([&] { Answered(u"SOF:RecordList", content); });
  }
};

TEST_F(RecordListAnswer, AnyNameWithRecordlistIsATable) {
  for (const char16_t* name : {u"SOF:RecordList", u"sof:recordlist", u"q1:RecordList", u"recordlist",
                               u"RECORDLIST", u"ns:myRecordLists", u"xsd:recordlist"}) {
    const Variant value = Answered(name, OneCellXml(u"xsd:int", u"5"));
    EXPECT_EQ(ShownValue(value), "VT_UNKNOWN object") << Shown(name);
    EXPECT_EQ(ShownValue(fake_.Table().rows.at(0).cells.at(0)), "VT_INT 5") << Shown(name);
  }
  EXPECT_EQ(fake_.TableCount(), 7U);
}

TEST_F(RecordListAnswer, OtherNamesAreNot) {
  for (const char16_t* name : {u"record list", u"RecordLis", u"sof:records"})
    EXPECT_EQ(Answered(name, OneCellXml(u"xsd:int", u"5")).Tag(), VT_EMPTY) << Shown(name);
  EXPECT_TRUE(fake_.Calls().empty());
}

TEST_F(RecordListAnswer, NullTableIsNull) {
  const XmlText xml(u"<r><v xsi:null='1'/></r>");
  EXPECT_EQ(ReadResponseValue(xml.Root()).Tag(), VT_NULL);
  EXPECT_TRUE(fake_.Calls().empty());
}

TEST_F(RecordListAnswer, WrittenTableIsAnAnswer) {
  const FakeTable table{{{u"a", 10, u"A"}}, {{{Int(5)}}}};
  const WideString text = formater_.WriteValue(Variant::FromObject(fake_.MakeList(table).get()));
  const XmlText xml(u"<r>" + std::u16string(text.view()) + u"</r>");
  EXPECT_EQ(ShownValue(ReadResponseValue(xml.Root())), "VT_UNKNOWN object");
  EXPECT_EQ(fake_.TableCount(), 2U);
  EXPECT_EQ(ShownValue(fake_.Table().rows.at(0).cells.at(0)), "VT_INT 5");
}

TEST_F(RecordListAnswer, FailuresKeepTheirMessages) {
  EXPECT_EQ(AnsweredThrows(u""), kCannotCreate);
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:date", u"soon")), kNotAccurate);
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:duration", u"1D")), kCannotCreate);
  FakeRecordList failing;
  failing.Fail(ListStep::kLockList, E_FAIL, u"words");
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:int", u"5")), kCannotCreate);
}

// A whole call over a server in memory.
class RecordListCall : public ModelTest {
 protected:
  RecordListCall() { AdoptSession(); }
  void TearDown() override {
    ModelTest::TearDown();
    EXPECT_EQ(fake_.LiveObjects(), 0);
  }
  Variant Table() {
    const IRecordListPtr list = fake_.MakeList({{{u"a", 10, u"A"}}, {{{Int(5)}}}});
    return Variant::FromObject(list.get());
  }
  // The answer to a script that is a table with these records.
  Variant Executed(const std::u16string& records) {
    http_.Answer(
        ExecuteAnswer(ValueElement(u"SOF:RecordList", TableXml(ColumnXml(u"a", u"xsd:int"), records))));
    return model_.Execute(u"VBScript", u"1", nullptr);
  }
  // Nothing is sent when the library has to find this value's type.
  void ExpectRefused(const Variant& value) {
    const std::size_t sent = http_.Bodies().size();
    const IParametersPtr list = CreateParameters();
    for (const Variant& parameter : {Int(1), value, Int(2)})
      ASSERT_EQ(list->Add(u"t", parameter, nullptr), S_OK);
    EXPECT_EQ(ExecuteThrows(list.get()), kNoDocument);
    EXPECT_EQ(http_.Bodies().size(), sent);
  }
  std::string SentAs(const Variant& value, const WideString& typeName) {
    FakeLog log;
    const FakeParametersPtr list(new FakeParameters(&log));
    list->Put(u"t", value, typeName);
    return ExecuteThrows(list.get());
  }

  FakeRecordList fake_;
};

TEST_F(RecordListCall, TableIsAnsweredAndCannotBeSentBack) {
  const Variant value = Executed(u"<i><a>5</a></i><i><a>6</a></i>");
  EXPECT_EQ(ShownValue(value), "VT_UNKNOWN object");
  ASSERT_EQ(fake_.Table().rows.size(), 2U);
  EXPECT_EQ(ShownValue(fake_.Table().rows[1].cells.at(0)), "VT_INT 6");
  ExpectRefused(value);
}

TEST_F(RecordListCall, TableThatCannotBeReadKeepsItsMessage) {
  EXPECT_EQ(ExecuteThrows(nullptr, ExecuteAnswer(ValueElement(u"SOF:RecordList", u"<h/>"))), kCannotCreate);
}

TEST_F(RecordListCall, TableAsParameterIsRefusedBeforeAnythingIsSent) {
  ExpectRefused(Table());
  EXPECT_TRUE(http_.Calls().empty());
}

// A parameter of another program may name its type itself, and then the table is sent.
TEST_F(RecordListCall, ForeignParameterThatNamesTheTypeIsSentIfItCanBeWritten) {
  EXPECT_EQ(SentAs(Variant::FromObject(nullptr), u"recordlist"), kNoDocument);
  EXPECT_TRUE(http_.Calls().empty());
  http_.Answer(kScriptDone);
  EXPECT_EQ(SentAs(Table(), u"recordlist"), "nothing");
  const std::string& body = http_.Bodies().back();
  for (const char* piece : {"<Value xsi:type=\"xsd:recordlist\"><RecordList xmlns:q1=",
                            "<q1:Record><a>5</a></q1:Record></q1:Records></RecordList></Value>"})
    EXPECT_NE(body.find(piece), std::string::npos) << body;
}

}  // namespace
}  // namespace qv
