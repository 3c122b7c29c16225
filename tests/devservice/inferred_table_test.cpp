// Tables out of arrays of plain objects.
#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

class InferredTable : public TableTest {};

TEST_F(InferredTable, HasTheWholeForm) {
  const std::string body = Execute("[{a: 1, b: 'x'}, {c: true}]");
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
                "<xsd:element xsd:name=\"a\" xsd:type=\"xsd:int\" xsd:displayName=\"a\" "
                "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                "<xsd:element xsd:name=\"b\" xsd:type=\"xsd:string\" xsd:displayName=\"b\" "
                "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                "<xsd:element xsd:name=\"c\" xsd:type=\"xsd:boolean\" xsd:displayName=\"c\" "
                "qvrl:valueSize=\"\" qvrl:valueSize2=\"\"/>"
                "</xsd:schema></q1:Headers><q1:Records>"
                "<q1:Record><a>1</a><b>x</b><c/></q1:Record>"
                "<q1:Record><a/><b/><c>true</c></q1:Record>"
                "</q1:Records></ExecuteResult>");
}

TEST_F(InferredTable, ColumnsAreTheKeysInTheirFirstOrder) {
  EXPECT_EQ(Columns("[{b: 1}, {}, {a: 1, b: 2, c: 3}, {d: 1, a: 2}]"),
            "b xsd:int, a xsd:int, c xsd:int, d xsd:int");
  EXPECT_EQ(Records("[{b: 1, a: 2}, {a: 3, b: 4}, {c: 5, a: 6}]"),
            "<q1:Record><b>1</b><a>2</a><c/></q1:Record><q1:Record><b>4</b><a>3</a><c/></q1:Record>"
            "<q1:Record><b/><a>6</a><c>5</c></q1:Record>");
}

TEST_F(InferredTable, TypesFollowTheValues) {
  const std::string script =
      "[{a: 2147483647, b: 2147483648, c: 1.5, d: false, e: 'x', f: new Date(0), g: 5n, h: parameters.p,"
      " i: typed.short(5), j: typed.date('2024-03-05'), k: typed.duration('P1D'), l: typed.url('u'),"
      " m: typed.time('10:15:30Z'), n: typed.byte(1), o: typed.float(0.5)}]";
  const std::string body = Execute(script, ArrayOf(1, ParameterElement("p", "xsd:duration", "P2D")));
  EXPECT_EQ(ColumnsIn(body),
            "a xsd:int, b xsd:double, c xsd:double, d xsd:boolean, e xsd:string, f xsd:datetime, g xsd:long, "
            "h xsd:duration, i xsd:short, j xsd:date, k xsd:duration, l sof:url, m xsd:time, n xsd:byte, "
            "o xsd:float");
  EXPECT_EQ(RecordsIn(body),
            "<q1:Record><a>2147483647</a><b>2147483648</b><c>1.5</c><d>false</d><e>x</e>"
            "<f>1970-01-01T00:00:00.000Z</f><g>5</g><h>P2D</h><i>5</i><j>2024-03-05</j><k>P1D</k>"
            "<l>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;&lt;/C&gt;</l><m>10:15:30.000Z</m><n>1</n><o>0.5</o>"
            "</q1:Record>");
}

TEST_F(InferredTable, IntegersAndFractionsAreDoubles) {
  for (const char* script : {"[{a: 1}, {a: 1.5}]", "[{a: 1.5}, {a: 1}]", "[{a: 1.5}, {}, {a: null}, {a: 2}]",
                             "[{a: 1}, {a: 1e10}, {a: 2}]", "[{a: 1}, {a: -0}]", "[{a: NaN}]",
                             "[{a: typed.int(1)}, {a: typed.double(1)}]"}) {
    EXPECT_EQ(Columns(script), "a xsd:double") << script;
  }
  EXPECT_EQ(Records("[{a: 1}, {a: 0.1}, {a: 1e300}]"),
            "<q1:Record><a>1</a></q1:Record><q1:Record><a>0.1</a></q1:Record>"
            "<q1:Record><a>1e+300</a></q1:Record>");
}

TEST_F(InferredTable, OtherMixturesAreTexts) {
  for (const char* script : {"[{a: 1}, {a: 'x'}]", "[{a: true}, {a: 1}]", "[{a: new Date(0)}, {a: 'x'}]",
                             "[{a: typed.short(1)}, {a: 1}]", "[{a: 1}, {a: 'x'}, {a: 1}, {a: 1.5}]",
                             "[{a: typed.date('2024-03-05')}, {a: new Date(0)}]"}) {
    EXPECT_EQ(Columns(script), "a xsd:string") << script;
  }
  EXPECT_EQ(Records("[{a: 1}, {a: 'x'}, {a: true}, {a: new Date(0)}, {a: 1.5}]"),
            "<q1:Record><a>1</a></q1:Record><q1:Record><a>x</a></q1:Record><q1:Record><a>true</a></q1:Record>"
            "<q1:Record><a>1970-01-01T00:00:00.000Z</a></q1:Record><q1:Record><a>1.5</a></q1:Record>");
}

