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
#include "qvscriptwells/com_call.h"

namespace qv::test {
namespace {

constexpr char16_t kBelow[] = u"SOFTWARE\\Quorvane\\Quorvane\\Http\\";

RegistryLayer Layer(const std::vector<std::pair<const char16_t*, const char16_t*>>& values) {
  RegistryLayer layer;
  for (const auto& [name, value] : values)
    layer.entries.push_back({WideString(std::u16string(kBelow) + name), WideString(value)});
  return layer;
}

// The limits are connecting, silence, total, rate, its window.
void ExpectLimits(const HttpOptions& options, const std::vector<std::int64_t>& limits) {
  const std::int64_t HttpOptions::*const numbers[] = {
      &HttpOptions::connectTimeout, &HttpOptions::idleTimeout, &HttpOptions::totalTimeout,
      &HttpOptions::minBytesPerSecond, &HttpOptions::rateWindow};
  for (std::size_t i = 0; i < std::size(numbers); ++i) EXPECT_EQ(options.*numbers[i], limits[i]) << i;
}

TEST(HttpDefaults, EmptyRegistryChangesNothing) {
  const HttpOptions options = OptionsFromRegistry({});
  ExpectLimits(options, {30'000, 60'000, 0, 16, 60'000});
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
  ExpectLimits(options, {1, 2, 3, 4, 5});
  EXPECT_EQ(options.caFile, WideString(u"/ca.pem"));
  EXPECT_EQ(options.certificateFile, WideString(u"/me.pem"));
  EXPECT_EQ(options.keyFile, WideString(u"/key.pem"));
}

TEST(HttpDefaults, FirstFileThatHasAKeyDecides) {
  const HttpOptions options = OptionsFromRegistry(
      {Layer({{u"IdleTimeout", u"1"}}), Layer({{u"IdleTimeout", u"2"}, {u"TotalTimeout", u"3"}})});
  ExpectLimits(options, {30'000, 1, 3, 16, 60'000});
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
  IHttpOptionsPtr interface;
  if (CreateHttpComponent(IHttpOptions::kIid, Put(interface)) != S_OK) return -1;
  HttpOptions options;
  interface->GetOptions(&options);
  return options.idleTimeout;
}

// For a new process, since a process reads the registry once.
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
