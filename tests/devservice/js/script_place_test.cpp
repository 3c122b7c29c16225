// The line of the script in which an error was made.
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using ScriptPlace = ServiceTest;

TEST_F(ScriptPlace, ErrorsNameTheirLine) {
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

TEST_F(ScriptPlace, OtherThrownValuesHaveNone) {
  ExpectFaults({
      {"\n\nthrow 'text'", "1010|text|script"},
      {"\n\nthrow {message: 'm'}", "1010|m|script"},
      {"throw {message: 'm', line: 0, stack: '@script:x'}", "1010|m|script"},
      {"throw {message: 'm', line: 1e300, stack: '@script:99999999999:1'}", "1010|m|script"},
  });
}

// Line 1 is that of the start tag, so line ends before the code count too.
TEST_F(ScriptPlace, LinesOfAScriptDocumentCountFromItsCodeElement) {
  const std::string document =
      "<!-- three -->\n<Scriptwell Language=\"JavaScript\" "
      "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\">\n"
      "  <Code>\n1 &lt; 2;\n<![CDATA[\nfoo();\n]]></Code>\n</Scriptwell>\n\n";
  EXPECT_EQ(FaultIn(Post("", "Execute", DocumentEnvelope(Session(), Escape(document), NilParameters())).body),
            "1010|Can't find variable: foo (line 4)|script, line 4");
}

}  // namespace
}  // namespace qv::devservice::testing
