// Lines that are typed at a terminal, with editing, history and completion.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/prompt/line_source.h"
#include "tools/shell/completion.h"

struct editline;
struct history;

namespace qv::cli {

// Only one at a time, since it handles changes of the terminal's size. Signals must be watched (interrupt.h).
class LineEditor : public LineSource {
 public:
  // The text before the cursor, and whether a script is open.
  using Completer = std::function<Completion(const std::string& line, bool isOpen)>;

  struct Prompts {
    std::string first;
    std::string next;  // of a script that has begun
  };

  // Reads standard input, and shows it on standard output if that is a terminal, otherwise on standard error.
  // Throws std::bad_alloc.
  LineEditor(Prompts prompts, Completer completer);
  ~LineEditor() override;
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // Keys for going back find the entry.
  void Remember(const std::string& entry);
  // After an interrupt the line is lost, and the cursor is in a new line.
  ShellLine Next(bool isOpen) override;

 private:
  struct Close {
    void operator()(editline* editor) const;
    void operator()(struct history* past) const;
  };

  static char* PromptOf(editline* editor);
  static int ReadCharacter(editline* editor, wchar_t* character);
  static unsigned char CompleteWord(editline* editor, int key);
  static LineEditor& Itself(editline* editor);
  unsigned char CompleteHere();
  void List(const std::vector<std::string>& words);
  ShellLine Ended();

  std::string prompt_;
  Prompts prompts_;
  Completer completer_;
  std::deque<std::string> lines_;  // of an entry with several
  bool isOpen_ = false;
  std::FILE* shown_;
  std::unique_ptr<struct history, Close> history_;
  std::unique_ptr<editline, Close> editor_;
};

}  // namespace qv::cli
