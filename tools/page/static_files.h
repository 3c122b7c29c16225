// The files of the page: its own are part of this program, the others come with the system.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "devservice/http/http_message.h"

namespace qv::cli {

// One of tools/page/files/.
struct PageFile {
  std::string_view name;
  std::string_view content;
};

// Written at build time. Ends with a file without a name.
extern const PageFile kPageFiles[];

// The answer with the file at a path below "/page/", without that: "" is index.html, "lib/..." are files of
// the system's libraries, as far as the page uses them. Nothing if there is none.
std::optional<devservice::HttpAnswer> StaticFile(std::string_view path);

// Throws Failure (kLocal) if a library that the page uses is not installed.
void CheckPageLibraries();

}  // namespace qv::cli
