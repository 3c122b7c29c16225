#include "bare_client.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace qv::bench {
namespace {

std::size_t Take(char* bytes, std::size_t size, std::size_t count, void* keep) {
  if (keep != nullptr) static_cast<std::string*>(keep)->append(bytes, size * count);
  return size * count;
}

struct FileCloser {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace

BareClient::BareClient(const std::string& url, const std::string& body) : curl_(curl_easy_init()) {
  headers_ = curl_slist_append(headers_, "Content-Type: text/xml");
  headers_ =
      curl_slist_append(headers_, "SOAPAction: " QV_NAMESPACE_HOST "/dev/ns/ivarnel/scriptwells#Execute");
  headers_ = curl_slist_append(headers_, "Accept:");
  headers_ = curl_slist_append(headers_, "Expect:");
  curl_easy_setopt(curl_, CURLOPT_URL, (url + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx").c_str());
  curl_easy_setopt(curl_, CURLOPT_PROXY, "");
  curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers_);
  curl_easy_setopt(curl_, CURLOPT_POSTFIELDS, body.c_str());
  curl_easy_setopt(curl_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  curl_easy_setopt(curl_, CURLOPT_WRITEFUNCTION, &Take);
}

BareClient::~BareClient() {
  curl_easy_cleanup(curl_);
  curl_slist_free_all(headers_);
}

bool BareClient::Post(std::string* keep) {
  curl_easy_setopt(curl_, CURLOPT_WRITEDATA, keep);
  return curl_easy_perform(curl_) == CURLE_OK;
}

BareTransfer::BareTransfer(const std::string& url) : curl_(curl_easy_init()) {
  for (const char* header : {"Accept:", "Expect:", "Content-Type:"})
    headers_ = curl_slist_append(headers_, header);
  curl_easy_setopt(curl_, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl_, CURLOPT_PROXY, "");
  curl_easy_setopt(curl_, CURLOPT_HTTPHEADER, headers_);
  curl_easy_setopt(curl_, CURLOPT_FAILONERROR, 1L);
}

BareTransfer::~BareTransfer() {
  curl_easy_cleanup(curl_);
  curl_slist_free_all(headers_);
}

// Without functions of ours libcurl reads and writes the file itself.
bool BareTransfer::Upload(const std::string& file) {
  const File source(std::fopen(file.c_str(), "rbe"));
  if (source == nullptr) return false;
  curl_easy_setopt(curl_, CURLOPT_POST, 1L);
  curl_easy_setopt(curl_, CURLOPT_READDATA, source.get());
  curl_easy_setopt(curl_, CURLOPT_POSTFIELDSIZE_LARGE,
                   static_cast<curl_off_t>(std::filesystem::file_size(file)));
  return curl_easy_perform(curl_) == CURLE_OK;
}

bool BareTransfer::Download(const std::string& file) {
  const File target(std::fopen(file.c_str(), "wbe"));
  if (target == nullptr) return false;
  curl_easy_setopt(curl_, CURLOPT_WRITEDATA, target.get());
  return curl_easy_perform(curl_) == CURLE_OK && std::fflush(target.get()) == 0;
}

}  // namespace qv::bench
