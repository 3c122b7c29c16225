// Brings the local file of a parameter to the server: a script on the server is asked for an address, which
// holds a ticket, and the file goes there. The ticket stands for the file in the request.
#pragma once

#include "qvscriptwells/objects.h"
#include "soap/qv_command.h"
#include "support/qv_url.h"

namespace qv {

// Lives for one file. Failure of Upload and ObtainUploadUrl: EQvException passes, anything else becomes
// EQvException "Unknown Http problem.", code 0. What was done before a failure stays done: after a failed
// transfer the file object holds the new ticket.
class CFileUploader {
 public:
  CFileUploader(const WideString& serviceUrl, const WideString& uploadUrl)
      : serviceUrl_(serviceUrl), uploadUrl_(uploadUrl) {}
  virtual ~CFileUploader() = default;

  // The ticket. `map` is the command's: "Proxy", "CookieHandle" and "ContextHandle" are read, if they are
  // there.
  WideString Upload(IAttachedFile* attachedFile, const NamedArguments& map);
  // Runs one of the two scripts of the home directory (support/path_helpers.h), directly and never through a
  // proxy.
  WideString ObtainUploadUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                             const CQvUrl& serviceUrl);
  // What stands behind the first "=", up to the next; null without one.
  static WideString ExtractTicket(const WideString& uploadUrl);
  // Raises EQvException with the component's words, or "Unknown Http problem."; `_com_error` E_POINTER when
  // there was no request or session to close after a failure.
  void PostFile(const CQvUrl& url, const WideString& proxy, const WideString& contextHandle,
                const WideString& fileName);

 private:
  WideString UploadNow(IAttachedFile* attachedFile, const NamedArguments& map);
  WideString AskForUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                       const CQvUrl& serviceUrl);

  WideString serviceUrl_;
  WideString uploadUrl_;  // of no use to any step
  WideString cookieHandle_{u""};
};

}  // namespace qv
