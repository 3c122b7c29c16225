#include "tinyproxy.h"

#include <fstream>

namespace qv::test {
namespace {

// How tinyproxy's log begins the lines about clients.
constexpr const char* kConnection = "Connect (file descriptor ";
constexpr const char* kRequest = "Request (file descriptor ";
constexpr int kPatience = 10;

}  // namespace

Tinyproxy::Tinyproxy(const std::string& more, const std::string& address, std::uint16_t fixedPort)
    : address_(address),
      server_([this, &more](std::uint16_t port) { return Command(port, more); }, files_.Path("said"), address,
              fixedPort) {
  WaitUntil([this] { return !LogLines(kConnection).empty(); }, kPatience);
  before_ = LogLines(kConnection).size();
}

Words Tinyproxy::Command(std::uint16_t port, const std::string& more) const {
  const std::string configuration = "Port " + std::to_string(port) + "\nListen " + address_ +
                                    "\nTimeout 20\nMaxClients 20\nLogLevel Connect\nLogFile \"" +
                                    files_.Path("log") + "\"\n" + more;
  return {"tinyproxy", "-d", "-c", files_.Write("tinyproxy.conf", configuration)};
}

std::string Tinyproxy::Address() const {
  return address_ + ":" + std::to_string(Port());
}

Words Tinyproxy::LogLines(const std::string& mark) const {
  Words lines;
  std::ifstream log(files_.Path("log"));
  for (std::string line; std::getline(log, line);) {
    const std::size_t found = line.find(mark);
    const std::size_t text = found == std::string::npos ? found : line.find("): ", found);
    if (text != std::string::npos) lines.push_back(line.substr(text + 3));
  }
  return lines;
}

Words Tinyproxy::Requests(std::size_t count) const {
  WaitUntil([&] { return LogLines(kRequest).size() >= count; }, kPatience);
  return LogLines(kRequest);
}

std::size_t Tinyproxy::Connections() const {
  return LogLines(kConnection).size() - before_;
}

}  // namespace qv::test
