// Tables as answers of scripts and as parameters.
#include "format/response_value_reader.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/record_list_test.h"
#include "script/execute_envelope.h"
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
  EXPECT_EQ(fake_.TableCount(), 7u);
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
  const FakeTable table{{{u"a", 10, u"A"}}, {{{Variant::FromInt(5)}}}};
  const WideString text = formater_.WriteValue(Variant::FromObject(fake_.MakeList(table).get()));
  const XmlText xml(u"<r>" + std::u16string(text.view()) + u"</r>");
  EXPECT_EQ(ShownValue(ReadResponseValue(xml.Root())), "VT_UNKNOWN object");
  EXPECT_EQ(fake_.TableCount(), 2u);
  EXPECT_EQ(ShownValue(fake_.Table().rows.at(0).cells.at(0)), "VT_INT 5");
}

TEST_F(RecordListAnswer, FailuresKeepTheirWords) {
  EXPECT_EQ(AnsweredThrows(u""), kCannotCreate);
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:date", u"soon")),
            "EQvException 0x00000000 Unable to convert a value with the given accuracy");
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:duration", u"1D")), kCannotCreate);
  FakeRecordList failing;
  failing.Fail(ListStep::kLockList, E_FAIL, u"words");
  EXPECT_EQ(AnsweredThrows(OneCellXml(u"xsd:int", u"5")), kCannotCreate);
}

// A whole call over a server in memory.
class RecordListCall : public ModelTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(http_.LiveObjects(), 0);
    EXPECT_EQ(fake_.LiveObjects(), 0);
  }
  IRecordListPtr List() { return fake_.MakeList({{{u"a", 10, u"A"}}, {{{Variant::FromInt(5)}}}}); }

  FakeRecordList fake_;
};

constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";

TEST_F(RecordListCall, TableIsAnswered) {
  AdoptSession();
  http_.Answer(u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"SOF:RecordList\">" +
               TableXml(ColumnXml(u"a", u"xsd:int"), u"<i><a>5</a></i><i><a>6</a></i>") +
               u"</r></ExecuteResponse></soap:Body></soap:Envelope>");
  const Variant value = model_.Execute(u"VBScript", u"1", nullptr);
  EXPECT_EQ(ShownValue(value), "VT_UNKNOWN object");
  ASSERT_EQ(fake_.Table().rows.size(), 2u);
  EXPECT_EQ(ShownValue(fake_.Table().rows[1].cells.at(0)), "VT_INT 6");
}

TEST_F(RecordListCall, TableThatCannotBeReadKeepsItsWords) {
  AdoptSession();
  http_.Answer(
      u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"SOF:RecordList\"><h/></r>"
      u"</ExecuteResponse></soap:Body></soap:Envelope>");
  EXPECT_EQ(ExecuteThrows(), kCannotCreate);
}

TEST_F(RecordListCall, TableAsParameterIsRefusedBeforeAnythingIsSent) {
  AdoptSession();
  const IRecordListPtr table = List();
  const IParametersPtr list = CreateParameters();
  ASSERT_EQ(list->Add(u"t", Variant::FromObject(table.get()), nullptr), S_OK);
  EXPECT_EQ(ExecuteThrows(list.get()), kRefused);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(RecordListCall, TableAmongOtherParametersIsRefusedAllTheSame) {
  AdoptSession();
  const IRecordListPtr table = List();
  const IParametersPtr list = CreateParameters();
  ASSERT_EQ(list->Add(u"a", Variant::FromInt(1), nullptr), S_OK);
  ASSERT_EQ(list->Add(u"t", Variant::FromObject(table.get()), nullptr), S_OK);
  ASSERT_EQ(list->Add(u"b", Variant::FromInt(2), nullptr), S_OK);
  EXPECT_EQ(ExecuteThrows(list.get()), kRefused);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(RecordListCall, AnsweredTableCannotBeSentBack) {
  AdoptSession();
  http_.Answer(u"<soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"SOF:RecordList\">" +
               TableXml(ColumnXml(u"a", u"xsd:int"), u"") +
               u"</r></ExecuteResponse></soap:Body></soap:Envelope>");
  const Variant value = model_.Execute(u"VBScript", u"1", nullptr);
  const IParametersPtr list = CreateParameters();
  ASSERT_EQ(list->Add(u"t", value, nullptr), S_OK);
  EXPECT_EQ(ExecuteThrows(list.get()), kRefused);
  EXPECT_EQ(http_.Bodies().size(), 1u);
}

// A parameter of another program may name its type itself, and then the table travels.
TEST_F(RecordListCall, ForeignParameterThatNamesTheTypeIsSent) {
  AdoptSession();
  http_.Answer(kScriptDone);
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"t", Variant::FromObject(List().get()), u"recordlist");
  EXPECT_EQ(ExecuteThrows(list.get()), "nothing");
  const std::string& body = http_.Bodies().back();
  EXPECT_NE(body.find("<Value xsi:type=\"xsd:recordlist\"><RecordList xmlns:q1="), std::string::npos) << body;
  EXPECT_NE(body.find("<q1:Record><a>5</a></q1:Record></q1:Records></RecordList></Value>"), std::string::npos)
      << body;
}

TEST_F(RecordListCall, ForeignTableThatCannotBeWrittenIsNotSent) {
  AdoptSession();
  FakeLog log;
  const FakeParametersPtr list(new FakeParameters(&log));
  list->Put(u"t", Variant::FromObject(nullptr), u"recordlist");
  EXPECT_EQ(ExecuteThrows(list.get()), kRefused);
  EXPECT_TRUE(http_.Calls().empty());
}

}  // namespace
}  // namespace qv
