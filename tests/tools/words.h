// Command lines and lists of texts, written on one line.
#pragma once

#include <string>
#include <vector>

namespace qv::cli::testing {

using Words = std::vector<std::string>;

// "run -e '6 * 7'" as a shell splits it: at blanks, except between single quotes. `more` are further
// arguments.
inline Words Line(const std::string& text, const Words& more = {}) {
  Words words;
  bool quoted = false;
  bool started = false;
  for (const char c : text + " ") {
    if (c == '\'') quoted = !quoted;
    const bool ends = c == ' ' && !quoted;
    if (!ends && !started) words.emplace_back();
    if (!ends && c != '\'') words.back() += c;
    started = !ends;
  }
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// The texts of "a|b|c".
inline Words Each(const std::string& list) {
  Words texts(1);
  for (const char c : list) {
    if (c == '|')
      texts.emplace_back();
    else
      texts.back() += c;
  }
  return texts;
}

inline bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace qv::cli::testing
