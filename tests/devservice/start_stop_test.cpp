// Start and stop of a service.
#include <filesystem>
#include <stdexcept>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class StartStop : public ServiceTest {
 protected:
  std::string StartFailure(const std::function<void(ServiceOptions&)>& change) {
    try {
      StartWith(change);
      return "(started)";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }
  // Stops, and expects that this does not take long.
  void StopAtOnce() {
    const auto start = Clock::now();
    service_->Stop();
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
  }
};

std::ptrdiff_t CountOf(const char* directory) {
  return std::distance(std::filesystem::directory_iterator(directory), {});
}

TEST_F(StartStop, PortAndUrlAreKnownWhileRunning) {
  Service service(TestOptions());
  EXPECT_EQ(service.Port(), 0);
  EXPECT_EQ(service.Url(), "");
  service.Start();
  EXPECT_GT(service.Port(), 0);
  EXPECT_EQ(service.Url(), "http://127.0.0.1:" + std::to_string(service.Port()));
  service.Stop();
  EXPECT_EQ(service.Port(), 0);
}

TEST_F(StartStop, BadOptionsAreFailuresWithMessages) {
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.workerCommand.clear(); }),
            "No command for the script worker is set.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.workerCommand = {"/no/such/program"}; }),
            "The script worker \"/no/such/program\" is no program that can be run.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.port = 65536; }),
            "The port is not between 0 and 65535.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.host = "203.0.113.7"; }).substr(0, 33),
            "Cannot listen on 203.0.113.7 port");
  Service first(TestOptions());
  first.Start();
  EXPECT_EQ(StartFailure([&first](ServiceOptions& options) { options.port = first.Port(); }),
            "Cannot listen on 127.0.0.1 port " + std::to_string(first.Port()) +
                ": the port is taken, not permitted, or the address is not one of this machine.");
}

TEST_F(StartStop, CanBeRepeatedOnOnePortWithoutLeaks) {
  StartWith(TestOptions());
  service_->Stop();
  const std::ptrdiff_t descriptors = CountOf("/proc/self/fd");
  const std::ptrdiff_t threads = CountOf("/proc/self/task");
  for (int i = 0; i < 30; ++i) {
    service_->Start();
    service_->Start();
    EXPECT_EQ(StatusOf(Get("/")), "200");
    service_->Stop();
    service_->Stop();
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), descriptors);
  EXPECT_EQ(CountOf("/proc/self/task"), threads);
}

TEST_F(StartStop, FixedPortIsFreeAgainAtOnce) {
  const int port = Port();
  Get("/");
  service_->Stop();
  EXPECT_EQ(StartFailure([port](ServiceOptions& options) { options.port = port; }), "(started)");
}

TEST_F(StartStop, StopDoesNotWaitForKeptConnections) {
  RawClient idle(Port());
  RawClient half(Port());
  half.Send("POST / HTTP/1.1\r\nContent-Length: 50\r\n\r\nabc");
  idle.Send(Request("GET /"));
  idle.Receive();
  StopAtOnce();
  EXPECT_TRUE(idle.Receive().closed);
}

TEST_F(StartStop, OtherProgramsAsWorkersAreFaults) {
  StartWith([](ServiceOptions& options) { options.workerCommand = {"/bin/true"}; });
  EXPECT_EQ(Fault("1"), "1016|The script worker \"/bin/true\" does not work.|service");
  StartWith(
      [](ServiceOptions& options) { options.workerCommand = {"/bin/cat"}; });  // Sends nothing by itself.
  RawClient client(Port());
  client.Send(PostRequest("", "Execute", ExecuteEnvelope(Session(), "1", NilParameters())));
  EXPECT_TRUE(client.Receive(std::chrono::milliseconds(200)).timedOut);
  StopAtOnce();
}

}  // namespace
}  // namespace qv::devservice::testing
