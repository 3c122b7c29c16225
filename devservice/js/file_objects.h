// Uploaded files as objects of scripts.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/values/script_job.h"

namespace qv::devservice {

class FaultError;

// {ticket, size, text(), bytes()}: two read-only properties, and the content as a String or a Uint8Array.
// A script cannot change which file the object reads.
JSValueRef MakeFileObject(JSContextRef context, const ReadableFile& file);

// The file of the object, null for any other value. Lives as long as the object.
const ReadableFile* FileOfObject(JSContextRef context, JSValueRef value);

// Makes the script throw an Error with the failure's code and description.
void ThrowInScript(JSContextRef context, const FaultError& error, JSValueRef* exception);

}  // namespace qv::devservice
