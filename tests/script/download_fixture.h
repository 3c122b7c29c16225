// Downloads from a server in memory, with a temporary directory for the files.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/guid_shape.h"
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

  // What comes after the temporary directory in this path, with the name of a new directory as "*".
  std::string Below(const std::string& path) const {
    const std::string start = files_.Path() + "\\";
    if (path.compare(0, start.size(), start) != 0 || !IsGuid(path.substr(start.size(), 36))) return path;
    return "\\*" + path.substr(start.size() + 36);
  }

  TemporaryDirectory files_;
  EnvironmentVariable temp_;
  EnvironmentVariable tmp_;
  FakeHttp http_;
  WideString cookie_{u""};
};

}  // namespace qv
