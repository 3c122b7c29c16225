// Tables from arrays of plain objects.
#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

using InferredTable = TableTest;

TEST_F(InferredTable, HasTheWholeForm) {
  const std::string body = Execute("[{a: 1, b: 'x'}, {c: true}]");
  EXPECT_EQ(ResultElementIn(body),
            TableElement(SchemaIdIn(body),
                         ColumnElement("a", "xsd:int", "a") + ColumnElement("b", "xsd:string", "b") +
                             ColumnElement("c", "xsd:boolean", "c"),
                         Record("<a>1</a><b>x</b><c/>") + Record("<a/><b/><c>true</c>")));
}

TEST_F(InferredTable, ColumnsAreTheKeysInTheirFirstOrder) {
  ExpectColumns(
      {{"[{b: 1}, {}, {a: 1, b: 2, c: 3}, {d: 1, a: 2}]", "b xsd:int, a xsd:int, c xsd:int, d xsd:int"}});
  ExpectRecords(
      {{"[{b: 1, a: 2}, {a: 3, b: 4}, {c: 5, a: 6}]",
        Record("<b>1</b><a>2</a><c/>") + Record("<b>4</b><a>3</a><c/>") + Record("<b/><a>6</a><c>5</c>")}});
}

TEST_F(InferredTable, TypesFollowTheValues) {
  const std::string script =
      "[{a: 2147483647, b: 2147483648, c: 1.5, d: false, e: 'x', f: new Date(0), g: 5n, h: parameters.p,"
      " i: typed.short(5), j: typed.date('2024-03-05'), k: typed.duration('P1D'), l: typed.url('u'),"
      " m: typed.time('10:15:30Z'), n: typed.byte(1), o: typed.float(0.5)}]";
  const std::string body = Execute(script, OneParameter("xsd:duration", "P2D"));
  EXPECT_EQ(ColumnsIn(body),
            "a xsd:int, b xsd:double, c xsd:double, d xsd:boolean, e xsd:string, f xsd:datetime, g xsd:long, "
            "h xsd:duration, i xsd:short, j xsd:date, k xsd:duration, l sof:url, m xsd:time, n xsd:byte, "
            "o xsd:float");
  EXPECT_EQ(
      RecordsIn(body),
      Record("<a>2147483647</a><b>2147483648</b><c>1.5</c><d>false</d><e>x</e>"
             "<f>1970-01-01T00:00:00.000Z</f><g>5</g><h>P2D</h><i>5</i><j>2024-03-05</j><k>P1D</k>"
             "<l>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;&lt;/C&gt;</l><m>10:15:30.000Z</m><n>1</n><o>0.5</o>"));
}

TEST_F(InferredTable, MixturesHaveACommonType) {
  for (const char* script : {"[{a: 1}, {a: 1.5}]", "[{a: 1.5}, {a: 1}]", "[{a: 1.5}, {}, {a: null}, {a: 2}]",
                             "[{a: 1}, {a: 1e10}, {a: 2}]", "[{a: 1}, {a: -0}]", "[{a: NaN}]",
                             "[{a: typed.int(1)}, {a: typed.double(1)}]"})
    EXPECT_EQ(Columns(script), "a xsd:double") << script;
  for (const char* script : {"[{a: 1}, {a: 'x'}]", "[{a: true}, {a: 1}]", "[{a: new Date(0)}, {a: 'x'}]",
                             "[{a: typed.short(1)}, {a: 1}]", "[{a: 1}, {a: 'x'}, {a: 1}, {a: 1.5}]",
                             "[{a: typed.date('2024-03-05')}, {a: new Date(0)}]"})
    EXPECT_EQ(Columns(script), "a xsd:string") << script;
  ExpectRecords({
      {"[{a: 1}, {a: 0.1}, {a: 1e300}]", Record("<a>1</a>") + Record("<a>0.1</a>") + Record("<a>1e+300</a>")},
      {"[{a: 1}, {a: 'x'}, {a: true}, {a: new Date(0)}, {a: 1.5}]",
       Record("<a>1</a>") + Record("<a>x</a>") + Record("<a>true</a>") +
           Record("<a>1970-01-01T00:00:00.000Z</a>") + Record("<a>1.5</a>")},
  });
}

