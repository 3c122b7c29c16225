// What one peer could use up for all others.
#include <thread>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kServiceHead[] =
    "POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\nHost: localhost\r\n"
    "Content-Type: text/xml\r\nContent-Length: 8000\r\n\r\n";

// Sends one byte now and then until the service answers; "(never)" when it goes on reading.
std::string StatusAfterDrip(RawClient& client, char byte) {
  const auto end = Clock::now() + std::chrono::seconds(15);
  while (Clock::now() < end) {
    client.Send(std::string(1, byte));
    const RawAnswer answer = client.Receive(std::chrono::milliseconds(50));
    if (!answer.head.empty()) return answer.head.substr(9, 3);
    if (answer.closed) return "(closed)";
  }
  return "(never)";
}

class RequestTime : public TransferTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.requestTime = std::chrono::milliseconds(500);
    StartWith(options);
    session_ = Login();
  }
};

TEST_F(RequestTime, DrippingHeadIsEnded) {
  RawClient client(service_->Port());
  client.Send("GET / HTTP/1.1\r\nHost: localhost\r\nX-Slow: ");
  EXPECT_EQ(StatusAfterDrip(client, 'a'), "408");
}

TEST_F(RequestTime, DrippingBodyIsEnded) {
  RawClient client(service_->Port());
  client.Send(kServiceHead);
  EXPECT_EQ(StatusAfterDrip(client, ' '), "408");
}

TEST_F(RequestTime, DrippingUploadIsEndedAndChangesNothing) {
  const std::string path = PathIn(NewUploadUrl());
  RawClient client(service_->Port());
  client.Send(UploadHead(path, session_, 100000));
  EXPECT_EQ(StatusAfterDrip(client, 'x'), "408");
  EXPECT_EQ(Stats()["uploads"], 0);
}

TEST_F(RequestTime, RunningScriptsDoNotCount) {
  EXPECT_EQ(Value("const end = Date.now() + 1500; while (Date.now() < end); 7"), "xsd:int|7");
}

class BodyBudgetTest : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.maxBodyBytes = 10000;
    StartWith(options);
  }
  std::string StatusOfWholeBody() {
    RawClient client(service_->Port());
    client.Send(kServiceHead + std::string(8000, ' '));
    const RawAnswer answer = client.Receive();
    const std::string status = answer.head.substr(9, 3);
    return status == "503" ? status + " " + answer.body : status;
  }
};

TEST_F(BodyBudgetTest, BodiesOfAllRequestsShareIt) {
  EXPECT_EQ(StatusOfWholeBody(), "200");  // A fault: the body is no envelope.
  RawClient slow(service_->Port());
  slow.Send(kServiceHead + std::string(6000, ' '));
  // The service may not have read the other body yet.
  std::string status;
  for (int i = 0; i < 300 && status.substr(0, 3) != "503"; ++i) {
    status = StatusOfWholeBody();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(status, "503 The bodies of all requests together take too much memory. Try again later.\n");
  slow.Send(std::string(2000, ' '));
  EXPECT_EQ(slow.Receive().head.substr(9, 3), "200");
  EXPECT_EQ(StatusOfWholeBody(), "200");
}

}  // namespace
}  // namespace qv::devservice::testing
