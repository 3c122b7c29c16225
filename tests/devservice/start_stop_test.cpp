#include <filesystem>
#include <stdexcept>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

std::size_t CountOf(const char* directory) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(directory))
    count += entry.path().empty() ? 0 : 1;
  return count;
}

std::string StartFailure(const ServiceOptions& options) {
  Service service(options);
  try {
    service.Start();
    return "(started)";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

TEST(StartStop, PortAndUrlAreKnownWhileRunning) {
  Service service(TestOptions());
  EXPECT_EQ(service.Port(), 0);
  EXPECT_EQ(service.Url(), "");
  service.Start();
  EXPECT_GT(service.Port(), 0);
  EXPECT_EQ(service.Url(), "http://127.0.0.1:" + std::to_string(service.Port()));
  service.Stop();
  EXPECT_EQ(service.Port(), 0);
}

TEST(StartStop, TakenPortIsAFailureWithWords) {
  Service first(TestOptions());
  first.Start();
  ServiceOptions options = TestOptions();
  options.port = first.Port();
  EXPECT_EQ(StartFailure(options),
            "Cannot listen on 127.0.0.1 port " + std::to_string(first.Port()) +
                ": the port is taken, not permitted, or the address is not one of this machine.");
}

TEST(StartStop, BadOptionsAreFailuresWithWords) {
  ServiceOptions options = TestOptions();
  options.workerCommand.clear();
  EXPECT_EQ(StartFailure(options), "No command for the script worker is set.");
  options.workerCommand = {"/no/such/program"};
  EXPECT_EQ(StartFailure(options), "The script worker \"/no/such/program\" is no program that can be run.");
  options = TestOptions();
  options.port = 65536;
  EXPECT_EQ(StartFailure(options), "The port is not between 0 and 65535.");
  options = TestOptions();
  options.host = "203.0.113.7";
  EXPECT_EQ(StartFailure(options).substr(0, 33), "Cannot listen on 203.0.113.7 port");
}

TEST(StartStop, CanBeRepeatedOnOnePortWithoutLeaks) {
  Service service(TestOptions());
  service.Start();
  service.Stop();
  const std::size_t descriptors = CountOf("/proc/self/fd");
  const std::size_t threads = CountOf("/proc/self/task");
  for (int i = 0; i < 30; ++i) {
    service.Start();
    service.Start();
    RawClient client(service.Port());
    client.Send("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(client.Receive().head.substr(0, 12), "HTTP/1.1 200");
    service.Stop();
    service.Stop();
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), descriptors);
  EXPECT_EQ(CountOf("/proc/self/task"), threads);
}

TEST(StartStop, FixedPortIsFreeAgainAtOnce) {
  Service first(TestOptions());
  first.Start();
  const int port = first.Port();
  {
    RawClient client(port);
    client.Send("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
    client.Receive();
  }
  first.Stop();
  ServiceOptions options = TestOptions();
  options.port = port;
  EXPECT_EQ(StartFailure(options), "(started)");
}

TEST(StartStop, StopDoesNotWaitForKeptConnections) {
  Service service(TestOptions());
  service.Start();
  RawClient idle(service.Port());
  RawClient half(service.Port());
  half.Send("POST / HTTP/1.1\r\nContent-Length: 50\r\n\r\nabc");
  idle.Send("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
  idle.Receive();
  const auto start = Clock::now();
  service.Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
  EXPECT_TRUE(idle.Receive().closed);
}

class BadWorker : public ServiceTest {};

TEST_F(BadWorker, WorkerThatIsNoneIsAFault) {
  ServiceOptions options = TestOptions();
  options.workerCommand = {"/bin/true"};
  StartWith(options);
  session_ = Login();
  EXPECT_EQ(Fault("1"), "1016|The script worker \"/bin/true\" does not work.|service");
  options.workerCommand = {"/bin/cat"};  // Sends nothing on its own.
  StartWith(options);
  session_ = Login();
  RawClient client(service_->Port());
  client.Send(PostRequest("", "Execute", ExecuteEnvelope(session_, "1", NilParameters())));
  EXPECT_TRUE(client.Receive(std::chrono::milliseconds(200)).timedOut);
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
}

}  // namespace
}  // namespace qv::devservice::testing
