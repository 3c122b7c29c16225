// What the page asks to be called.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qv::cli {

// A typed parameter; `file` is the id of a shared file if the type is "file".
struct PageParameter {
  std::string name;
  std::string type;
  std::string value;
  int file = 0;
};

// A script as in the editor.
struct PageScript {
  std::string code;
  std::string language = "JavaScript";
  std::vector<PageParameter> parameters;
};

struct CallRequest {
  int session = 0;
  std::string run;  // the page's name for this call
  PageScript script;
};

// Parses {"session": 1, "run": "r1", "code": "...", "language": "JavaScript", "parameters": [{"name": "a",
// "type": "int", "value": "2"}, {"name": "f", "type": "file", "file": 3}]}; only the code is required. Throws
// PageError.
CallRequest ParseCallRequest(std::string_view text);

// {"code": ..., "language": ..., "parameters": [...]}
std::string ScriptJson(const PageScript& script);

// A text of a JSON object, or nothing. Throws PageError if the body is no object or the text none.
std::string TextIn(std::string_view json, const char* key);

}  // namespace qv::cli
