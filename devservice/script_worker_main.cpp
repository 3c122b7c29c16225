// The script worker as a separate program, for hosts of the service that have no such command themselves.

#include <unistd.h>

#include "devservice/workers/script_worker.h"

int main() {
  _exit(qv::devservice::RunScriptWorker(STDIN_FILENO));
}
