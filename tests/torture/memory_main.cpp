// Refuses one allocation after the other, and looks what comes of it.
//   typed_torture                        every allocation of every flow, and of the start of the process
//   typed_torture --quick                every one that a repeated call meets, a fixed part of the others
//   typed_torture --flow NAME            one flow; "start" is the start of the process
//   typed_torture --flow NAME [--held] [--onwards] --point N    one refusal in this process, for a debugger
#include <malloc.h>

#include <cstring>

#include "torture/memory_gate.h"
#include "torture/process_start.h"
#include "torture/torture_options.h"

int main(int argc, char** argv) {
  const long passed = qv::StopRefusing();
  // What was released reads as something else at once.
  mallopt(M_PERTURB, 0x5A);
  if (argc == 2 && std::strcmp(argv[1], qv::torture::kStartedOption) == 0)
    return qv::torture::ShowThatItWorks(passed);
  qv::torture::MemoryGate gate;
  return qv::torture::TortureMain(argc, argv, gate);
}
