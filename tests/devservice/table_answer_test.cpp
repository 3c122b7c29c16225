// Tables that typed.table makes, to the byte.
#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class TableAnswer : public TableTest {};

TEST_F(TableAnswer, HasTheWholeForm) {
  const std::string body = Execute("typed.table({name: 'string', count: 'int'}, [['a', 1], ['b', 2]])");
  const std::string id = SchemaIdIn(body);
  EXPECT_EQ(ResultElementIn(body),
            "<ExecuteResult xsi:type=\"q1:RecordList\" xmlns:q1=\"http://quorvane.example/dev/ns/SOF/2.0\">"
            "<q1:Headers><xsd:schema targetNamespace=\"uuid:" +
                id +
                "\" xmlns:qvrl=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                "xmlns:qvdt=\"http://quorvane.example/ns/core/DataTypes/1.0\" "
                "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\" "
                "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" xmlns:tns=\"uuid:" +
                id +
                "\">"
                "<xsd:element xsd:name=\"name\" xsd:type=\"xsd:string\" xsd:displayName=\"name\" "
                "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                "<xsd:element xsd:name=\"count\" xsd:type=\"xsd:int\" xsd:displayName=\"count\" "
                "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                "</xsd:schema></q1:Headers><q1:Records>"
                "<q1:Record><name>a</name><count>1</count></q1:Record>"
                "<q1:Record><name>b</name><count>2</count></q1:Record>"
                "</q1:Records></ExecuteResult>");
}

TEST_F(TableAnswer, ExampleOfTheDocumentation) {
  const std::string script =
      "typed.table("
      "{name: \"string\", born: \"date\", salary: {type: \"qvdt:Money\", displayName: \"Salary & bonus\"}},"
      "[{name: \"Joe\", born: \"1990-03-05\", salary: 1.5}, [\"Ann\", new Date(0)], {}])";
  EXPECT_EQ(Columns(script), "name xsd:string, born xsd:date, salary qvdt:Money");
  EXPECT_EQ(Records(script),
            "<q1:Record><name>Joe</name><born>1990-03-05</born><salary>1.5</salary></q1:Record>"
            "<q1:Record><name>Ann</name><born>1970-01-01</born><salary/></q1:Record>"
            "<q1:Record><name/><born/><salary/></q1:Record>");
  EXPECT_NE(Execute(script).find(" xsd:displayName=\"Salary &amp; bonus\" "), std::string::npos);
}

TEST_F(TableAnswer, SchemaIdIsAFreshGuid) {
  const std::string first = SchemaIdIn(Execute("typed.table({})"));
  const std::string second = SchemaIdIn(Execute("typed.table({})"));
  for (const std::string& id : {first, second}) {
    EXPECT_EQ(id.size(), 36u);
    for (const std::size_t at : {8u, 13u, 18u, 23u}) EXPECT_EQ(id.at(at), '-') << id;
  }
  EXPECT_NE(first, second);
}

TEST_F(TableAnswer, EveryTypeOfValueCanBeAColumn) {
  const std::string script =
      "typed.table({a: 'byte', b: 'short', c: 'int', d: 'long', e: 'boolean', f: 'float', g: 'double',"
      " h: 'string', i: 'date', j: 'time', k: 'datetime', l: 'duration', m: 'url'},"
      " [[-1, 300, 70000, 2n ** 53n, true, 0.1, 0.1, 5, new Date(0), new Date(7), new Date(0), {days: 2},"
      "   {url: 'u', caption: 'c'}]])";
  EXPECT_EQ(Columns(script),
            "a xsd:byte, b xsd:short, c xsd:int, d xsd:long, e xsd:boolean, f xsd:float, g xsd:double, "
            "h xsd:string, i xsd:date, j xsd:time, k xsd:datetime, l xsd:duration, m sof:url");
  EXPECT_EQ(Records(script),
            "<q1:Record><a>-1</a><b>300</b><c>70000</c><d>9007199254740992</d><e>1</e><f>0.1</f><g>0.1</g>"
            "<h>5</h><i>1970-01-01</i><j>00:00:00.007Z</j><k>1970-01-01T00:00:00.000Z</k><l>P2D</l>"
            "<m>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</m></q1:Record>");
}

