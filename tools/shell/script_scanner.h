// Finds out whether a script goes on in the next line.
#pragma once

#include <string>

namespace qv::cli {

// Whether scripts of this language are read as JavaScript; in any case of letters.
bool IsLikeJavaScript(const std::string& language);

// Reads JavaScript line by line. Knows strings, templates, comments, regular expressions and brackets. What
// is before
// "/" decides whether it begins a regular expression.
class ScriptScanner {
 public:
  // A line without its line end.
  void Add(const std::string& line);
  // Whether a bracket, a text or a comment is open, or the last line ends with an operator. Never for a
  // script that no further line can mend.
  bool IsOpen() const;
  // Whether there was anything but blanks and comments.
  bool HasCode() const noexcept { return hasCode_; }

 private:
  enum class State { kCode, kSingle, kDouble, kTemplate, kRegex, kRegexClass, kLineComment, kBlockComment };

  std::size_t Step(const std::string& line, std::size_t at);
  std::size_t StepCode(const std::string& line, std::size_t at);
  std::size_t StepText(const std::string& line, std::size_t at, char end);
  std::size_t StepTemplate(const std::string& line, std::size_t at);
  std::size_t StepRegex(const std::string& line, std::size_t at);
  std::size_t StepWord(const std::string& line, std::size_t at);
  void Open(char bracket) { open_ += bracket; }
  void Close(char bracket);
  void EndLine(const std::string& line);
  bool EndsWithOperator() const;
  bool ExpectsOperand() const;

  State state_ = State::kCode;
  std::string open_;       // brackets; '$' is the "${" of a template
  std::string last_;       // the last characters of code without blanks, at most two; a word is "a" or "k"
  bool isBroken_ = false;  // a syntax error
  bool hasCode_ = false;
};

}  // namespace qv::cli
