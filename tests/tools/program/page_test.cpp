// `serve --page` and `run --local --page` as people start them.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "raw_client.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;
using Json = nlohmann::json;
using devservice::testing::RawAnswer;
using devservice::testing::RawClient;

int PortOf(const std::string& address) {
  const std::size_t at = address.find(':', 7) + 1;
  return std::stoi(address.substr(at));
}

RawAnswer Get(const std::string& address, const std::string& path, const std::string& headers = "") {
  return RawClient(PortOf(address), "GET /page/" + path +
                                        " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(PortOf(address)) +
                                        "\r\n" + headers + "Connection: close\r\n\r\n")
      .Receive();
}

// The cookie for the page's address.
std::string Enter(const std::string& address) {
  const std::string host = "127.0.0.1:" + std::to_string(PortOf(address));
  const std::string body = R"({"token":")" + address.substr(address.find('#') + 1) + "\"}";
  const RawAnswer answer =
      RawClient(PortOf(address),
                "POST /page/enter HTTP/1.1\r\nHost: " + host + "\r\nOrigin: http://" + host +
                    "\r\nContent-Type: application/json\r\nConnection: close\r\nContent-Length: " +
                    std::to_string(body.size()) + "\r\n\r\n" + body)
          .Receive();
  const std::string header = devservice::testing::HeaderOf(answer.head, "Set-Cookie");
  return "Cookie: " + header.substr(0, header.find(';')) + "\r\n";
}

Json State(const std::string& address) {
  return Json::parse(Get(address, "api/state", Enter(address)).body);
}

TEST(ServePage, AddressIsPrinted) {
  Process serve(Tool("serve --page"));
  const std::string url = serve.ReadLine();
  const std::string page = serve.ReadLine();
  EXPECT_EQ(page.substr(0, page.size() - 32), url + "/page/#");
  EXPECT_EQ(StatusOf(Get(page, "")), "200");
  EXPECT_EQ(State(page).at("needsPassword"), false);
  serve.Signal(SIGINT);
  const Outcome outcome = serve.Finish();
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(outcome.out, "");
}

TEST(ServePage, JsonHasIt) {
  const TemporaryDirectory folder;
  Process serve(Tool("serve --page --json --control --users-file " + folder.Write("users", "joe:secret\n")));
  const Json line = Json::parse(serve.ReadLine());
  const std::string page = line.at("page");
  EXPECT_EQ(page.substr(0, page.size() - 32), line.at("url").get<std::string>() + "/page/#");
  EXPECT_TRUE(line.contains("control"));
  EXPECT_TRUE(State(page).at("needsPassword").get<bool>());
  const std::string home = line.at("home");
  EXPECT_TRUE(std::filesystem::exists(home + "/serve.reg"));
  serve.Signal(SIGTERM);
  EXPECT_EQ(serve.Finish().exit, 0);
  EXPECT_FALSE(std::filesystem::exists(home));
}

TEST(ServePage, NothingIsThereWithoutIt) {
  ServeProcess serve;
  EXPECT_EQ(StatusOf(Get(serve.Url() + "/", "")), "404");
  EXPECT_EQ(RunTool("serve --page --host ::1").exit, 2);
}

TEST(RunPage, HasTheScriptInTheEditor) {
  const TemporaryDirectory folder;
  const std::string file = folder.Write("notes.txt", "content");
  Process run(Tool("run --local --page -p a=int:2 -p f=file:" + file, {"-e", "parameters.a"}));
  const std::string page = run.ReadLine();
  const Json state = State(page);
  EXPECT_EQ(state.at("script"),
            Json::parse(R"({"code":"parameters.a","language":"JavaScript","parameters":[)"
                        R"({"name":"a","type":"int","value":"2"},{"name":"f","type":"file","file":1}]})"));
  EXPECT_EQ(state.at("files").at(0).at("name"), "notes.txt");
  EXPECT_EQ(state.at("needsPassword"), false);
  run.Signal(SIGINT);
  EXPECT_EQ(run.Finish().exit, 0);
}

TEST(RunPage, WrongCombinations) {
  Tool("run --page --server http://127.0.0.1 -e 1")
      .FailsLike(2, "--page needs --local; for other services there is serve --page");
  for (const char* more : {"--watch a.js", "-e 1 --save .", "-e 1 --trace -", "-e 1 --record a.tape"})
    Tool(std::string("run --local --page ") + more)
        .FailsLike(2, "--page cannot be combined with --watch, --save, --trace, --record and --replay");
  EXPECT_EQ(RunTool("run --local --page -e 1 -p a=int:x").exit, 6);
}

}  // namespace
}  // namespace qv::cli
