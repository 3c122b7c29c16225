#include "tools/page/static_files.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "devservice/values/text_scanner.h"
#include "tools/report/failure.h"

#ifndef SCRIPTWELLS_JAVASCRIPT_FOLDER
#error "SCRIPTWELLS_JAVASCRIPT_FOLDER comes from the build"
#endif

namespace qv::cli {

namespace {

using devservice::HttpAnswer;

struct LibraryFile {
  std::string_view path;  // below "lib/", and in the folder of the system's JavaScript
  const char* package;
};

constexpr LibraryFile kLibraryFiles[] = {
    {"codemirror/lib/codemirror.js", "libjs-codemirror"},
    {"codemirror/lib/codemirror.css", "libjs-codemirror"},
    {"codemirror/mode/javascript/javascript.js", "libjs-codemirror"},
    {"codemirror/addon/edit/matchbrackets.js", "libjs-codemirror"},
    {"codemirror/addon/edit/closebrackets.js", "libjs-codemirror"},
    {"codemirror/addon/display/placeholder.js", "libjs-codemirror"},
    {"codemirror/addon/selection/active-line.js", "libjs-codemirror"},
    {"chart.js/chart.min.js", "libjs-chart.js"},
};

struct ContentType {
  std::string_view end;
  const char* type;
};

constexpr ContentType kContentTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".mjs", "text/javascript; charset=utf-8"},
    {".svg", "image/svg+xml"},
    {".json", "application/json"},
};

const char* ContentTypeOf(std::string_view path) {
  for (const ContentType& row : kContentTypes)
    if (devservice::EndsWith(path, row.end)) return row.type;
  return "text/plain; charset=utf-8";
}

std::string PathOf(const LibraryFile& file) {
  return std::string(SCRIPTWELLS_JAVASCRIPT_FOLDER) + "/" + std::string(file.path);
}

std::optional<HttpAnswer> AnswerWith(std::string_view path, std::string content) {
  HttpAnswer answer = devservice::PlainAnswer(200, std::move(content));
  answer.contentType = ContentTypeOf(path);
  return answer;
}

std::optional<HttpAnswer> LibraryAnswer(std::string_view path) {
  const auto* const found = std::find_if(std::begin(kLibraryFiles), std::end(kLibraryFiles),
                                         [path](const LibraryFile& file) { return file.path == path; });
  if (found == std::end(kLibraryFiles)) return std::nullopt;
  std::ifstream file(PathOf(*found), std::ios::binary);
  std::ostringstream content;
  if (!file || !(content << file.rdbuf())) return std::nullopt;
  return AnswerWith(path, content.str());
}

}  // namespace

std::optional<HttpAnswer> StaticFile(std::string_view path) {
  constexpr std::string_view kLibraries = "lib/";
  if (devservice::StartsWith(path, kLibraries)) return LibraryAnswer(path.substr(kLibraries.size()));
  if (path.empty()) path = "index.html";
  for (const PageFile* file = kPageFiles; !file->name.empty(); ++file)
    if (file->name == path) return AnswerWith(path, std::string(file->content));
  return std::nullopt;
}

void CheckPageLibraries() {
  for (const LibraryFile& file : kLibraryFiles)
    if (::access(PathOf(file).c_str(), R_OK) != 0)
      throw Failure(ExitStatus::kLocal,
                    "--page needs " + PathOf(file) + ": install the package " + file.package);
}

}  // namespace qv::cli
