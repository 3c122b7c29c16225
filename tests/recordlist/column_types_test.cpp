// Types of columns: their names in XML, both ways, and their formaters.
#include "recordlist/column_types.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string_view>

#include "support/print_wide_string.h"

namespace qv {
namespace {

struct WrittenType {
  std::int32_t type;
  const char16_t* xmlName;
  const char16_t* formater;
};

const WrittenType kTypesWritten[] = {
    {1, u"xsd:string", u"string"},      {2, u"xsd:boolean", u"boolean"},
    {3, u"Undefined", u"float"},        {4, u"xsd:double", u"double"},
    {5, u"xsd:duration", u"duration"},  {6, u"qvdt:Blob", u"string"},
    {8, u"qvdt:URL", u"string"},        {10, u"xsd:int", u"int"},
    {11, u"xsd:short", u"short"},       {12, u"Undefined", u"long"},
    {13, u"xsd:byte", u"byte"},         {14, u"Undefined", u"unsigned short"},
    {16, u"xsd:datetime", u"datetime"}, {17, u"xsd:time", u"time"},
    {18, u"xsd:date", u"date"},         {23, u"sof:url", u"url"},
};

const std::int32_t kUnknownTypes[] = {0,  7,  9,  15, 19,   20,    21,        22,
                                      24, 25, -1, -5, 1000, 65537, INT32_MAX, INT32_MIN};

void ExpectType(std::int32_t type, std::initializer_list<std::u16string_view> names) {
  for (const std::u16string_view name : names) EXPECT_EQ(ColumnTypeOf(name), type) << ToUtf8(name);
}

TEST(ColumnTypes, EachXmlNameHasItsType) {
  ExpectType(1, {u"xsd:string", u"qvdt:Char", u"qvdt:Memo", u"qvdt:HTML"});
  ExpectType(2, {u"xsd:boolean"});
  ExpectType(4, {u"xsd:double", u"qvdt:Money", u"qvdt:RelTimeStamp"});
  ExpectType(5, {u"xsd:duration"});
  ExpectType(6, {u"qvdt:Blob"});
  ExpectType(8, {u"qvdt:URL"});
  ExpectType(10, {u"xsd:int", u"xsd:objectidentifier", u"qvdt:ObjectIdentifier"});
  ExpectType(11, {u"xsd:short", u"xsd:smallint"});
  ExpectType(13, {u"xsd:byte"});
  ExpectType(16, {u"xsd:datetime", u"xsd:dateTime"});
  ExpectType(17, {u"xsd:time"});
  ExpectType(18, {u"xsd:date", u"qvdt:EffectiveDateFrom", u"qvdt:EffectiveDateUntil"});
  ExpectType(23, {u"sof:url", u"sof:URL"});
}

TEST(ColumnTypes, XmlNamesAreComparedWithCase) {
  ExpectType(0, {u"XSD:BYTE", u"xsd:String", u"xsd:STRING", u"xsd:Boolean", u"xsd:Short", u"xsd:smallInt",
                 u"xsd:SmallInt", u"xsd:Double", u"xsd:Int", u"xsd:ObjectIdentifier", u"xsd:Date",
                 u"xsd:Time", u"xsd:DateTime", u"xsd:Datetime", u"sof:Url", u"SOF:URL", u"xsd:Duration"});
  ExpectType(0, {u"qvdt:char", u"qvdt:memo", u"qvdt:html", u"qvdt:Html", u"qvdt:url", u"qvdt:Url",
                 u"qvdt:money", u"qvdt:reltimestamp", u"qvdt:RelTimestamp", u"qvdt:objectidentifier",
                 u"qvdt:effectivedatefrom", u"qvdt:effectivedateuntil", u"qvdt:blob", u"QVDT:Blob"});
}

TEST(ColumnTypes, OtherXmlNamesAreUnknown) {
  ExpectType(0, {u"", u" ", u"string", u"int", u"xsd:", u"xsd:strin", u"xsd:strings", u" xsd:string",
                 u"xsd:string ", std::u16string_view(u"xsd:int\0", 8), std::u16string_view()});
  ExpectType(0,
             {u"xsd:float", u"xsd:long", u"xsd:unsignedShort", u"unsigned short", u"Undefined", u"xsd:Char",
              u"xsd:Blob", u"qvdt:String", u"q1:RecordList", u"qvrl:Char", u"xsd:url", u"xsd:decimal"});
}

TEST(ColumnTypes, EachTypeIsWrittenUnderOneNameAndHasItsFormater) {
  for (const WrittenType& row : kTypesWritten) {
    EXPECT_EQ(WideString(XmlTypeNameOf(row.type)), row.xmlName) << row.type;
    EXPECT_EQ(WideString(FormaterNameOf(row.type)), row.formater) << row.type;
  }
}

TEST(ColumnTypes, UnknownTypesAreWrittenUndefinedAndHaveNoFormater) {
  for (const std::int32_t type : kUnknownTypes) {
    EXPECT_EQ(WideString(XmlTypeNameOf(type)), u"Undefined") << type;
    EXPECT_EQ(FormaterNameOf(type).size(), 0U) << type;
  }
}

}  // namespace
}  // namespace qv
