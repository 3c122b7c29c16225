// Tables that typed.table makes, to the byte.
#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class TypedTable : public TableTest {
 protected:
  // Calls of typed.table with their messages.
  void ExpectErrors(ScriptRows rows) {
    for (const ScriptRow& row : rows)
      EXPECT_EQ(Fault("typed.table(" + row.script + ")"),
                "1010|typed.table: " + row.outcome + " (line 1)|script, line 1")
          << row.script;
  }
};

TEST_F(TypedTable, HasTheWholeForm) {
  const std::string body = Execute("typed.table({name: 'string', count: 'int'}, [['a', 1], ['b', 2]])");
  EXPECT_EQ(
      ResultElementIn(body),
      TableElement(SchemaIdIn(body),
                   ColumnElement("name", "xsd:string", "name") + ColumnElement("count", "xsd:int", "count"),
                   Record("<name>a</name><count>1</count>") + Record("<name>b</name><count>2</count>")));
}

TEST_F(TypedTable, ExampleOfTheDocumentation) {
  const std::string script =
      "typed.table("
      "{name: \"string\", born: \"date\", salary: {type: \"qvdt:Money\", displayName: \"Salary & bonus\"}},"
      "[{name: \"Joe\", born: \"1990-03-05\", salary: 1.5}, [\"Ann\", new Date(0)], {}])";
  EXPECT_EQ(Columns(script), "name xsd:string, born xsd:date, salary qvdt:Money");
  EXPECT_EQ(Records(script), Record("<name>Joe</name><born>1990-03-05</born><salary>1.5</salary>") +
                                 Record("<name>Ann</name><born>1970-01-01</born><salary/>") +
                                 Record("<name/><born/><salary/>"));
  EXPECT_TRUE(Contains(Execute(script), " xsd:displayName=\"Salary &amp; bonus\" "));
}

TEST_F(TypedTable, SchemaIdIsAFreshGuid) {
  const std::string first = SchemaIdIn(Execute("typed.table({})"));
  const std::string second = SchemaIdIn(Execute("typed.table({})"));
  for (const std::string& id : {first, second}) {
    EXPECT_EQ(id.size(), 36U);
    for (const std::size_t at : {8U, 13U, 18U, 23U}) EXPECT_EQ(id.at(at), '-') << id;
  }
  EXPECT_NE(first, second);
}

TEST_F(TypedTable, TypesOfColumns) {
  const std::string ours =
      "typed.table({a: 'byte', b: 'short', c: 'int', d: 'long', e: 'boolean', f: 'float', g: 'double',"
      " h: 'string', i: 'date', j: 'time', k: 'datetime', l: 'duration', m: 'url'},"
      " [[-1, 300, 70000, 2n ** 53n, true, 0.1, 0.1, 5, new Date(0), new Date(7), new Date(0), {days: 2},"
      "   {url: 'u', caption: 'c'}]])";
  const std::string ofServers =
      "typed.table({a: 'xsd:dateTime', b: 'xsd:smallint', c: 'xsd:objectidentifier', d: 'sof:URL',"
      " e: 'qvdt:Blob', f: 'qvdt:Char', g: 'qvdt:EffectiveDateFrom', h: 'qvdt:EffectiveDateUntil',"
      " i: 'qvdt:HTML', j: 'qvdt:Memo', k: 'qvdt:Money', l: 'qvdt:ObjectIdentifier',"
      " m: 'qvdt:RelTimeStamp', n: 'qvdt:URL'},"
      " [[new Date(0), -5, 6, 'u', 'QUI=', 'x', '2024-03-05', '2024-03-06', '<b/>', 'y', 1.5, 7, 2.5, 'v']])";
  ExpectColumns({
      {ours,
       "a xsd:byte, b xsd:short, c xsd:int, d xsd:long, e xsd:boolean, f xsd:float, g xsd:double, "
       "h xsd:string, i xsd:date, j xsd:time, k xsd:datetime, l xsd:duration, m sof:url"},
      {ofServers,
       "a xsd:dateTime, b xsd:smallint, c xsd:objectidentifier, d sof:URL, e qvdt:Blob, f qvdt:Char, "
       "g qvdt:EffectiveDateFrom, h qvdt:EffectiveDateUntil, i qvdt:HTML, j qvdt:Memo, k qvdt:Money, "
       "l qvdt:ObjectIdentifier, m qvdt:RelTimeStamp, n qvdt:URL"},
  });
  ExpectRecords({
      {ours, Record("<a>-1</a><b>300</b><c>70000</c><d>9007199254740992</d><e>1</e><f>0.1</f><g>0.1</g>"
                    "<h>5</h><i>1970-01-01</i><j>00:00:00.007Z</j><k>1970-01-01T00:00:00.000Z</k><l>P2D</l>"
                    "<m>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</m>")},
      {ofServers,
       Record("<a>1970-01-01T00:00:00.000Z</a><b>-5</b><c>6</c>"
              "<d>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;&lt;/C&gt;</d><e>QUI=</e><f>x</f><g>2024-03-05</g>"
              "<h>2024-03-06</h><i>&lt;b/&gt;</i><j>y</j><k>1.5</k><l>7</l><m>2.5</m><n>v</n>")},
  });
}

