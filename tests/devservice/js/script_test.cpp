// What scripts answer and throw, and what they see of their parameters.
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Script = ServiceTest;

constexpr char kEnvelopeStart[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
    "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><soap:Body>";

TEST_F(Script, AnswersAndFaultsHaveTheBytesThatServersSend) {
  EXPECT_EQ(Execute("40 + 2"),
            std::string(kEnvelopeStart) +
                "<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                "<ExecuteResult xsi:type=\"xsd:int\">42</ExecuteResult></ExecuteResponse></soap:Body>"
                "</soap:Envelope>");
  EXPECT_EQ(
      Execute("throw {code: 5, description: 'a<b'}"),
      std::string(kEnvelopeStart) +
          "<soap:Fault><faultcode>soap:Server</faultcode><faultstring>The server could not carry out the "
          "request. &lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;&lt;description&gt;a&amp;lt;b"
          "&lt;/description&gt;&lt;source&gt;script&lt;/source&gt;&lt;/ErrorObject&gt;</faultstring>"
          "</soap:Fault></soap:Body></soap:Envelope>");
  EXPECT_TRUE(Contains(Execute("null"), "<ExecuteResult xsi:null=\"true\"/></ExecuteResponse>"));
  EXPECT_TRUE(Contains(Execute("undefined"), "scriptwells\"></ExecuteResponse>"));
  EXPECT_TRUE(Contains(Execute("'tab\\t cr\\r lf\\n \\u00e9 \\u{1F600}'"),
                       ">tab\t cr&#13; lf\n \xC3\xA9 \xF0\x9F\x98\x80</ExecuteResult>"));
}

TEST_F(Script, ValuesAndTheirTypes) {
  ExpectValues({
      {"2147483647", "xsd:int|2147483647"},
      {"-2147483648", "xsd:int|-2147483648"},
      {"2147483648", "xsd:double|2147483648"},
      {"0.1 + 0.2", "xsd:double|0.30000000000000004"},
      {"-0", "xsd:double|-0"},
      {"0/0", "xsd:double|NaN"},
      {"-1/0", "xsd:double|-INF"},
      {"true", "xsd:boolean|true"},
      {"9223372036854775807n", "xsd:long|9223372036854775807"},
      {"'a<b>&\"c'", "xsd:string|a<b>&\"c"},
      {"''", "xsd:string|"},
      // The value of the last expression.
      {"var a = 3;\nfunction f(x) { return x * 2; }\nf(a)", "xsd:int|6"},
      {"typed.byte(-128)", "xsd:byte|-128"},
      {"typed.short(32767)", "xsd:short|32767"},
      {"typed.int(7n)", "xsd:int|7"},
      {"typed.long(5)", "xsd:long|5"},
      {"typed.long(-9223372036854775808n)", "xsd:long|-9223372036854775808"},
      {"typed.boolean(true)", "xsd:boolean|1"},
      {"typed.boolean(false)", "xsd:boolean|0"},
      {"typed.float(0.1)", "float|0.1"},
      {"typed.double(5)", "xsd:double|5"},
      {"typed.string(12)", "xsd:string|12"},
      {"try { typed.byte(1000) } catch (e) { 'caught' }", "xsd:string|caught"},
  });
}

TEST_F(Script, ValuesOutsideOfTheirTypeThrow) {
  ExpectFaults({{"typed.byte(128)",
                 "1010|typed.byte: the value is none of this type (-128 to 127). (line 1)|script, line 1"}});
  ExpectFaultStart("1010|typed.", {"typed.short(32768)", "typed.int(2147483648)", "typed.int(1.5)",
                                   "typed.int('1')", "typed.long(2**63)", "typed.long(9223372036854775808n)",
                                   "typed.float(3.5e38)", "typed.boolean(1)", "typed.double(1n)",
                                   "typed.string('\\u0000')", "typed.int()", "typed.int(NaN)"});
}

TEST_F(Script, ValuesWithoutWireFormAreFaults) {
  ExpectFaults({
      {"'ab\\u0001'",
       "1012|The script's text holds the character code 1 at position 2, which XML cannot carry.|script"},
      {"'\\ud83d'",
       "1012|The script's text holds the character code 55357 at position 0, which XML cannot carry.|script"},
      {"({})", "1012|The script's value is an object, which has no form in an answer.|script"},
      {"[1]",
       "1012|The script's value is an array, which has no form in an answer; a table of other rows than "
       "plain "
       "objects, or of none, is a typed.table.|script"},
      {"Symbol('s')", "1012|The script's value is a symbol, which has no form in an answer.|script"},
  });
  ExpectFaultStart("1012|", {"'\\uffff'", "(function () {})", "2n ** 63n"});
}

TEST_F(Script, ThrownValuesAreFaults) {
  ExpectFaults({
      {"\n\nthrow new Error('it broke')", "1010|it broke (line 3)|script, line 3"},
      {"throw 'just text'", "1010|just text|script"},
      {"throw null", "1010|null|script"},
      {"throw new ScriptError(7, 'no more')", "7|no more|script, line 1"},
      {"throw {code: -3, description: 'no'}", "-3|no|script"},
      {"throw {code: 'x', message: 'm'}", "1010|m|script"},
      {"throw {get code() { throw 1 }, get description() { throw 2 }}",
       "1010|The script threw a value without a description.|script"},
      {"throw new Error('bad \\u0001</ErrorObject>')",
       "1010|bad \xEF\xBF\xBD</ErrorObject> (line 1)|script, line 1"},
  });
  ExpectFaultStart("1010|", {"missing.name", "throw {toString() { throw 1 }}", "eval('var = 1')"});
  ExpectFaultStart("1011|", {"var = 1"});
  ExpectValues(
      {{"try { throw new ScriptError(1, 'x') } catch (e) { e instanceof Error && e.code }", "xsd:int|1"}});
}

TEST_F(Script, ScriptsAreKeptApart) {
  ExpectValues({
      {"globalThis.kept = 1; Array.prototype.kept = 2; 0", "xsd:int|0"},
      {"typeof kept + typeof [].kept", "xsd:string|undefinedundefined"},
      {"[typeof require, typeof process, typeof load, typeof print, typeof fetch, typeof read].join()",
       "xsd:string|undefined,undefined,undefined,undefined,undefined,undefined"},
      {"Number.prototype.toString = String.prototype.toString = () => 'x';"
       "Object.prototype.code = 9; JSON.stringify = null; 5.5",
       "xsd:double|5.5"},
  });
}

TEST_F(Script, ParametersArriveAsNativeValues) {
  ExpectValues({
      {"typeof parameters.p + parameters.p", "xsd:string|number-5", "xsd:byte", "-5"},
      {"parameters.p + 1", "xsd:int|301", "xsd:short", "300"},
      {"parameters.p + 1", "xsd:int|42", "xsd:int", "41"},
      {"parameters.p === true", "xsd:boolean|true", "xsd:boolean", "1"},
      {"parameters.p === false", "xsd:boolean|true", "xsd:boolean", "0"},
      {"parameters.p", "xsd:double|2.5", "xsd:float", "2.5"},
      {"parameters.p", "xsd:int|1234570", "xsd:double", "1.23457e+006"},
      {"parameters.p", "xsd:double|INF", "xsd:double", "inf"},
      {"parameters.p", "xsd:double|NaN", "xsd:double", "-nan"},
      {"parameters.p", "xsd:string|a<b", "xsd:string", "a&lt;b"},
      {"parameters.p", "xsd:string|  ", "xsd:string", "  "},
      {"parameters.p === ''", "xsd:boolean|true", "xsd:string", ""},
      // A BigInt only beyond the safe numbers.
      {"typeof parameters.p", "xsd:string|number", "xsd:long", "9007199254740991"},
      {"typeof parameters.p", "xsd:string|number", "xsd:long", "-9007199254740991"},
      {"typeof parameters.p", "xsd:string|bigint", "xsd:long", "9007199254740992"},
      {"parameters.p", "xsd:long|9223372036854775807", "xsd:long", "9223372036854775807"},
      // The references that clients write for a pair.
      {"parameters.p", "xsd:string|\xF0\x9F\x98\x80\xC3\xA9", "xsd:string", "&#55357;&#56832;&#233;"},
      {"parameters.p.length", "xsd:int|3000000", "xsd:string", std::string(3000000, 'x')},
  });
}

TEST_F(Script, NamesTypesAndOrderOfParameters) {
  std::string parameters = ArrayOf(1, ParameterElement("__proto__", "xsd:int", "3"));
  EXPECT_EQ(Value("Object.keys(parameters).join() + parameters['__proto__']", parameters),
            "xsd:string|__proto__3");
  EXPECT_EQ(Value("typeof parameters.toString", parameters), "xsd:string|undefined");
  parameters = ArrayOf(3, ParameterElement("a", "xsd:short", "1") + ParameterElement("b", "xsd:string", "x") +
                              ParameterElement("a", "xsd:int", "2"));
  EXPECT_EQ(Value("parameterTypes.a + parameterTypes.b + parameters.a", parameters), "xsd:string|intstring2");
  EXPECT_EQ(Value("parameterList.map(p => p.name + p.type + p.value).join()", parameters),
            "xsd:string|ashort1,bstringx,aint2");
  EXPECT_EQ(Value("parameterList.length + Object.keys(parameters).length"), "xsd:int|0");
}

TEST_F(Script, BadParametersAreFaults) {
  for (const char* text : {"200", "x", "", "1.0", "99999999999999999999"})
    EXPECT_EQ(FaultCode("1", OneParameter("xsd:byte", text)), "1008") << text;
  ExpectFaults({
      {"1", R"(1008|The parameter "p" holds "yes", which is no value of the type boolean.|request)",
       "xsd:boolean", "yes"},
      {"1", R"(1009|The parameter "p" has the type "xsd:decimal", which this service does not know.|request)",
       "xsd:decimal", "1.5"},
  });
}

TEST_F(Script, TextsSurviveTheTrip) {
  EXPECT_EQ(Value("'\xC3\xA9' + '\xF0\x9F\x98\x80'.length"), std::string("xsd:string|\xC3\xA9") + "2");
  EXPECT_EQ(Value("'y'.repeat(3000000)").size(), std::string("xsd:string|").size() + 3000000);
  // Clients write a pair as two references, which are escaped once more inside the script.
  const std::string envelope = Replaced(ExecuteEnvelope(Session(), "'@'", NilParameters()), "'@'",
                                        "'&amp;#55357;&amp;#56832;&amp;#233;'");
  EXPECT_EQ(ValueIn(Post("", "Execute", envelope).body), "xsd:string|\xF0\x9F\x98\x80\xC3\xA9");
}

TEST_F(Script, ErrorsNameTheirLine) {
  ExpectFaults({
      {"1;\n2;\n3;\nfoo", "1010|Can't find variable: foo (line 4)|script, line 4"},
      {"1;\nfunction f() {\n  foo();\n}\n\nf()", "1010|Can't find variable: foo (line 3)|script, line 3"},
      {"\r\n\r\nnull.x", "1010|null is not an object (evaluating 'null.x') (line 3)|script, line 3"},
      {"\n\nlet a;\nlet a;", "1011|Cannot declare a let variable twice: 'a'. (line 4)|script, line 4"},
      {"if (true) {\n\n", "1011|Unexpected end of script (line 3)|script, line 3"},
      {"\nconst e = new Error('it broke');\n\nthrow e", "1010|it broke (line 2)|script, line 2"},
      {"\n\ntyped.byte(128)",
       "1010|typed.byte: the value is none of this type (-128 to 127). (line 3)|script, line 3"},
      // The engine's own line is that of the constructor of the base class.
      {"\n\nclass MyError extends Error {}\nthrow new MyError('x')", "1010|x (line 4)|script, line 4"},
      {"\n\nthrow new ScriptError(7, 'no more')", "7|no more|script, line 3"},
      // Lines of code made from texts say nothing to the author of the script.
      {"\n\neval('\\n\\n\\n\\nfoo')", "1010|Can't find variable: foo (line 3)|script, line 3"},
      {"\nnew Function('\\n\\n\\n\\nfoo')()", "1010|Can't find variable: foo (line 2)|script, line 2"},
      // Programs compare descriptions that a script makes for them.
      {"throw Object.assign(new Error('a'), {description: 'b'})", "1010|b|script, line 1"},
  });
}

TEST_F(Script, OtherThrownValuesHaveNone) {
  ExpectFaults({
      {"\n\nthrow 'text'", "1010|text|script"},
      {"\n\nthrow {message: 'm'}", "1010|m|script"},
      {"throw {message: 'm', line: 0, stack: '@script:x'}", "1010|m|script"},
      {"throw {message: 'm', line: 1e300, stack: '@script:99999999999:1'}", "1010|m|script"},
  });
}

// Line 1 is that of the start tag, so line ends before the code count too.
TEST_F(Script, LinesOfAScriptDocumentCountFromItsCodeElement) {
  const std::string document =
      "<!-- three -->\n<Scriptwell Language=\"JavaScript\" "
      "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\">\n"
      "  <Code>\n1 &lt; 2;\n<![CDATA[\nfoo();\n]]></Code>\n</Scriptwell>\n\n";
  EXPECT_EQ(FaultIn(Post("", "Execute", DocumentEnvelope(Session(), Escape(document), NilParameters())).body),
            "1010|Can't find variable: foo (line 4)|script, line 4");
}

}  // namespace
}  // namespace qv::devservice::testing
