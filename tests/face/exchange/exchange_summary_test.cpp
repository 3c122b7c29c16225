// One line for each exchange.
#include <gtest/gtest.h>

#include "scriptwells/options.h"

namespace scriptwells {
namespace {

Exchange Sent() {
  Exchange exchange;
  exchange.server = "http://srv:80";
  exchange.requestHead = "POST /a/b.asmx HTTP/1.1\r\nHost: srv\r\n\r\n";
  exchange.status = 200;
  exchange.sentBytes = 912;
  exchange.receivedBytes = 1204;
  exchange.total = std::chrono::microseconds(3999);
  return exchange;
}

TEST(ExchangeSummary, HasTargetPurposeStatusBytesAndTime) {
  EXPECT_EQ(Summary(Sent()), "POST http://srv:80/a/b.asmx execute 200, 912 bytes sent, 1204 received, 3 ms");
}

TEST(ExchangeSummary, OfAFailure) {
  Exchange exchange = Sent();
  exchange.purpose = Purpose::kDownload;
  exchange.failure = "transfer closed";
  EXPECT_EQ(Summary(exchange),
            "POST http://srv:80/a/b.asmx download 200 failed: transfer closed, 912 bytes sent, 1204 "
            "received, 3 ms");
  exchange = Exchange();
  exchange.server = "http://srv:80";
  exchange.purpose = Purpose::kOpenSession;
  exchange.failure = "Connection refused";
  EXPECT_EQ(Summary(exchange),
            "http://srv:80 open session failed: Connection refused, 0 bytes sent, 0 received, 0 ms");
}

TEST(ExchangeSummary, ThroughAProxyTheTargetIsWhole) {
  Exchange exchange = Sent();
  exchange.requestHead = "GET http://srv:80/x HTTP/1.1\r\n\r\n";
  EXPECT_EQ(Summary(exchange).substr(0, 31), "GET http://srv:80/x execute 200");
}

TEST(ExchangePurpose, HasAName) {
  EXPECT_STREQ(ToString(Purpose::kOpenSession), "open session");
  EXPECT_STREQ(ToString(Purpose::kUploadAddress), "upload address");
  EXPECT_STREQ(ToString(Purpose::kDownload), "download");
}

}  // namespace
}  // namespace scriptwells
