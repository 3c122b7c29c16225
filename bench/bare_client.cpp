#include "bare_client.h"

namespace qv::bench {
namespace {

std::size_t Take(char* bytes, std::size_t size, std::size_t count, void* keep) {
  if (keep != nullptr) static_cast<std::string*>(keep)->append(bytes, size * count);
  return size * count;
}

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

}  // namespace qv::bench
