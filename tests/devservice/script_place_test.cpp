// Where a script error arose.
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class ScriptPlace : public ServiceTest {};

TEST_F(ScriptPlace, ErrorsOfTheEngineNameTheirLine) {
  EXPECT_EQ(Fault("1;\n2;\n3;\nfoo"), "1010|Can't find variable: foo (line 4)|script, line 4");
  EXPECT_EQ(Fault("1;\nfunction f() {\n  foo();\n}\n\nf()"),
            "1010|Can't find variable: foo (line 3)|script, line 3");
  EXPECT_EQ(Fault("\r\n\r\nnull.x"),
            "1010|null is not an object (evaluating 'null.x') (line 3)|script, line 3");
}

TEST_F(ScriptPlace, SyntaxErrorsDoToo) {
  EXPECT_EQ(Fault("\n\nlet a;\nlet a;"),
            "1011|Cannot declare a let variable twice: 'a'. (line 4)|script, line 4");
  EXPECT_EQ(Fault("if (true) {\n\n"), "1011|Unexpected end of script (line 3)|script, line 3");
}

TEST_F(ScriptPlace, ThrownErrorsNameTheLineThatMadeThem) {
  EXPECT_EQ(Fault("\nconst e = new Error('it broke');\n\nthrow e"), "1010|it broke (line 2)|script, line 2");
  EXPECT_EQ(Fault("\n\ntyped.byte(128)"),
            "1010|typed.byte: the value is none of this type (-128 to 127). (line 3)|script, line 3");
}

// The engine's own line is that of the constructor of the base class.
TEST_F(ScriptPlace, DerivedErrorsNameTheScriptsLine) {
  EXPECT_EQ(Fault("\n\nclass MyError extends Error {}\nthrow new MyError('x')"),
            "1010|x (line 4)|script, line 4");
  EXPECT_EQ(Fault("\n\nthrow new ScriptError(7, 'no more')"), "7|no more|script, line 3");
}

// Its lines count from its own start and say nothing to the author of the script.
TEST_F(ScriptPlace, CodeMadeFromTextsHasTheLineOfTheCall) {
  EXPECT_EQ(Fault("\n\neval('\\n\\n\\n\\nfoo')"), "1010|Can't find variable: foo (line 3)|script, line 3");
  EXPECT_EQ(Fault("\nnew Function('\\n\\n\\n\\nfoo')()"),
            "1010|Can't find variable: foo (line 2)|script, line 2");
}

// Programs compare what a script words for them.
TEST_F(ScriptPlace, DescriptionsOfTheScriptStayAsTheyAre) {
  EXPECT_EQ(Fault("throw Object.assign(new Error('a'), {description: 'b'})"), "1010|b|script, line 1");
}

TEST_F(ScriptPlace, ThrownValuesWithoutAPlaceHaveNone) {
  EXPECT_EQ(Fault("\n\nthrow 'text'"), "1010|text|script");
  EXPECT_EQ(Fault("\n\nthrow {message: 'm'}"), "1010|m|script");
  EXPECT_EQ(Fault("throw {message: 'm', line: 0, stack: '@script:x'}"), "1010|m|script");
  EXPECT_EQ(Fault("throw {message: 'm', line: 1e300, stack: '@script:99999999999:1'}"), "1010|m|script");
}

// Line 1 is that of the start tag, so that line ends in front of the code count too.
TEST_F(ScriptPlace, LinesOfAScriptDocumentCountFromItsCodeElement) {
  const std::string document =
      "<!-- three -->\n<Scriptwell Language=\"JavaScript\" "
      "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\">\n"
      "  <Code>\n1 &lt; 2;\n<![CDATA[\nfoo();\n]]></Code>\n</Scriptwell>\n\n";
  StartWith(TestOptions());
  session_ = Login();
  std::string envelope = ExecuteEnvelope(session_, "", NilParameters());
  const std::size_t start = envelope.find("&lt;Scriptwell");
  const std::size_t end = envelope.find("</Script>");
  envelope.replace(start, end - start, Escape(document));
  EXPECT_EQ(FaultIn(Post("", "Execute", envelope).body),
            "1010|Can't find variable: foo (line 4)|script, line 4");
}

}  // namespace
}  // namespace qv::devservice::testing
