#include "script/file_downloader.h"

#include <unistd.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "qvscriptwells/native_path.h"
#include "soap/http_call.h"
#include "support/numbers.h"
#include "support/path_helpers.h"
#include "support/qv_url.h"
#include "support/string_helpers.h"
#include "support/tokenize_string.h"
#include "text/join_text.h"

namespace qv {
namespace {

// A name from the server must not leave the directory that the host chose.
void RequirePlainName(std::u16string_view name) {
  if (name.empty() || name == u"." || name == u".." ||
      name.find_first_of(std::u16string_view(u"/\\\0", 3)) != std::u16string_view::npos)
    throw std::runtime_error("the answer's file name leads elsewhere");
}

WideString NameFrom(const WideString& header) {
  std::vector<WideString> pieces;
  const std::size_t count = TokenizeString(header.view(), u"=", pieces);
  if (count == 0) throw std::runtime_error("the answer names no file");
  return pieces[count - 1];
}

// A directory that was created for the file is removed if the download fails.
class FreshDirectory {
 public:
  FreshDirectory() = default;
  FreshDirectory(const FreshDirectory&) = delete;
  FreshDirectory& operator=(const FreshDirectory&) = delete;
  ~FreshDirectory() {
    if (!path_.empty()) rmdir(path_.c_str());
  }
  WideString Make() {
    WideString directory = TempSubdirectoryName();
    path_ = NativePath(directory);  // before creation, since this may fail for lack of memory
    MakeTempSubdirectory(directory);
    return directory;
  }
  void Keep() { path_.clear(); }

 private:
  std::string path_;
};

WideString PathOf(const WideString& target, const WideString& name, FreshDirectory& fresh) {
  if (target.IsEmpty()) return JoinText({fresh.Make().view(), u"/", name.view()});
  return JoinText({AppendPathSeparator(target).view(), name.view()});
}

void Receive(const HttpCall& call, WideString& target) {
  FreshDirectory fresh;
  const WideString name = NameFrom(call.Header(u"Content-Disposition"));
  target = PathOf(target, name, fresh);
  RequirePlainName(name.view());
  std::int32_t uncounted = 0;
  call.Check(call.Request()->ReadToFile(target, &uncounted));
  fresh.Keep();
}

}  // namespace

WideString CFileDownloader::Download(const WideString& contextHandle, WideString& target) {
  HttpCall call;
  try {
    const WideString proxy = ProxyAddress();
    const CQvUrl url(url_);
    call.Create();
    call.Open(url, proxy);
    call.OpenRequest(u"GET", url.path, u"*/*");
    call.SetHeader(ToLower(u"usid"), contextHandle);
    if (!cookieHandle_.IsEmpty()) call.SetHeader(u"Cookie", cookieHandle_);
    call.Check(call.Request()->Send(u"", u""));
    Receive(call, target);
    call.Close();
    return target;
  } catch (...) {
    CloseAndRethrow(call);
  }
}

WideString CFileDownloader::ResolveTargetPath(const WideString& target, const WideString& header) {
  FreshDirectory fresh;
  WideString path = PathOf(target, NameFrom(header), fresh);
  fresh.Keep();
  return path;
}

WideString CFileDownloader::ProxyAddress() const {
  if (proxyName_.IsEmpty() || proxyPort_ == 0) return u"";
  return JoinText({proxyName_.view(), u":", DecimalText(proxyPort_).view()});
}

}  // namespace qv
