#include "face/tape/tape_report.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "face/tape/line_diff.h"
#include "face/tape/normal_form.h"
#include "face/tape/tape.h"
#include "face/tape/typed_values.h"
#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

constexpr std::size_t kMostLines = 20;  // of one difference

using Entries = std::vector<const TapeEntry*>;

std::vector<TapeEntry> TapeAt(const std::string& path) {
  return ReadTape(path, TapeFileText(path));
}

std::string Bytes(const TapeText& text) {
  return JoinedBytes(text, [](const TapePiece& piece) { return "<" + piece.mask + ">"; });
}

std::string LineOf(const TapeText& text) {
  return OneLine(Bytes(text));
}

// Of the last head, which follows interim ones; empty without an answer.
std::string StatusIn(const std::string& head) {
  const std::size_t line = head.rfind("HTTP/1.");
  const std::size_t blank = line == std::string::npos ? line : head.find(' ', line);
  return blank == std::string::npos ? "" : OneLine(head.substr(blank + 1, 3));
}

// The value of a header, if it is a number.
std::optional<std::size_t> LengthIn(const std::string& head) {
  constexpr std::string_view kName = "\ncontent-length:";
  const auto found = std::search(head.begin(), head.end(), kName.begin(), kName.end(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
  if (found == head.end()) return std::nullopt;
  std::size_t at = static_cast<std::size_t>(found - head.begin()) + kName.size();
  at = std::min(head.find_first_not_of(' ', at), head.size());
  std::size_t length = 0;
  const std::size_t begin = at;
  for (; at < head.size() && head[at] >= '0' && head[at] <= '9' && at - begin < 15; ++at)
    length = length * 10 + static_cast<std::size_t>(head[at] - '0');
  return at == begin ? std::nullopt : std::optional(length);
}

std::string Indented(const std::vector<std::string>& lines, const char* mark) {
  std::string text;
  for (const std::string& line : lines) text += std::string("  ") + mark + EscapeInLine(line) + "\n";
  return text;
}

std::string Shown(const TapeEntry& entry) {
  const std::string status = StatusIn(Bytes(entry.answerHead));
  std::string text = "line " + std::to_string(entry.line) + ": session " + std::to_string(entry.session) +
                     ", " + ToString(entry.purpose) + " at " + LineOf(entry.server) +
                     (status.empty() ? "" : ", " + status) + ", " +
                     std::to_string(SizeOf(entry.requestBody)) + " bytes sent, " +
                     std::to_string(SizeOf(entry.answerBody)) + " received\n";
  if (!entry.file.empty()) text += "  file " + LineOf(entry.file) + "\n";
  text += Indented(entry.arguments, "") + Indented(entry.answer, "");
  if (entry.failure)
    text += std::string("  failed (") + ToString(entry.failure->phase) +
            "): " + LineOf(entry.failure->message) + "\n";
  return text;
}

// By session, in the order of their first entries.
std::vector<Entries> SessionsOf(const std::vector<TapeEntry>& tape) {
  std::vector<Entries> sessions;
  std::map<std::size_t, std::size_t> places;
  for (const TapeEntry& entry : tape) {
    const auto [place, isNew] = places.emplace(entry.session, sessions.size());
    if (isNew) sessions.emplace_back();
    sessions[place->second].push_back(&entry);
  }
  return sessions;
}

Lines NormalSession(const Entries& session) {
  Lines lines;
  for (const TapeEntry* entry : session)
    for (std::string& line : NormalEntry(*entry)) lines.push_back(std::move(line));
  return lines;
}

// Takes away from both what is the same.
void RemoveEqual(std::vector<Entries>* first, std::vector<Entries>* second) {
  std::multimap<Lines, std::size_t> known;
  for (std::size_t i = 0; i < second->size(); ++i) known.emplace(NormalSession((*second)[i]), i);
  std::set<std::size_t> gone;
  const auto isEqual = [&](const Entries& session) {
    const auto found = known.find(NormalSession(session));
    if (found == known.end()) return false;
    gone.insert(found->second);
    known.erase(found);
    return true;
  };
  first->erase(std::remove_if(first->begin(), first->end(), isEqual), first->end());
  for (auto place = gone.rbegin(); place != gone.rend(); ++place)
    second->erase(second->begin() + static_cast<std::ptrdiff_t>(*place));
}

std::string NameOf(const TapeEntry& entry) {
  return std::string(ToString(entry.purpose)) + ", line " + std::to_string(entry.line);
}

std::string SessionDiff(const Entries& first, const Entries& second) {
  std::string text;
  for (std::size_t i = 0; i < std::max(first.size(), second.size()); ++i) {
    if (i >= first.size()) {
      text += "+ " + NameOf(*second[i]) + " of the second tape\n";
    } else if (i >= second.size()) {
      text += "- " + NameOf(*first[i]) + " of the first tape\n";
    } else {
      const std::vector<DiffLine> diff = DiffOf(NormalEntry(*first[i]), NormalEntry(*second[i]));
      if (!diff.empty())
        text += NameOf(*first[i]) + " and line " + std::to_string(second[i]->line) + ":" +
                ShortDiff(diff, kMostLines) + "\n";
    }
  }
  return text;
}

// Checks one entry after the other.
class Verification {
 public:
  void Check(const TapeEntry& entry);
  void CheckLines(std::string_view text, const std::vector<TapeEntry>& tape);
  std::vector<std::string> Take() { return std::move(faults_); }

 private:
  void CheckValues(const TapeEntry& entry);
  void CheckLengths(const TapeEntry& entry);
  void CheckMasks(const TapeEntry& entry);
  void Add(int line, const std::string& what) {
    faults_.push_back("line " + std::to_string(line) + ": " + what);
  }

  std::map<std::pair<std::size_t, std::string>, std::size_t> numbers_;  // the highest of session and kind
  std::vector<std::string> faults_;
};

void Verification::CheckValues(const TapeEntry& entry) {
  const bool isCall = entry.purpose == Purpose::kExecute || entry.purpose == Purpose::kUploadAddress;
  const std::vector<std::string> none;
  if (entry.arguments != (isCall ? TypedArguments(entry.requestBody) : none))
    Add(entry.line, "the arguments are not those of the request");
  if (entry.answer != TypedAnswer(entry.purpose, entry.answerHead, entry.answerBody))
    Add(entry.line, "the value is not that of the answer");
}

// The body of an upload is not on the tape, and not each body is read to its end.
void Verification::CheckLengths(const TapeEntry& entry) {
  const std::optional<std::size_t> sent = LengthIn(Bytes(entry.requestHead));
  if (entry.file.empty() && entry.HasRequest() && sent && *sent != SizeOf(entry.requestBody))
    Add(entry.line, "the request announces " + std::to_string(*sent) + " bytes and has " +
                        std::to_string(SizeOf(entry.requestBody)));
  const std::optional<std::size_t> announced = LengthIn(Bytes(entry.answerHead));
  const std::size_t received = SizeOf(entry.answerBody);
  if (announced && (received > *announced || (received > 0 && received < *announced && !entry.failure)))
    Add(entry.line,
        "the answer announces " + std::to_string(*announced) + " bytes and has " + std::to_string(received));
}

// The secrets of a session are numbered as they come. Its password is known before.
void Verification::CheckMasks(const TapeEntry& entry) {
  for (const TapeText* text : {&entry.requestHead, &entry.requestBody, &entry.answerBody, &entry.answerHead})
    for (const TapePiece& piece : *text) {
      if (piece.mask.empty()) continue;
      const std::size_t colon = piece.mask.find(':') + 1;
      const std::size_t number = std::stoul(piece.mask.substr(colon));
      std::size_t& highest = numbers_[{entry.session, piece.mask.substr(0, colon)}];
      if (number == 0 || number > highest + 1)
        Add(entry.line, "<" + piece.mask + "> comes before the one with the number below");
      highest = std::max(highest, number);
    }
}

void Verification::Check(const TapeEntry& entry) {
  CheckValues(entry);
  CheckLengths(entry);
  CheckMasks(entry);
}

// Written again, each entry has the same lines.
void Verification::CheckLines(std::string_view text, const std::vector<TapeEntry>& tape) {
  Lines lines;
  while (!text.empty()) {
    lines.emplace_back(text.substr(0, text.find('\n')));
    text.remove_prefix(lines.back().size() + 1);
  }
  for (const TapeEntry& entry : tape) {
    std::size_t at = static_cast<std::size_t>(entry.line) - 1;
    const std::string written = EntryText(entry);
    for (std::string_view rest = written; !rest.empty(); ++at) {
      const std::string_view line = rest.substr(0, rest.find('\n'));
      if (at >= lines.size() || lines[at] != line) {
        Add(static_cast<int>(at) + 1, "not as this program writes it");
        break;
      }
      rest.remove_prefix(line.size() + 1);
    }
  }
}

}  // namespace

std::string ShowTape(const std::string& path) {
  std::string text;
  for (const TapeEntry& entry : TapeAt(path)) text += Shown(entry);
  return text;
}

std::string DiffTapes(const std::string& first, const std::string& second) {
  const std::vector<TapeEntry> one = TapeAt(first);
  const std::vector<TapeEntry> two = TapeAt(second);
  std::vector<Entries> ofOne = SessionsOf(one);
  std::vector<Entries> ofTwo = SessionsOf(two);
  RemoveEqual(&ofOne, &ofTwo);
  const Entries none;
  std::string text;
  for (std::size_t i = 0; i < std::max(ofOne.size(), ofTwo.size()); ++i)
    text += SessionDiff(i < ofOne.size() ? ofOne[i] : none, i < ofTwo.size() ? ofTwo[i] : none);
  return text;
}

std::vector<std::string> VerifyTape(const std::string& path) {
  const std::string text = TapeFileText(path);
  const std::vector<TapeEntry> tape = ReadTape(path, text);
  Verification verification;
  for (const TapeEntry& entry : tape) verification.Check(entry);
  verification.CheckLines(text, tape);
  return verification.Take();
}

}  // namespace scriptwells