TEST_F(TableAnswer, NamesThatServersUseAreTypesToo) {
  const std::string script =
      "typed.table({a: 'xsd:dateTime', b: 'xsd:smallint', c: 'xsd:objectidentifier', d: 'sof:URL',"
      " e: 'qvdt:Blob', f: 'qvdt:Char', g: 'qvdt:EffectiveDateFrom', h: 'qvdt:EffectiveDateUntil',"
      " i: 'qvdt:HTML', j: 'qvdt:Memo', k: 'qvdt:Money', l: 'qvdt:ObjectIdentifier',"
      " m: 'qvdt:RelTimeStamp', n: 'qvdt:URL'},"
      " [[new Date(0), -5, 6, 'u', 'QUI=', 'x', '2024-03-05', '2024-03-06', '<b/>', 'y', 1.5, 7, 2.5, 'v']])";
  EXPECT_EQ(Columns(script),
            "a xsd:dateTime, b xsd:smallint, c xsd:objectidentifier, d sof:URL, e qvdt:Blob, f qvdt:Char, "
            "g qvdt:EffectiveDateFrom, h qvdt:EffectiveDateUntil, i qvdt:HTML, j qvdt:Memo, k qvdt:Money, "
            "l qvdt:ObjectIdentifier, m qvdt:RelTimeStamp, n qvdt:URL");
  EXPECT_EQ(Records(script),
            "<q1:Record><a>1970-01-01T00:00:00.000Z</a><b>-5</b><c>6</c>"
            "<d>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;&lt;/C&gt;</d><e>QUI=</e><f>x</f><g>2024-03-05</g>"
            "<h>2024-03-06</h><i>&lt;b/&gt;</i><j>y</j><k>1.5</k><l>7</l><m>2.5</m><n>v</n></q1:Record>");
}

TEST_F(TableAnswer, EveryRecordHasACellForEachColumn) {
  const std::string columns = "typed.table({a: 'int', b: 'string', c: 'date'}, ";
  EXPECT_EQ(Records(columns + "[[], [1], [null, undefined, null], [, 'x'], {}, {c: null, b: ''}, {b: 'y'}])"),
            "<q1:Record><a/><b/><c/></q1:Record>"
            "<q1:Record><a>1</a><b/><c/></q1:Record>"
            "<q1:Record><a/><b/><c/></q1:Record>"
            "<q1:Record><a/><b>x</b><c/></q1:Record>"
            "<q1:Record><a/><b/><c/></q1:Record>"
            "<q1:Record><a/><b/><c/></q1:Record>"
            "<q1:Record><a/><b>y</b><c/></q1:Record>");
}

TEST_F(TableAnswer, KeysMayStandInAnyOrder) {
  EXPECT_EQ(
      Records("typed.table({a: 'int', b: 'int'}, [{b: 2, a: 1}, {a: 3, b: 4}, {__proto__: null, b: 5}])"),
      "<q1:Record><a>1</a><b>2</b></q1:Record><q1:Record><a>3</a><b>4</b></q1:Record>"
      "<q1:Record><a/><b>5</b></q1:Record>");
}

TEST_F(TableAnswer, MayBeEmpty) {
  for (const char* script :
       {"typed.table({a: 'int'})", "typed.table({a: 'int'}, [])", "typed.table({a: 'int'}, undefined)"}) {
    EXPECT_EQ(Columns(script), "a xsd:int") << script;
    EXPECT_EQ(Records(script), "") << script;
  }
  EXPECT_EQ(Columns("typed.table({})"), "");
  EXPECT_EQ(Records("typed.table({}, [[], {}])"), "<q1:Record></q1:Record><q1:Record></q1:Record>");
}

TEST_F(TableAnswer, DisplayNamesAreEscaped) {
  const std::string body = Execute(
      "typed.table({a: {type: 'int', displayName: 'A & \"B\" <\xC3\xA9>'},"
      " b: {type: 'date'}})");
  EXPECT_NE(body.find("<xsd:element xsd:name=\"a\" xsd:type=\"xsd:int\" "
                      "xsd:displayName=\"A &amp; &quot;B&quot; &lt;\xC3\xA9&gt;\" "
                      "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                      "<xsd:element xsd:name=\"b\" xsd:type=\"xsd:date\" xsd:displayName=\"b\" "),
            std::string::npos)
      << body;
}

