#include "devservice/http/access_rule.h"

#include <gtest/gtest.h>

namespace qv::devservice::testing {
namespace {

constexpr char kForeignPage[] = "Web pages of other origins may not use this service.\n";
constexpr char kNoHost[] = "The Host header of the request is not the name of a host.\n";

std::string Foreign(const std::string& name) {
  return "This service does not answer to the host name \"" + name +
         "\". If the name is meant for it, start the service with that name: scriptwells serve --name " +
         name + "\n";
}

TEST(AccessRule, LoopbackAddressesAndGivenNamesAreWelcome) {
  const AccessRule rule({"127.0.0.1", "Build-Box", "tunnel.example."});
  for (const char* host : {"", "localhost", "LocalHost:80", "localhost.", "127.0.0.1", "127.0.0.1:40123",
                           "127.8.9.1", "[::1]", "[::1]:80", "10.1.2.3:8080", "[2001:db8::7]:1", "build-box",
                           "BUILD-BOX:1", "tunnel.example:443", "localhost:"}) {
    EXPECT_EQ(rule.Refusal(host, ""), "") << host;
  }
}

TEST(AccessRule, OtherNamesAreRefusedByName) {
  const AccessRule rule({"build-box"});
  EXPECT_EQ(rule.Refusal("evil.example:40123", ""), Foreign("evil.example"));
  EXPECT_EQ(rule.Refusal("Evil.Example.", ""), Foreign("evil.example"));
  for (const char* host : {"localhost.evil.example", "127.0.0.1.evil.example", "build-box.evil.example",
                           "xbuild-box", "127.1", "0x7f000001", "2130706433", "127.0.0.01", "1.2.3.4.5"}) {
    EXPECT_EQ(rule.Refusal(host, ""), Foreign(host)) << host;
  }
}

TEST(AccessRule, HostsThatAreNoneAreRefused) {
  const AccessRule rule({""});
  for (const char* host :
       {"localhost, evil.example", "[evil.example]", "[::1", "[::1]x", "[]", "[127.0.0.1]", "::1", ":80", ".",
        "localhost:80:80", "localhost:8x", "a b", "<script>", "localhost@evil.example", "\x1b[2J"}) {
    EXPECT_EQ(rule.Refusal(host, ""), kNoHost) << host;
  }
  EXPECT_EQ(rule.Refusal(std::string(256, 'a'), ""), kNoHost);
}

TEST(AccessRule, PagesOfTheServiceItselfAreWelcome) {
  const AccessRule rule({"tunnel.example"});
  EXPECT_EQ(rule.Refusal("127.0.0.1:40123", "http://127.0.0.1:40123"), "");
  EXPECT_EQ(rule.Refusal("Tunnel.example", "https://tunnel.Example"), "");
}

TEST(AccessRule, PagesOfOtherOriginsAreRefused) {
  const AccessRule rule({});
  for (const char* origin :
       {"null", "http://evil.example", "http://127.0.0.1", "http://127.0.0.1:3000", "http://localhost:40123",
        "file://", "https://127.0.0.1:40124", "ftp://127.0.0.1:40123", "127.0.0.1:40123",
        "http://127.0.0.1:40123, http://evil.example"}) {
    EXPECT_EQ(rule.Refusal("127.0.0.1:40123", origin), kForeignPage) << origin;
  }
  EXPECT_EQ(rule.Refusal("", "http://"), kForeignPage);
}

}  // namespace
}  // namespace qv::devservice::testing
