// The files that the page has: those that it sent for scripts, and those that scripts have made.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "devservice/files/spool.h"
#include "devservice/http/http_message.h"

namespace qv::cli {

struct SharedFile {
  int id = 0;
  std::string name;                                        // without a path
  std::shared_ptr<const devservice::SpooledFile> content;  // null: a script's file that was not fetched yet
  int session = 0;                                         // whose script made it; 0: sent by the page
  std::string url;                                         // of a script's file; it holds a secret id
};

// Keeps contents in a private directory. Thread-safe.
class SharedFiles {
 public:
  static constexpr std::size_t kMostFiles = 1000;
  static constexpr std::uint64_t kMostBytes = std::uint64_t{4} << 30;  // of one file

  // A sink for a file of this name, which answers with its JSON.
  std::unique_ptr<devservice::BodySink> Receive(const std::string& name);
  // Copies a file of this machine. Throws Failure (kLocal).
  SharedFile CopyFrom(const std::string& path);
  // A file that a script has published at this address; the same for the same address.
  SharedFile AddPublished(int session, const std::string& url);
  // An empty directory for a download.
  std::string NewDirectory();
  // The file was downloaded to this path, which belongs to this object from now on. Throws PageError.
  SharedFile SetContent(int id, const std::string& path);

  // Throw PageError (404).
  SharedFile Get(int id) const;
  void Remove(int id);
  // Forgets files of the session that were not fetched: nobody can fetch them any more.
  void EndSession(int session);

  std::vector<SharedFile> All() const;

 private:
  class Sink;
  SharedFile Add(SharedFile file);

  devservice::SpoolDirectory directory_;
  mutable std::mutex mutex_;
  std::map<int, SharedFile> files_;
  int last_ = 0;
};

// {"id": 3, "name": "report.pdf", "size": 1204, "from": "upload"}; the size of a script's file is null, and
// its name a stopgap, until it was fetched.
std::string FileJson(const SharedFile& file);

// The last part of a path, without characters that the name of a file here, or a header, cannot have.
// Never empty.
std::string PlainFileName(const std::string& path);

// The answer that downloads the file.
devservice::HttpAnswer FileAnswer(const SharedFile& file);

}  // namespace qv::cli
