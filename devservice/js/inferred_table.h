// Tables from arrays of plain objects.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <optional>

#include "devservice/js/key_reader.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// The table of an array of plain objects: columns are the keys in the order in which they first appear, each
// with a type that all its values fit. A fault when a key or a value has no form in a table; nothing when the
// array is empty or holds anything but plain objects. May run getters of the script.
std::optional<ScriptResult> ResultOfRows(JSContextRef context, JSObjectRef array,
                                         const ValueReaders& readers);

}  // namespace qv::devservice
