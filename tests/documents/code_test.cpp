// The code that documents show is part of a program that is built, and their outputs are what it prints.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

#include "tests/documents/markdown.h"
#include "tests/documents/typing.h"

namespace qv::documents {
namespace {

using Lines = std::vector<std::string>;

const std::string kRoot = std::string(QV_SOURCE_DIR) + "/";

struct Page {
  const char* document;
  const char* language;
  const char* file;  // empty: tests/integration compile the block as it stands
  // How a reader runs the file, with the service on port 8080. Empty: other tests run it (programs_test.cpp,
  // tests/integration, python/tests).
  const char* command;
};

// Every document with code, once for each language.
constexpr Page kPages[] = {
    {"README.md", "cpp", "", ""},
    {"README.md", "python", "python/examples/guide.py", ""},
    {"devservice/README.md", "cpp", "examples/own_service.cpp", "build/demo/examples/own_service"},
    {"devservice/README.md", "js", "examples/table.js", ""},
    {"docs/guide/errors.md", "cpp", "examples/guide/errors.cpp",
     "build/demo/examples/guide/guide_errors http://127.0.0.1:8080"},
    {"docs/guide/files.md", "cpp", "examples/guide/files.cpp",
     "build/demo/examples/guide/guide_files http://127.0.0.1:8080 lent"},
    {"docs/guide/late-binding.md", "cpp", "examples/late_binding.cpp", ""},
    {"docs/guide/sessions.md", "cpp", "examples/guide/sessions.cpp",
     "build/demo/examples/guide/guide_sessions http://127.0.0.1:8080"},
    {"docs/guide/tables.md", "cpp", "examples/walk_table.cpp",
     "build/demo/examples/walk_table http://127.0.0.1:8080"},
    {"docs/guide/testing.md", "cpp", "examples/own_tests.cpp", "build/demo/examples/own_tests"},
    {"docs/guide/threads.md", "cpp", "examples/guide/threads.cpp",
     "build/demo/examples/guide/guide_threads http://127.0.0.1:8080"},
    {"docs/guide/values.md", "cpp", "examples/guide/values.cpp",
     "build/demo/examples/guide/guide_values http://127.0.0.1:8080"},
    {"docs/tapes.md", "cpp", "examples/guide/tapes.cpp",
     "build/demo/examples/guide/guide_tapes http://127.0.0.1:8080"},
    {"python/README.md", "python", "python/examples/guide.py", ""},
    {"tools/README.md", "xml", "examples/one_more.xml", ""},
};
constexpr const char* kLanguages[] = {"cpp", "python", "js", "xml"};

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();  // of CSV
    lines.push_back(line);
  }
  return lines;
}

// A line of a file, if it is one of the block's, indented by as much as the block is in the file.
bool IsIndented(const std::string& line, const std::string& shown, const std::string& indent) {
  return line == (shown.empty() ? "" : indent + shown);
}

// Where `part` ends in `whole`, from `from` on; npos if it is not there. All its lines may be indented alike.
std::size_t EndOf(const Lines& part, const Lines& whole, std::size_t from) {
  for (std::size_t at = from; at + part.size() <= whole.size(); ++at) {
    if (part.empty() || whole[at].size() < part.front().size()) continue;
    const std::string indent(whole[at].size() - part.front().size(), ' ');
    if (std::equal(part.begin(), part.end(), whole.begin() + static_cast<std::ptrdiff_t>(at),
                   [&indent](const std::string& shown, const std::string& line) {
                     return IsIndented(line, shown, indent);
                   }))
      return at + part.size();
  }
  return std::string::npos;
}

// Includes are at the top of a file, with other lines between them and the code.
std::vector<Lines> PartsOf(const std::string& block) {
  std::vector<Lines> parts(1);
  for (const std::string& line : LinesOf(block)) {
    if (!line.empty() || !parts.back().empty()) parts.back().push_back(line);
    if (line.rfind("#include", 0) == 0 || line.rfind("import ", 0) == 0) parts.emplace_back();
  }
  return parts;
}

bool IsIn(const std::string& block, const std::string& file) {
  const Lines whole = LinesOf(file);
  const std::vector<Lines> parts = PartsOf(block);
  return std::all_of(parts.begin(), parts.end(), [&whole](const Lines& part) {
    return part.empty() || EndOf(part, whole, 0) != std::string::npos;
  });
}

// The blocks in this order, with anything between them.
testing::AssertionResult ArePrinted(const std::vector<std::string>& blocks, const std::string& printed) {
  const Lines whole = LinesOf(printed);
  std::size_t at = 0;
  for (const std::string& block : blocks) {
    at = EndOf(LinesOf(block), whole, at);
    if (at == std::string::npos)
      return testing::AssertionFailure() << "not printed:\n" << block << "but:\n" << printed;
  }
  return testing::AssertionSuccess();
}

class Code : public ::testing::TestWithParam<Page> {};
class RunCode : public Code {};

