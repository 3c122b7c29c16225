// Uploaded files as objects of scripts.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/values/script_job.h"

namespace qv::devservice {

class FaultError;

// {ticket, size, text(), bytes()}: two read-only properties, and the content as a String or a Uint8Array.
// Nothing that a script does to the object changes which file is read.
JSValueRef MakeFileObject(JSContextRef context, const ReadableFile& file);

// The file behind the object, null when it is none. Lives as long as the object.
const ReadableFile* FileOfObject(JSContextRef context, JSValueRef value);

// Throws a failure into the script, as an Error with its code and description.
void ThrowInScript(JSContextRef context, const FaultError& error, JSValueRef* exception);

}  // namespace qv::devservice
