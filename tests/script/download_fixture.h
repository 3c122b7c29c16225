// Downloads from a server in memory, with a temporary directory of their own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "script/file_downloader.h"

namespace qv {

using Lines = std::vector<std::string>;

constexpr char kUnknownProblem[] = "EQvException 0x00000000 Unknown Http problem.";

class DownloadFixture : public testing::Test {
 protected:
  DownloadFixture() : temp_("TEMP", files_.Path().c_str()), tmp_("TMP", nullptr) {}
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  // An answer whose Content-Disposition is this; null: it has none.
  void AnswerWith(const WideString& header) {
    HttpAnswer answer{u"200", u"3", u"abc"};
    if (!header.IsNull()) answer.headers[u"Content-Disposition"] = header;
    http_.AnswerAs(answer);
  }
  void AnswerNamed(const std::u16string& name) { AnswerWith(u"attachment; filename=" + name); }

  // Without a proxy, with this cookie.
  WideString Download(const WideString& url, WideString& target) {
    return CFileDownloader(url, u"", 0, cookie_).Download(u"u1", target);
  }
  std::string DownloadThrows(const WideString& url, const WideString& target) {
    return Thrown([&] {
      WideString changed = target;
      Download(url, changed);
    });
  }
  std::string DownloadThrows() { return DownloadThrows(u"http://files/f", u"c:\\tmp"); }

  // The component's calls. Whether an unset spare text is null or empty is nobody's business.
  Lines Calls() const { return Plain(http_.Calls()); }
  Lines Opens() const { return Plain(http_.CallsNamed("Open(")); }
  // "RS" for a request and a session that were closed in this order.
  std::string Closes() const {
    std::string closes;
    for (const std::string& call : http_.CallsNamed("Close ")) closes += call == "Close request" ? "R" : "S";
    return closes;
  }
  // `text` with the 36 units of a new directory's name as "*": capitals, digits and "-" in their places.
  static std::string Starred(std::string text, std::size_t from) {
    const std::string shape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    if (text.size() < from + shape.size()) return text;
    for (std::size_t i = 0; i < shape.size(); ++i) {
      const bool digit = std::string("0123456789ABCDEF").find(text[from + i]) != std::string::npos;
      if (shape[i] == '-' ? text[from + i] != '-' : !digit) return text;
    }
    return text.replace(from, shape.size(), "*");
  }

  TemporaryDirectory files_;
  EnvironmentVariable temp_;
  EnvironmentVariable tmp_;
  FakeHttp http_;
  WideString cookie_{u""};

 private:
  static Lines Plain(Lines calls) {
    const std::string null = "<null>";
    for (std::string& call : calls)
      while (call.compare(0, 5, "Open(") == 0 && call.find(null) != std::string::npos)
        call.erase(call.find(null), null.size());
    return calls;
  }
};

}  // namespace qv
