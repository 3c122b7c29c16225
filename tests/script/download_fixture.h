// Downloads from a server in memory, with a temporary directory for the files.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "script/file_downloader.h"

namespace qv {

using Lines = std::vector<std::string>;

class DownloadFixture : public testing::Test {
 protected:
  DownloadFixture() : temp_("TEMP", files_.Path().c_str()), tmp_("TMP", nullptr) {}
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  // Without a proxy, with this cookie. The target becomes the path, which is the result, too.
  std::string PathInto(const WideString& url, WideString& target) {
    return Shown(CFileDownloader(url, u"", 0, cookie_).Download(u"u1", target));
  }
  std::string Path(const WideString& url = u"http://files/f", const WideString& target = u"c:\\tmp") {
    WideString changed = target;
    return PathInto(url, changed);
  }
  std::string DownloadThrows(const WideString& url = u"http://files/f",
                             const WideString& target = u"c:\\tmp") {
    return Thrown([&] { Path(url, target); });
  }

  // What comes after the temporary directory in this path, with the 36 units of a new directory's name
  // (capitals, digits and "-" in their places) as "*".
  std::string Below(const std::string& path) const {
    if (path.compare(0, files_.Path().size(), files_.Path()) != 0) return path;
    std::string below = path.substr(files_.Path().size());
    const std::string shape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    if (below.size() < 1 + shape.size()) return path;
    for (std::size_t i = 0; i < shape.size(); ++i) {
      const bool digit = std::string("0123456789ABCDEF").find(below[1 + i]) != std::string::npos;
      if (shape[i] == '-' ? below[1 + i] != '-' : !digit) return path;
    }
    return below.replace(1, shape.size(), "*");
  }

  TemporaryDirectory files_;
  EnvironmentVariable temp_;
  EnvironmentVariable tmp_;
  FakeHttp http_;
  WideString cookie_{u""};
};

}  // namespace qv
