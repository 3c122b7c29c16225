#include "devservice/workers/script_worker.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <limits>
#include <thread>

#include "devservice/js/script_engine.h"
#include "devservice/workers/script_messages.h"
#include "devservice/workers/worker_channel.h"

namespace qv::devservice {
namespace {

// Ends the process when the service has gone, also while a script loops: the main thread would not notice.
void WatchOtherEnd(int descriptor) {
  pollfd watched{descriptor, POLLRDHUP, 0};
  while (poll(&watched, 1, -1) < 0 && errno == EINTR) {
  }
  _exit(0);
}

// Linux kills this process first when memory runs out, so that the machine survives a greedy script.
void VolunteerForOutOfMemory() {
  const int file = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
  if (file < 0) return;
  const ssize_t written = write(file, "1000", 4);
  static_cast<void>(written);  // Only a hint to the system; the watch on the resident size is the real limit.
  close(file);
}

// No core files. Limits on address space or data cannot be used: the engine reserves many gigabytes when it
// starts.
void SetProcessLimits() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

bool SendAll(int descriptor, const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count = send(descriptor, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

// Waits for the next message. False: the other end has closed.
bool Receive(int descriptor, MessageBuffer& buffer, nlohmann::json& message) {
  std::array<char, 65536> bytes;
  while (!buffer.Take(message)) {
    const ssize_t count = recv(descriptor, bytes.data(), bytes.size(), 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    buffer.Append(bytes.data(), static_cast<std::size_t>(count));
  }
  return true;
}

int ServeScripts(int descriptor) {
  ScriptEngine engine;
  MessageBuffer buffer(std::numeric_limits<std::size_t>::max());
  nlohmann::json message;
  const ConsoleSink console = [descriptor](const ConsoleMessage& said) {
    SendAll(descriptor, PackMessage(ToJson(said)));  // Without the service the process ends anyway.
  };
  // A first script warms up the engine, so that its start does not count as time of a later script.
  engine.Run(ScriptJob{"1", {}, {}}, [](const ConsoleMessage&) {});
  if (!SendAll(descriptor, PackMessage({{"ready", true}}))) return 0;
  while (Receive(descriptor, buffer, message)) {
    const ScriptResult result = engine.Run(JobFromJson(std::move(message)), console);
    if (!SendAll(descriptor, PackMessage(ToJson(result)))) return 0;
  }
  return 0;
}

}  // namespace

int RunScriptWorker(int descriptor) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  VolunteerForOutOfMemory();
  SetProcessLimits();
  std::thread(WatchOtherEnd, descriptor).detach();
  try {
    return ServeScripts(descriptor);
  } catch (const std::exception&) {
    return 1;
  }
}

}  // namespace qv::devservice
