// What the benchmarks send and get.
#pragma once

#include <string>

#include "qvscriptwells/objects.h"
#include "script_sample.h"
#include "soap/qv_command.h"

namespace qv::bench {

// Three parameters: int, double, string.
IParametersPtr ThreeParameters();
// What Execute hands to its command.
NamedArguments ExecuteArguments(const WideString& script, const IParametersPtr& parameters);
// The request as it goes over the wire, in UTF-8.
std::string ExecuteBody(const WideString& script, const IParametersPtr& parameters);
// An answer that holds the string "hello", in UTF-8.
std::string StringAnswer();

}  // namespace qv::bench
