#include "tools/input/parameter_text.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

#include "scriptwells/error.h"
#include "tools/report/failure.h"
#include "tools/system/local_files.h"

namespace qv::cli {

namespace {

using scriptwells::Argument;
using scriptwells::ConversionError;
using scriptwells::Value;

constexpr char kFileType[] = "file";
constexpr const char* kTypes[] = {"byte",   "short", "int",  "long",     "boolean",  "float",  "double",
                                  "string", "date",  "time", "datetime", "duration", kFileType};

// Types to try for a value without a type, in this order. A file cannot be recognised.
constexpr const char* kGuesses[] = {"int",  "long", "double",   "boolean",
                                    "date", "time", "datetime", "duration"};
constexpr std::size_t kLongestExample = 40;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

std::string KnownTypes() {
  std::string names;
  for (const char* name : kTypes) names += (names.empty() ? "" : ", ") + std::string(name);
  return names;
}

bool IsOfType(const std::string& text, const char* name) {
  try {
    scriptwells::Parse(name, text);
    return true;
  } catch (const ConversionError&) {
    return false;
  }
}

std::string GuessedType(const std::string& text) {
  for (const char* name : kGuesses)
    if (IsOfType(text, name)) return name;
  return "string";
}

bool IsType(const std::string& name) {
  return std::any_of(std::begin(kTypes), std::end(kTypes), [&](const char* type) { return name == type; });
}

// "a=int:5" for "a=5".
std::string Example(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == 0 || equals == std::string::npos || text.size() > kLongestExample) return "a=int:5";
  const std::string name = text.substr(0, equals);
  const std::string value = text.substr(equals + 1);
  if (name.find(':') != std::string::npos || IsType(value)) return "a=int:5";
  return name + "=" + GuessedType(value) + ":" + value;
}

// Types that only answers have have their own reason.
[[noreturn]] void RefuseValue(const std::string& type, const std::string& reason) {
  const bool isUnknown = reason.rfind("unknown type ", 0) == 0;
  Refuse(isUnknown ? "unknown type '" + type + "' (known: " + KnownTypes() + ")" : reason);
}

Argument MakeArgument(const std::string& name, const std::string& type, const std::string& text) {
  if (type == kFileType) return {name, scriptwells::File{CheckForLibrary(text, "file")}};
  try {
    return {name, scriptwells::Parse(type, text)};
  } catch (const ConversionError& error) {
    RefuseValue(type, error.message());
  }
}

std::vector<std::string> NotesOn(const Argument& argument) {
  std::vector<std::string> notes;
  for (const std::string& loss : LossesOnTheWire(Value(argument.Name())))
    notes.push_back("has a name that " + loss);
  const Value* value = argument.GetValue();
  if (value == nullptr) return notes;
  const std::vector<std::string> losses = LossesOnTheWire(*value);
  notes.insert(value->Is<std::string>() ? notes.end() : notes.begin(), losses.begin(), losses.end());
  return notes;
}

}  // namespace

std::vector<std::string> ParameterTypes() {
  return {std::begin(kTypes), std::end(kTypes)};
}

ParameterParts SplitParameter(const std::string& text) {
  if (!utf8::is_valid(text.begin(), text.end())) Refuse("a parameter is not valid UTF-8");
  const std::size_t equals = text.find('=');
  const std::size_t colon = equals == std::string::npos ? equals : text.find(':', equals + 1);
  if (colon == std::string::npos || equals == 0)
    Refuse("parameter '" + text + "' is not of the form name=type:value, such as " + Example(text));
  return {text.substr(0, equals), text.substr(equals + 1, colon - equals - 1), text.substr(colon + 1)};
}

ScriptParameter ParseParameter(const std::string& text) {
  return MakeParameter(SplitParameter(text));
}

ScriptParameter MakeParameter(const ParameterParts& parts) {
  if (parts.name.empty()) Refuse("a parameter has no name");
  try {
    Argument argument = MakeArgument(parts.name, parts.type, parts.value);
    std::vector<std::string> notes = NotesOn(argument);
    return {std::move(argument), std::move(notes)};
  } catch (const Failure& failure) {
    Refuse("parameter '" + parts.name + "': " + failure.Message());
  }
}

}  // namespace qv::cli
