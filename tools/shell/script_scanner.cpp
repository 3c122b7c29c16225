#include "tools/shell/script_scanner.h"

#include <algorithm>
#include <iterator>

#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

constexpr const char* kLikeJavaScript[] = {"JavaScript", "JScript", "ECMAScript", "TypeScript", "js"};

// An operand follows, so "/" begins a regular expression.
constexpr const char* kOperatorWords[] = {"return", "typeof", "case",       "in",   "of",    "delete", "void",
                                          "throw",  "new",    "instanceof", "else", "yield", "await",  "do"};

constexpr char kWord[] = "a";
constexpr char kOperatorWord[] = "k";
constexpr char kOperators[] = "+-*/%=&|^<>?:,.!~";

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Bytes beyond ASCII are parts of names.
bool IsWordCharacter(char c) {
  return IsDigit(c) || (Lowered(c) >= 'a' && Lowered(c) <= 'z') || c == '_' || c == '$' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

char OpeningOf(char closing) {
  return closing == ')' ? '(' : closing == ']' ? '[' : '{';
}

}  // namespace

bool IsLikeJavaScript(const std::string& language) {
  return std::any_of(std::begin(kLikeJavaScript), std::end(kLikeJavaScript),
                     [&](const char* name) { return IsSameName(language, name); });
}

void ScriptScanner::Add(const std::string& line) {
  for (std::size_t at = 0; at < line.size();) at = Step(line, at);
  EndLine(line);
}

bool ScriptScanner::IsOpen() const {
  if (isBroken_) return false;
  return !open_.empty() || state_ != State::kCode || EndsWithOperator();
}

// Returns the place after what was read.
std::size_t ScriptScanner::Step(const std::string& line, std::size_t at) {
  switch (state_) {
    case State::kSingle:
      return StepText(line, at, '\'');
    case State::kDouble:
      return StepText(line, at, '"');
    case State::kTemplate:
      return StepTemplate(line, at);
    case State::kRegex:
    case State::kRegexClass:
      return StepRegex(line, at);
    case State::kLineComment:
      return line.size();
    case State::kBlockComment:
      if (line.compare(at, 2, "*/") != 0) return at + 1;
      state_ = State::kCode;
      return at + 2;
    case State::kCode:
      break;
  }
  return StepCode(line, at);
}

std::size_t ScriptScanner::StepCode(const std::string& line, std::size_t at) {
  const char c = line[at];
  if (IsBlank(c)) return at + 1;
  if (line.compare(at, 2, "//") == 0) {
    state_ = State::kLineComment;
    return at + 2;
  }
  if (line.compare(at, 2, "/*") == 0) {
    state_ = State::kBlockComment;
    return at + 2;
  }
  hasCode_ = true;
  if (IsWordCharacter(c)) return StepWord(line, at);
  if (c == '/' && ExpectsOperand()) {
    state_ = State::kRegex;
    return at + 1;
  }
  if (c == '\'') state_ = State::kSingle;
  if (c == '"') state_ = State::kDouble;
  if (c == '`') state_ = State::kTemplate;
  if (c == '(' || c == '[' || c == '{') Open(c);
  if (c == ')' || c == ']' || c == '}') Close(c);
  last_ = (last_.empty() ? "" : std::string(1, last_.back())) + c;
  return at + 1;
}

std::size_t ScriptScanner::StepText(const std::string& line, std::size_t at, char end) {
  if (line[at] == '\\') return at + 2;
  if (line[at] == end) {
    state_ = State::kCode;
    last_ = kWord;
  }
  return at + 1;
}

std::size_t ScriptScanner::StepTemplate(const std::string& line, std::size_t at) {
  if (line.compare(at, 2, "${") != 0) return StepText(line, at, '`');
  state_ = State::kCode;
  last_ = "{";
  Open('$');
  return at + 2;
}

std::size_t ScriptScanner::StepRegex(const std::string& line, std::size_t at) {
  const char c = line[at];
  if (c == '\\') return at + 2;
  if (c == '[') state_ = State::kRegexClass;
  if (c == ']') state_ = State::kRegex;
  if (c == '/' && state_ == State::kRegex) {
    state_ = State::kCode;
    last_ = kWord;
  }
  return at + 1;
}

// A name, a keyword or a number, such as "5." and "5.5", whose point is no operator.
std::size_t ScriptScanner::StepWord(const std::string& line, std::size_t at) {
  const bool isNumber = IsDigit(line[at]);
  std::size_t end = at;
  while (end < line.size() && (IsWordCharacter(line[end]) || (isNumber && line[end] == '.'))) ++end;
  const std::string word = line.substr(at, end - at);
  const bool isOperator = last_ != "." && std::any_of(std::begin(kOperatorWords), std::end(kOperatorWords),
                                                      [&](const char* one) { return word == one; });
  last_ = isOperator ? kOperatorWord : kWord;
  return end;
}

void ScriptScanner::Close(char bracket) {
  const char opening = open_.empty() ? '\0' : open_.back();
  if (opening == '$' && bracket == '}') {
    state_ = State::kTemplate;
  } else if (opening != OpeningOf(bracket)) {
    isBroken_ = true;
    return;
  }
  open_.pop_back();
}

// A string goes on in the next line only after "\", and a regular expression never does.
void ScriptScanner::EndLine(const std::string& line) {
  if (state_ == State::kLineComment) state_ = State::kCode;
  const bool isString = state_ == State::kSingle || state_ == State::kDouble;
  std::size_t backslashes = 0;
  while (backslashes < line.size() && line[line.size() - 1 - backslashes] == '\\') ++backslashes;
  if (isString && backslashes % 2 == 0) isBroken_ = true;
  if (state_ == State::kRegex || state_ == State::kRegexClass) isBroken_ = true;
}

bool ScriptScanner::EndsWithOperator() const {
  if (last_.empty() || last_ == "++" || last_ == "--") return false;
  return std::string(kOperators).find(last_.back()) != std::string::npos;
}

bool ScriptScanner::ExpectsOperand() const {
  if (last_.empty() || last_ == kOperatorWord) return true;
  const char last = last_.back();
  return last != ')' && last != ']' && last != 'a' && last_ != "++" && last_ != "--";
}

}  // namespace qv::cli
