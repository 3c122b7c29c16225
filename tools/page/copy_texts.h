// A call of the page as a person runs it elsewhere.
#pragma once

#include <map>
#include <string>

#include "tools/page/call_request.h"

namespace qv::cli {

// Where the call goes, and what it needs there. Secrets are not among it: a text has PASSWORD in its place.
struct CopyPlace {
  std::string server;
  std::string user;
  bool needsPassword = false;
  bool isOwnService = false;             // of `run --local`: only this program knows its user
  std::string registry;                  // names a home directory with the upload scripts; may be empty
  std::string home;                      // the same directory
  std::map<int, std::string> fileNames;  // by id
};

struct CopyTexts {
  std::string command;
  std::string cpp;
  std::string python;
  std::string curl;
};

// Complete texts that do the call: a command line for a shell, two programs, and a shell script. Files are
// read from the current directory. Throws PageError for parameters that cannot be sent.
CopyTexts MakeCopyTexts(const PageScript& script, const CopyPlace& place);

}  // namespace qv::cli
