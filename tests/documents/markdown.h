// Reads Markdown: commands, blocks, tables, names of files.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qv::documents {

// A line of a block that begins with "$ ", and the output that the document shows.
struct Command {
  int line = 0;  // of the document, from 1 on
  std::string text;
  std::vector<std::string> output;
};

// The commands of all blocks, in the order of the document.
std::vector<Command> CommandsOf(const std::string& document);

// The blocks that start with "```LANGUAGE", each with its last line end.
std::vector<std::string> BlocksOf(const std::string& document, const std::string& language);

// The rows of every table whose first column is headed `head`.
std::vector<std::string> TableLines(const std::string& document, const std::string& head);
// Their first two cells, without backticks.
using Row = std::pair<std::string, std::string>;
std::vector<Row> RowsOf(const std::string& document, const std::string& head);

struct NamedFile {
  int line = 0;
  std::string name;
};

// Texts in backticks and targets of links that may be paths of files; blocks are skipped.
std::vector<NamedFile> FilesNamedIn(const std::string& document);

// All documents of the project, as paths below its root.
std::vector<std::string> Documents();

// The name of a document in a list of tests.
std::string TestName(const testing::TestParamInfo<std::string>& document);

std::string ReadFile(const std::string& path);

}  // namespace qv::documents
