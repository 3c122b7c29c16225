// Verbs for bodies that come from files and go to files, all in a directory of the test.
#pragma once

#include <string>

#include "fixtures/temporary_directory.h"
#include "http_fixture.h"

namespace qv::test {

class HttpFileTest : public HttpTest {
 protected:
  std::string Path(const std::string& name) const { return files_.Path(name); }
  // Sends the file of this path.
  HRESULT SendFile(const std::string& path) {
    const IHttpRequestPtr request = NewRequest(OpenSession());
    EXPECT_EQ(request->SetHeader(u"Host", u"h"), S_OK);
    return request->SendFile(Wide(path));
  }
  static HRESULT ReadToFile(const IHttpRequestPtr& request, const std::string& path) {
    std::int32_t count = 0;
    return request->ReadToFile(Wide(path), &count);
  }
  // A new request whose answer goes to the file of this path.
  HRESULT Receive(const std::string& path) { return ReadToFile(Sent(), path); }
  void ExpectContent(const std::string& name, const std::string& content) const {
    EXPECT_EQ(files_.Read(name), content);
  }
  // The file "f" has this content and is the only one.
  void ExpectOnly(const std::string& content) const {
    ExpectContent("f", content);
    EXPECT_EQ(files_.Count(), 1);
  }
  void ExpectWriteFailure(const std::string& reason) const {
    EXPECT_EQ(ErrorWords(), "Couldn't write file " + Path("f") + ": " + reason);
  }

  TemporaryDirectory files_;
};

}  // namespace qv::test
