// Ctrl-C and SIGTERM.
#pragma once

namespace qv::cli {

// From now on the first signal is remembered and ends the waits below; the program then closes its session
// and leaves. A second one, or 5 seconds without an end, leaves at once with exit status 130. A
// closed pipe on standard output is a failed write from now on. Once per process. Throws Failure (kLocal).
void WatchForInterrupt();

bool Interrupted() noexcept;

// `cleanUp` runs before a signal ends the program at once; it may do only what a signal handler may. Null:
// nothing runs.
void OnForcedExit(void (*cleanUp)()) noexcept;

// Throws Failure (kInterrupted) after a signal.
void ThrowIfInterrupted();

// Waits until a read of `descriptor` would not block. Throws Failure (kInterrupted) after a signal, also
// after one that came before the call.
void WaitReadable(int descriptor);

// Waits for the first signal. What follows has the 5 seconds told above.
void WaitForInterrupt();

}  // namespace qv::cli
