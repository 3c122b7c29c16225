// Reads files and standard input.
#pragma once

#include <string>

namespace qv::cli {

// The content of the file at `path`, or of standard input for "-". `what` names it in messages, such as
// "script". Throws Failure (kLocal, or kInterrupted after Ctrl-C) if the file cannot be read or is longer
// than 64 MB.
std::string ReadWhole(const std::string& path, const std::string& what);

// A script: as above, without a byte order mark. Also throws for a text that is empty or not UTF-8, and for a
// null character, which would end the script.
std::string ReadScript(const std::string& path);

// Checks a script that is not from a file in the same way.
std::string CheckScript(std::string text);

// The first line of an open descriptor, without its line end ("\n" or "\r\n"). Throws Failure (kLocal) if it
// is longer than 4096 bytes, and kInterrupted after Ctrl-C.
std::string ReadLine(int descriptor, const std::string& what);

}  // namespace qv::cli
