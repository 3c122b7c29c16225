// Verbs for the tests of tables: the formater over a component in memory.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/fake_record_list.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "recordlist/failing_formater.h"
#include "recordlist/formater_record_list.h"
#include "support/print_wide_string.h"

namespace qv {

using Lines = std::vector<std::string>;

inline constexpr char kBadHeader[] =
    "EQvException 0x00000000 Header contains special Xml chars that are not valid for tag name";
inline constexpr char kNotAccurate[] =
    "EQvException 0x00000000 Unable to convert a value with the given accuracy";

// A column definition and the whole content of a table element, as a server may write them.
inline std::u16string ColumnXml(const std::u16string& name, const std::u16string& type) {
  return u"<c xsd:name='" + name + u"' xsd:type='" + type + u"'/>";
}
inline std::u16string TableXml(const std::u16string& columns, const std::u16string& records) {
  return u"<h><s>" + columns + u"</s></h><d>" + records + u"</d>";
}
// One column, one record, one cell of this content.
inline std::u16string OneCellXml(const std::u16string& type, const std::u16string& content) {
  return TableXml(ColumnXml(u"a", type), u"<i><a>" + content + u"</a></i>");
}
// Column "a" of whole numbers and "b" of texts: their definitions, and the whole table with two records.
inline std::u16string TwoColumnsXml() {
  return ColumnXml(u"a", u"xsd:int") + ColumnXml(u"b", u"xsd:string");
}
inline std::u16string TwoByTwoXml() {
  return TableXml(TwoColumnsXml(), u"<i><a>5</a><b>x</b></i><i><a>6</a><b>y</b></i>");
}
inline FakeTable TwoByTwo() {
  return FakeTable{{{u"a", 10, u"A"}, {u"b", 1, u"B"}}, {{{Int(5), Text(u"x")}}, {{Int(6), Text(u"y")}}}};
}

class RecordListTest : public FactoryFixture {
 protected:
  void TearDown() override { EXPECT_EQ(fake_.LiveObjects(), 0); }

  Variant Read(const std::u16string& content) {
    const XmlText xml(u"<v>" + content + u"</v>");
    return formater_.ReadValue(xml.Root());
  }
  std::string ReadThrows(const std::u16string& content) {
    return Thrown([&] { Read(content); });
  }
  // Reads a table whose content is not of interest; what became of it is in the fake.
  void ReadAway(const std::u16string& content) { EXPECT_EQ(ReadThrows(content), "nothing"); }
  // The one cell that the content has.
  std::string CellRead(const std::u16string& type, const std::u16string& content) {
    Variant list;
    std::string thrown = Thrown([&] { list = Read(OneCellXml(type, content)); });
    if (thrown != "nothing") return thrown;
    return ShownValue(fake_.Table().rows.at(0).cells.at(0));
  }

  std::string Written(const Variant& list) { return Shown(formater_.WriteValue(list)); }
  std::string Written(const FakeTable& table) {
    return Written(Variant::FromObject(fake_.MakeList(table).get()));
  }
  std::string WriteThrows(const Variant& list) {
    return Thrown([&] { formater_.WriteValue(list); });
  }
  std::string WriteThrows(const FakeTable& table) { return WriteThrows(fake_, table); }
  std::string WriteThrows(FakeRecordList& fake, const FakeTable& table) {
    return WriteThrows(Variant::FromObject(fake.MakeList(table).get()));
  }
  // The one cell that a table of this column type with this value has, between the tags of its record.
  std::string CellWritten(std::int32_t type, const Variant& value) {
    const std::string text = Written(FakeTable{{{u"a", type}}, {{{value}}}});
    const std::size_t start = text.find("<q1:Record>") + 11;
    return text.substr(start, text.find("</q1:Record>") - start);
  }
  // The fake ended at this call, and everything was given back.
  static void ExpectEnd(const FakeRecordList& fake, const char* lastCall) {
    ASSERT_FALSE(fake.Calls().empty()) << lastCall;
    EXPECT_EQ(fake.Calls().back(), lastCall);
    EXPECT_EQ(fake.LiveObjects(), 0) << lastCall;
  }

  FakeRecordList fake_;
  FormaterRecordList formater_;
};

}  // namespace qv
