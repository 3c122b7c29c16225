#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class Script : public ServiceTest {
 protected:
  // One parameter "p" of a type, given to a script.
  std::string WithParameter(const std::string& type, const std::string& text, const std::string& script) {
    return Value(script, ArrayOf(1, ParameterElement("p", type, text)));
  }
};

TEST_F(Script, AnswerHasTheBytesThatServersSend) {
  EXPECT_EQ(
      Execute("40 + 2"),
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
      "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><soap:Body>"
      "<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
      "<ExecuteResult xsi:type=\"xsd:int\">42</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>");
}

TEST_F(Script, FaultHasTheBytesThatServersSend) {
  EXPECT_EQ(Execute("throw {code: 5, description: 'a<b'}"),
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
            "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><soap:Body><soap:Fault>"
            "<faultcode>soap:Server</faultcode><faultstring>The server could not carry out the request. "
            "&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/errorCode&gt;&lt;description&gt;a&amp;lt;b&lt;/"
            "description&gt;"
            "&lt;source&gt;script&lt;/source&gt;&lt;/ErrorObject&gt;</faultstring></soap:Fault></soap:Body>"
            "</soap:Envelope>");
}

TEST_F(Script, PlainValuesTakeTheirNaturalTypes) {
  EXPECT_EQ(Value("2147483647"), "xsd:int|2147483647");
  EXPECT_EQ(Value("-2147483648"), "xsd:int|-2147483648");
  EXPECT_EQ(Value("2147483648"), "xsd:double|2147483648");
  EXPECT_EQ(Value("0.1 + 0.2"), "xsd:double|0.30000000000000004");
  EXPECT_EQ(Value("-0"), "xsd:double|-0");
  EXPECT_EQ(Value("0/0"), "xsd:double|NaN");
  EXPECT_EQ(Value("-1/0"), "xsd:double|-INF");
  EXPECT_EQ(Value("true"), "xsd:boolean|true");
  EXPECT_EQ(Value("9223372036854775807n"), "xsd:long|9223372036854775807");
  EXPECT_EQ(Value("'a<b>&\"c'"), "xsd:string|a<b>&\"c");
  EXPECT_EQ(Value("''"), "xsd:string|");
}

TEST_F(Script, LastExpressionIsTheAnswer) {
  EXPECT_EQ(Value("var a = 3;\nfunction f(x) { return x * 2; }\nf(a)"), "xsd:int|6");
}

TEST_F(Script, TypedValuesTakeTheTypeThatTheScriptNames) {
  EXPECT_EQ(Value("typed.byte(-128)"), "xsd:byte|-128");
  EXPECT_EQ(Value("typed.short(32767)"), "xsd:short|32767");
  EXPECT_EQ(Value("typed.int(7n)"), "xsd:int|7");
  EXPECT_EQ(Value("typed.long(5)"), "xsd:long|5");
  EXPECT_EQ(Value("typed.long(-9223372036854775808n)"), "xsd:long|-9223372036854775808");
  EXPECT_EQ(Value("typed.boolean(true)"), "xsd:boolean|1");
  EXPECT_EQ(Value("typed.boolean(false)"), "xsd:boolean|0");
  EXPECT_EQ(Value("typed.float(0.1)"), "float|0.1");
  EXPECT_EQ(Value("typed.double(5)"), "xsd:double|5");
  EXPECT_EQ(Value("typed.string(12)"), "xsd:string|12");
}

TEST_F(Script, TypedValueOutOfRangeThrows) {
  EXPECT_EQ(Fault("typed.byte(128)"),
            "1010|typed.byte: the value is none of this type (-128 to 127). (line 1)|script, line 1");
  for (const char* script :
       {"typed.short(32768)", "typed.int(2147483648)", "typed.int(1.5)", "typed.int('1')",
        "typed.long(2**63)", "typed.long(9223372036854775808n)", "typed.float(3.5e38)", "typed.boolean(1)",
        "typed.double(1n)", "typed.string('\\u0000')", "typed.int()", "typed.int(NaN)"}) {
    EXPECT_EQ(Fault(script).substr(0, 11), "1010|typed.") << script;
  }
  EXPECT_EQ(Value("try { typed.byte(1000) } catch (e) { 'caught' }"), "xsd:string|caught");
}

TEST_F(Script, NullAndUndefinedHaveTheirTwoForms) {
  EXPECT_NE(Execute("null").find("<ExecuteResult xsi:null=\"true\"/></ExecuteResponse>"), std::string::npos);
  EXPECT_NE(Execute("undefined").find("scriptwells\"></ExecuteResponse>"), std::string::npos);
}

