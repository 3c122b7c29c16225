#include "devservice/files/worker_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "devservice/files/spool.h"
#include "devservice/files/transfer_urls.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/names.h"
#include "devservice/values/random_id.h"

namespace qv::devservice {
namespace {

[[noreturn]] void Refuse(int code, const std::string& words) {
  throw FaultError(code, words, "script");
}

bool Contains(const std::vector<std::string>& texts, const std::string& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// Reads until the string is full; false when the file ends before.
bool Fill(int descriptor, std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = read(descriptor, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

const ReadableFile* WorkerFiles::Find(std::string_view ticket) const {
  for (const ReadableFile& file : job_.readable) {
    if (file.ticket == ticket) return &file;
  }
  return nullptr;
}

std::string WorkerFiles::Read(const ReadableFile& file) {
  if (file.size > kLargestContent)
    Refuse(kScriptThrew, "The file is larger than 64 MiB and cannot be read at once.");
  const int descriptor = open(file.path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) Refuse(kUnavailable, std::string("The file cannot be read: ") + std::strerror(errno));
  std::string bytes(file.size, '\0');
  const bool whole = Fill(descriptor, bytes);
  close(descriptor);
  if (!whole) Refuse(kUnavailable, "The file cannot be read to its end.");
  return bytes;
}

std::string WorkerFiles::NewUploadUrl() {
  if (made_.tickets.size() >= job_.ticketsLeft) Refuse(kTooManyFiles, "The session has too many tickets.");
  made_.tickets.push_back(RandomId());
  return ExpandUrl(job_.uploadUrl, made_.tickets.back());
}

std::string WorkerFiles::UploadUrl(const std::string& ticket) const {
  if (!Contains(job_.tickets, ticket) && !Contains(made_.tickets, ticket))
    Refuse(kUnknownTicket, "The file ticket \"" + ticket.substr(0, 100) + "\" is not one of this session.");
  return ExpandUrl(job_.uploadUrl, ticket);
}

std::string WorkerFiles::Publish(const std::string& name, std::string_view content) {
  CheckNewFile(name);
  if (content.size() > kLargestContent) Refuse(kScriptThrew, "The content is larger than 64 MiB.");
  SpoolWriter writer(NumberedPath(job_.newFilesPath, written_ + 1));
  if (!writer.Write(content.data(), content.size()) || !writer.Close()) {
    Refuse(kUnavailable, std::string("The file cannot be written: ") + std::strerror(writer.Error()));
  }
  writer.LeaveFile();
  ++written_;
  return AddFile(name, "");
}

std::string WorkerFiles::PublishUpload(const std::string& name, const std::string& ticket) {
  CheckNewFile(name);
  return AddFile(name, ticket);
}

void WorkerFiles::CheckNewFile(const std::string& name) const {
  if (!IsFileName(name)) {
    Refuse(
        kScriptThrew,
        "The name of a published file has 1 to 255 bytes, is not \".\" or \"..\", has no blank at its ends, "
        "and holds no control characters and none of \" ; = / \\.");
  }
  if (made_.files.size() >= job_.newFilesLeft)
    Refuse(kTooManyFiles, "The session has too many published files.");
}

std::string WorkerFiles::AddFile(const std::string& name, const std::string& ticket) {
  made_.files.push_back({RandomId(), name, ticket});
  return ExpandUrl(job_.fileUrl, made_.files.back().id);
}

}  // namespace qv::devservice