TEST_F(TableAnswer, TextsAreEscapedOnce) {
  EXPECT_EQ(
      Records("typed.table({a: 'string'}, [['<a & \"b\">'], ['&amp;'], ['x\\r\\n\\ty'], ['\\u{1F600}']])"),
      "<q1:Record><a>&lt;a &amp; &quot;b&quot;&gt;</a></q1:Record>"
      "<q1:Record><a>&amp;amp;</a></q1:Record>"
      "<q1:Record><a>x&#13;\n\ty</a></q1:Record>"
      "<q1:Record><a>\xF0\x9F\x98\x80</a></q1:Record>");
}

TEST_F(TableAnswer, TypedValuesFitTheirColumns) {
  EXPECT_EQ(Records("typed.table({a: 'short', b: 'string', c: 'qvdt:Money'},"
                    " [[typed.short(5), typed.date('2024-03-05'), typed.double(1.5)]])"),
            "<q1:Record><a>5</a><b>2024-03-05</b><c>1.5</c></q1:Record>");
  EXPECT_EQ(Fault("typed.table({a: 'short'}, [[typed.int(5)]])"),
            "1010|typed.table: row 1, column \"a\": the value is none of the type short (-32768 to 32767). "
            "(line 1)|"
            "script, line 1");
}

TEST_F(TableAnswer, WrongColumnsAreErrorsOfTheScript) {
  constexpr const char* kRows[][2] = {
      {"typed.table()", "takes columns and rows."},
      {"typed.table({}, [], 1)", "takes columns and rows."},
      {"typed.table('a')", "the columns are no object such as {name: \"string\"}."},
      {"typed.table(['a'])", "the columns are no object such as {name: \"string\"}."},
      {"typed.table({a: {}})",
       "column \"a\" has no type (a text, or an object such as {type, displayName})."},
      {"typed.table({a: 1})", "column \"a\" has no type (a text, or an object such as {type, displayName})."},
      {"typed.table({a: {type: 'int', displayName: 5}})",
       "column \"a\" has a display name that is no text of one line."},
      {"typed.table({a: {type: 'int', displayName: 'x\\ny'}})",
       "column \"a\" has a display name that is no text of one line."},
      {"typed.table({a: {type: 'int', displayName: '\\u0001'}})",
       "column \"a\" has a display name that is no text of one line."},
  };
  for (const auto& row : kRows)
    EXPECT_EQ(Fault(row[0]), std::string("1010|typed.table: ") + row[1] + " (line 1)|script, line 1")
        << row[0];
}

TEST_F(TableAnswer, UnknownTypeNamesTheKnownOnes) {
  EXPECT_EQ(
      Fault("typed.table({a: 'int', b: 'Int'})"),
      "1010|typed.table: column \"b\" has the unknown type \"Int\" (known: byte, short, int, long, boolean, "
      "float, double, string, date, time, datetime, duration, url, xsd:dateTime, xsd:smallint, "
      "xsd:objectidentifier, sof:URL, qvdt:Blob, qvdt:Char, qvdt:EffectiveDateFrom, "
      "qvdt:EffectiveDateUntil, qvdt:HTML, qvdt:Memo, qvdt:Money, qvdt:ObjectIdentifier, "
      "qvdt:RelTimeStamp, qvdt:URL). (line 1)|script, line 1");
}

TEST_F(TableAnswer, KeysThatAreNoNamesAreErrors) {
  for (const char* key : {"", " ", "a b", "&", "a&b", "1a", "5", "-a", ".a", "a:b", "<", "a\"", "a\xC3\x97",
                          "\xF0\x9F\x98\x80", "a\xC2\xA0"}) {
    EXPECT_EQ(Fault(std::string("typed.table({'") + key + "': 'int'})"),
              std::string("1010|typed.table: \"") + key +
                  "\" is no name for a column (a letter or \"_\", then letters, digits, \"-\", \".\" and "
                  "\"_\"). (line 1)|"
                  "script, line 1");
  }
  EXPECT_EQ(Columns("typed.table({_: 'int', 'a-1.b_': 'int', 'Gr\xC3\xB6\xC3\x9F"
                    "e': 'int'})"),
            "_ xsd:int, a-1.b_ xsd:int, Gr\xC3\xB6\xC3\x9F"
            "e xsd:int");
}

