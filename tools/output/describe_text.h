// The members that late-binding programs reach, for people, for programs and for docs/members.md.
#pragma once

#include <string>
#include <vector>

#include "qvscriptwells/describe.h"

namespace qv::cli {

// "text", "short", "int", "double", "boolean", "any", "object" or "object IParameters".
std::string TypeText(VARTYPE type, const char16_t* interfaceName);
// "Execute(scriptLanguage: text, script: text, parameters: object IParameters)"
std::string SignatureOf(const MemberDescription& member);

std::string DescribeAsText(const std::vector<InterfaceDescription>& interfaces);
// {"interfaces":[{"name":...,"iid":...,"mostArguments":...,"namedArguments":...,"members":[...],"names":[...]}]}
std::string DescribeAsJson(const std::vector<InterfaceDescription>& interfaces);
std::string DescribeAsMarkdown(const std::vector<InterfaceDescription>& interfaces);

}  // namespace qv::cli
