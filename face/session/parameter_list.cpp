#include "face/session/parameter_list.h"

#include <utf8.h>

#include <algorithm>
#include <set>

#include "face/session/local_path.h"
#include "face/values/wire_value.h"
#include "qvscriptwells/create_objects.h"
#include "text/utf8_codec.h"

namespace scriptwells {

namespace {

// They are counted in 16 bits.
constexpr std::size_t kMostArguments = 32767;

// Nothing is built for messages before there is one: these checks are a part of every call.
void RefuseLosses(const Value& value, const std::string& what) {
  const std::vector<std::string> losses = LossesOnTheWire(value);
  if (!losses.empty()) throw ConversionError(Phase::kConversion, what + " " + losses.front());
}

std::string Named(const Argument& argument) {
  return "argument '" + argument.Name() + "'";
}

qv::Variant ToParameter(const Argument& argument, bool strict) {
  if (const File* file = argument.GetFile()) {
    const std::string path = ReadablePath(file->path, "file");
    return qv::Variant::FromObject(qv::CreateAttachedFile(qv::FromUtf8(path)).get());
  }
  if (strict) RefuseLosses(*argument.GetValue(), Named(argument));
  try {
    return ToWire(*argument.GetValue());
  } catch (const ConversionError& error) {
    throw ConversionError(Phase::kConversion, Named(argument) + ": " + error.message());
  }
}

// The first argument whose name another has before it; null if there is none.
const Argument* FindRepeated(const Arguments& arguments) {
  constexpr std::size_t kFew = 16;
  std::set<std::string_view> names;  // only for many: it needs memory for each
  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    const auto isSame = [at](const Argument& other) { return other.Name() == at->Name(); };
    const bool isRepeated = arguments.size() <= kFew ? std::any_of(arguments.begin(), at, isSame)
                                                     : !names.insert(at->Name()).second;
    if (isRepeated) return &*at;
  }
  return nullptr;
}

void CheckNames(const Arguments& arguments, bool strict) {
  if (arguments.size() > kMostArguments)
    throw ConversionError(Phase::kConversion, "more than 32767 arguments");
  for (const Argument& argument : arguments) CheckText(argument.Name(), "name of an argument", strict);
  if (const Argument* const repeated = FindRepeated(arguments))
    throw ConversionError(Phase::kConversion, Named(*repeated) + " is given twice");
}

}  // namespace

qv::IParametersPtr MakeParameters(const Arguments& arguments, bool strict) {
  if (arguments.empty()) return {};
  CheckNames(arguments, strict);
  qv::IParametersPtr list = qv::CreateParameters();
  for (const Argument& argument : arguments)
    qv::ThrowIfFailed(list->Add(qv::FromUtf8(argument.Name()), ToParameter(argument, strict), nullptr));
  return list;
}

std::size_t CountFiles(const Arguments& arguments) noexcept {
  return static_cast<std::size_t>(
      std::count_if(arguments.begin(), arguments.end(),
                    [](const Argument& argument) { return argument.GetFile() != nullptr; }));
}

void CheckText(std::string_view text, const char* what, bool strict) {
  const auto refuse = [what](const char* reason) {
    throw ConversionError(Phase::kConversion, std::string("the ") + what + reason);
  };
  if (text.empty()) refuse(" is empty");
  // Most texts are ASCII, and this is quicker than the check of UTF-8.
  const std::string_view rest = text.substr(qv::AsciiPrefix(text));
  if (!utf8::is_valid(rest.begin(), rest.end())) refuse(" is not valid UTF-8");
  if (text.find('\0') != std::string_view::npos) refuse(" holds a null character, which would end it there");
  if (strict) RefuseLosses(Value(text), std::string("the ") + what);
}

}  // namespace scriptwells
