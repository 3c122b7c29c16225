#include <iostream>

#include "tools/loaded_commands.h"
#include "tools/program.h"

int main(int argc, char** argv) {
  return qv::cli::RunProgram(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc),
                             qv::cli::RunLoadedCommand, std::cout, std::cerr);
}
