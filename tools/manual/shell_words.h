// Texts in the language of a shell.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// In single quotes, as bash and zsh read them.
std::string Quoted(const std::string& text);

// Each one quoted by `quote`, with this between them.
template <typename Quote>
std::string JoinedWords(const std::vector<std::string>& words, const char* between, Quote quote) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + quote(word);
  return text;
}

// "'a' 'b'"
std::string QuotedWords(const std::vector<std::string>& words);

// The names of objects, or those of their members, which have a point.
std::vector<std::string> ObjectsOf(const std::vector<std::string>& names);
std::vector<std::string> MembersOf(const std::vector<std::string>& names);

}  // namespace qv::cli
