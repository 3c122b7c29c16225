// The requests as they come.
#include <chrono>

#include "tests/tools/page/page_fixture.h"

namespace qv::cli {
namespace {

using namespace testing;
using devservice::testing::HeaderOf;
using devservice::testing::RawAnswer;
using devservice::testing::RawClient;
using std::chrono::milliseconds;

class PageEvents : public PageTest {
 protected:
  std::unique_ptr<RawClient> Watch() {
    Enter();
    return std::make_unique<RawClient>(service_->Port(),
                                       Bytes("GET", "api/events", "", "Cookie: " + cookie_ + "\r\n"));
  }
  // Waits for the head of the answer.
  static std::string Status(RawClient& client) {
    RawAnswer answer;
    for (int i = 0; i < 50 && answer.head.empty() && !answer.closed; ++i)
      answer = client.Receive(milliseconds(200));
    return StatusOf(answer);
  }
  static int Count(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }
};

TEST_F(PageEvents, ComeWithTheirAnswers) {
  const auto watcher = Watch();
  Run("'seen'");
  const RawAnswer events = watcher->Receive(milliseconds(3000));
  EXPECT_EQ(HeaderOf(events.head, "Content-Type"), "text/event-stream");
  EXPECT_EQ(HeaderOf(events.head, "X-Content-Type-Options"), "nosniff");
  EXPECT_NE(events.body.find("id: 2\nevent: request\ndata: {\"number\":2,"), std::string::npos)
      << events.body;
  EXPECT_NE(events.body.find("\"status\":200"), std::string::npos);
  EXPECT_NE(events.body.find("\"answerBytes\":"), std::string::npos);
  EXPECT_NE(events.body.find(">seen<"), std::string::npos);
}

TEST_F(PageEvents, EndWithTheService) {
  const auto watcher = Watch();
  watcher->Receive(milliseconds(300));
  const auto begin = std::chrono::steady_clock::now();
  service_->Stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST_F(PageEvents, WatchersAreLimited) {
  std::vector<std::unique_ptr<RawClient>> watchers;
  for (int i = 0; i < 16; ++i) {
    watchers.push_back(Watch());
    EXPECT_EQ(Status(*watchers.back()), "200");
  }
  const PageAnswer refused = Ask("GET", "api/events");
  EXPECT_EQ(refused.status, 503);
  EXPECT_EQ(refused.Message(), "16 clients watch the events already.");
  watchers.clear();
  // Those that are gone are noticed soon.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  std::string status;
  do status = Status(*Watch());
  while (status != "200" && std::chrono::steady_clock::now() < end);
  EXPECT_EQ(status, "200");
}

TEST_F(PageEvents, LongTextsAreCut) {
  Run("'x'.repeat(100000)");
  const RawAnswer events = Watch()->Receive(milliseconds(3000));
  const std::size_t at = events.body.find("id: 2\n");
  ASSERT_NE(at, std::string::npos);
  const std::size_t data = events.body.find("data: ", at) + 6;
  const Json event = Json::parse(events.body.substr(data, events.body.find('\n', data) - data));
  EXPECT_EQ(event.at("answer").get<std::string>().size(), 65536U);
  EXPECT_GT(event.at("answerBytes"), 100000);
}

TEST_F(PageEvents, AreOfEveryRequestOfTheService) {
  OpenSession();
  for (int i = 0; i < 200; ++i) Run(std::to_string(i));
  const RawAnswer events = Watch()->Receive(milliseconds(4000));
  EXPECT_EQ(Count(events.body, "\nevent: request\n"), 201);
}

}  // namespace
}  // namespace qv::cli
