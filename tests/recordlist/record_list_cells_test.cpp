// Cells of each column type, both ways.
#include "format/probe_formater.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

class RecordListCells : public RecordListTest {
 protected:
  // The one cell that was read last.
  const Variant& Cell() const { return fake_.Table().rows.at(0).cells.at(0); }
};

TEST_F(RecordListCells, TextIsReadByTheColumnsType) {
  const struct {
    const char16_t* type;
    const char16_t* content;
    std::string value;
  } rows[] = {
      {u"xsd:byte", u"5", "VT_I1 5"},
      {u"xsd:string", u"a b", "VT_BSTR a b"},
      {u"qvdt:Char", u"x", "VT_BSTR x"},
      {u"qvdt:Memo", u"12", "VT_BSTR 12"},
      {u"qvdt:HTML", u"&lt;b&gt;", "VT_BSTR <b>"},
      {u"qvdt:URL", u"http://a/b", "VT_BSTR http://a/b"},
      {u"xsd:boolean", u"true", "VT_BOOL -1"},
      {u"xsd:boolean", u"1", "VT_BOOL -1"},
      {u"xsd:boolean", u"TRUE", "VT_BOOL 0"},
      {u"xsd:short", u"70000", "VT_I2 4464"},
      {u"xsd:smallint", u"-3", "VT_I2 -3"},
      {u"xsd:double", u"1.5", "VT_R8 1.5"},
      {u"qvdt:Money", u"12.25", "VT_R8 12.25"},
      {u"qvdt:RelTimeStamp", u"1e2", "VT_R8 100"},
      {u"xsd:int", u"12abc", "VT_INT 12"},
      {u"xsd:objectidentifier", u"7", "VT_INT 7"},
      {u"qvdt:ObjectIdentifier", u"abc", "VT_INT 0"},
      {u"xsd:date", u"2024-03-05", "VT_DATE 45356"},
      {u"xsd:date", u"2024-03-05T18:00:00", "VT_DATE 45356.75"},
      {u"qvdt:EffectiveDateFrom", u"2024-03-05", "VT_DATE 45356"},
      {u"qvdt:EffectiveDateUntil", u"2024-03-05", "VT_DATE 45356"},
      {u"xsd:time", u"06:00:00.0Z", "VT_DATE 0.25"},
      {u"xsd:datetime", u"2024-03-05T18:00:00.0Z", "VT_DATE 45356.75"},
      {u"xsd:dateTime", u"2024-03-05T18:00:00", "VT_DATE 45356.75"},
      {u"xsd:duration", u"P1D", "VT_UNKNOWN object"},
      {u"sof:url", u"&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;", "VT_UNKNOWN object"},
      {u"sof:URL", u"&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;", "VT_UNKNOWN object"},
      {u"qvdt:Blob", u"AAEC/w==", "VT_BSTR AAEC/w=="},
      {u"xsd:float", u"1.5", "VT_EMPTY"},
      {u"Undefined", u"5", "VT_EMPTY"},
      {u"", u"5", "VT_EMPTY"},
      // Without text it is what the formater makes of nothing.
      {u"xsd:byte", u"", "VT_I1 0"},
      {u"xsd:string", u"", "VT_BSTR "},
      {u"qvdt:URL", u"", "VT_BSTR "},
      {u"qvdt:Blob", u"", "VT_BSTR "},
      {u"xsd:boolean", u"", "VT_BOOL 0"},
      {u"xsd:short", u"", "VT_I2 0"},
      {u"xsd:double", u"", "VT_R8 0"},
      {u"xsd:int", u"", "VT_INT 0"},
      {u"xsd:date", u"", kNotAccurate},
      {u"xsd:time", u"", kNotAccurate},
      {u"xsd:datetime", u"", kNotAccurate},
      {u"xsd:duration", u"", kCannotCreate},
      {u"sof:url", u"", "VT_EMPTY"},
      {u"made up", u"", "VT_EMPTY"},
      // A bad text fails as the formater does.
      {u"xsd:date", u"2024", kNotAccurate},
      {u"xsd:date", u"2024-13-01", Refused("Invalid argument to date encode")},
      {u"xsd:time", u"25:00", Refused("Invalid argument to time encode")},
      {u"xsd:datetime", u"2024-03T10:15", Refused("Expecting a full date value")},
      {u"sof:url", u"a://b/c", Refused("Cannot build a url object.")},
      {u"xsd:duration", u"1D", kCannotCreate},
      // Only text nodes are text, and references in them are resolved.
      {u"xsd:string", u"<!--c-->x", "VT_BSTR x"},
      {u"xsd:string", u"<b>y</b>x", "VT_BSTR x"},
      {u"xsd:string", u"<?p i?>x", "VT_BSTR x"},
      {u"xsd:string", u"x<b/>y", "VT_BSTR x"},
      {u"xsd:string", u"x<!--c-->y", "VT_BSTR x"},
      {u"xsd:string", u"<![CDATA[x]]>", "VT_BSTR "},
      {u"xsd:string", u"<![CDATA[x]]>y", "VT_BSTR y"},
      {u"xsd:int", u"<b>5</b>", "VT_INT 0"},
      {u"xsd:int", u"<!--5-->", "VT_INT 0"},
      {u"xsd:date", u"<![CDATA[2024-03-05]]>", kNotAccurate},
      {u"xsd:string", u"a&amp;b&lt;c&#233;d", "VT_BSTR a&b<c\\u00E9d"},
      {u"xsd:string", u" a\nb ", "VT_BSTR  a\\u000Ab "},
  };
  for (const auto& row : rows)
    EXPECT_EQ(CellRead(row.type, row.content), row.value) << Shown(row.type) << " " << Shown(row.content);
}

