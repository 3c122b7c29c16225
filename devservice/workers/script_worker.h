// The worker process: the only place where scripts run. Part of its program, not of the service.
#pragma once

namespace qv::devservice {

// Serves scripts over the stream socket `descriptor` until its other end closes, then returns the exit code
// of the process (0: the service has gone, 1: it sent something unreadable). Call it from the main thread of
// a process that does nothing else, and leave with _exit and its result: the engine's own threads are still
// running. The process is killed when its parent dies. The service passes the socket as descriptor 0.
int RunScriptWorker(int descriptor);

}  // namespace qv::devservice
