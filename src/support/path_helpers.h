// Directories as hosts know them. Paths keep the backslash of those hosts; they become native (native_path.h)
// at the moment that the system is asked. Failure: EQvException with code 0, the words stand beside each
// function. Threads: any, as far as the environment is not changed meanwhile.
#pragma once

#include "qvscriptwells/wide_string.h"

namespace qv {

char16_t PathSeparator() noexcept;  // "\"
// Behind a path that does not end in it already; "/" does not count. An empty path stays empty.
WideString AppendPathSeparator(const WideString& path);

// The environment variable TEMP, else TMP, as it stands. "Failed to get temp directory path. TEMP/TMP
// environment variable does not exist." when neither holds anything.
WideString GetTempDirectory();
// 0, or -1 with the reason in errno. Only the user may enter the new directory (mode 0700).
int MakeDirectory(const WideString& path);
// Makes a directory of a new name in the temporary directory and returns its path, no separator at its end.
// "Cannot create the following directory: " with the path and the system's reason. The argument is not used.
WideString CreateTempSubdirectory(const WideString& unused);
// Its two steps: a name that nothing has yet, and the directory of that name.
WideString TempSubdirectoryName();
void MakeTempSubdirectory(const WideString& directory);

// The home directory of the installation as the registry (registry.h) says; empty when it has no such key or
// value. Throws `_com_error` with E_OUTOFMEMORY when memory runs out: an empty directory would be taken for
// the current one.
WideString GetHomeDirectory();

// A new GUID's text, with braces, 38 units.
WideString NewGuidText();

}  // namespace qv
