#include "tools/prompt/line_editor.h"

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <new>

#include "tools/output/cell_width.h"
#include "tools/report/unsafe_characters.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr int kMostRemembered = 1000;
constexpr std::size_t kUsualColumns = 80;
constexpr std::size_t kGap = 2;  // between two columns of a list

std::atomic<bool> g_resized{false};
std::atomic<bool> g_continued{false};

extern "C" void OnTerminalChange(int signal) {
  if (signal == SIGWINCH) g_resized = true;
  if (signal == SIGCONT) g_continued = true;
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

// After a stop the terminal may be as another program left it.
void FollowTerminal(EditLine* editor) {
  if (g_resized.exchange(false)) el_resize(editor);
  if (!g_continued.exchange(false)) return;
  el_set(editor, EL_PREP_TERM, 1);
  el_set(editor, EL_REFRESH);
}

// False at the end of the input, and after an interrupt.
bool WaitForKey(EditLine* editor) {
  for (;;) {
    FollowTerminal(editor);
    const Waited waited = WaitFor(STDIN_FILENO, -1);
    if (Interrupted()) return false;
    if (waited == Waited::kReadable) return true;
  }
}

// Some of them are sent one by one.
int ReadBytes(EditLine* editor, wchar_t* character) {
  std::mbstate_t state = {};
  for (;;) {
    if (!WaitForKey(editor)) return -1;
    char byte = 0;
    const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return static_cast<int>(count);
    const std::size_t used = std::mbrtowc(character, &byte, 1, &state);
    if (used == static_cast<std::size_t>(-2)) continue;
    if (used != static_cast<std::size_t>(-1)) return 1;
    state = {};  // the byte is not part of a character
  }
}

}  // namespace

void LineEditor::Close::operator()(editline* editor) const {
  el_end(editor);
}

void LineEditor::Close::operator()(struct history* past) const {
  history_end(past);
}

LineEditor::LineEditor(Prompts prompts, Completer completer)
    : prompts_(std::move(prompts)),
      completer_(std::move(completer)),
      shown_(::isatty(STDOUT_FILENO) == 1 ? stdout : stderr),
      history_(history_init()),
      editor_(el_init("scriptwells", stdin, shown_, stderr)) {
  if (!history_ || !editor_) throw std::bad_alloc();
  EditLine* editor = editor_.get();
  HistEvent event = {};
  history(history_.get(), &event, H_SETSIZE, kMostRemembered);
  history(history_.get(), &event, H_SETUNIQUE, 1);
  el_set(editor, EL_CLIENTDATA, this);
  el_set(editor, EL_PROMPT, &LineEditor::PromptOf);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_GETCFN, &LineEditor::ReadCharacter);
  el_set(editor, EL_ADDFN, "complete", "Completes a word", &LineEditor::CompleteWord);
  el_set(editor, EL_BIND, "^I", "complete", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor, nullptr);
  Handle(SIGWINCH, OnTerminalChange);
  Handle(SIGCONT, OnTerminalChange);
}

LineEditor::~LineEditor() {
  Handle(SIGWINCH, SIG_DFL);
  Handle(SIGCONT, SIG_DFL);
}

LineEditor& LineEditor::Itself(editline* editor) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return *static_cast<LineEditor*>(self);
}

char* LineEditor::PromptOf(editline* editor) {
  return Itself(editor).prompt_.data();
}

int LineEditor::ReadCharacter(editline* editor, wchar_t* character) {
  return ReadBytes(editor, character);
}

void LineEditor::Remember(const std::string& entry) {
  HistEvent event = {};
  history(history_.get(), &event, H_ENTER, entry.c_str());
}

ShellLine LineEditor::Next(bool isOpen) {
  isOpen_ = isOpen;
  if (lines_.empty()) {
    prompt_ = isOpen ? prompts_.next : prompts_.first;
    int length = 0;
    const char* typed = el_gets(editor_.get(), &length);
    if (typed == nullptr || length <= 0) return Ended();
    std::string text(typed, static_cast<std::size_t>(length));
    if (text.back() == '\n') text.pop_back();
    for (std::size_t begin = 0; begin <= text.size();) {
      const std::size_t end = std::min(text.find('\n', begin), text.size());
      lines_.push_back(text.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  ShellLine line{ShellLine::Kind::kLine, std::move(lines_.front())};
  lines_.pop_front();
  return line;
}

ShellLine LineEditor::Ended() {
  lines_.clear();
  static_cast<void>(std::fputs(Interrupted() ? "^C\n" : "\n", shown_));
  static_cast<void>(std::fflush(shown_));
  return {Interrupted() ? ShellLine::Kind::kInterrupted : ShellLine::Kind::kEnd};
}

// C code calls this, so nothing may be thrown.
unsigned char LineEditor::CompleteWord(editline* editor, int) {
  try {
    return Itself(editor).CompleteHere();
  } catch (...) {
    return CC_ERROR;
  }
}

unsigned char LineEditor::CompleteHere() {
  const LineInfo* info = el_line(editor_.get());
  std::string line(info->buffer, info->cursor);
  const std::size_t lineStart = line.rfind('\n') + 1;  // also for npos
  const bool isOpen = isOpen_ || lineStart > 0;
  line.erase(0, lineStart);
  // A pasted script may be indented with tabs.
  if (line.find_first_not_of(" \t") == std::string::npos)
    return el_insertstr(editor_.get(), "\t") == 0 ? CC_REFRESH : CC_ERROR;
  const Completion completion = completer_(line, isOpen);
  if (completion.words.empty()) return CC_REFRESH_BEEP;
  const std::size_t begun = line.size() - completion.start;
  std::string more = CommonStart(completion.words).substr(begun);
  if (completion.words.size() == 1) more += completion.after;
  if (!more.empty()) return el_insertstr(editor_.get(), more.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  if (completion.words.size() > 1) List(completion.words);
  return CC_REDISPLAY;
}

void LineEditor::List(const std::vector<std::string>& words) {
  std::size_t width = 0;
  for (const std::string& word : words) width = std::max(width, ShownWidth(word) + kGap);
  const std::size_t inLine = std::max<std::size_t>(1, kUsualColumns / width);
  std::string text = "\n";
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool isLast = (i + 1) % inLine == 0 || i + 1 == words.size();
    text += OneLine(words[i]) + (isLast ? "\n" : std::string(width - ShownWidth(words[i]), ' '));
  }
  static_cast<void>(std::fputs(text.c_str(), shown_));
  static_cast<void>(std::fflush(shown_));
}

}  // namespace qv::cli
