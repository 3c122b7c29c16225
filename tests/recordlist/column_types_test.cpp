// Types of columns: their names in XML, both ways, and their formaters.
#include "recordlist/column_types.h"

#include <gtest/gtest.h>

#include <string_view>

#include "support/print_wide_string.h"

namespace qv {
namespace {

struct NamedType {
  const char16_t* name;
  std::int32_t type;
};

const NamedType kNamesRead[] = {
    {u"xsd:byte", 13},
    {u"xsd:string", 1},
    {u"qvdt:Char", 1},
    {u"qvdt:Memo", 1},
    {u"qvdt:HTML", 1},
    {u"qvdt:URL", 8},
    {u"xsd:boolean", 2},
    {u"xsd:short", 11},
    {u"xsd:smallint", 11},
    {u"xsd:double", 4},
    {u"qvdt:Money", 4},
    {u"qvdt:RelTimeStamp", 4},
    {u"xsd:int", 10},
    {u"xsd:objectidentifier", 10},
    {u"qvdt:ObjectIdentifier", 10},
    {u"xsd:date", 18},
    {u"qvdt:EffectiveDateFrom", 18},
    {u"qvdt:EffectiveDateUntil", 18},
    {u"xsd:time", 17},
    {u"xsd:datetime", 16},
    {u"xsd:dateTime", 16},
    {u"sof:url", 23},
    {u"sof:URL", 23},
    {u"xsd:duration", 5},
    {u"qvdt:Blob", 6},
};

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

void ExpectUnknown(std::initializer_list<std::u16string_view> names) {
  for (const std::u16string_view name : names) EXPECT_EQ(ColumnTypeOf(name), 0) << ToUtf8(name);
}

TEST(ColumnTypes, EachXmlNameHasItsType) {
  for (const NamedType& row : kNamesRead) EXPECT_EQ(ColumnTypeOf(row.name), row.type) << ToUtf8(row.name);
}

TEST(ColumnTypes, XmlNamesAreComparedWithCase) {
  ExpectUnknown({u"XSD:BYTE", u"xsd:String", u"xsd:STRING", u"xsd:Boolean", u"xsd:Short", u"xsd:smallInt",
                 u"xsd:SmallInt", u"xsd:Double", u"xsd:Int", u"xsd:ObjectIdentifier", u"xsd:Date",
                 u"xsd:Time", u"xsd:DateTime", u"xsd:Datetime", u"sof:Url", u"SOF:URL", u"xsd:Duration"});
  ExpectUnknown({u"qvdt:char", u"qvdt:memo", u"qvdt:html", u"qvdt:Html", u"qvdt:url", u"qvdt:Url",
                 u"qvdt:money", u"qvdt:reltimestamp", u"qvdt:RelTimestamp", u"qvdt:objectidentifier",
                 u"qvdt:effectivedatefrom", u"qvdt:effectivedateuntil", u"qvdt:blob", u"QVDT:Blob"});
}

TEST(ColumnTypes, OtherXmlNamesAreUnknown) {
  ExpectUnknown({u"", u" ", u"string", u"int", u"xsd:", u"xsd:strin", u"xsd:strings", u" xsd:string",
                 u"xsd:string ", std::u16string_view(u"xsd:int\0", 8), std::u16string_view()});
  ExpectUnknown({u"xsd:float", u"xsd:long", u"xsd:unsignedShort", u"unsigned short", u"Undefined",
                 u"xsd:Char", u"xsd:Blob", u"qvdt:String", u"q1:RecordList", u"qvrl:Char", u"xsd:url",
                 u"xsd:decimal"});
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
    EXPECT_EQ(FormaterNameOf(type).size(), 0u) << type;
  }
}

}  // namespace
}  // namespace qv
