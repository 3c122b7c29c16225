// Verbs for transfers of the connection model: a model with a session that no server has opened, a raw
// server, the scripts that ask for upload addresses, and a private directory that holds all files that a test
// may touch.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "http_fixture.h"
#include "qvscriptwells/objects.h"

namespace qv::test {

// Path and kind of everything below a directory, with the content of files and the targets of links.
using Tree = std::map<std::string, std::string>;
Tree TreeOf(const std::string& directory);

// Variables that change who is trusted and which proxy is used are not set while this lives.
class PlainEnvironment {
 private:
  EnvironmentVariable certificateFile_{"SSL_CERT_FILE", nullptr};
  EnvironmentVariable certificateDirectory_{"SSL_CERT_DIR", nullptr};
  EnvironmentVariable bundle_{"CURL_CA_BUNDLE", nullptr};
};

// An answer of the service with this text, of type "string", as a script's value.
std::string ScriptAnswer(const std::string& escapedText);
// An answer with a file, and the header that names one.
std::string FileAnswer(const std::string& name, const std::string& content);
std::string FileHeader(const std::string& name);

class TransferTest : public HttpTest {
 protected:
  TransferTest();
  ~TransferTest() override;

  // The model talks to the raw server, or to another one.
  void UseServer(const std::string& url, const std::string& proxy = "");
  std::string ServerUrl() const { return server_.Url(); }
  std::string UploadUrl() const { return ServerUrl() + "/up?ticket=T1"; }

  // "ok" or what OutcomeText says; a time that varies is "N milliseconds". `downloaded_` gets the path.
  std::string Download(const std::string& url, const WideString& directory);
  std::string DownloadHere() { return Download(ServerUrl() + "/f?id=1", Wide(Target())); }
  // A download that fails and changes no file.
  void ExpectNoDownload(const std::string& url, const WideString& directory, const std::string& outcome);
  // A download into the file "target/NAME", which is all that changes.
  void ExpectDownload(const std::string& name, const std::string& content);
  // Runs the script "1" with this file as its only parameter; the value's text, or what OutcomeText says.
  std::string RunWith(const IAttachedFilePtr& file);
  // A file with this content to attach.
  IAttachedFilePtr File(const std::string& content) const;

  // Where downloads go.
  std::string Target() const { return files_.Path("target"); }
  Tree AllFiles() const { return TreeOf(files_.Path()); }

  // A download and a script with another file, after something has failed: each on a new connection, which
  // closes at the end.
  void ExpectNextDownloadWorks();
  void ExpectNextUploadWorks();
  // Once the kept connections are closed the process has as many descriptors as at the start of the test.
  // `stuck` of the server's ends may be open still: those that never learn that the client is gone.
  void ExpectNoDescriptorLeft(std::size_t stuck = 0) const;
  void ExpectDownloadsLeaveNothing() {
    ExpectNextDownloadWorks();
    ExpectNoDescriptorLeft();
  }
  void ExpectUploadsLeaveNothing(std::size_t stuck = 0) {
    CloseKeptConnections();
    ExpectNextUploadWorks();
    ExpectNoDescriptorLeft(stuck);
  }
  // The server's part of a whole upload: its address, the file, the script's value "arrived".
  RawScript WholeUpload() const;
  // So that a test that goes wrong ends.
  static void SetIdleTimeout(std::int64_t milliseconds) { Limit(&HttpOptions::idleTimeout, milliseconds); }

  PlainEnvironment environment_;
  TemporaryDirectory files_;  // home/, temp/, target/ and the current directory, here/
  EnvironmentVariable registry_;
  EnvironmentVariable programs_;  // what a test starts keeps its files elsewhere
  EnvironmentVariable temporary_;
  IConnectionModelPtr model_;
  WideString downloaded_;

 private:
  std::string before_;  // the current directory
  std::size_t descriptors_ = 0;
};

}  // namespace qv::test
