#include "tools/transfer/saved_file.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <system_error>

#include "tools/output/answer_format.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"
#include "tools/report/standard_output.h"
#include "tools/transfer/failed_call.h"

namespace qv::cli {

namespace {

std::string ResultLine(const std::string& path, bool asJson, const std::ostream& out) {
  if (!asJson) return TextFor(out, path) + "\n";
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(path, error);
  nlohmann::ordered_json line;
  line["path"] = path;
  line["bytes"] = error ? nlohmann::ordered_json() : nlohmann::ordered_json(bytes);
  return JsonText(line) + "\n";
}

}  // namespace

void SaveFile(ScriptSession& session, const std::string& url, const std::string& directory, bool asJson,
              std::ostream& out) {
  out << ResultLine(session.Download(url, directory), asJson, out) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write the path to standard output");
}

std::string UrlOfAnswer(const scriptwells::Value& answer) {
  const std::string reason = "the answer is not the address of a file: ";
  if (!answer.Is<std::string>())
    throw Failure(ExitStatus::kAnswer, reason + "its type is " + TypeName(answer));
  auto url = answer.As<std::string>();
  try {
    ServerOfFile(url);
  } catch (const Failure& failure) {
    throw Failure(ExitStatus::kAnswer, reason + failure.Message());
  }
  return url;
}

std::string ServerOfFile(const std::string& url) {
  return Translated([&] { return scriptwells::Session::ServerOf(url); });
}

}  // namespace qv::cli
