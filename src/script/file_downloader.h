// Downloads one file from a URL into a local directory.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"

namespace qv {

class CFileDownloader {
 public:
  CFileDownloader(const WideString& url, const WideString& proxyName, std::int32_t proxyPort,
                  const WideString& cookieHandle)
      : url_(url), proxyName_(proxyName), proxyPort_(proxyPort), cookieHandle_(cookieHandle) {}

  // Returns the path of the file, also in `target`. Failure as in CFileUploader::PostFile.
  WideString Download(const WideString& contextHandle, WideString& target);
  // The path from `target`, a directory or nothing, and the name in a Content-Disposition header. The name is
  // all text after the last "=", untrimmed and unchecked; Download rejects a name that would leave the
  // directory (empty, ".", "..", with "/", "\" or a null unit). Throws any exception for a header without a
  // name.
  static WideString ResolveTargetPath(const WideString& target, const WideString& header);

 private:
  WideString ProxyAddress() const;

  WideString url_;
  WideString proxyName_;
  std::int32_t proxyPort_;
  WideString cookieHandle_;
};

}  // namespace qv
