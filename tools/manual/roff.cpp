#include "tools/manual/roff.h"

#include <regex>
#include <sstream>

namespace qv::cli {

namespace {

constexpr std::size_t kWidth = 78;

struct Escape {
  char character;
  const char* roff;
};

// Formatters draw the plain forms of these as typographic quotes, hyphens and accents.
constexpr Escape kEscapes[] = {{'\\', "\\(rs"}, {'-', "\\-"},   {'\'', "\\(aq"}, {'"', "\\(dq"},
                               {'`', "\\(ga"},  {'^', "\\(ha"}, {'~', "\\(ti"}};

std::string Escaped(char character) {
  for (const Escape& one : kEscapes)
    if (one.character == character) return one.roff;
  return std::string(1, character);
}

bool IsProse(const std::string& line) {
  return !line.empty() && line.front() != ' ';
}

// A point at the start of a line would begin a macro.
std::string Protected(const std::string& line) {
  return !line.empty() && line.front() == '.' ? "\\&" + line : line;
}

// The lines of a text that are of one kind: prose, examples, or empty.
struct Block {
  bool prose = false;
  std::string lines;
};

std::vector<Block> BlocksOf(const std::string& text) {
  std::vector<Block> blocks;
  bool begun = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) {
      begun = false;
      continue;
    }
    if (!begun || blocks.back().prose != IsProse(line)) blocks.push_back({IsProse(line), ""});
    begun = true;
    blocks.back().lines += line + "\n";
  }
  return blocks;
}

}  // namespace

std::string Roff(const std::string& text) {
  std::string roff;
  for (const char character : text) roff += Escaped(character);
  return roff;
}

std::string Bold(const std::string& text) {
  return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(const std::string& text) {
  return "\\fI" + Roff(text) + "\\fR";
}

std::string Prose(const std::string& text) {
  static const std::regex kOption(R"((^|[ (\n])(--?[a-zA-Z][a-z-]*))");
  std::string roff;
  auto rest = text.cbegin();
  for (std::sregex_iterator match(text.begin(), text.end(), kOption), end; match != end; ++match) {
    roff += Roff(std::string(rest, (*match)[2].first)) + Bold((*match)[2]);
    rest = (*match)[2].second;
  }
  return roff + Roff(std::string(rest, text.cend()));
}

std::string RoffLines(const std::string& roff) {
  std::string lines;
  std::string line;
  std::istringstream words(roff);
  for (std::string word; words >> word;) {
    if (!line.empty() && line.size() + 1 + word.size() > kWidth) {
      lines += Protected(line) + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  return line.empty() ? lines : lines + Protected(line) + "\n";
}

std::string Example(const std::string& lines, std::size_t indent) {
  std::string roff = ".RS 4\n.EX\n";
  std::istringstream each(lines);
  for (std::string line; std::getline(each, line);)
    roff += Protected(Roff(line.substr(std::min(indent, line.size())))) + "\n";
  return roff + ".EE\n.RE\n";
}

std::string Paragraphs(const std::string& text) {
  std::string roff;
  for (const Block& block : BlocksOf(text))
    roff += ".PP\n" + (block.prose ? RoffLines(Prose(block.lines)) : Example(block.lines, 2));
  return roff;
}

std::string Section(const std::string& title) {
  return ".SH " + title + "\n";
}

std::string Item(const std::string& head, const std::string& explanation) {
  return ".TP\n" + head + "\n" + RoffLines(explanation);
}

}  // namespace qv::cli
