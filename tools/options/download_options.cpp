#include "tools/options/download_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

DownloadArguments::DownloadArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("download", "Download a file of a server and print its path")) {
  SetHelp(*command_, kDownloadExamples, kDownloadNotes);
  command_->add_option("URL", download_.url, "The file, such as http://host:port/path?query")->type_name("");
  directory_ =
      command_->add_option("DIR", download_.directory, "Where it is saved; default: here")->type_name("");
  command_->add_flag("--force", download_.force,
                     "Replace a file of the same name, and save a file whose name begins with '.'");
  session_.emplace(*command_, download_);
}

const char* DownloadArguments::Check() {
  if (download_.url.empty()) return "no file given (URL)";
  if (directory_->count() > 0 && download_.directory.empty()) return "DIR is empty; . is the current one";
  session_->TakeServer();  // without one, that of the URL is used
  return session_->Check();
}

}  // namespace qv::cli
