// Reading of files and of standard input.
#pragma once

#include <string>

namespace qv::cli {

// The content of the file at `path`, "-" for standard input. `what` names it in messages, such as "script".
// Throws Failure (kLocal, or kInterrupted after Ctrl-C) for a file that cannot be read, and for one beyond 64
// MB.
std::string ReadWhole(const std::string& path, const std::string& what);

// A script: as above, without a byte order mark. Throws also for an empty text, for one that is not UTF-8,
// and for one that holds a null character, which would end the script there.
std::string ReadScript(const std::string& path);

// Checks a script that did not come from a file in the same way.
std::string CheckScript(std::string text);

// The first line of an open descriptor, without its line end ("\n" or "\r\n"). Throws Failure (kLocal) beyond
// 4096 bytes, and kInterrupted after Ctrl-C.
std::string ReadLine(int descriptor, const std::string& what);

}  // namespace qv::cli
