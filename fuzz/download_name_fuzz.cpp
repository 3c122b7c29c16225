// Feeds downloads with the Content-Disposition of a server. Whatever it holds, a file is written into the
// directory that was chosen or nowhere, and a directory that was made for a refused file is gone.
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fixtures/fake_http.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/native_path.h"
#include "script/file_downloader.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string MakeTemp() {
  char name[] = "/tmp/download_name_fuzz.XXXXXX";
  Require(mkdtemp(name) != nullptr);
  setenv("TEMP", name, 1);
  return name;
}

// `path` is a file of `directory` itself.
void RequireInside(const std::string& path, const std::string& directory) {
  Require(path.compare(0, directory.size() + 1, directory + "/") == 0);
  const std::string name = path.substr(directory.size() + 1);
  Require(!name.empty() && name != "." && name != "..");
  Require(name.find_first_of(std::string_view("/\0", 2)) == std::string::npos);
}

// True when the component was asked to write; *target is the path then.
bool Download(const qv::WideString& header, qv::WideString* target) {
  qv::FakeHttp http;
  qv::HttpAnswer answer;
  answer.headers[u"Content-Disposition"] = header;
  http.AnswerAs(answer);
  try {
    qv::CFileDownloader(u"http://h/f", u"", 0, u"").Download(u"u", *target);
  } catch (const qv::EQvException& failure) {
    Require(failure.Description() == qv::WideString(u"Unknown Http problem."));
  }
  Require(http.LiveObjects() == 0);
  return !http.CallsNamed("ReadToFile").empty();
}

void IntoAChosenDirectory(const qv::WideString& header) {
  qv::WideString target(u"/t");
  if (Download(header, &target)) RequireInside(qv::NativePath(target), "/t");
}

void IntoANewDirectory(const qv::WideString& header) {
  static const std::string temp = MakeTemp();
  qv::WideString target;
  if (Download(header, &target)) {
    const std::string path = qv::NativePath(target);
    const std::string directory = path.substr(0, path.rfind('/'));
    RequireInside(directory, temp);
    RequireInside(path, directory);
    Require(rmdir(directory.c_str()) == 0);
  }
  struct stat facts {};
  Require(stat(temp.c_str(), &facts) == 0 && facts.st_nlink == 2);  // no directory is left
}

// The rule of the path takes any name; this one is its last piece in other words.
void LookAtPath(const qv::WideString& header) {
  try {
    const qv::WideString path = qv::CFileDownloader::ResolveTargetPath(u"t", header);
    Require(path.view().substr(0, 2) == u"t\\");
    const std::u16string_view name = path.view().substr(2);
    Require(header.size() >= name.size() + 1);
    Require(header.view().substr(header.size() - name.size()) == name);
    Require(header.view()[header.size() - name.size() - 1] == u'=');
    Require(name.find(u'=', 1) == std::u16string_view::npos);
  } catch (const std::exception&) {  // no name
    Require(header.view().find(u'=') == std::u16string_view::npos || header.view().front() == u'=');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const qv::WideString header = qv::FromUtf8({reinterpret_cast<const char*>(data), size});
  LookAtPath(header);
  IntoAChosenDirectory(header);
  if (size % 64 == 0) IntoANewDirectory(header);  // directories are slow
  return 0;
}