TEST_F(RecordListCells, FormaterGetsTheTextNode) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"double");
  EXPECT_EQ(CellRead(u"xsd:double", u"5"), "VT_BSTR probe");
  EXPECT_EQ(Shown(creator.formater.lastName), "#text");
  EXPECT_EQ(CellRead(u"xsd:double", u"<b/>"), "VT_BSTR probe");
  EXPECT_EQ(Shown(creator.formater.lastName), "");
}

TEST_F(RecordListCells, LongTextIsWhole) {
  EXPECT_EQ(CellRead(u"xsd:string", std::u16string(200000, u'x')), "VT_BSTR " + std::string(200000, 'x'));
}

TEST_F(RecordListCells, EmptyStringIsNotNull) {
  EXPECT_EQ(CellRead(u"xsd:string", u""), "VT_BSTR ");
  EXPECT_FALSE(Cell().Text().IsNull());
}

TEST_F(RecordListCells, DurationIsReadWithItsTextAndAUrlAsAUrl) {
  EXPECT_EQ(CellRead(u"xsd:duration", u"-P1DT2H"), "VT_UNKNOWN object");
  const IDurationRawPtr raw = As<IDurationRaw>(Cell().Object());
  ASSERT_NE(raw, nullptr);
  WideString text;
  EXPECT_EQ(raw->GetText(&text), S_OK);
  EXPECT_EQ(Shown(text), "-P1DT2H");
  EXPECT_EQ(CellRead(u"sof:url", u"&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;"), "VT_UNKNOWN object");
  EXPECT_NE(As<IUrl>(Cell().Object()), nullptr);
}

TEST_F(RecordListCells, ValueIsWrittenByTheColumnsTypeAndEscapedTwice) {
  const struct {
    std::int32_t type;
    Variant value;
    const char* cell;
  } rows[] = {
      {1, Text(u"a b"), "<a>a b</a>"},
      {2, Bool(true), "<a>1</a>"},
      {2, Bool(false), "<a>0</a>"},
      {3, R4(1.5F), "<a>1.5</a>"},
      {4, R8(3.14159265), "<a>3.14159</a>"},
      {5, Variant::FromObject(CreateDuration(u"-P1DT2H").get()), "<a>-P1DT2H</a>"},
      {6, Text(u"AAEC/w=="), "<a>AAEC/w==</a>"},
      {8, Text(u"http://a/b"), "<a>http://a/b</a>"},
      {10, Int(-7), "<a>-7</a>"},
      {11, I2(-300), "<a>-300</a>"},
      {12, I8(12345678901234), "<a>12345678901234</a>"},
      {13, I1(-5), "<a>-5</a>"},
      {13, Text(u"12"), "<a>12</a>"},
      {14, Int(5), "<a/>"},
      {16, Date(45356.75), "<a>2024-03-05T18:00:00.0Z</a>"},
      {17, Date(45356.25), "<a>06:00:00.0Z</a>"},
      {18, Date(45356.75), "<a>2024-03-05</a>"},
      {23, Variant::FromObject(CreateUrl().get()), "<a/>"},
      {0, Text(u"x"), "<a/>"},
      {7, Int(5), "<a/>"},
      {99, Int(5), "<a/>"},
      {-1, Text(u"x"), "<a/>"},
      // A cell that was never set is written by its type.
      {1, Variant(), "<a/>"},
      {2, Variant(), "<a>0</a>"},
      {4, Variant(), "<a>0</a>"},
      {6, Variant(), "<a/>"},
      {10, Variant(), "<a>0</a>"},
      {11, Variant(), "<a>0</a>"},
      {13, Variant(), "<a>0</a>"},
      {17, Variant(), "<a>00:00:00.0Z</a>"},
      {23, Variant(), "<a/>"},
      {0, Variant(), "<a/>"},
      {1, Text(u"a&b"), "<a>a&amp;amp;b</a>"},
      {1, Text(u"<>\"'"), "<a>&amp;lt;&amp;gt;&amp;quot;&amp;apos;</a>"},
      {6, Text(u"\u00E9"), "<a>&amp;#233;</a>"},
      {8, Text(u"a?b=1&c=2"), "<a>a?b=1&amp;amp;c=2</a>"},
      {1, Text(u""), "<a/>"},
      {1, NullText(), "<a/>"},
      {1, Text(u" "), "<a> </a>"},
      {1, Text(std::u16string_view(u"\0x", 2)), "<a/>"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(CellWritten(row.type, row.value), row.cell) << row.type << " " << ShownValue(row.value);
}

TEST_F(RecordListCells, TextOfTheFormaterIsWhatIsEscaped) {
  Factory()->Clear();
  ProbeFormaterCreator creator(u"double");
  EXPECT_EQ(CellWritten(4, Int(5)), "<a>probe</a>");
}

TEST_F(RecordListCells, ValueThatTheFormaterRefusesFailsTheTable) {
  const IUrlPtr object = CreateUrl();
  const struct {
    std::int32_t type;
    Variant value;
  } rows[] = {{13, Variant::FromObject(object.get())},
              {13, Text(u"abc")},
              {13, Variant::Null()},
              {5, Variant::FromObject(object.get())},
              {5, Variant::FromObject(nullptr)},
              {5, Variant()},
              {5, Text(u"P1D")}};
  for (const auto& row : rows)
    EXPECT_EQ(WriteThrows(FakeTable{{{u"a", row.type}}, {{{row.value}}}}), kCannotCreate) << row.type;
}

}  // namespace
}  // namespace qv