TEST_F(TypedTable, CellsOfARecord) {
  ExpectRecords({
      {"typed.table({a: 'int', b: 'string', c: 'date'},"
       " [[], [1], [null, undefined, null], [, 'x'], {}, {c: null, b: ''}, {b: 'y'}])",
       Record("<a/><b/><c/>") + Record("<a>1</a><b/><c/>") + Record("<a/><b/><c/>") +
           Record("<a/><b>x</b><c/>") + Record("<a/><b/><c/>") + Record("<a/><b/><c/>") +
           Record("<a/><b>y</b><c/>")},
      {"typed.table({a: 'int', b: 'int'}, [{b: 2, a: 1}, {a: 3, b: 4}, {__proto__: null, b: 5}])",
       Record("<a>1</a><b>2</b>") + Record("<a>3</a><b>4</b>") + Record("<a/><b>5</b>")},
      {"typed.table({}, [[], {}])", Record("") + Record("")},
      {R"(typed.table({a: 'string'}, [['<a & "b">'], ['&amp;'], ['x\r\n\ty'], ['\u{1F600}']]))",
       Record("<a>&lt;a &amp; &quot;b&quot;&gt;</a>") + Record("<a>&amp;amp;</a>") +
           Record("<a>x&#13;\n\ty</a>") + Record("<a>\xF0\x9F\x98\x80</a>")},
      {"typed.table({a: 'short', b: 'string', c: 'qvdt:Money'},"
       " [[typed.short(5), typed.date('2024-03-05'), typed.double(1.5)]])",
       Record("<a>5</a><b>2024-03-05</b><c>1.5</c>")},
      // The table is made at once.
      {"rows = [{a: 1}]; t = typed.table({a: 'int'}, rows); rows[0].a = 2; rows.push({}); t",
       Record("<a>1</a>")},
  });
  for (const char* empty :
       {"typed.table({a: 'int'})", "typed.table({a: 'int'}, [])", "typed.table({a: 'int'}, undefined)"}) {
    ExpectColumns({{empty, "a xsd:int"}});
    ExpectRecords({{empty, ""}});
  }
  ExpectColumns({{"typed.table({})", ""}});
}

TEST_F(TypedTable, DisplayNamesAreEscaped) {
  EXPECT_TRUE(Contains(
      Execute("typed.table({a: {type: 'int', displayName: 'A & \"B\" <\xC3\xA9>'}, b: {type: 'date'}})"),
      ColumnElement("a", "xsd:int", "A &amp; &quot;B&quot; &lt;\xC3\xA9&gt;") +
          ColumnElement("b", "xsd:date", "b")));
}

TEST_F(TypedTable, WrongColumnsAreErrorsOfTheScript) {
  const std::string columns = "the columns are no object such as {name: \"string\"}.";
  const std::string type = "column \"a\" has no type (a text, or an object such as {type, displayName}).";
  const std::string displayName = "column \"a\" has a display name that is no text of one line.";
  ExpectErrors({
      {"", "takes columns and rows."},
      {"{}, [], 1", "takes columns and rows."},
      {"'a'", columns},
      {"['a']", columns},
      {"{a: {}}", type},
      {"{a: 1}", type},
      {"{a: {type: 'int', displayName: 5}}", displayName},
      {"{a: {type: 'int', displayName: 'x\\ny'}}", displayName},
      {"{a: {type: 'int', displayName: '\\u0001'}}", displayName},
      {"{a: 'int', b: 'Int'}",
       "column \"b\" has the unknown type \"Int\" (known: byte, short, int, long, boolean, float, double, "
       "string, "
       "date, time, datetime, duration, url, xsd:dateTime, xsd:smallint, xsd:objectidentifier, sof:URL, "
       "qvdt:Blob, "
       "qvdt:Char, qvdt:EffectiveDateFrom, qvdt:EffectiveDateUntil, qvdt:HTML, qvdt:Memo, qvdt:Money, "
       "qvdt:ObjectIdentifier, qvdt:RelTimeStamp, qvdt:URL)."},
  });
}

