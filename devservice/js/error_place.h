// The place in a script where an error was made.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <optional>
#include <string>

namespace qv::devservice {

// The name under which the text of a script is evaluated. It separates the script's lines from those of other
// code: of eval, of functions made from texts, of the engine's constructors.
inline constexpr char kScriptUrl[] = "script";

// The line of the script, as the engine counts it, in which a thrown object was made; nothing if the object
// has no line. May run getters of the script.
std::optional<int> LineOfError(JSContextRef context, JSObjectRef error);

// "text (line 3)".
std::string WithLine(const std::string& text, int line);

}  // namespace qv::devservice
