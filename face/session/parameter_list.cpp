#include "face/session/parameter_list.h"

#include <utf8.h>

#include <algorithm>
#include <set>

#include "face/session/local_path.h"
#include "face/values/wire_value.h"
#include "qvscriptwells/create_objects.h"

namespace scriptwells {

namespace {

// They are counted in 16 bits.
constexpr std::size_t kMostArguments = 32767;

void RefuseLosses(const Value& value, const std::string& what) {
  const std::vector<std::string> losses = LossesOnTheWire(value);
  if (!losses.empty()) throw ConversionError(Phase::kConversion, what + " " + losses.front());
}

qv::Variant ToParameter(const Argument& argument, bool strict) {
  const std::string what = "argument '" + argument.Name() + "'";
  if (const File* file = argument.GetFile()) {
    const std::string path = ReadablePath(file->path, "file");
    return qv::Variant::FromObject(qv::CreateAttachedFile(qv::FromUtf8(path)).get());
  }
  try {
    if (strict) RefuseLosses(*argument.GetValue(), what);
    return ToWire(*argument.GetValue());
  } catch (const ConversionError& error) {
    if (error.message().rfind(what, 0) == 0) throw;
    throw ConversionError(Phase::kConversion, what + ": " + error.message());
  }
}

void CheckNames(const Arguments& arguments, bool strict) {
  if (arguments.size() > kMostArguments)
    throw ConversionError(Phase::kConversion, "more than 32767 arguments");
  std::set<std::string_view> names;
  for (const Argument& argument : arguments) {
    CheckText(argument.Name(), "name of an argument", strict);
    if (!names.insert(argument.Name()).second)
      throw ConversionError(Phase::kConversion, "argument '" + argument.Name() + "' is given twice");
  }
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
  const std::string start = std::string("the ") + what;
  const auto refuse = [&start](const char* reason) {
    throw ConversionError(Phase::kConversion, start + reason);
  };
  if (text.empty()) refuse(" is empty");
  if (!utf8::is_valid(text.begin(), text.end())) refuse(" is not valid UTF-8");
  if (text.find('\0') != std::string_view::npos) refuse(" holds a null character, which would end it there");
  if (strict) RefuseLosses(Value(text), start);
}

}  // namespace scriptwells