TEST_F(TableAnswer, WrongRowsAreErrorsOfTheScript) {
  constexpr const char* kRows[][2] = {
      {"{}", "the rows are no array."},
      {"null", "the rows are no array."},
      {"[[1], [1, 'x', 2]]", "row 2 has 3 cells, the table has 2 columns."},
      {"[{a: 1}, {a: 1, c: 2}]", "row 2 has the key \"c\", which is no column."},
      {"[5]", "row 1 is neither an array nor a plain object."},
      {"[[1], null]", "row 2 is neither an array nor a plain object."},
      {"[, [1]]", "row 1 is neither an array nor a plain object."},
      {"[new Date()]", "row 1 is neither an array nor a plain object."},
      {"[() => 1]", "row 1 is neither an array nor a plain object."},
      {"[typed.int(1)]", "row 1 is neither an array nor a plain object."},
      {"[new (class A {})()]", "row 1 is neither an array nor a plain object."},
      {"[['x']]", "row 1, column \"a\": the value is none of the type int (-2147483648 to 2147483647)."},
      {"[[1.5]]", "row 1, column \"a\": the value is none of the type int (-2147483648 to 2147483647)."},
      {"[[1], {b: 'x\\u0001'}]", "row 2, column \"b\": the value is none of the type string."},
      {"[{b: '\\ud800'}]", "row 1, column \"b\": the value is none of the type string."},
      {"[{b: '\\x1f'}]", "row 1, column \"b\": the value is none of the type string."},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Fault(std::string("typed.table({a: 'int', b: 'string'}, ") + row[0] + ")"),
              std::string("1010|typed.table: ") + row[1] + " (line 1)|script, line 1")
        << row[0];
  }
}

TEST_F(TableAnswer, WhatGettersThrowArrives) {
  const std::string table = "typed.table({a: 'string'}, ";
  EXPECT_EQ(Fault(table + "[{get a() { throw new ScriptError(77, 'g') }}])").substr(0, 5), "77|g|");
  EXPECT_EQ(Fault(table + "[[{toString() { throw new ScriptError(78, 's') }}]])").substr(0, 5), "78|s|");
  EXPECT_EQ(Fault(table + "[new Proxy({}, {ownKeys() { throw new ScriptError(79, 'p') }})])").substr(0, 5),
            "79|p|");
  EXPECT_EQ(Fault("typed.table({get a() { throw new ScriptError(80, 'c') }})").substr(0, 5), "80|c|");
  EXPECT_EQ(Value("try { typed.table({a: 'x'}) } catch (e) { e instanceof Error }"), "xsd:boolean|true");
}

TEST_F(TableAnswer, ErrorsBelongToTheScriptsWorld) {
  EXPECT_EQ(Value("try { typed.table({}, [new Proxy({}, {ownKeys() { return 5 }})]) }"
                  "catch (e) { (e instanceof Error) + e.message }"),
            "xsd:string|trueThe keys of an object cannot be read.");
}

TEST_F(TableAnswer, TamperingDoesNotChangeIt) {
  const std::string tamper =
      "Object.keys = () => ['x']; Object.prototype.inherited = 1; Array.prototype[0] = 9;"
      "Array.prototype[Symbol.iterator] = null; JSON = null;";
  EXPECT_EQ(Records(tamper + "typed.table({a: 'int', b: 'int'}, [{a: 1}, [2]])"),
            "<q1:Record><a>1</a><b/></q1:Record><q1:Record><a>2</a><b/></q1:Record>");
  EXPECT_EQ(Records(tamper + "[{a: 1}, {b: 2}]"),
            "<q1:Record><a>1</a><b/></q1:Record><q1:Record><a/><b>2</b></q1:Record>");
}

TEST_F(TableAnswer, TheWireIsMadeOnceAndKept) {
  EXPECT_EQ(Records("rows = [{a: 1}]; t = typed.table({a: 'int'}, rows); rows[0].a = 2; rows.push({}); t"),
            "<q1:Record><a>1</a></q1:Record>");
}

TEST_F(TableAnswer, IsNoCell) {
  EXPECT_EQ(
      Fault("[{a: typed.table({})}]"),
      "1012|The script's table: row 1, column \"a\": The script's value is an object, which has no form in "
      "an answer.|script");
}

}  // namespace
}  // namespace qv::devservice::testing
