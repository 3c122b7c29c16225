// A manual page of a document in Markdown.
#pragma once

#include <string>

#include "tools/manual/manual_page.h"

namespace qv::cli {

// `markdown` begins with a title. It may have the other elements that the documents of this project use:
// sections, paragraphs, lists, code, tables of two columns; code, bold and links in a line. `name` is
// "scriptwells-protocol".
std::string MarkdownPage(const std::string& markdown, const std::string& name, const PageMark& mark);

}  // namespace qv::cli
