// The program without its main function.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace qv::cli {

// `arguments` without the program's name. Returns the exit status; never throws.
int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) noexcept;

}  // namespace qv::cli
