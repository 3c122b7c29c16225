// The values of a call, read from its bytes as the client reads them.
#pragma once

#include <string>
#include <vector>

#include "face/tape/tape_text.h"
#include "scriptwells/options.h"
#include "scriptwells/value.h"

namespace scriptwells {

// What a request asks for, such as "script = \"6 * 7\"", "a = int 7", "doc = file [ticket:1]". Secrets are
// "[session:1]".
std::vector<std::string> TypedArguments(const TapeText& body);

// "int 42", "string \"a\"", "empty"; of a table the columns and the first rows.
std::vector<std::string> ShownValue(const Value& value);

// What this client makes of an answer: "= int 42", "= failure 5 \"no such customer\"", for a table its
// columns and first rows. Nothing for exchanges without a value.
std::vector<std::string> TypedAnswer(Purpose purpose, const TapeText& head, const TapeText& body);

}  // namespace scriptwells
