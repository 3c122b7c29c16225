// Every file that a document names is in the tree, and every link to a section finds its heading.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "tests/documents/markdown.h"

namespace qv::documents {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QV_SOURCE_DIR;

// Files of users, installations and servers.
const std::set<std::string> kElsewhere = {
    "ClientScripts/UploadScript.xml",
    "ClientScripts/UploadScriptWithoutTicketdId.xml",
    "quorvane/registry.reg",
    "etc/quorvane/registry.reg",
    "DIR/serve.reg",
    "serve.reg",
    "registry.reg",
    "libqvscriptwells.so.1",
    "libjs-chart.js",
    "VERSION.md",
    "build/docs/html/index.html",
};

const std::set<std::string> kExtensions = {".md",   ".h",     ".cpp", ".js",  ".xml", ".txt",
                                           ".dict", ".cmake", ".in",  ".reg", ".svg"};

std::set<std::string> TopFolders() {
  std::set<std::string> folders;
  for (const auto& entry : fs::directory_iterator(kRoot))
    if (entry.is_directory()) folders.insert(entry.path().filename().string());
  return folders;
}

// A name with a known extension, or a path that starts in a folder of the project.
bool IsName(const std::string& text) {
  static const std::set<std::string> folders = TopFolders();
  if (text.front() == '/' || kElsewhere.count(text) > 0) return false;
  if (kExtensions.count(fs::path(text).extension().string()) > 0) return true;
  const std::size_t slash = text.find('/');
  return slash != std::string::npos && folders.count(text.substr(0, slash)) > 0;
}

// A built file is in a folder like that of its sources: build/demo/tools/ is built from tools/.
bool IsBuilt(const fs::path& name) {
  auto part = name.begin();
  if (part == name.end() || *part++ != "build" || part == name.end()) return false;
  fs::path folder;
  for (++part; part != name.end(); ++part) folder /= *part;
  return folder.empty() || fs::exists(kRoot / folder) || fs::is_directory(kRoot / folder.parent_path());
}

bool IsInTheTree(const std::string& name, const fs::path& besides) {
  for (const fs::path& folder :
       {kRoot, besides, kRoot / "src", kRoot / "include", kRoot / "include/qvscriptwells"})
    if (fs::exists(folder / name)) return true;
  return IsBuilt(name);
}

class NamedFiles : public ::testing::TestWithParam<std::string> {};

TEST_P(NamedFiles, AreInTheTree) {
  const fs::path document = kRoot / GetParam();
  for (const NamedFile& file : FilesNamedIn(ReadFile(document))) {
    if (!IsName(file.name)) continue;
    EXPECT_TRUE(IsInTheTree(file.name, document.parent_path()))
        << GetParam() << ":" << file.line << " names " << file.name;
  }
}

// As web views of Markdown name a heading: lower case, blanks as "-", without punctuation.
std::string AnchorOf(const std::string& heading) {
  std::string anchor;
  for (const char c : heading.substr(heading.find(' ') + 1))
    if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_')
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    else if (c == ' ')
      anchor += '-';
  return anchor;
}

std::set<std::string> AnchorsOf(const fs::path& document) {
  std::set<std::string> anchors;
  std::istringstream lines(ReadFile(document));
  for (std::string line; std::getline(lines, line);)
    if (line.rfind('#', 0) == 0) anchors.insert(AnchorOf(line));
  return anchors;
}

TEST_P(NamedFiles, LinksToSectionsFindTheirHeadings) {
  static const std::regex kLink(R"(\]\(([A-Za-z0-9_./-]*)#([^)]+)\))");
  const fs::path document = kRoot / GetParam();
  const std::string text = ReadFile(document);
  for (auto link = std::sregex_iterator(text.begin(), text.end(), kLink); link != std::sregex_iterator();
       ++link) {
    const std::string file = (*link)[1];
    const fs::path target = file.empty() ? document : document.parent_path() / file;
    EXPECT_EQ(AnchorsOf(target).count((*link)[2]), 1U) << GetParam() << " links to " << link->str();
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, NamedFiles, ::testing::ValuesIn(Documents()), TestName);

TEST(NamedFilesOfADocument, AreFoundOutsideOfBlocks) {
  const std::vector<NamedFile> files =
      FilesNamedIn("see `a/b.h`, `--help`\n```\n`no.h`\n```\n[this](c.md) and [that](http://x/)\n");
  ASSERT_EQ(files.size(), 3U);
  EXPECT_EQ(files[0].name, "a/b.h");
  EXPECT_EQ(files[1].name, "--help");
  EXPECT_EQ(files[2].name, "c.md");
  EXPECT_EQ(files[2].line, 5);
}

TEST(AnchorOfAHeading, IsInLowerCaseWithoutPunctuation) {
  EXPECT_EQ(AnchorOf("## Who may use it?"), "who-may-use-it");
}

TEST(NamedFilesOfADocument, AreMissedWhenTheyAreNotThere) {
  EXPECT_FALSE(IsInTheTree("tools/none.h", kRoot));
  EXPECT_FALSE(IsInTheTree("build/demo/none/program", kRoot));
  EXPECT_TRUE(IsInTheTree("build/demo/tools/scriptwells", kRoot));
  EXPECT_TRUE(IsName("tools/none.h"));
  EXPECT_FALSE(IsName("text/xml"));
}

}  // namespace
}  // namespace qv::documents