TEST_F(Script, TextKeepsAllThatXmlCanCarry) {
  EXPECT_NE(Execute("'tab\\t cr\\r lf\\n \\u00e9 \\u{1F600}'")
                .find(">tab\t cr&#13; lf\n \xC3\xA9 \xF0\x9F\x98\x80</ExecuteResult>"),
            std::string::npos);
}

TEST_F(Script, TextThatXmlCannotCarryIsAFault) {
  EXPECT_EQ(
      Fault("'ab\\u0001'"),
      "1012|The script's text holds the character code 1 at position 2, which XML cannot carry.|script");
  EXPECT_EQ(
      Fault("'\\ud83d'"),
      "1012|The script's text holds the character code 55357 at position 0, which XML cannot carry.|script");
  EXPECT_EQ(Fault("'\\uffff'").substr(0, 5), "1012|");
}

TEST_F(Script, ValuesWithoutWireFormAreFaults) {
  EXPECT_EQ(Fault("({})"), "1012|The script's value is an object, which has no form in an answer.|script");
  EXPECT_EQ(
      Fault("[1]"),
      "1012|The script's value is an array, which has no form in an answer; a table of other rows than plain "
      "objects, or of none, is a typed.table.|script");
  EXPECT_EQ(Fault("(function () {})").substr(0, 5), "1012|");
  EXPECT_EQ(Fault("Symbol('s')"),
            "1012|The script's value is a symbol, which has no form in an answer.|script");
  EXPECT_EQ(Fault("2n ** 63n").substr(0, 5), "1012|");
}

TEST_F(Script, ThrownErrorKeepsMessageAndLine) {
  EXPECT_EQ(Fault("\n\nthrow new Error('it broke')"), "1010|it broke (line 3)|script, line 3");
  EXPECT_EQ(Fault("missing.name").substr(0, 5), "1010|");
  EXPECT_EQ(Fault("throw 'just text'"), "1010|just text|script");
  EXPECT_EQ(Fault("throw null"), "1010|null|script");
}

TEST_F(Script, ThrownCodeAndDescriptionReachTheFault) {
  EXPECT_EQ(Fault("throw new ScriptError(7, 'no more')"), "7|no more|script, line 1");
  EXPECT_EQ(Fault("throw {code: -3, description: 'no'}"), "-3|no|script");
  EXPECT_EQ(Fault("throw {code: 'x', message: 'm'}"), "1010|m|script");
  EXPECT_EQ(Value("try { throw new ScriptError(1, 'x') } catch (e) { e instanceof Error && e.code }"),
            "xsd:int|1");
}

TEST_F(Script, HostileThrownValuesAreFaults) {
  EXPECT_EQ(Fault("throw {get code() { throw 1 }, get description() { throw 2 }}"),
            "1010|The script threw a value without a description.|script");
  EXPECT_EQ(Fault("throw {toString() { throw 1 }}").substr(0, 5), "1010|");
  EXPECT_EQ(Fault("throw new Error('bad \\u0001</ErrorObject>')"),
            "1010|bad \xEF\xBF\xBD</ErrorObject> (line 1)|script, line 1");
}

TEST_F(Script, SyntaxErrorHasItsOwnCode) {
  EXPECT_EQ(Fault("var = 1").substr(0, 5), "1011|");
  EXPECT_EQ(Fault("eval('var = 1')").substr(0, 5), "1010|");
}

TEST_F(Script, EachScriptHasAFreshGlobalObject) {
  EXPECT_EQ(Value("globalThis.kept = 1; Array.prototype.kept = 2; 0"), "xsd:int|0");
  EXPECT_EQ(Value("typeof kept + typeof [].kept"), "xsd:string|undefinedundefined");
}

TEST_F(Script, ScriptsCannotReachTheSystem) {
  EXPECT_EQ(
      Value("[typeof require, typeof process, typeof load, typeof print, typeof fetch, typeof read].join()"),
      "xsd:string|undefined,undefined,undefined,undefined,undefined,undefined");
}

TEST_F(Script, TamperedBuiltinsDoNotChangeAnswers) {
  EXPECT_EQ(Value("Number.prototype.toString = String.prototype.toString = () => 'x';"
                  "Object.prototype.code = 9; JSON.stringify = null; 5.5"),
            "xsd:double|5.5");
}

