// scripts/check-words finds a phrase in comments and documents, and nowhere else.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/fixtures/output_of.h"

namespace qv::documents {
namespace {

namespace fs = std::filesystem;

class CheckWords : public ::testing::Test {
 protected:
  CheckWords() {
    std::string pattern = fs::temp_directory_path().string() + "/check-words-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    folder_ = pattern;
  }
  ~CheckWords() override { fs::remove_all(folder_); }

  // "LINE: PHRASE" for each hit in a file with this content.
  std::string HitsIn(const std::string& name, const std::string& content) const {
    const std::string path = folder_ + "/" + name;
    std::ofstream(path) << content;
    const CommandOutput output =
        OutputOf(QV_SOURCE_DIR "/scripts/check-words --list " + path + " 2>/dev/null");
    EXPECT_EQ(output.exit, output.text.empty() ? 0 : 1);
    std::istringstream lines(output.text);
    std::string hits;
    for (std::string line; std::getline(lines, line);)
      hits += line.substr(path.size() + 1, line.find(" -> ") - path.size() - 1) + "\n";
    return hits;
  }

 private:
  std::string folder_;
};

constexpr const char* kPhrases[] = {"the words of a failure",
                                    "it fails without a word",
                                    "the text behind the colon",
                                    "a null stands for it",
                                    "the name stands in the list",
                                    "the tag tells which",
                                    "it is told by the server",
                                    "the last takes all of them with it",
                                    "a code of no use",
                                    "one that is no number",
                                    "for what is no digit",
                                    "a registry of one's own",
                                    "it is built anew",
                                    "it is read afresh",
                                    "the dearest call",
                                    "this came down",
                                    "the request goes out",
                                    "the id goes along",
                                    "what is refused",
                                    "a place for a result",
                                    "it hands out a list",
                                    "the property gives an object",
                                    "it ends as a fault",
                                    "it ends the table as invalid"};

TEST_F(CheckWords, EveryPhraseIsFound) {
  std::string page;
  for (const char* phrase : kPhrases) page += std::string(phrase) + "\n";
  const std::string hits = "\n" + HitsIn("page.md", page);
  int line = 0;
  for (const char* phrase : kPhrases)
    EXPECT_NE(hits.find("\n" + std::to_string(++line) + ": "), std::string::npos) << phrase;
}

TEST_F(CheckWords, PlainPhrasesAreNotFound) {
  EXPECT_EQ(
      HitsIn("page.md",
             "A standard message is sent after it. There is no longer a use of it, one that is no longer "
             "there; it ends at the same time as the call, as the last one did. It is a part of its own "
             "file.\n"),
      "");
}

TEST_F(CheckWords, AllowedPhrasesDoNotCount) {
  EXPECT_EQ(HitsIn("page.md", "a server behind\na proxy, behind a wall\n"), "2: behind\n");
}

TEST_F(CheckWords, CommentsAreReadAndCodeIsNot) {
  EXPECT_EQ(HitsIn("a.cpp",
                   "int behind = 1;  // behind\nauto a = \"// behind\";\n/* x\n behind */\n"
                   "auto b = R\"(\n// behind)\"; char c = '\"'; // behind\n"),
            "1: behind\n4: behind\n6: behind\n");
}

TEST_F(CheckWords, APhraseMaySpanTheLinesOfAComment) {
  EXPECT_EQ(HitsIn("a.h", "// It stands\n  // for a call.\n"), "1: stands for\n");
  EXPECT_EQ(HitsIn("a.h", "// It stands\nint x;\n// for a call.\n"), "");
}

TEST_F(CheckWords, ScriptsAndListsAreRead) {
  EXPECT_EQ(HitsIn("a.cmake", "set(behind \"# behind\")  # behind\n"), "1: behind\n");
  EXPECT_EQ(HitsIn("script", "#!/bin/sh\necho '# behind' \"$#\" ${#behind}  # anew\n"), "2: anew\n");
  EXPECT_EQ(HitsIn("a.py", "\"\"\"Stands\nfor it.\"\"\"\nx = \"behind\"\n"), "1: Stands for\n");
  EXPECT_EQ(HitsIn("data.bin", "# behind\n"), "");
}

}  // namespace
}  // namespace qv::documents
