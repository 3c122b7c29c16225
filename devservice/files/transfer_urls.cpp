#include "devservice/files/transfer_urls.h"

#include "devservice/values/random_id.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kUploadPath = "/WebEditor/FileManagerUpload.aspx";
constexpr std::string_view kFilesPath = "/files/";
constexpr std::string_view kMark = "{id}";
constexpr std::size_t kIdDigits = 32;

// A path as part of an address. "=" is escaped too: clients look for the first one.
std::string EscapePath(std::string_view path) {
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/+";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const char c : path) {
    if (kPlain.find(c) != std::string_view::npos) {
      result += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    result += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return result;
}

// The address of this service as the sender knows it, up to the path. It names the port of https, since
// clients use port 80 for every scheme.
std::string OriginOf(const HttpRequest& request) {
  if (request.forwardedProto != "https") return "http://" + request.host;
  const std::size_t bracket = request.host.rfind(']');
  const std::size_t colon = request.host.find(':', bracket == std::string::npos ? 0 : bracket);
  return "https://" + request.host + (colon == std::string::npos ? ":443" : "");
}

}  // namespace

std::string UrlOfRequest(const HttpRequest& request) {
  return OriginOf(request) + EscapePath(request.path);
}

TransferUrls MakeTransferUrls(const HttpRequest& request, std::string_view servicePath,
                              const TransferForms& forms) {
  const std::string_view prefix =
      std::string_view(request.path).substr(0, request.path.size() - servicePath.size());
  const std::string start = OriginOf(request) + EscapePath(prefix);
  TransferUrls urls;
  urls.upload = start + std::string(kUploadPath) + "?ticket=" + std::string(kMark) + forms.ticketEnd;
  if (forms.uploadUrl) urls.upload = forms.uploadUrl;
  urls.file = start + std::string(kFilesPath) + std::string(kMark) + "/";
  return urls;
}

std::string ExpandUrl(const std::string& pattern, const std::string& id) {
  const std::size_t at = pattern.find(kMark);
  if (at == std::string::npos) return pattern;
  return pattern.substr(0, at) + id + pattern.substr(at + kMark.size());
}

bool IsUploadPath(std::string_view path) {
  return EndsWith(path, kUploadPath);
}

std::optional<std::string> PublishedIdIn(std::string_view path) {
  constexpr std::size_t kLength = kFilesPath.size() + kIdDigits + 1;
  if (path.size() < kLength) return std::nullopt;
  const std::string_view end = path.substr(path.size() - kLength);
  const std::string_view id = end.substr(kFilesPath.size(), kIdDigits);
  if (!StartsWith(end, kFilesPath) || end.back() != '/' || !IsRandomId(id)) return std::nullopt;
  return std::string(id);
}

}  // namespace qv::devservice