TEST_F(InferredTable, NothingIsAnEmptyCellOfAnyType) {
  ExpectColumns({
      {"[{a: null}, {a: 1}, {a: undefined}]", "a xsd:int"},
      {"[{a: null}, {a: undefined}]", "a xsd:string"},
      {"[{}]", ""},
  });
  ExpectRecords({
      {"[{a: null}, {a: 1}, {a: undefined}, {a: 2}]",
       Record("<a/>") + Record("<a>1</a>") + Record("<a/>") + Record("<a>2</a>")},
      {"[{}, {}]", Record("") + Record("")},
  });
}

TEST_F(InferredTable, RowsArePlainObjects) {
  ExpectRecords({
      {"[{a: '<a & \"b\">', b: '&amp;', c: '\xC3\xA9\\r'}]",
       Record("<a>&lt;a &amp; &quot;b&quot;&gt;</a><b>&amp;amp;</b><c>\xC3\xA9&#13;</c>")},
      {"[Object.assign(Object.create(null), {a: 1}), JSON.parse('{\"a\": 2}')]",
       Record("<a>1</a>") + Record("<a>2</a>")},
      {"rows = [{a: 1, [Symbol('s')]: 2}]; Object.defineProperty(rows[0], 'hidden', {value: 3}); rows",
       Record("<a>1</a>")},
      {"class Rows extends Array {}; Rows.from([{a: 1}])", Record("<a>1</a>")},
      {"[{a: 1, get b() { delete this.c; return 2 }, c: 3}]", Record("<a>1</a><b>2</b><c/>")},
  });
  for (const char* script :
       {"[]", "[1]", "[{a: 1}, 1]", "[null]", "[{a: 1}, undefined]", "[{a: 1}, , {a: 2}]", "[[1], [2]]",
        "[new Date(0)]", "[{a: 1}, typed.int(1)]", "[() => 1]", "[new (class A { x = 1 })()]", "[new Map()]",
        "[typed.table({})]", "['a']", "[Symbol()]", "new Array(4294967295)"})
    ExpectFaults(
        {{script,
          "1012|The script's value is an array, which has no form in an answer; a table of other rows than "
          "plain objects, or of none, is a typed.table.|script"}});
}

TEST_F(InferredTable, KeysThatAreNotNamesAreFaults) {
  for (const std::string key : {"", " ", "a b", "&", "1", "a:b", "<a>"})
    ExpectFaults(
        {{"[{ok: 1}, {'" + key + "': 1}]",
          "1012|The script's table: \"" + key +
              "\" is no name for a column (a letter or \"_\", then letters, digits, \"-\", \".\" and "
              "\"_\")|script"}});
}

TEST_F(InferredTable, ValuesWithoutFormAreFaultsWithTheirPlace) {
  constexpr const char* kRows[][2] = {
      {"{}", "The script's value is an object, which has no form in an answer."},
      {"typed.table({})", "The script's value is an object, which has no form in an answer."},
      {"[{b: 1}]", "The script's value is an array, which has no form in an answer."},
      {"() => 1", "The script's value is an object, which has no form in an answer."},
      {"Symbol()", "The script's value is a symbol, which has no form in an answer."},
      {"new Date(NaN)", "The script's value is an invalid Date."},
      {"2n ** 70n", "The script's BigInt is beyond the range of the type long."},
      {"'x\\u0001'", "The script's text holds the character code 1 at position 1, which XML cannot carry."},
      {"'\\x1e'", "The script's text holds the character code 30 at position 0, which XML cannot carry."},
  };
  for (const auto& [value, message] : kRows)
    ExpectFaults({{std::string("[{a: 1}, {a: ") + value + "}]",
                   std::string("1012|The script's table: row 2, column \"a\": ") + message + "|script"}});
  ExpectFaultStart("1012|", {"a = [{}]; a[0].a = a; a"});
}

TEST_F(InferredTable, ErrorsOfGettersArrive) {
  ExpectFaultStart("77|g|", {"[{get a() { throw new ScriptError(77, 'g') }}]"});
  ExpectFaultStart(
      "78|r|",
      {"rows = [{}]; Object.defineProperty(rows, 0, {get() { throw new ScriptError(78, 'r') }}); rows"});
  ExpectFaultStart("79|p|", {"[new Proxy({}, {ownKeys() { throw new ScriptError(79, 'p') }})]"});
}

}  // namespace
}  // namespace qv::devservice::testing