// Those that name the file, or the command.
std::vector<Page> PagesWith(const char* Page::*what) {
  std::vector<Page> pages;
  std::copy_if(std::begin(kPages), std::end(kPages), std::back_inserter(pages),
               [what](const Page& page) { return *(page.*what) != '\0'; });
  return pages;
}

std::string NameOf(const testing::TestParamInfo<Page>& page) {
  return TestName({std::string(page.param.document) + "_" + page.param.language, page.index});
}

TEST_P(Code, IsPartOfItsProgram) {
  const Page& page = GetParam();
  const std::string file = ReadFile(kRoot + page.file);
  for (const std::string& block : BlocksOf(ReadFile(kRoot + page.document), page.language))
    EXPECT_TRUE(IsIn(block, file)) << page.file << " has not:\n" << block;
}

// Programs that call a server. The others start the service themselves: it is their subject.
bool IsTaped(const Page& page) {
  return std::string(page.command).find("http://127.0.0.1:8080") != std::string::npos;
}

std::string CommandLine(const Page& page, const UsedTapes& tapes) {
  const bool isTaped = !tapes.record.empty() || !tapes.replay.empty();
  // A program with AddressSanitizer loads its library after this one.
  return (isTaped ? "ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" QV_TAPED_SESSIONS " " : "") +
         std::string(page.command);
}

void ExpectPrinted(const Page& page, const UsedTapes& tapes) {
  Typist typist(tapes);
  const std::vector<Typed> typed =
      typist.Type({{0, "export PATH=$PWD/build/demo/tools:$PATH", {}},
                   {0, "scriptwells serve --port 8080 --home lent &", {"http://127.0.0.1:8080"}},
                   {0, CommandLine(page, tapes), {}}});
  ASSERT_EQ(typed.size(), 3U);
  EXPECT_EQ(typed[2].exit, 0) << typed[2].output;
  EXPECT_TRUE(ArePrinted(BlocksOf(ReadFile(kRoot + page.document), "text"), typed[2].output));
  EXPECT_EQ(typist.ProcessesLeft(), 0) << "processes are left";
  EXPECT_EQ(typist.TemporaryFilesLeft(), "") << "files are left";
}

TEST_P(RunCode, PrintsWhatThePageShows) {
  const Page& page = GetParam();
  ExpectPrinted(page, IsTaped(page) ? RecordedTape(page.file) : UsedTapes());
}

// The same without a service and a network.
class RunCodeOnTape : public Code {};

TEST_P(RunCodeOnTape, PrintsTheSame) {
  ExpectPrinted(GetParam(), {{}, TapeOf(GetParam().file)});
}

std::vector<Page> TapedPages() {
  std::vector<Page> pages;
  std::copy_if(std::begin(kPages), std::end(kPages), std::back_inserter(pages), IsTaped);
  return pages;
}

INSTANTIATE_TEST_SUITE_P(Documents, Code, ::testing::ValuesIn(PagesWith(&Page::file)), NameOf);
INSTANTIATE_TEST_SUITE_P(Documents, RunCode, ::testing::ValuesIn(PagesWith(&Page::command)), NameOf);
INSTANTIATE_TEST_SUITE_P(Documents, RunCodeOnTape, ::testing::ValuesIn(TapedPages()), NameOf);

TEST(CodeOfTheDocuments, IsInTheList) {
  std::set<std::pair<std::string, std::string>> listed;
  for (const Page& page : kPages) listed.insert({page.document, page.language});
  for (const std::string& document : Documents())
    for (const char* language : kLanguages) {
      const bool isShown = !BlocksOf(ReadFile(kRoot + document), language).empty();
      EXPECT_EQ(listed.count({document, language}), isShown ? 1U : 0U) << document << " in " << language;
    }
}

TEST(CodeOfADocument, IsFoundWithAnyIndent) {
  const std::string file = "int a;\n\nvoid F() {\n  int b;\n\n  if (b)\n    G();\n}\n";
  EXPECT_TRUE(IsIn("int b;\n\nif (b)\n  G();\n", file));
  EXPECT_TRUE(IsIn("#include <a>\n\nint a;\n", "#include <a>\n#include <b>\n" + file));
  EXPECT_FALSE(IsIn("int b;\nif (b)\n  G();\n", file));
  EXPECT_FALSE(IsIn("int b;\n\nif (b)\n    G();\n", file));
  EXPECT_FALSE(IsIn("int c;\n", file));
}

TEST(OutputOfADocument, IsInOrder) {
  EXPECT_TRUE(ArePrinted({"a\nb\n", "d\n"}, "a\nb\nc\nd\n"));
  EXPECT_FALSE(ArePrinted({"d\n", "a\n"}, "a\nb\nc\nd\n"));
  EXPECT_FALSE(ArePrinted({"a\nc\n"}, "a\nb\nc\nd\n"));
}

}  // namespace
}  // namespace qv::documents
