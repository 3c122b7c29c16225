#include "tools/page/shared_files.h"

#include <utf8.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/page/page_error.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"

namespace qv::cli {

namespace {

using devservice::HttpAnswer;

constexpr std::size_t kLongestName = 200;

std::string PercentEncoded(const std::string& text) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string encoded;
  for (const char c : text) {
    char code[4];
    static_cast<void>(std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(c)));
    encoded += kPlain.find(c) == std::string_view::npos ? code : std::string(1, c);
  }
  return encoded;
}

std::string NotKept(int error) {
  return std::string("The file could not be kept: ") + std::strerror(error);
}

[[noreturn]] void RefuseContent(int error) {
  throw PageError(devservice::StatusOfWriteError(error), NotKept(error));
}

[[noreturn]] void RefuseCopy(const std::string& path, int error) {
  throw Failure(ExitStatus::kLocal, "cannot read the file " + path + ": " + std::strerror(error));
}

}  // namespace

// What the page sends, on its way to a file.
class SharedFiles::Sink : public devservice::BodySink {
 public:
  Sink(SharedFiles& files, std::string name)
      : files_(files), name_(std::move(name)), writer_(files.directory_.NewPath()) {}

  std::optional<HttpAnswer> Write(const char* bytes, std::size_t count) override {
    if (writer_.Write(bytes, count)) return std::nullopt;
    return Failed();
  }

  HttpAnswer Finish() override {
    if (!writer_.Close()) return Failed();
    try {
      SharedFile file;
      file.name = name_;
      file.content = writer_.TakeFile();
      return JsonAnswer(FileJson(files_.Add(std::move(file))));
    } catch (const PageError& error) {
      return ErrorAnswer(error.Status(), error.what());
    }
  }

 private:
  HttpAnswer Failed() const {
    return ErrorAnswer(devservice::StatusOfWriteError(writer_.Error()), NotKept(writer_.Error()));
  }

  SharedFiles& files_;
  const std::string name_;
  devservice::SpoolWriter writer_;
};

std::unique_ptr<devservice::BodySink> SharedFiles::Receive(const std::string& name) {
  return std::make_unique<Sink>(*this, PlainFileName(name));
}

SharedFile SharedFiles::CopyFrom(const std::string& path) {
  std::FILE* const source = std::fopen(path.c_str(), "rbe");
  if (source == nullptr) RefuseCopy(path, errno);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> owner(source, std::fclose);
  devservice::SpoolWriter writer(directory_.NewPath());
  char piece[65536];
  for (std::size_t got = 1; got > 0 && writer.Error() == 0;) {
    got = std::fread(piece, 1, sizeof piece, source);
    writer.Write(piece, got);
  }
  if (std::ferror(source) != 0) RefuseCopy(path, EIO);
  if (!writer.Close()) RefuseCopy(path, writer.Error());
  SharedFile file;
  file.name = PlainFileName(path);
  file.content = writer.TakeFile();
  return Add(std::move(file));
}

SharedFile SharedFiles::AddPublished(int session, const std::string& url) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& [id, file] : files_)
      if (file.session == session && file.url == url) return file;
  }
  SharedFile file;
  file.session = session;
  file.url = url;
  return Add(std::move(file));
}

SharedFile SharedFiles::Add(SharedFile file) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (files_.size() >= kMostFiles) throw PageError(507, "The page has 1000 files already; remove some.");
  file.id = ++last_;
  if (file.name.empty()) file.name = "file-" + std::to_string(file.id);
  files_[file.id] = file;
  return file;
}

std::string SharedFiles::NewDirectory() {
  std::string path = directory_.NewPath();
  std::error_code error;
  if (!std::filesystem::create_directory(path, error)) RefuseContent(error ? error.value() : EEXIST);
  return path;
}

SharedFile SharedFiles::SetContent(int id, const std::string& path) {
  std::error_code error;
  const std::uint64_t size = std::filesystem::file_size(path, error);
  if (error) RefuseContent(error.value());
  const auto content = std::make_shared<const devservice::SpooledFile>(path, size);
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = files_.find(id);
  if (found == files_.end()) throw PageError(404, "There is no such file.");
  found->second.name = PlainFileName(path);
  found->second.content = content;
  return found->second;
}

SharedFile SharedFiles::Get(int id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = files_.find(id);
  if (found == files_.end()) throw PageError(404, "There is no such file.");
  return found->second;
}

void SharedFiles::Remove(int id) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (files_.erase(id) == 0) throw PageError(404, "There is no such file.");
}

void SharedFiles::EndSession(int session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (auto at = files_.begin(); at != files_.end();)
    at = at->second.session == session && at->second.content == nullptr ? files_.erase(at) : std::next(at);
}

std::vector<SharedFile> SharedFiles::All() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<SharedFile> all;
  for (const auto& [id, file] : files_) all.push_back(file);
  return all;
}

std::string FileJson(const SharedFile& file) {
  nlohmann::ordered_json row = {{"id", file.id}, {"name", file.name}, {"size", nullptr}};
  if (file.content) row["size"] = file.content->Size();
  row["from"] = file.session == 0 ? "upload" : "script";
  return JsonText(row);
}

std::string PlainFileName(const std::string& path) {
  const std::string name = utf8::replace_invalid(path.substr(path.find_last_of("/\\") + 1));
  std::string plain;
  for (std::size_t at = 0; at < name.size(); ++at) {
    const auto byte = static_cast<unsigned char>(name[at]);
    // From U+0080 to U+009F they have two bytes.
    const bool isLong = byte == 0xC2 && static_cast<unsigned char>(name[at + 1]) < 0xA0;
    plain += byte < 0x20 || byte == 0x7F || isLong ? '_' : name[at];
    if (isLong) ++at;
  }
  std::size_t most = std::min(plain.size(), kLongestName);
  while (most < plain.size() && (static_cast<unsigned char>(plain[most]) & 0xC0) == 0x80) --most;
  plain.resize(most);
  return plain.empty() || plain == "." || plain == ".." ? "file" : plain;
}

HttpAnswer FileAnswer(const SharedFile& file) {
  HttpAnswer answer;
  answer.contentType = "application/octet-stream";
  answer.headers = "Content-Disposition: attachment; filename*=UTF-8''" + PercentEncoded(file.name) + "\r\n";
  answer.file = file.content;
  return answer;
}

}  // namespace qv::cli
