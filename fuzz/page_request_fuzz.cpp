// Feeds what a browser may send to the page of the service: bodies of requests, and the query of an upload. A
// request that was taken is the same when it is written again; its texts for other programs hold its script
// and its parameters; a refusal is one line.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "qvscriptwells/xml_library_hold.h"
#include "scriptwells/value.h"
#include "tools/input/parameter_text.h"
#include "tools/page/call_request.h"
#include "tools/page/copy_texts.h"
#include "tools/page/page_error.h"
#include "tools/page/query_value.h"
#include "tools/page/shared_files.h"

namespace {

using nlohmann::json;
using qv::cli::CallRequest;
using qv::cli::PageParameter;
using qv::cli::PageScript;
using scriptwells::Value;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Without control characters, also those of two bytes.
bool IsOneLine(const std::string& text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : ' ');
    if (byte < 0x20 || byte == 0x7F || (byte == 0xC2 && next < 0xA0)) return false;
  }
  return true;
}

// Whether it was taken.
template <class Act>
bool Try(const Act& act) {
  try {
    act();
    return true;
  } catch (const qv::cli::PageError& error) {
    Require(error.Status() == 400);
    const json answer = json::parse(qv::cli::ErrorAnswer(error.Status(), error.what()).body);
    const std::string message = answer.at("error").at("message");
    Require(!message.empty() && IsOneLine(message));
    return false;
  }
}

// Of a parameter either the value or the file counts.
bool IsSame(const PageScript& a, const PageScript& b) {
  if (a.code != b.code || a.language != b.language || a.parameters.size() != b.parameters.size())
    return false;
  for (std::size_t i = 0; i < a.parameters.size(); ++i) {
    const PageParameter& one = a.parameters[i];
    const PageParameter& other = b.parameters[i];
    if (one.name != other.name || one.type != other.type || one.file != other.file) return false;
    if (one.file == 0 && one.value != other.value) return false;
  }
  return true;
}

void WriteAgain(const std::string& text, const CallRequest& request) {
  const CallRequest same = qv::cli::ParseCallRequest(json::parse(text).dump());
  Require(same.session == request.session && same.run == request.run && IsSame(same.script, request.script));
  const std::string script = qv::cli::ScriptJson(request.script);
  const CallRequest again = qv::cli::ParseCallRequest(script);
  Require(IsSame(again.script, request.script) && qv::cli::ScriptJson(again.script) == script);
}

// As a shell splits a command line whose parts are in apostrophes, with an escape outside of them only.
std::vector<std::string> ShellWords(const std::string& line) {
  std::vector<std::string> words(1);
  bool isQuoted = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const bool isEscaped = !isQuoted && line[at] == '\\';
    const char c = isEscaped ? line.at(++at) : line[at];
    if (isEscaped && c == '\n') continue;
    if (c == '\'' && !isEscaped)
      isQuoted = !isQuoted;
    else if (c == ' ' && !isQuoted && !isEscaped)
      words.emplace_back();
    else if (c == '\n' && !isQuoted)
      Require(at + 1 == line.size());
    else
      words.back() += c;
  }
  Require(!isQuoted);
  return words;
}

// The literals of texts that begin here, joined: C++ and Python agree on them.
std::string JoinedLiterals(const std::string& program, std::size_t at) {
  std::string text;
  for (at = program.find_first_not_of(" \n", at); program.at(at) == '"';
       at = program.find_first_not_of(" \n", at + 1))
    while (program.at(++at) != '"') {
      if (program[at] != '\\') {
        Require(program[at] != '\n');
        text += program[at];
      } else if (program.at(++at) >= '0' && program[at] <= '7') {
        text += static_cast<char>(std::stoi(program.substr(at, 3), nullptr, 8));
        at += 2;
      } else {
        text += program[at] == 'n' ? '\n' : program[at];
      }
    }
  return text;
}

void LookAtProgram(const std::string& program, const std::string& call, const std::string& code) {
  const std::size_t at = program.find(call);
  Require(at != std::string::npos && program.find('\0') == std::string::npos);
  Require(JoinedLiterals(program, at + call.size()) == code);
}

void LookAtParameter(const std::string& text, const PageParameter& parameter) {
  if (parameter.type == "file") {
    Require(text == parameter.name + "=file:a.txt");
    return;
  }
  const scriptwells::Argument argument = qv::cli::ParseParameter(text).argument;
  const Value value = scriptwells::Parse(parameter.type, parameter.value);
  Require(argument.Name() == parameter.name && argument.GetValue() != nullptr);
  Require(argument.GetValue()->type() == value.type() && argument.GetValue()->ToString() == value.ToString());
}

void LookAtCommand(const std::string& command, const PageScript& script) {
  Require(command.find('\0') == std::string::npos);
  if (command.front() == '#') return;  // the command line takes no such name
  std::size_t found = 0;
  const std::vector<std::string> words = ShellWords(command);
  for (const std::string& word : words)
    if (word.rfind("--parameter=", 0) == 0)
      LookAtParameter(word.substr(12), script.parameters.at(found++));
    else if (word.rfind("--language=", 0) == 0)
      Require(word.substr(11) == script.language);
  Require(found == script.parameters.size() && words.back() == "--eval=" + script.code);
}

void Copy(const PageScript& script, bool isOwnService) {
  qv::cli::CopyPlace place;
  place.server = "http://127.0.0.1:8080";
  place.user = "joe";
  place.needsPassword = true;
  place.isOwnService = isOwnService;
  place.registry = place.home = "/tmp/home";
  place.fileNames[1] = "a.txt";
  Try([&] {
    const qv::cli::CopyTexts texts = MakeCopyTexts(script, place);
    LookAtCommand(texts.command, script);
    LookAtProgram(texts.cpp, "session.Run(\n", script.code);
    LookAtProgram(texts.python, "session.run(\n", script.code);
    Require(texts.curl.find('\0') == std::string::npos);
  });
}

void LookAtBody(const std::string& text) {
  CallRequest request;
  if (Try([&] { request = qv::cli::ParseCallRequest(text); })) {
    WriteAgain(text, request);
    Copy(request.script, false);
    Copy(request.script, true);
  }
  for (const char* key : {"user", "password", "token", "run"}) {
    std::string value;
    if (Try([&] { value = qv::cli::TextIn(text, key); }))
      Require(qv::cli::TextIn(json{{key, value}}.dump(), key) == value);
  }
}

std::string PercentEncoded(const std::string& text) {
  std::string encoded;
  for (const char c : text) {
    char code[4];
    static_cast<void>(std::snprintf(code, sizeof code, "%%%02x", static_cast<unsigned char>(c)));
    encoded += code;
  }
  return encoded;
}

// It names a file.
void LookAtQuery(const std::string& text) {
  const std::string value = qv::cli::QueryValue("/page/api/files?" + text, "name");
  Require(value.size() <= text.size());
  const std::string name = qv::cli::PlainFileName(value);
  Require(!name.empty() && name.size() <= 200 && name.find_first_of("/\\") == std::string::npos);
  Require(name != "." && name != ".." && IsOneLine(name) && qv::cli::PlainFileName(name) == name);
  Require(qv::cli::QueryValue("/f?namex=1&name=" + PercentEncoded(text) + "&name=2", "name") == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  const std::string text(reinterpret_cast<const char*>(data), size);
  LookAtBody(text);
  LookAtQuery(text);
  return 0;
}
