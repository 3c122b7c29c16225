// Puts the lines of a shell together: commands, and scripts of one or several lines.
#pragma once

#include <string>

#include "tools/shell/script_scanner.h"

namespace qv::cli {

// A line that begins with ":" is a command, unless a script is open. A script ends with the line that
// completes it: for JavaScript as ScriptScanner says, for other languages with the first line that does not
// end with "\". ":{" and ":}", each in its own line, enclose a script of any kind; ":}" also ends a script
// that only looks open.
class ShellInput {
 public:
  enum class Found { kNothing, kOpen, kCommand, kScript };

  explicit ShellInput(std::string language) : language_(std::move(language)) {}

  // For the next script.
  void SetLanguage(std::string language) { language_ = std::move(language); }
  const std::string& Language() const noexcept { return language_; }

  // A line without its line end. After kCommand and kScript the next line begins something new. Throws
  // Failure (kLocal) for a script of more than 64 MB.
  Found Add(const std::string& line);
  // At the end of the input: the script that is open becomes kScript.
  Found End();
  // Forgets what is open.
  void Drop();

  bool IsOpen() const noexcept { return isOpen_; }
  // The command or script that was found.
  const std::string& Text() const noexcept { return text_; }
  // The same as it was typed, with ":{", ":}" and "\".
  const std::string& Typed() const noexcept { return typed_; }

 private:
  Found AddToScript(const std::string& line);
  void Append(const std::string& line);
  Found Finish(Found found);

  std::string language_;
  std::string text_;
  std::string typed_;
  ScriptScanner scanner_;
  bool isOpen_ = false;
  bool isBlock_ = false;  // after ":{"
  bool hasLine_ = false;  // of the script
};

}  // namespace qv::cli
