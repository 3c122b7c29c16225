// Text in the language of manual pages (man(7)), without the macros of any one formatter.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

// The text with its special characters escaped. "-" stays one that can be pasted into a shell.
std::string Roff(const std::string& text);
std::string Bold(const std::string& text);
std::string Italic(const std::string& text);

// Prose: escaped, with the names of options in bold.
std::string Prose(const std::string& text);

// Roff text in lines of at most 78 bytes, none of which is read as a macro.
std::string RoffLines(const std::string& roff);

// Lines as they are, each escaped. `indent` characters at their start are left out.
std::string Example(const std::string& lines, std::size_t indent);

// Paragraphs of prose; lines that begin with a blank are an example. Empty lines part paragraphs.
std::string Paragraphs(const std::string& text);

// ".SH NAME"
std::string Section(const std::string& title);

// A line with its explanation below, both roff.
std::string Item(const std::string& head, const std::string& explanation);

}  // namespace qv::cli
