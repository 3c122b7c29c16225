// Directories in the form of hosts. Paths keep the hosts' backslash; they are converted (native_path.h) only
// for system calls. Failure: EQvException with code 0 and the message given at each function. Threads: any,
// as long as the environment is not changed meanwhile.
#pragma once

#include "qvscriptwells/wide_string.h"

namespace qv {

char16_t PathSeparator() noexcept;  // "\"
// Appends the separator if the path does not end in it; "/" does not count. An empty path stays empty.
WideString AppendPathSeparator(const WideString& path);

// The unchanged environment variable TEMP, else TMP. "Failed to get temp directory path. TEMP/TMP environment
// variable does not exist." if both are empty.
WideString GetTempDirectory();
// 0, or -1 with the reason in errno. Only the user may enter the new directory (mode 0700).
int MakeDirectory(const WideString& path);
// Creates a directory with a new name in the temporary directory and returns its path without a separator at
// the end. "Cannot create the following directory: " with the path and the system's reason. The argument is
// not used.
WideString CreateTempSubdirectory(const WideString& unused);
// Its two steps: choose an unused name, and create the directory.
WideString TempSubdirectoryName();
void MakeTempSubdirectory(const WideString& directory);

// The installation's home directory from the registry (registry.h); empty if it has no such key or value.
// Throws `_com_error` with E_OUTOFMEMORY for lack of memory, since an empty path would mean the current
// directory.
WideString GetHomeDirectory();
// This thread gets `directory` instead, whatever its length, until the next call. The text is borrowed; null
// is the registry's again. Returns what was set before.
const WideString* SetThreadHomeDirectory(const WideString* directory) noexcept;

// A new GUID's text, with braces, 38 units.
WideString NewGuidText();

}  // namespace qv
