// Uploads the local file of a parameter: a script on the server returns a URL with a ticket, and the file is
// sent to that URL. In the request the ticket replaces the file.
#pragma once

#include "qvscriptwells/objects.h"
#include "soap/qv_command.h"
#include "support/qv_url.h"

namespace qv {

// For one file. Failure of Upload and ObtainUploadUrl: EQvException passes through, anything else becomes
// EQvException "Unknown Http problem.", code 0. Nothing is rolled back: after a failed transfer the file
// object holds the new ticket.
class CFileUploader {
 public:
  CFileUploader(const WideString& serviceUrl, const WideString& uploadUrl)
      : serviceUrl_(serviceUrl), uploadUrl_(uploadUrl) {}
  virtual ~CFileUploader() = default;

  // Returns the ticket. `map` is the command's; "Proxy", "CookieHandle" and "ContextHandle" are optional.
  WideString Upload(IAttachedFile* attachedFile, const NamedArguments& map);
  // Runs one of the two scripts of the home directory (support/path_helpers.h), directly and never through a
  // proxy.
  WideString ObtainUploadUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                             const CQvUrl& serviceUrl);
  // The text between the first "=" and the next; null without one.
  static WideString ExtractTicket(const WideString& uploadUrl);
  // Throws EQvException with the component's message, or "Unknown Http problem."; `_com_error` E_POINTER if
  // there was no request or session to close after a failure.
  void PostFile(const CQvUrl& url, const WideString& proxy, const WideString& contextHandle,
                const WideString& fileName);

 private:
  WideString UploadNow(IAttachedFile* attachedFile, const NamedArguments& map);
  WideString AskForUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                       const CQvUrl& serviceUrl);

  WideString serviceUrl_;
  WideString uploadUrl_;  // never read
  WideString cookieHandle_{u""};
};

}  // namespace qv
