// Ctrl-C and SIGTERM.
#pragma once

#include "scriptwells/options.h"

namespace qv::cli {

// Installs the signal handlers; once per process. The first signal is kept and ends the waits below, so that
// the program can close its session and exit. A second signal, or 5 seconds after the first, exits at once
// with status 130. Writing to a closed pipe fails without a signal. Throws Failure (kLocal).
void WatchForInterrupt();

bool Interrupted() noexcept;

// The first signal cancels it.
scriptwells::CancelToken& InterruptToken();

// `cleanUp` is called before a signal ends the program at once; it may do only what a signal handler may.
// Null removes it.
void OnForcedExit(void (*cleanUp)()) noexcept;

// For a program that stays: from now on SIGINT only cancels the token, as often as it comes. SIGHUP does what
// SIGTERM does.
void StayAfterInterrupts();

// Forgets SIGINT, so that calls and waits work again. False if another signal ends the program.
bool ForgetInterrupt() noexcept;

// Throws Failure (kInterrupted) after a signal.
void ThrowIfInterrupted();

// Waits until a read of `descriptor` would not block. Throws Failure (kInterrupted) after a signal, also
// after one that came before the call.
void WaitReadable(int descriptor);

enum class Waited { kReadable, kTimeOver, kSignal };

// The same without an exception, and also until the time is over (negative: no limit). Any signal that has a
// handler ends it, not only those above.
Waited WaitFor(int descriptor, int milliseconds) noexcept;

// Waits for the first signal. The program then has 5 seconds to exit.
void WaitForInterrupt();

// The same, or until `descriptor` is at its end or cannot be read. What comes before the end is dropped.
void WaitForInterruptOrEof(int descriptor);

}  // namespace qv::cli
