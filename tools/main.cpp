#include <unistd.h>

#include <iostream>

#include "tools/loaded_commands.h"
#include "tools/program.h"

int main(int argc, char** argv) {
  const int status = qv::cli::RunProgram(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc),
                                         qv::cli::RunLoadedCommand, std::cout, std::cerr);
  std::cout.flush();
#ifdef NDEBUG
  _exit(status);  // nothing is left to do: the libraries would free, one by one, what ends with the process
#else
  return status;  // a build for checks has some at the end of the process
#endif
}
