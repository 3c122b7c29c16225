#include "tools/shell/shell_input.h"

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestScript = std::size_t{64} << 20;

std::string Trimmed(const std::string& line) {
  constexpr char kBlanks[] = " \t\r";
  const std::size_t start = line.find_first_not_of(kBlanks);
  return start == std::string::npos ? "" : line.substr(start, line.find_last_not_of(kBlanks) + 1 - start);
}

}  // namespace

ShellInput::Found ShellInput::Add(const std::string& line) {
  if (!isOpen_) Drop();
  if (typed_.size() + line.size() > kLongestScript) {
    Drop();
    throw Failure(ExitStatus::kLocal, "the script is longer than 64 MB");
  }
  const std::string trimmed = Trimmed(line);
  if (!isOpen_ && trimmed.empty()) return Found::kNothing;
  typed_ += (typed_.empty() ? "" : "\n") + line;
  if (isOpen_ && trimmed == ":}") return Finish(Found::kScript);
  if (isOpen_ || trimmed.front() != ':') return AddToScript(line);
  if (trimmed != ":{") {
    text_ = line.substr(line.find(':'));
    return Finish(Found::kCommand);
  }
  isBlock_ = true;
  isOpen_ = true;
  return Found::kOpen;
}

ShellInput::Found ShellInput::AddToScript(const std::string& line) {
  const bool isScanned = IsLikeJavaScript(language_);
  const bool goesOn = !isScanned && !isBlock_ && !line.empty() && line.back() == '\\';
  Append(goesOn ? line.substr(0, line.size() - 1) : line);
  if (isScanned) scanner_.Add(line);
  isOpen_ = isBlock_ || goesOn || (isScanned && scanner_.IsOpen());
  if (isOpen_) return Found::kOpen;
  return Finish(!isScanned || scanner_.HasCode() ? Found::kScript : Found::kNothing);
}

void ShellInput::Append(const std::string& line) {
  if (hasLine_) text_ += "\n";
  text_ += line;
  hasLine_ = true;
}

ShellInput::Found ShellInput::Finish(Found found) {
  isOpen_ = false;
  isBlock_ = false;
  hasLine_ = false;
  scanner_ = {};
  if (found == Found::kScript && text_.empty()) return Found::kNothing;
  return found;
}

ShellInput::Found ShellInput::End() {
  return isOpen_ ? Finish(Found::kScript) : Found::kNothing;
}

void ShellInput::Drop() {
  text_.clear();
  typed_.clear();
  Finish(Found::kNothing);
}

}  // namespace qv::cli
