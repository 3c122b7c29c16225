// Every file that a document names is in the tree.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/documents/markdown.h"

namespace qv::documents {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QV_SOURCE_DIR;

// Files of users, of installations and of servers, which the documents tell of.
const std::set<std::string> kElsewhere = {
    "ClientScripts/UploadScript.xml",
    "ClientScripts/UploadScriptWithoutTicketdId.xml",
    "share/quorvane/registry.reg",
    "DIR/serve.reg",
    "serve.reg",
    "registry.reg",
    "libqvscriptwells.so.1",
    "VERSION.md",
};

const std::set<std::string> kExtensions = {".md",  ".h",    ".cpp",   ".js", ".xml",
                                           ".txt", ".dict", ".cmake", ".in", ".reg"};

std::set<std::string> TopFolders() {
  std::set<std::string> folders;
  for (const auto& entry : fs::directory_iterator(kRoot))
    if (entry.is_directory()) folders.insert(entry.path().filename().string());
  return folders;
}

// A word with the ending of a file, or a path that starts in a folder of the project's.
bool IsName(const std::string& text) {
  static const std::set<std::string> folders = TopFolders();
  if (text.front() == '/' || kElsewhere.count(text) > 0) return false;
  if (kExtensions.count(fs::path(text).extension().string()) > 0) return true;
  const std::size_t slash = text.find('/');
  return slash != std::string::npos && folders.count(text.substr(0, slash)) > 0;
}

// What a build makes has a folder with its sources: build/demo/tools/ comes of tools/.
bool IsBuilt(const fs::path& name) {
  auto part = name.begin();
  if (part == name.end() || *part++ != "build" || part == name.end()) return false;
  fs::path folder;
  for (++part; part != name.end(); ++part) folder /= *part;
  return folder.empty() || fs::exists(kRoot / folder) || fs::is_directory(kRoot / folder.parent_path());
}

bool IsInTheTree(const std::string& name, const fs::path& besides) {
  for (const fs::path& folder : {kRoot, besides, kRoot / "src", kRoot / "include/qvscriptwells"})
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

INSTANTIATE_TEST_SUITE_P(Documents, NamedFiles, ::testing::ValuesIn(Documents()), [](const auto& document) {
  std::string name = document.param;
  for (char& c : name)
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  return name;
});

TEST(NamedFilesOfADocument, AreFoundOutsideOfBlocks) {
  const std::vector<NamedFile> files =
      FilesNamedIn("see `a/b.h`, `--help`\n```\n`no.h`\n```\n[this](c.md) and [that](http://x/)\n");
  ASSERT_EQ(files.size(), 3u);
  EXPECT_EQ(files[0].name, "a/b.h");
  EXPECT_EQ(files[1].name, "--help");
  EXPECT_EQ(files[2].name, "c.md");
  EXPECT_EQ(files[2].line, 5);
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
