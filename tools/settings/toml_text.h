// TOML as this program reads and writes it.
#pragma once

// toml_text.cpp compiles the parser, once.
#define TOML_HEADER_ONLY 0
#define TOML_EXCEPTIONS 0
#define TOML_ENABLE_FORMATTERS 1
#include <toml++/toml.h>
#include <string>

namespace qv::cli {

// Throws Failure (kLocal) with the line of the file at `path`. The message contains nothing of the text's
// values.
toml::table ParseToml(const std::string& path, const std::string& text);

// A value in one line, as in a file: a text in quotes, a number with its digits.
std::string ToToml(const toml::node& node);
std::string ToToml(const std::string& text);

// Where a position is in the text; the end of the text if it is after that.
std::size_t OffsetOf(const std::string& text, const toml::source_position& position);

// Whether the text has a control character: a tab or a line end, too.
bool HasControlCharacter(const std::string& text);

}  // namespace qv::cli