TEST_F(Script, ParametersArriveAsNativeValues) {
  EXPECT_EQ(WithParameter("xsd:byte", "-5", "typeof parameters.p + parameters.p"), "xsd:string|number-5");
  EXPECT_EQ(WithParameter("xsd:short", "300", "parameters.p + 1"), "xsd:int|301");
  EXPECT_EQ(WithParameter("xsd:int", "41", "parameters.p + 1"), "xsd:int|42");
  EXPECT_EQ(WithParameter("xsd:boolean", "1", "parameters.p === true"), "xsd:boolean|true");
  EXPECT_EQ(WithParameter("xsd:boolean", "0", "parameters.p === false"), "xsd:boolean|true");
  EXPECT_EQ(WithParameter("xsd:float", "2.5", "parameters.p"), "xsd:double|2.5");
  EXPECT_EQ(WithParameter("xsd:double", "1.23457e+006", "parameters.p"), "xsd:int|1234570");
  EXPECT_EQ(WithParameter("xsd:double", "inf", "parameters.p"), "xsd:double|INF");
  EXPECT_EQ(WithParameter("xsd:double", "-nan", "parameters.p"), "xsd:double|NaN");
  EXPECT_EQ(WithParameter("xsd:string", "a&lt;b", "parameters.p"), "xsd:string|a<b");
  EXPECT_EQ(WithParameter("xsd:string", "  ", "parameters.p"), "xsd:string|  ");
  EXPECT_EQ(WithParameter("xsd:string", "", "parameters.p === ''"), "xsd:boolean|true");
}

TEST_F(Script, LongParameterIsBigIntOnlyBeyondTheSafeNumbers) {
  EXPECT_EQ(WithParameter("xsd:long", "9007199254740991", "typeof parameters.p"), "xsd:string|number");
  EXPECT_EQ(WithParameter("xsd:long", "-9007199254740991", "typeof parameters.p"), "xsd:string|number");
  EXPECT_EQ(WithParameter("xsd:long", "9007199254740992", "typeof parameters.p"), "xsd:string|bigint");
  EXPECT_EQ(WithParameter("xsd:long", "9223372036854775807", "parameters.p"), "xsd:long|9223372036854775807");
}

TEST_F(Script, ParameterNamesAreNoMagic) {
  const std::string parameters = ArrayOf(1, ParameterElement("__proto__", "xsd:int", "3"));
  EXPECT_EQ(Value("Object.keys(parameters).join() + parameters['__proto__']", parameters),
            "xsd:string|__proto__3");
  EXPECT_EQ(Value("typeof parameters.toString", parameters), "xsd:string|undefined");
}

TEST_F(Script, DeclaredTypesAndOrderAreVisible) {
  const std::string parameters =
      ArrayOf(3, ParameterElement("a", "xsd:short", "1") + ParameterElement("b", "xsd:string", "x") +
                     ParameterElement("a", "xsd:int", "2"));
  EXPECT_EQ(Value("parameterTypes.a + parameterTypes.b + parameters.a", parameters), "xsd:string|intstring2");
  EXPECT_EQ(Value("parameterList.map(p => p.name + p.type + p.value).join()", parameters),
            "xsd:string|ashort1,bstringx,aint2");
  EXPECT_EQ(Value("parameterList.length + Object.keys(parameters).length"), "xsd:int|0");
}

TEST_F(Script, TextsOfTheClientsEscapeSurviveTheTrip) {
  // The client writes a pair as two references: once for a parameter, escaped once more inside the script.
  EXPECT_EQ(WithParameter("xsd:string", "&#55357;&#56832;&#233;", "parameters.p"),
            "xsd:string|\xF0\x9F\x98\x80\xC3\xA9");
  EXPECT_EQ(Value("'\xC3\xA9' + '\xF0\x9F\x98\x80'.length"),
            "xsd:string|\xC3\xA9"
            "2");
  session_ = Login();
  std::string envelope = ExecuteEnvelope(session_, "'@'", NilParameters());
  envelope.replace(envelope.find("'@'"), 3, "'&amp;#55357;&amp;#56832;&amp;#233;'");
  EXPECT_EQ(ValueIn(Post("", "Execute", envelope).body), "xsd:string|\xF0\x9F\x98\x80\xC3\xA9");
}

TEST_F(Script, LargeTextsPass) {
  const std::string text(3000000, 'x');
  EXPECT_EQ(WithParameter("xsd:string", text, "parameters.p.length"), "xsd:int|3000000");
  EXPECT_EQ(Value("'y'.repeat(3000000)").size(), std::string("xsd:string|").size() + 3000000);
}

TEST_F(Script, BadParametersAreFaults) {
  for (const char* text : {"200", "x", "", "1.0", "99999999999999999999"}) {
    EXPECT_EQ(Fault("1", ArrayOf(1, ParameterElement("p", "xsd:byte", text))).substr(0, 5), "1008|") << text;
  }
  EXPECT_EQ(Fault("1", ArrayOf(1, ParameterElement("p", "xsd:boolean", "yes"))),
            "1008|The parameter \"p\" holds \"yes\", which is no value of the type boolean.|request");
  EXPECT_EQ(
      Fault("1", ArrayOf(1, ParameterElement("p", "xsd:decimal", "1.5"))),
      "1009|The parameter \"p\" has the type \"xsd:decimal\", which this service does not know.|request");
}

}  // namespace
}  // namespace qv::devservice::testing
