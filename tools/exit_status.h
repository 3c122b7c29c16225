// What the program's exit code tells. Scripts around it compare these numbers.
#pragma once

namespace qv::cli {

enum class ExitStatus : int {
  kOk = 0,
  kFault = 1,          // the script or the server reported a fault; also a failure of the program itself
  kUsage = 2,          // the command line is not understood
  kUnreachable = 3,    // the server was not reached, the connection broke, or TLS refused it
  kTimeout = 4,        // the server kept silent for too long
  kRefused = 5,        // the server refused the session
  kLocal = 6,          // a local file or a parameter
  kAnswer = 7,         // an answer came and was not understood
  kInterrupted = 130,  // as shells tell SIGINT
};

}  // namespace qv::cli