TEST_F(TypedTable, KeysThatAreNotNamesAreErrors) {
  for (const std::string key : {"", " ", "a b", "&", "a&b", "1a", "5", "-a", ".a", "a:b", "<", "a\"",
                                "a\xC3\x97", "\xF0\x9F\x98\x80", "a\xC2\xA0"})
    ExpectErrors({{"{'" + key + "': 'int'}",
                   "\"" + key +
                       "\" is no name for a column (a letter or \"_\", then letters, digits, \"-\", \".\" "
                       "and \"_\")."}});
  ExpectColumns({{"typed.table({_: 'int', 'a-1.b_': 'int', '\xC3\xB6\xC3\x9F': 'int'})",
                  "_ xsd:int, a-1.b_ xsd:int, \xC3\xB6\xC3\x9F xsd:int"}});
}

TEST_F(TypedTable, WrongRowsAreErrorsOfTheScript) {
  const std::string notRow = "row 1 is neither an array nor a plain object.";
  const std::string notInt =
      "row 1, column \"a\": the value is none of the type int (-2147483648 to 2147483647).";
  const std::string notText = "row 1, column \"b\": the value is none of the type string.";
  const ScriptRow rows[] = {
      {"{}", "the rows are no array."},
      {"null", "the rows are no array."},
      {"[[1], [1, 'x', 2]]", "row 2 has 3 cells, the table has 2 columns."},
      {"[{a: 1}, {a: 1, c: 2}]", "row 2 has the key \"c\", which is no column."},
      {"[5]", notRow},
      {"[[1], null]", "row 2 is neither an array nor a plain object."},
      {"[, [1]]", notRow},
      {"[new Date()]", notRow},
      {"[() => 1]", notRow},
      {"[typed.int(1)]", notRow},
      {"[new (class A {})()]", notRow},
      {"[['x']]", notInt},
      {"[[1.5]]", notInt},
      {"[[1], {b: 'x\\u0001'}]", "row 2, column \"b\": the value is none of the type string."},
      {"[{b: '\\ud800'}]", notText},
      {"[{b: '\\x1f'}]", notText},
  };
  for (const ScriptRow& row : rows) ExpectErrors({{"{a: 'int', b: 'string'}, " + row.script, row.outcome}});
  ExpectErrors({{"{a: 'short'}, [[typed.int(5)]]",
                 "row 1, column \"a\": the value is none of the type short (-32768 to 32767)."}});
}

TEST_F(TypedTable, ErrorsOfGettersArrive) {
  const std::string table = "typed.table({a: 'string'}, ";
  ExpectFaultStart("77|g|", {table + "[{get a() { throw new ScriptError(77, 'g') }}])"});
  ExpectFaultStart("78|s|", {table + "[[{toString() { throw new ScriptError(78, 's') }}]])"});
  ExpectFaultStart("79|p|", {table + "[new Proxy({}, {ownKeys() { throw new ScriptError(79, 'p') }})])"});
  ExpectFaultStart("80|c|", {"typed.table({get a() { throw new ScriptError(80, 'c') }})"});
  ExpectValues({
      {"try { typed.table({a: 'x'}) } catch (e) { e instanceof Error }", "xsd:boolean|true"},
      // The error is of the script's own global object.
      {"try { typed.table({}, [new Proxy({}, {ownKeys() { return 5 }})]) }"
       "catch (e) { (e instanceof Error) + e.message }",
       "xsd:string|trueThe keys of an object cannot be read."},
  });
}

TEST_F(TypedTable, TamperingDoesNotChangeIt) {
  const std::string tamper =
      "Object.keys = () => ['x']; Object.prototype.inherited = 1; Array.prototype[0] = 9;"
      "Array.prototype[Symbol.iterator] = null; JSON = null;";
  ExpectRecords({
      {tamper + "typed.table({a: 'int', b: 'int'}, [{a: 1}, [2]])",
       Record("<a>1</a><b/>") + Record("<a>2</a><b/>")},
      {tamper + "[{a: 1}, {b: 2}]", Record("<a>1</a><b/>") + Record("<a/><b>2</b>")},
  });
}

}  // namespace
}  // namespace qv::devservice::testing
