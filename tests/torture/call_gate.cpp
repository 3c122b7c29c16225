#include "torture/call_gate.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>

namespace qv::torture {
namespace {

enum class Call { kSocket, kConnect, kSend, kRecv, kOpen, kWrite, kRename, kFsync, kClose };
enum class Effect {
  kRefused,  // nothing is done
  kDone,     // done, and reported with the error all the same
  kShort,    // one byte
  kEnded,    // the other side has closed
};

struct Kind {
  Call call;
  const char* name;
  int error;
  Effect effect = Effect::kRefused;
  bool passing = false;
};

constexpr Kind kKinds[] = {
    {Call::kSocket, "socket EMFILE", EMFILE},
    {Call::kSocket, "socket ENOBUFS", ENOBUFS},
    {Call::kSocket, "socket EACCES", EACCES},
    {Call::kConnect, "connect ECONNREFUSED", ECONNREFUSED},
    {Call::kConnect, "connect ENETUNREACH", ENETUNREACH},
    {Call::kConnect, "connect ETIMEDOUT", ETIMEDOUT},
    {Call::kConnect, "connect EINTR", EINTR, Effect::kDone, true},
    {Call::kSend, "send EPIPE", EPIPE},
    {Call::kSend, "send ECONNRESET", ECONNRESET},
    {Call::kSend, "send ENOBUFS", ENOBUFS},
    {Call::kSend, "send EAGAIN", EAGAIN, Effect::kRefused, true},
    {Call::kSend, "send EINTR", EINTR, Effect::kRefused, true},
    {Call::kSend, "send short", 0, Effect::kShort, true},
    {Call::kRecv, "recv ECONNRESET", ECONNRESET},
    {Call::kRecv, "recv ETIMEDOUT", ETIMEDOUT},
    {Call::kRecv, "recv closed", 0, Effect::kEnded},
    {Call::kRecv, "recv EAGAIN", EAGAIN, Effect::kRefused, true},
    {Call::kRecv, "recv EINTR", EINTR, Effect::kRefused, true},
    {Call::kRecv, "recv short", 0, Effect::kShort, true},
    {Call::kOpen, "open EMFILE", EMFILE},
    {Call::kOpen, "open EACCES", EACCES},
    {Call::kOpen, "open ENOENT", ENOENT},
    {Call::kOpen, "open ENOSPC", ENOSPC},
    {Call::kOpen, "open EINTR", EINTR, Effect::kRefused, true},
    {Call::kWrite, "write ENOSPC", ENOSPC},
    {Call::kWrite, "write EIO", EIO},
    {Call::kWrite, "write EDQUOT", EDQUOT},
    {Call::kWrite, "write EINTR", EINTR, Effect::kRefused, true},
    {Call::kWrite, "write short", 0, Effect::kShort, true},
    {Call::kRename, "rename EACCES", EACCES},
    {Call::kRename, "rename EXDEV", EXDEV},
    {Call::kRename, "rename ENOSPC", ENOSPC},
    {Call::kFsync, "fsync EIO", EIO},
    {Call::kFsync, "fsync ENOSPC", ENOSPC},
    {Call::kFsync, "fsync EINTR", EINTR, Effect::kRefused, true},
    {Call::kClose, "close EIO", EIO, Effect::kDone},
    {Call::kClose, "close EINTR", EINTR, Effect::kDone, true},
};

struct State {
  const Kind* kind = nullptr;  // null while nothing is refused
  bool onwards = false;
  long at = kNever;
  long seen = 0;
};

thread_local State state;

// The kind to apply to this call, or null.
const Kind* Struck(Call call) noexcept {
  if (state.kind == nullptr || state.kind->call != call) return nullptr;
  const long number = ++state.seen;
  return number == state.at || (state.onwards && number > state.at) ? state.kind : nullptr;
}

template <class Function>
Function Real(const char* name) noexcept {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

int FailWith(const Kind* kind) noexcept {
  errno = kind->error;
  return -1;
}

// A call that moves bytes; `move` gets the greatest number.
template <class Move>
ssize_t Transfer(Call call, std::size_t size, Move move) {
  const Kind* kind = Struck(call);
  if (kind == nullptr) return move(size);
  if (kind->effect == Effect::kEnded) return 0;
  return kind->effect == Effect::kShort ? move(std::min<std::size_t>(size, 1)) : FailWith(kind);
}

int Opened(const char* path, int flags, mode_t mode) noexcept {
  if (const Kind* kind = Struck(Call::kOpen)) return FailWith(kind);
  static const auto real = Real<int (*)(const char*, int, ...)>("open");
  return real(path, flags, mode);
}

mode_t ModeOf(int flags, va_list arguments) noexcept {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

std::vector<std::string> CallGate::Kinds() const {
  std::vector<std::string> names;
  for (const Kind& kind : kKinds) names.emplace_back(kind.name);
  return names;
}

bool CallGate::IsPassing(std::size_t kind) const {
  return kKinds[kind].passing;
}

void CallGate::Arm(const Refusal& refusal) noexcept {
  state = {&kKinds[refusal.kind], refusal.onwards, refusal.at, 0};
}

long CallGate::Disarm() noexcept {
  state.kind = nullptr;
  return state.seen;
}

}  // namespace qv::torture

using qv::torture::Call;
using qv::torture::Effect;
using qv::torture::FailWith;
using qv::torture::ModeOf;
using qv::torture::Opened;
using qv::torture::Real;
using qv::torture::Struck;
using qv::torture::Transfer;

// Programs hide what they define; these are for every library in the process.
#pragma GCC visibility push(default)

extern "C" {

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's have reserved names.
int socket(int family, int type, int protocol) noexcept {
  if (const auto* kind = Struck(Call::kSocket)) return FailWith(kind);
  static const auto real = Real<int (*)(int, int, int)>("socket");
  return real(family, type, protocol);
}

int connect(int descriptor, const sockaddr* address, socklen_t size) {
  static const auto real = Real<int (*)(int, const sockaddr*, socklen_t)>("connect");
  const auto* kind = Struck(Call::kConnect);
  if (kind == nullptr) return real(descriptor, address, size);
  // An interrupted one goes on in the background.
  if (kind->effect == Effect::kDone) real(descriptor, address, size);
  return FailWith(kind);
}

ssize_t send(int descriptor, const void* bytes, std::size_t size, int flags) {
  static const auto real = Real<ssize_t (*)(int, const void*, std::size_t, int)>("send");
  return Transfer(Call::kSend, size, [&](std::size_t most) { return real(descriptor, bytes, most, flags); });
}

ssize_t recv(int descriptor, void* bytes, std::size_t size, int flags) {
  static const auto real = Real<ssize_t (*)(int, void*, std::size_t, int)>("recv");
  return Transfer(Call::kRecv, size, [&](std::size_t most) { return real(descriptor, bytes, most, flags); });
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  static const auto real = Real<ssize_t (*)(int, const void*, std::size_t)>("write");
  return Transfer(Call::kWrite, size, [&](std::size_t most) { return real(descriptor, bytes, most); });
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Opened(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Opened(path, flags | O_LARGEFILE, mode);
}

// The C library's own checks come before open where the compiler does not know the flags.
int __open_2(const char* path, int flags) {
  return Opened(path, flags, 0);
}

int rename(const char* from, const char* to) noexcept {
  if (const auto* kind = Struck(Call::kRename)) return FailWith(kind);
  static const auto real = Real<int (*)(const char*, const char*)>("rename");
  return real(from, to);
}

int fsync(int descriptor) {
  if (const auto* kind = Struck(Call::kFsync)) return FailWith(kind);
  static const auto real = Real<int (*)(int)>("fsync");
  return real(descriptor);
}

int close(int descriptor) {
  static const auto real = Real<int (*)(int)>("close");
  const auto* kind = Struck(Call::kClose);
  const int result = real(descriptor);
  return kind == nullptr ? result : FailWith(kind);
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // extern "C"

#pragma GCC visibility pop
