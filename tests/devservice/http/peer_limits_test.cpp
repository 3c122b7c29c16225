// Limits on what one peer can use up for all others.
#include <thread>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

std::string ServiceHead() {
  return Request(std::string("POST ") + kServicePath,
                 "Host: localhost\r\nContent-Type: text/xml\r\nContent-Length: 8000\r\n");
}

class RequestTime : public TransferTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.requestTime = std::chrono::milliseconds(500); });
  }
  // Sends a head, then one byte now and then until the service answers; "(never)" when it goes on reading.
  std::string StatusAfterDrip(const std::string& head, char byte) {
    RawClient client(Port());
    client.Send(head);
    for (const auto end = Clock::now() + std::chrono::seconds(15); Clock::now() < end;) {
      client.Send(std::string(1, byte));
      const RawAnswer answer = client.Receive(std::chrono::milliseconds(50));
      if (!answer.head.empty()) return StatusOf(answer);
      if (answer.closed) return "(closed)";
    }
    return "(never)";
  }
};

TEST_F(RequestTime, DrippingRequestsAreEnded) {
  EXPECT_EQ(StatusAfterDrip("GET / HTTP/1.1\r\nHost: localhost\r\nX-Slow: ", 'a'), "408");
  EXPECT_EQ(StatusAfterDrip(ServiceHead(), ' '), "408");
  EXPECT_EQ(StatusAfterDrip(UploadHead(PathIn(NewUploadUrl()), 100000), 'x'), "408");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(RequestTime, RunningScriptsDoNotCount) {
  EXPECT_EQ(Value("const end = Date.now() + 1500; while (Date.now() < end); 7"), "xsd:int|7");
}

using Bodies = ServiceTest;

TEST_F(Bodies, OfAllRequestsShareABudget) {
  StartWith([](ServiceOptions& options) { options.maxBodyBytes = 10000; });
  const std::string whole = ServiceHead() + std::string(8000, ' ');
  EXPECT_EQ(StatusOf(Ask(whole)), "200");  // A fault: the body is not an envelope.
  RawClient slow(Port());
  slow.Send(ServiceHead() + std::string(6000, ' '));
  RawAnswer answer;
  for (int i = 0; i < 100 && StatusOf(answer) != "503"; ++i) {
    // The service may not have read the other body yet.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    answer = Ask(whole);
  }
  EXPECT_EQ(StatusOf(answer) + " " + answer.body,
            "503 The bodies of all requests together take too much memory. Try again later.\n");
  slow.Send(std::string(2000, ' '));
  EXPECT_EQ(StatusOf(slow.Receive()), "200");
  EXPECT_EQ(StatusOf(Ask(whole)), "200");
}

}  // namespace
}  // namespace qv::devservice::testing
