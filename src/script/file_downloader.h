// Fetches one file from a URL into a local directory.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

class CFileDownloader {
 public:
  CFileDownloader(const WideString& url, const WideString& proxyName, std::int32_t proxyPort,
                  const WideString& cookieHandle)
      : url_(url), proxyName_(proxyName), proxyPort_(proxyPort), cookieHandle_(cookieHandle) {}

  // The path of the file; `target` becomes it too. Failure as in CFileUploader::PostFile.
  WideString Download(const WideString& contextHandle, WideString& target);
  // The path that `target`, a directory or nothing, and the name in a Content-Disposition header make. The
  // name is what stands behind the last "=", untrimmed, whatever it holds: Download refuses to write a file
  // whose name would leave the directory (empty, ".", "..", with "/", "\" or a null unit). An exception of
  // any kind for a header without a name.
  static WideString ResolveTargetPath(const WideString& target, const WideString& header);

 private:
  WideString ProxyAddress() const;

  WideString url_;
  WideString proxyName_;
  std::int32_t proxyPort_;
  WideString cookieHandle_;
};

}  // namespace qv
