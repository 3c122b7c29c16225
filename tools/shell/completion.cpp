#include "tools/shell/completion.h"

#include <algorithm>

#include "tools/input/parameter_text.h"
#include "tools/report/unsafe_characters.h"
#include "tools/shell/file_names.h"
#include "tools/shell/shell_commands.h"

namespace qv::cli {

namespace {

using Words = std::vector<std::string>;

constexpr char kParameters[] = "parameters";

bool BeginsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// Names of columns are the server's.
Completion Offer(std::size_t start, const std::string& begun, const Words& candidates, const char* after) {
  Completion completion{start, {}, after};
  for (const std::string& word : candidates)
    if (BeginsWith(word, begun) && !HoldsUnsafeCharacters(word)) completion.words.push_back(word);
  std::sort(completion.words.begin(), completion.words.end());
  completion.words.erase(std::unique(completion.words.begin(), completion.words.end()),
                         completion.words.end());
  return completion;
}

Completion OfferFiles(const std::string& line, std::size_t start) {
  const std::string begun = line.substr(start);
  return Offer(start, begun, FileNames(begun), "");
}

Words CommandNames(const char* prefix) {
  Words names;
  for (const ShellCommandRow& row : ShellCommands()) names.push_back(prefix + std::string(row.name));
  return names;
}

Words WithEnd(Words words, const char* end) {
  for (std::string& word : words) word += end;
  return words;
}

// "name=type:value": the types after "=", and the path of a file.
Completion CompleteTypedValue(const std::string& line, std::size_t start, const CompletionNames& names) {
  const std::size_t equals = line.find('=', start);
  if (equals == std::string::npos)
    return Offer(start, line.substr(start), WithEnd(names.parameters, "="), "");
  const std::size_t colon = line.find(':', equals);
  const std::string type = line.substr(equals + 1, colon == std::string::npos ? colon : colon - equals - 1);
  if (colon == std::string::npos) return Offer(equals + 1, type, WithEnd(ParameterTypes(), ":"), "");
  return type == "file" ? OfferFiles(line, colon + 1) : Completion{line.size(), {}, ""};
}

Completion CompleteUpload(const std::string& line, std::size_t start, const CompletionNames& names) {
  const std::size_t equals = line.find('=', start);
  if (equals != std::string::npos) return OfferFiles(line, equals + 1);
  return Offer(start, line.substr(start), WithEnd(names.parameters, "="), "");
}

Completion CompleteArgument(ArgumentKind kind, const std::string& line, std::size_t start,
                            const CompletionNames& names) {
  const std::string begun = line.substr(start);
  Words switches = {"on", "off"};
  switch (kind) {
    case ArgumentKind::kCommand:
      return Offer(start, begun, CommandNames(""), " ");
    case ArgumentKind::kFormat:
      return Offer(start, begun, {"text", "table", "csv", "json"}, " ");
    case ArgumentKind::kSwitch:
      return Offer(start, begun, switches, " ");
    case ArgumentKind::kSwitchOrFile:
      for (const std::string& file : FileNames(begun)) switches.push_back(file);
      return Offer(start, begun, switches, "");
    case ArgumentKind::kParameterName:
      return Offer(start, begun, names.parameters, " ");
    case ArgumentKind::kTypedValue:
      return CompleteTypedValue(line, start, names);
    case ArgumentKind::kUpload:
      return CompleteUpload(line, start, names);
    case ArgumentKind::kFile:
      return OfferFiles(line, start);
    case ArgumentKind::kNone:
      break;
  }
  return {line.size(), {}, ""};
}

Completion CompleteCommand(const std::string& line, const CompletionNames& names) {
  const std::size_t colon = line.find(':');
  const std::size_t blank = line.find(' ', colon);
  if (blank == std::string::npos) return Offer(colon, line.substr(colon), CommandNames(":"), " ");
  const std::string name = line.substr(colon + 1, blank - colon - 1);
  const std::size_t start = std::min(line.find_first_not_of(' ', blank), line.size());
  for (const ShellCommandRow& row : ShellCommands())
    if (name == row.name) return CompleteArgument(row.kind, line, start, names);
  return {line.size(), {}, ""};
}

bool IsNameCharacter(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || (c >= '0' && c <= '9') || c == '_' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

bool IsAfter(const std::string& line, std::size_t start, const std::string& word) {
  return start >= word.size() && line.compare(start - word.size(), word.size(), word) == 0;
}

Completion CompleteScript(const std::string& line, const CompletionNames& names) {
  std::size_t start = line.size();
  while (start > 0 && IsNameCharacter(line[start - 1])) --start;
  const std::string begun = line.substr(start);
  if (IsAfter(line, start, std::string(kParameters) + ".")) return Offer(start, begun, names.parameters, "");
  Words words = names.columns;
  if (!IsAfter(line, start, ".")) words.emplace_back(kParameters);
  return Offer(start, begun, words, "");
}

}  // namespace

Completion Complete(const std::string& line, bool isOpen, const CompletionNames& names) {
  const std::size_t first = line.find_first_not_of(" \t");
  const bool isCommand = !isOpen && first != std::string::npos && line[first] == ':';
  return isCommand ? CompleteCommand(line, names) : CompleteScript(line, names);
}

std::string CommonStart(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  std::size_t length = words.front().size();
  for (const std::string& word : words) {
    const auto pair = std::mismatch(word.begin(), word.end(), words.front().begin(), words.front().end());
    length = std::min(length, static_cast<std::size_t>(pair.first - word.begin()));
  }
  const std::string& whole = words.front();
  while (length > 0 && length < whole.size() && (static_cast<unsigned char>(whole[length]) & 0xC0) == 0x80)
    --length;
  return whole.substr(0, length);
}

}  // namespace qv::cli