TEST_F(InferredTable, NothingIsAnEmptyCellOfAnyType) {
  EXPECT_EQ(Columns("[{a: null}, {a: 1}, {a: undefined}]"), "a xsd:int");
  EXPECT_EQ(Records("[{a: null}, {a: 1}, {a: undefined}, {a: 2}]"),
            "<q1:Record><a/></q1:Record><q1:Record><a>1</a></q1:Record><q1:Record><a/></q1:Record>"
            "<q1:Record><a>2</a></q1:Record>");
  EXPECT_EQ(Columns("[{a: null}, {a: undefined}]"), "a xsd:string");
  EXPECT_EQ(Columns("[{}]"), "");
  EXPECT_EQ(Records("[{}, {}]"), "<q1:Record></q1:Record><q1:Record></q1:Record>");
}

TEST_F(InferredTable, TextsAreEscapedOnce) {
  EXPECT_EQ(
      Records("[{a: '<a & \"b\">', b: '&amp;', c: '\xC3\xA9\\r'}]"),
      "<q1:Record><a>&lt;a &amp; &quot;b&quot;&gt;</a><b>&amp;amp;</b><c>\xC3\xA9&#13;</c></q1:Record>");
}

TEST_F(InferredTable, PlainObjectsAreThoseWithoutAClass) {
  EXPECT_EQ(Records("[Object.assign(Object.create(null), {a: 1}), JSON.parse('{\"a\": 2}')]"),
            "<q1:Record><a>1</a></q1:Record><q1:Record><a>2</a></q1:Record>");
  EXPECT_EQ(Records("rows = [{a: 1, [Symbol('s')]: 2}];"
                    "Object.defineProperty(rows[0], 'hidden', {value: 3}); rows"),
            "<q1:Record><a>1</a></q1:Record>");
  EXPECT_EQ(Records("class Rows extends Array {}; Rows.from([{a: 1}])"), "<q1:Record><a>1</a></q1:Record>");
}

TEST_F(InferredTable, OtherArraysStayFaults) {
  for (const char* script :
       {"[]", "[1]", "[{a: 1}, 1]", "[null]", "[{a: 1}, undefined]", "[{a: 1}, , {a: 2}]", "[[1], [2]]",
        "[new Date(0)]", "[{a: 1}, typed.int(1)]", "[() => 1]", "[new (class A { x = 1 })()]", "[new Map()]",
        "[typed.table({})]", "['a']", "[Symbol()]", "new Array(4294967295)"}) {
    EXPECT_EQ(
        Fault(script),
        "1012|The script's value is an array, which has no form in an answer; a table of other rows than "
        "plain objects, or of none, is a typed.table.|script")
        << script;
  }
}

TEST_F(InferredTable, KeysThatAreNoNamesAreFaults) {
  for (const char* key : {"", " ", "a b", "&", "1", "a:b", "<a>"}) {
    EXPECT_EQ(Fault(std::string("[{ok: 1}, {'") + key + "': 1}]"),
              std::string("1012|The script's table: \"") + key +
                  "\" is no name for a column (a letter or \"_\", then letters, digits, \"-\", \".\" and "
                  "\"_\")|script");
  }
}

TEST_F(InferredTable, ValuesWithoutFormAreFaultsWithTheirPlace) {
  constexpr const char* kRows[][2] = {
      {"{}", "The script's value is an object, which has no form in an answer."},
      {"[{b: 1}]", "The script's value is an array, which has no form in an answer."},
      {"() => 1", "The script's value is an object, which has no form in an answer."},
      {"Symbol()", "The script's value is a symbol, which has no form in an answer."},
      {"new Date(NaN)", "The script's value is an invalid Date."},
      {"2n ** 70n", "The script's BigInt is beyond the range of the type long."},
      {"'x\\u0001'", "The script's text holds the character code 1 at position 1, which XML cannot carry."},
      {"'\\x1e'", "The script's text holds the character code 30 at position 0, which XML cannot carry."},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Fault(std::string("[{a: 1}, {a: ") + row[0] + "}]"),
              std::string("1012|The script's table: row 2, column \"a\": ") + row[1] + "|script")
        << row[0];
  }
  EXPECT_EQ(Fault("a = [{}]; a[0].a = a; a").substr(0, 5), "1012|");
}

TEST_F(InferredTable, WhatGettersThrowArrives) {
  EXPECT_EQ(Fault("[{get a() { throw new ScriptError(77, 'g') }}]").substr(0, 5), "77|g|");
  EXPECT_EQ(Fault("rows = [{}]; Object.defineProperty(rows, 0, {get() { throw new ScriptError(78, 'r') }});"
                  "rows")
                .substr(0, 5),
            "78|r|");
  EXPECT_EQ(Fault("[new Proxy({}, {ownKeys() { throw new ScriptError(79, 'p') }})]").substr(0, 5), "79|p|");
  EXPECT_EQ(Records("[{a: 1, get b() { delete this.c; return 2 }, c: 3}]"),
            "<q1:Record><a>1</a><b>2</b><c/></q1:Record>");
}

}  // namespace
}  // namespace qv::devservice::testing
