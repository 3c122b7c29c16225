// The files of one session: tickets with their uploads, and what scripts published.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "devservice/values/spooled_file.h"

namespace qv::devservice {

// A file as clients fetch it.
struct PublishedFile {
  std::string name;
  std::shared_ptr<const SpooledFile> file;
};

// Thread-safe. A file that is still being read or sent outlives it.
class SessionFiles {
 public:
  using File = std::shared_ptr<const SpooledFile>;

  // At most `most` tickets, and as many published files.
  explicit SessionFiles(std::size_t most) : most_(most) {}

  // Ends the session: forgets all files and accepts no more.
  void Close();

  bool HasTicket(const std::string& ticket) const;
  std::vector<std::string> Tickets() const;
  // The file that was last uploaded for a ticket; null for an unknown ticket or before its first upload.
  File Uploaded(const std::string& ticket) const;
  // Keeps an upload, in place of the one before; false when the ticket is not (or no longer) known.
  bool Store(const std::string& ticket, File file);

  // The published file with this id.
  std::optional<PublishedFile> Published(const std::string& id) const;

  // How many more tickets, and how many more published files, are allowed.
  std::size_t TicketsLeft() const;
  std::size_t PublishedLeft() const;
  // Adds what a script made; false, and nothing added, when there is no room or the session is over.
  bool Add(const std::vector<std::string>& tickets, std::map<std::string, PublishedFile> published);

 private:
  const std::size_t most_;
  mutable std::mutex mutex_;
  bool closed_ = false;
  std::map<std::string, File> uploads_;  // By ticket; null before the first upload.
  std::map<std::string, PublishedFile> published_;
};

}  // namespace qv::devservice
