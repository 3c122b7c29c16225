// Refuses one allocation after the other, and looks what comes of it.
//   typed_torture                        every allocation of every flow
//   typed_torture --quick                every one of short flows, a fixed part of long ones
//   typed_torture --flow NAME            one flow
//   typed_torture --flow NAME [--held] [--onwards] --point N    one refusal in this process, for a debugger
#include <malloc.h>

#include "torture/memory_gate.h"
#include "torture/torture_options.h"

int main(int argc, char** argv) {
  // What was released reads as something else at once.
  mallopt(M_PERTURB, 0x5A);
  qv::torture::MemoryGate gate;
  return qv::torture::TortureMain(argc, argv, gate);
}
