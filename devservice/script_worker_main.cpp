// The script worker: the only program that loads the script engine.

#include <unistd.h>

#include "devservice/workers/script_worker.h"

int main() {
  _exit(qv::devservice::RunScriptWorker(STDIN_FILENO));
}
