// Makes one system call after the other fail, and looks what comes of it.
//   call_torture                               every call of every flow, with every error
//   call_torture --kind "recv ECONNRESET"      one error
//   call_torture --flow NAME [--held] [--onwards] --kind KIND --point N    one failure in this process
#include "torture/call_gate.h"
#include "torture/torture_options.h"

int main(int argc, char** argv) {
  qv::torture::CallGate gate;
  return qv::torture::TortureMain(argc, argv, gate);
}
