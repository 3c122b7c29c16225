// What is wrong with an answer, and where.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/inspect/rules.h"

namespace qv::cli {

enum class Part { kNone, kHead, kBody };

struct Finding {
  Rule rule;
  Part part = Part::kNone;
  std::size_t begin = 0, end = 0;  // bytes of the part
  std::string what{};              // more about it, such as a message; may be empty
};
using Findings = std::vector<Finding>;

// Whether a client cannot work with what was found.
bool StopsClients(const Findings& findings);

// An answer as it came. The bytes of `head` end with an empty line; it is empty for XML alone.
struct RawAnswer {
  std::string method;  // of the request, such as "Execute"; empty if unknown
  std::string head;
  std::string body;
};

// What the head says, and whether the body is what it announces.
void FindHttpFaults(const RawAnswer& answer, Findings& findings);
// What the body is. Nothing after a body that is not XML.
void FindEnvelopeFaults(const RawAnswer& answer, Findings& findings);

// What clients look for before they read an answer, also in a comment.
bool HoldsEnvelope(std::string_view body);

// The value of the first header of this name, in any case; and where the line is.
struct HeaderLine {
  std::string_view value;
  std::size_t begin = 0, end = 0;
};
bool FindHeader(std::string_view head, std::string_view name, HeaderLine& line);
// The header that says so.
bool IsChunked(std::string_view head, HeaderLine& line);
// "utf-8", or empty if the head names none.
std::string CharsetOf(std::string_view head);

// Line and column of a byte, both from 1. A column is a byte of its line.
struct Place {
  std::size_t line = 1, column = 1;
};
Place PlaceOf(std::string_view text, std::size_t at);

}  // namespace qv::cli
