// Texts and documents as pages have them.
#include "tools/manual/roff.h"

#include <gtest/gtest.h>

#include "tools/manual/markdown_page.h"

namespace qv::cli {
namespace {

TEST(Roff, CharactersThatFormattersChangeAreEscaped) {
  EXPECT_EQ(Roff(R"(a\b -c 'd' "e" `f` ^ ~)"), R"(a\(rsb \-c \(aqd\(aq \(dqe\(dq \(gaf\(ga \(ha \(ti)");
  EXPECT_EQ(Bold("--x"), R"(\fB\-\-x\fR)");
  EXPECT_EQ(Italic("FILE"), R"(\fIFILE\fR)");
}

TEST(Roff, NoLineIsReadAsAMacro) {
  EXPECT_EQ(RoffLines(".TH is no macro"), "\\&.TH is no macro\n");
  EXPECT_EQ(Example("  .so file\n  'x'", 2), ".RS 4\n.EX\n\\&.so file\n\\(aqx\\(aq\n.EE\n.RE\n");
  const std::string wrapped = RoffLines(std::string(77, 'a') + " .b c");
  EXPECT_EQ(wrapped, std::string(77, 'a') + "\n\\&.b c\n");
}

TEST(Roff, OptionsInProseAreBold) {
  EXPECT_EQ(Prose("use --json or -o (--null TEXT)"),
            R"(use \fB\-\-json\fR or \fB\-o\fR (\fB\-\-null\fR TEXT))");
  EXPECT_EQ(Prose("run-document, 5 - 3, -5"), R"(run\-document, 5 \- 3, \-5)");
}

TEST(Roff, ParagraphsAndExamplesOfNotes) {
  EXPECT_EQ(Paragraphs("one\ntwo\n  a  b\nthree\n\nfour"),
            ".PP\none two\n.PP\n.RS 4\n.EX\na  b\n.EE\n.RE\n.PP\nthree\n.PP\nfour\n");
  EXPECT_EQ(Paragraphs(""), "");
}

std::string Body(const std::string& markdown) {
  const std::string page = MarkdownPage("# The title\n" + markdown, "a-page", {"program 1", "2020-01-31"});
  const std::string head =
      ".TH \"A\\-PAGE\" \"7\" \"2020-01-31\" \"program 1\" \"Miscellaneous Information\"\n"
      ".nr HY 0\n.ad l\n"
      ".SH NAME\na\\-page \\- the title\n.SH DESCRIPTION\n";
  const std::string end = ".SH SEE ALSO\n\\fBscriptwells\\fR(1)\n";
  EXPECT_EQ(page.substr(0, head.size()), head);
  EXPECT_EQ(page.substr(page.size() - end.size()), end);
  return page.substr(head.size(), page.size() - head.size() - end.size());
}

TEST(MarkdownPage, ElementsOfALine) {
  EXPECT_EQ(Body("\nUse `-a` and **both `x` of it**, [a link](../a.md#b).\n"),
            "Use \\fB\\-a\\fR and \\fIboth \\fBx\\fR of it\\fR, a link.\n");
}

TEST(MarkdownPage, SectionsListsAndCode) {
  EXPECT_EQ(Body("\n## Part `one`\n\ntext\n- a\n  goes on\n- b\n\n```http\n.GET -\n\nend\n```\nafter\n"),
            ".SS \"Part \\fBone\\fR\"\ntext\n.IP \\(bu 2\na goes on\n.IP \\(bu 2\nb\n"
            ".PP\n.RS 4\n.EX\n\\&.GET \\-\n\nend\n.EE\n.RE\n.PP\nafter\n");
}

TEST(MarkdownPage, TablesHaveTwoLinesForEachRow) {
  EXPECT_EQ(Body("\n| Left | Right |\n|---|---|\n| `<a>|b` | `c` and d |\n| `e` | f |\n\nend\n"),
            "\\fILeft\\fR, and below it: \\fIRight\\fR\n.PP\n.RS 4\n.EX\n<a>|b\n    c and d\n\ne\n    f\n"
            ".EE\n.RE\n.PP\nend\n");
}

TEST(MarkdownPage, LongCodeMayBeBroken) {
  EXPECT_EQ(Body("\n`<a>=b`\n"), "\\fB<a>\\:=\\:b\\fR\n");
}

}  // namespace
}  // namespace qv::cli
