// `typed.table`: tables whose column types the script chooses.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/js/key_reader.h"
#include "devservice/values/table.h"

namespace qv::devservice {

// Puts `table` into `typed`. The readers are borrowed and have to outlive the context.
void InstallTable(JSContextRef context, JSObjectRef typed, const ValueReaders& readers);

// The table of a value that typed.table made, else null. Lives as long as the value.
const Table* TableOf(JSContextRef context, JSValueRef value);

}  // namespace qv::devservice
