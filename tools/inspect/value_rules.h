// What is wrong with a value of an answer.
#pragma once

#include <string_view>

#include "tools/inspect/finding.h"
#include "tools/inspect/xml_tree.h"

namespace qv::cli {

// `value` is the element of the value.
void FindValueFaults(const XmlNode& value, Findings& findings);

// The finding for white space or a comment among elements, up to `last` if it is not null; none if the only
// content is a text.
void FindWhiteSpace(const XmlNode& parent, const XmlNode* last, Findings& findings);
// The same for what is before the first element, where clients take what comes first.
void FindFirstWhiteSpace(const XmlNode& parent, Findings& findings);

Finding At(Rule rule, const XmlNode& node, std::string_view what = {});

// How clients read a type, in any case of letters.
enum class Reading {
  kNone,
  kBoolean,
  kByte,
  kShort,
  kInt,
  kLong,
  kReal,
  kText,
  kDate,
  kTime,
  kDateTime,
  kDuration,
  kLink,
  kTable
};
// kNone for a name that they do not know.
Reading ReadingOf(std::string_view typeName);

}  // namespace qv::cli
