// Limits and certificates from the registry.
#include "components/http/default_options.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "components/http/http_session.h"
#include "fixtures/temporary_directory.h"

namespace qv::test {
namespace {

constexpr char16_t kBelow[] = u"SOFTWARE\\Quorvane\\Quorvane\\Http\\";

RegistryLayer Layer(const std::vector<std::pair<const char16_t*, const char16_t*>>& values) {
  RegistryLayer layer;
  for (const auto& [name, value] : values)
    layer.entries.push_back({WideString(std::u16string(kBelow) + name), WideString(value)});
  return layer;
}

TEST(HttpDefaults, EmptyRegistryChangesNothing) {
  const HttpOptions options = OptionsFromRegistry({});
  EXPECT_EQ(options.connectTimeout, 30'000);
  EXPECT_EQ(options.idleTimeout, 60'000);
  EXPECT_EQ(options.totalTimeout, 0);
  EXPECT_EQ(options.minBytesPerSecond, 16);
  EXPECT_EQ(options.rateWindow, 60'000);
  EXPECT_TRUE(options.caFile.IsEmpty() && options.certificateFile.IsEmpty() && options.keyFile.IsEmpty());
}

TEST(HttpDefaults, ValuesTakeTheirPlaces) {
  const HttpOptions options = OptionsFromRegistry({Layer({{u"ConnectTimeout", u"1"},
                                                          {u"idletimeout", u"2"},
                                                          {u"TotalTimeout", u"3"},
                                                          {u"MinBytesPerSecond", u"4"},
                                                          {u"RateWindow", u"5"},
                                                          {u"CaFile", u"/ca.pem"},
                                                          {u"CertificateFile", u"/me.pem"},
                                                          {u"KeyFile", u"/key.pem"}})});
  EXPECT_EQ(options.connectTimeout, 1);
  EXPECT_EQ(options.idleTimeout, 2);
  EXPECT_EQ(options.totalTimeout, 3);
  EXPECT_EQ(options.minBytesPerSecond, 4);
  EXPECT_EQ(options.rateWindow, 5);
  EXPECT_EQ(options.caFile, WideString(u"/ca.pem"));
  EXPECT_EQ(options.certificateFile, WideString(u"/me.pem"));
  EXPECT_EQ(options.keyFile, WideString(u"/key.pem"));
}

TEST(HttpDefaults, FirstFileThatHasAKeyDecides) {
  const HttpOptions options = OptionsFromRegistry(
      {Layer({{u"IdleTimeout", u"1"}}), Layer({{u"IdleTimeout", u"2"}, {u"TotalTimeout", u"3"}})});
  EXPECT_EQ(options.idleTimeout, 1);
  EXPECT_EQ(options.totalTimeout, 3);
}

TEST(HttpDefaults, NumbersThatAreNoneCountAsAbsent) {
  for (const char16_t* wrong :
       {u"", u"-1", u"+1", u" 1", u"1 ", u"1.5", u"1s", u"0x1", u"soon", u"9223372036854775808", u"\u0661"})
    EXPECT_EQ(OptionsFromRegistry({Layer({{u"IdleTimeout", wrong}})}).idleTimeout, 60'000) << ToUtf8(wrong);
  EXPECT_EQ(OptionsFromRegistry({Layer({{u"IdleTimeout", u"0"}})}).idleTimeout, 0);
  EXPECT_EQ(OptionsFromRegistry({Layer({{u"IdleTimeout", u"9223372036854775807"}})}).idleTimeout,
            9'223'372'036'854'775'807);
}

// The limit on silence that a session starts with.
std::int64_t IdleTimeoutOfANewSession() {
  void* object = nullptr;
  if (CreateHttpComponent(IHttpOptions::kIid, &object) != S_OK) return -1;
  HttpOptions options;
  IHttpOptionsPtr(static_cast<IHttpOptions*>(object), false)->GetOptions(&options);
  return options.idleTimeout;
}

// Runs in a process of its own, since a process reads the registry once.
int ReadInANewProcess() {
  const TemporaryDirectory files;
  const std::string registry = files.Write(
      "a.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\Http\\IdleTimeout]\n@=\"123\"\n");
  setenv("QV_REGISTRY", registry.c_str(), 1);
  if (IdleTimeoutOfANewSession() != 123) return 1;
  files.Write("a.reg", "");
  if (IdleTimeoutOfANewSession() != 123) return 2;  // read once
  SetThreadHttpOptions(HttpOptions(), nullptr);
  if (IdleTimeoutOfANewSession() != 60'000) return 3;  // the host's own
  return 0;
}

TEST(HttpDefaults, SessionsStartWithThem) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(_exit(ReadInANewProcess()), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qv::test
