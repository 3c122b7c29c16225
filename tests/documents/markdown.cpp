#include "tests/documents/markdown.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace qv::documents {

namespace {

namespace fs = std::filesystem;

struct Line {
  int number = 0;
  std::string text;
  bool inBlock = false;
};

std::vector<Line> LinesOf(const std::string& document) {
  std::vector<Line> lines;
  std::istringstream stream(document);
  bool inBlock = false;
  std::string text;
  for (int number = 1; std::getline(stream, text); ++number) {
    const bool isFence = text.rfind("```", 0) == 0;
    if (isFence) inBlock = !inBlock;
    lines.push_back({number, isFence ? "" : text, inBlock && !isFence});
  }
  return lines;
}

bool IsCommand(const Line& line) {
  return line.inBlock && line.text.rfind("$ ", 0) == 0;
}

void AddMatches(const Line& line, const std::regex& pattern, std::vector<NamedFile>& files) {
  const auto end = std::sregex_iterator();
  for (auto match = std::sregex_iterator(line.text.begin(), line.text.end(), pattern); match != end; ++match)
    files.push_back({line.number, (*match)[1].str()});
}

// "| `a` | `b` |"
Row CellsOf(const std::string& line) {
  const std::size_t first = line.find('`');
  const std::size_t second = line.find("` | `", first);
  const std::size_t last = line.rfind('`');
  if (first == std::string::npos || second == std::string::npos) return {line, ""};
  return {line.substr(first + 1, second - first - 1), line.substr(second + 5, last - second - 5)};
}

bool IsOfTheProject(const fs::path& path) {
  const std::string first = path.begin()->string();
  return path.extension() == ".md" && first.rfind("build", 0) != 0 && first.front() != '.';
}

}  // namespace

std::vector<Command> CommandsOf(const std::string& document) {
  std::vector<Command> commands;
  bool wantsOutput = false;
  for (const Line& line : LinesOf(document)) {
    if (!line.inBlock) {
      wantsOutput = false;
    } else if (IsCommand(line)) {
      commands.push_back({line.number, line.text.substr(2), {}});
      wantsOutput = true;
    } else if (wantsOutput) {
      commands.back().output.push_back(line.text);
    }
  }
  return commands;
}

std::vector<std::string> BlocksOf(const std::string& document, const std::string& language) {
  std::vector<std::string> blocks;
  const std::string fence = "```" + language + "\n";
  for (std::size_t at = document.find(fence); at != std::string::npos; at = document.find(fence, at)) {
    at += fence.size();
    const std::size_t end = document.find("```", at);
    blocks.push_back(document.substr(at, end - at));
    at = end + 4;
  }
  return blocks;
}

std::vector<std::string> TableLines(const std::string& document, const std::string& head) {
  std::vector<std::string> lines;
  bool isInside = false;
  for (const Line& line : LinesOf(document)) {
    if (line.text.rfind("| " + head + " |", 0) == 0)
      isInside = true;
    else if (line.text.empty() || line.text.front() != '|')
      isInside = false;
    else if (isInside && line.text.rfind("|---", 0) != 0)
      lines.push_back(line.text);
  }
  return lines;
}

std::vector<Row> RowsOf(const std::string& document, const std::string& head) {
  std::vector<Row> rows;
  for (const std::string& line : TableLines(document, head)) rows.push_back(CellsOf(line));
  return rows;
}

std::vector<NamedFile> FilesNamedIn(const std::string& document) {
  static const std::regex kQuoted("`([A-Za-z0-9_./-]+)`");
  static const std::regex kLinked(R"(\]\(([A-Za-z0-9_./-]+)\))");
  std::vector<NamedFile> files;
  for (const Line& line : LinesOf(document)) {
    if (line.inBlock) continue;
    AddMatches(line, kQuoted, files);
    AddMatches(line, kLinked, files);
  }
  return files;
}

std::vector<std::string> Documents() {
  std::vector<std::string> documents;
  const fs::path root = QV_SOURCE_DIR;
  for (auto entry = fs::recursive_directory_iterator(root); entry != fs::recursive_directory_iterator();
       ++entry) {
    const fs::path path = entry->path().lexically_relative(root);
    if (entry->is_directory() && (path.string().rfind("build", 0) == 0 || path.string().front() == '.'))
      entry.disable_recursion_pending();
    else if (IsOfTheProject(path))
      documents.push_back(path.string());
  }
  std::sort(documents.begin(), documents.end());
  return documents;
}

std::string TestName(const testing::TestParamInfo<std::string>& document) {
  std::string name = document.param;
  for (char& c : name)
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  return name;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace qv::documents
