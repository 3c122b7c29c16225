#include "tools/manual/markdown_page.h"

#include <cctype>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "tools/manual/roff.h"

namespace qv::cli {

namespace {

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// Code in a line. Where it has no blank it may be broken after a mark, since it may be longer than a line.
std::string Code(const std::string& code) {
  return std::regex_replace(Bold(code), std::regex("([>/=])"), "$1\\:");
}

// One line of code, emphasis and links; a link is its text.
std::string Inline(const std::string& text) {
  static const std::regex kMark(R"(`([^`]+)`|\*\*([^*]+)\*\*|\[([^\]]+)\]\([^)]+\))");
  std::smatch match;
  if (!std::regex_search(text, match, kMark)) return Roff(text);
  const std::string before = Roff(match.prefix());
  const std::string rest = Inline(match.suffix());
  if (match[1].matched) return before + Code(match[1]) + rest;
  return before + (match[2].matched ? "\\fI" + Inline(match[2]) + "\\fR" : Inline(match[3])) + rest;
}

// The text of a table's cell, in a line that is shown as it is.
std::string CellText(const std::string& cell) {
  static const std::regex kCode("`([^`]+)`");
  const std::size_t start = cell.find_first_not_of(' ');
  if (start == std::string::npos) return "";
  return std::regex_replace(cell.substr(start, cell.find_last_not_of(' ') - start + 1), kCode, "$1");
}

struct TableRow {
  std::string left;
  std::string right;
};

TableRow TableRowOf(const std::string& line) {
  const std::size_t middle = line.find(" | ", 1);
  const std::size_t end = line.rfind('|');
  return {CellText(line.substr(1, middle - 1)), CellText(line.substr(middle + 2, end - middle - 2))};
}

// Reads the document line by line and writes the page.
class MarkdownReader {
 public:
  explicit MarkdownReader(const std::string& markdown) : lines_(markdown) {}

  std::string Read() {
    while (Next()) ReadElement();
    FinishParagraph();
    return page_;
  }

 private:
  bool Next() { return static_cast<bool>(std::getline(lines_, line_)); }

  void ReadElement() {
    if (StartsWith(line_, "#")) {
      FinishParagraph();
      page_ += ".SS \"" + Inline(line_.substr(line_.find(' ') + 1)) + "\"\n";
      start_.clear();  // the heading begins a paragraph
    } else if (StartsWith(line_, "```")) {
      FinishParagraph();
      ReadCode();
    } else if (StartsWith(line_, "| ")) {
      FinishParagraph();
      ReadTable();
    } else if (StartsWith(line_, "- ")) {
      FinishParagraph();
      start_ = ".IP \\(bu 2\n";
      paragraph_ = line_.substr(2);
    } else if (line_.empty()) {
      FinishParagraph();
    } else {
      paragraph_ += "\n" + line_;
    }
  }

  void FinishParagraph() {
    if (!paragraph_.empty()) Add(RoffLines(Inline(paragraph_)));
    paragraph_.clear();
  }

  void Add(const std::string& paragraph) {
    page_ += start_ + paragraph;
    start_ = ".PP\n";
  }

  void ReadCode() {
    std::string code;
    while (Next() && !StartsWith(line_, "```")) code += line_ + "\n";
    Add(Example(code, 0));
  }

  // Cells are longer than a line, so each row is two lines.
  void ReadTable() {
    const TableRow head = TableRowOf(line_);
    Add(RoffLines(Italic(head.left) + ", and below it: " + Italic(head.right)));
    std::string rows;
    while (Next() && StartsWith(line_, "|")) {
      if (StartsWith(line_, "|-")) continue;
      const TableRow row = TableRowOf(line_);
      rows += (rows.empty() ? "" : "\n") + row.left + "\n    " + row.right + "\n";
    }
    Add(Example(rows, 0));
    if (lines_) ReadElement();
  }

  std::istringstream lines_;
  std::string line_;
  std::string paragraph_;
  std::string start_;  // of the next paragraph
  std::string page_;
};

}  // namespace

std::string MarkdownPage(const std::string& markdown, const std::string& name, const PageMark& mark) {
  const std::size_t titleEnd = markdown.find('\n');
  if (!StartsWith(markdown, "# ") || titleEnd < 3 || titleEnd == std::string::npos)
    throw std::runtime_error("the document does not begin with a title");
  std::string title = markdown.substr(2, titleEnd - 2);
  title.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(title.front())));
  return PageHeader(name, "7", "Miscellaneous Information", mark) + Section("NAME") +
         RoffLines(Roff(name) + " \\- " + Roff(title)) + Section("DESCRIPTION") +
         MarkdownReader(markdown.substr(titleEnd)).Read() + Section("SEE ALSO") + Bold("scriptwells") +
         "(1)\n";
}

}  // namespace qv::cli
