// Which JavaScript goes on in the next line.
#include "tools/shell/script_scanner.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qv::cli {
namespace {

ScriptScanner Scanned(const std::string& script) {
  ScriptScanner scanner;
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) scanner.Add(line);
  return scanner;
}

void ExpectOpen(bool isOpen, const std::vector<const char*>& scripts) {
  for (const char* script : scripts) EXPECT_EQ(Scanned(script).IsOpen(), isOpen) << script;
}

TEST(ScriptScanner, BracketsAreMatched) {
  ExpectOpen(true, {"f(", "[1, [2]", "{", "if (a) {\n  b()", "({a: [1, 2", "() => {"});
  ExpectOpen(false, {"f()", "[1, [2]]", "if (a) {\n  b()\n}", "({a: [1]})", "{}"});
}

TEST(ScriptScanner, BracketsInTextsAndCommentsDoNotCount) {
  ExpectOpen(false, {"'('", "\"[{\"", "`(`", "1 // (", "/* ( */ 1", "'\\'('", R"("a\\")", "a = /[(/]/",
                     "/\\/(/.test(b)"});
  ExpectOpen(true, {"( // )", "( /* ) */", "f(')'", "f(/\\)/"});
}

TEST(ScriptScanner, TextsCommentsAndTemplatesMayBeOpen) {
  ExpectOpen(true,
             {"`a", "`a\nb", "/* a", "/* a\n * b", "'a\\", "\"a\\", "`${", "`${f(", "`${ {a: 1}", "`${'}'"});
  ExpectOpen(false, {"`a\nb`", "/* a\nb */ 1", "'a\\\nb'", "`${1}`", "`a ${ {b: `${c}`}.b } d`", "`$`",
                     "`\\`` + 1"});
}

TEST(ScriptScanner, OperatorsWantMore) {
  ExpectOpen(true,
             {"1 +", "a =", "a &&", "a ?", "a ? b :", "f(1),", "a.", "a => ", "!", "x = // later", "a /"});
  ExpectOpen(false, {"a++", "a--", "5.", "a;", "a", "/b/", "/b/g", "a // +", "'+'", "`+`", "/* a */"});
}

TEST(ScriptScanner, DivisionIsNoRegularExpression) {
  ExpectOpen(false, {"a / b", "(a) / (b)", "a[0] / 2 / c", "5 / 2", "i++ / 2", "x.return / 1"});
  ExpectOpen(false, {"return /(/", "typeof /[/]/", "a = /{/", "f(/(/)", "[/(/]", "!/(/"});
}

// The server says what is wrong.
TEST(ScriptScanner, NothingMendsASyntaxError) {
  ExpectOpen(false, {")", "(]", "f(}", "'a", R"("a\\)", "( 'a", "{ /a", "a = /(", "(]\n("});
}

TEST(ScriptScanner, CommentsAreNoCode) {
  for (const char* script : {"", " ", "// a", "/* a */", "/* a\nb */ // c"})
    EXPECT_FALSE(Scanned(script).HasCode());
  for (const char* script : {"1", "''", ";", "/a/", "// a\nb"})
    EXPECT_TRUE(Scanned(script).HasCode()) << script;
}

TEST(ScriptScanner, KnowsTheNamesOfItsLanguage) {
  for (const char* name : {"JavaScript", "javascript", "JScript", "ECMAScript", "TypeScript"})
    EXPECT_TRUE(IsLikeJavaScript(name));
  for (const char* name : {"VBScript", "Lua", "", "Java"}) EXPECT_FALSE(IsLikeJavaScript(name));
}

}  // namespace
}  // namespace qv::cli
