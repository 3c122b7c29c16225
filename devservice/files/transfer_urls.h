// The addresses of uploads and of published files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "devservice/http/http_message.h"
#include "devservice/http/odd_forms.h"

namespace qv::devservice {

// Addresses with "{id}" in place of a ticket or of the id of a published file.
struct TransferUrls {
  std::string upload;
  std::string file;
};

// The address of the request itself, without its query. Pure; any thread.
std::string UrlOfRequest(const HttpRequest& request);

// The addresses under which the sender of `request` reaches this service: its Host header, "https" if a proxy
// says so, and the prefix of its path before `servicePath`, which ends it. Pure; any thread.
TransferUrls MakeTransferUrls(const HttpRequest& request, std::string_view servicePath,
                              const TransferForms& forms);

// Puts an id into an address.
std::string ExpandUrl(const std::string& pattern, const std::string& id);

// Whether a path, with any prefix, is that of uploads.
bool IsUploadPath(std::string_view path);

// The id of the published file that a path, with any prefix, names; nothing for another path.
std::optional<std::string> PublishedIdIn(std::string_view path);

}  // namespace qv::devservice
