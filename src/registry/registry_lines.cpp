#include "registry/registry_lines.h"
#include "text/ascii.h"

#include <utf8.h>

#include <algorithm>
#include <utility>

namespace qv {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlank = " \t\r\n";
constexpr std::string_view kNeverInHeading = "[@\"=";
constexpr std::size_t kNone = std::string_view::npos;
constexpr const char* kNotClosed = "the quote is not closed";

// The names that a section may begin with, and their keys.
struct Root {
  std::string_view name;
  std::string_view key;
};
constexpr Root kRoots[] = {{kLocalMachine, ""}, {"HKEY_CLASSES_ROOT", "SOFTWARE\\Classes"}};

std::string_view Trimmed(std::string_view text) noexcept {
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == kNone) return {};
  return text.substr(first, text.find_last_not_of(kBlank) + 1 - first);
}

// The root's name, ignoring case, alone or before a "\".
bool IsBelow(std::string_view root, std::string_view name) noexcept {
  if (name.size() < root.size()) return false;
  for (std::size_t i = 0; i < root.size(); ++i)
    if (ToAsciiUpper(name[i]) != root[i]) return false;
  return name.size() == root.size() || name[root.size()] == '\\';
}

const Root* RootOf(std::string_view name) noexcept {
  for (const Root& root : kRoots)
    if (IsBelow(root.name, name)) return &root;
  return nullptr;
}

std::string KeyOf(const Root& root, std::string_view name) {
  const std::string_view rest = name.substr(std::min(name.size(), root.name.size() + 1));
  std::string key(root.key);
  if (!key.empty() && !rest.empty()) key += '\\';
  return key.append(rest);
}

// The position of the quote that closes the one at the start of `text`.
std::size_t ClosingQuote(std::string_view text) noexcept {
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '"') return at;
    if (text[at] == '\\') ++at;
  }
  return kNone;
}

// Null, or the problem of the quoted text.
const char* Unquote(std::string_view quoted, std::string& text) {
  const std::size_t end = ClosingQuote(quoted);
  if (end == kNone) return kNotClosed;
  for (std::size_t at = 1; at < end; ++at) {
    if (quoted[at] == '\\' && quoted[++at] != '\\' && quoted[at] != '"') return "an unknown escape";
    text += quoted[at];
  }
  return end + 1 == quoted.size() ? nullptr : "text after the closing quote";
}

class LineReader {
 public:
  explicit LineReader(std::string_view bytes) noexcept : bytes_(bytes) {}

  std::vector<RegistryLine> ReadAll() {
    std::vector<RegistryLine> lines;
    while (at_ < bytes_.size()) {
      RegistryLine line;
      line.begin = at_;
      Classify(TakeContent(), line);
      line.end = at_;
      lines.push_back(std::move(line));
    }
    return lines;
  }

 private:
  [[noreturn]] void Fail(const char* reason) const { throw RegistryDamage(number_, reason); }

  std::string_view TakeContent() {
    const std::size_t lineFeed = bytes_.find('\n', at_);
    const std::size_t end = lineFeed == kNone ? bytes_.size() : lineFeed + 1;
    std::string_view line = bytes_.substr(at_, end - at_);
    at_ = end;
    ++number_;
    if (!utf8::is_valid(line.begin(), line.end())) Fail("it is not UTF-8");
    if (line.find('\0') != kNone) Fail("it holds a NUL byte");
    if (number_ == 1 && line.substr(0, kByteOrderMark.size()) == kByteOrderMark)
      line.remove_prefix(kByteOrderMark.size());
    return Trimmed(line);
  }

  void Classify(std::string_view content, RegistryLine& line) {
    if (content.empty()) line.kind = RegistryLineKind::kBlank;
    if (content.empty() || content[0] == ';') return;
    if (content[0] == '[') return ReadSection(content, line);
    if (content[0] == '@') return ReadOwnValue(content, line);
    if (content[0] == '"') return ReadNamedValue(content, line);
    const bool heading = number_ == 1 && content.find_first_of(kNeverInHeading) == kNone;
    if (!heading) Fail("neither a section nor a value nor a comment");
  }

  void ReadSection(std::string_view content, RegistryLine& line) {
    if (content.back() != ']') Fail("the section is not closed");
    const std::string_view name = content.substr(1, content.size() - 2);
    const Root* const root = RootOf(name);
    if (root == nullptr) Fail("the section is not below HKEY_LOCAL_MACHINE");
    line.kind = RegistryLineKind::kSection;
    line.key = KeyOf(*root, name);
    hasSection_ = true;
    isRoot_ = line.key.empty();
  }

  void ReadOwnValue(std::string_view content, RegistryLine& line) {
    const std::string_view value = ValueBehind(content.substr(1));
    const bool isText = value[0] == '"';
    const char* const problem = isText ? Unquote(value, line.text) : nullptr;
    if (problem != nullptr) Fail(problem);
    if (!isText) TakeContinuations(value);
    if (!isRoot_) line.kind = isText ? RegistryLineKind::kText : RegistryLineKind::kNoText;
  }

  // Only the end of the value must be found. Invalid content may belong to another program and does not
  // damage the file.
  void ReadNamedValue(std::string_view content, RegistryLine& line) {
    const std::size_t nameEnd = ClosingQuote(content);
    if (nameEnd == kNone) Fail(kNotClosed);
    const std::string_view value = ValueBehind(content.substr(nameEnd + 1));
    const bool isText = value[0] == '"';
    if (isText && ClosingQuote(value) == kNone) Fail(kNotClosed);
    if (!isText) TakeContinuations(value);
    if (isRoot_) return;
    if (Unquote(content.substr(0, nameEnd + 1), line.name) != nullptr) line.name.clear();
    const bool isWhole = isText && Unquote(value, line.text) == nullptr;
    line.kind = isWhole ? RegistryLineKind::kNamedText : RegistryLineKind::kNamedOther;
  }

  // The text after the "="; never empty.
  std::string_view ValueBehind(std::string_view rest) const {
    rest = Trimmed(rest);
    if (rest.empty() || rest[0] != '=') Fail("a value without \"=\"");
    if (!hasSection_) Fail("a value before any section");
    const std::string_view value = Trimmed(rest.substr(1));
    if (value.empty()) Fail("nothing after the \"=\"");
    return value;
  }

  // A list of bytes may have several lines; each but the last ends in "\".
  void TakeContinuations(std::string_view value) {
    while (!value.empty() && value.back() == '\\') {
      if (at_ == bytes_.size()) Fail("the value is not complete");
      value = TakeContent();
    }
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::size_t number_ = 0;  // of the current line, from 1
  bool hasSection_ = false;
  bool isRoot_ = false;
};

}  // namespace

std::vector<RegistryLine> ReadRegistryLines(std::string_view bytes) {
  return LineReader(bytes).ReadAll();
}

}  // namespace qv
