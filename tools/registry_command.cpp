#include "tools/commands.h"

#include <utf8.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "tools/output/text_table.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"
#include "tools/report/reporter.h"
#include "tools/report/standard_output.h"
#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

WideString ToWide(const std::string& text, const char* what) {
  if (!utf8::is_valid(text.begin(), text.end()))
    throw Failure(ExitStatus::kLocal, std::string("the ") + what + " is not valid UTF-8");
  return FromUtf8(text);
}

std::string MessageOf(const _com_error& error) {
  const std::string message = ToUtf8(error.Description());
  return message.empty() ? "failure " + HexCode(static_cast<std::uint32_t>(error.Error())) : message;
}

// Exported files and other programs write keys with these roots.
std::string WithoutRoot(const std::string& key) {
  const std::pair<std::string, std::string> roots[] = {
      {"HKEY_LOCAL_MACHINE\\", ""}, {"HKEY_CLASSES_ROOT\\", ToUtf8(WideString(kClassesKey)) + "\\"}};
  for (const auto& [root, place] : roots)
    if (IsSameName(key.substr(0, root.size()), root)) return place + key.substr(root.size());
  return key;
}

[[noreturn]] void RefuseKey(const std::string& key, const char* reason) {
  throw Failure(ExitStatus::kLocal, "the key '" + key + "' " + reason);
}

// No program reads such a key.
void CheckComponents(const std::string& key) {
  const bool hasBackslash = key.find('\\') != std::string::npos;
  if (!hasBackslash && key.find('/') != std::string::npos)
    RefuseKey(key, "has '/'; the components of a key are separated by a backslash '\\'");
  if (key.front() == '\\' || key.back() == '\\' || key.find("\\\\") != std::string::npos)
    RefuseKey(key, "has an empty component: a backslash '\\' separates two components");
}

WideString FullKey(const std::string& given) {
  if (IsSameName(given, "home")) return WideString(kHomeDirectoryKey);
  const std::string key = WithoutRoot(given);
  if (key.empty()) throw Failure(ExitStatus::kLocal, "the key is empty");
  WideString wide = ToWide(key, "key");
  CheckComponents(key);
  return wide;
}

std::string Dump(const Json& line) {
  return JsonText(line) + "\n";
}

void Write(const std::string& text, std::ostream& out) {
  out << TextFor(out, text) << std::flush;
  if (!out) throw FailedOutput(out, "cannot write to standard output");
}

ExitStatus ReportDamage(const std::vector<RegistryLayer>& layers, const Reporter& reporter) {
  ExitStatus status = ExitStatus::kOk;
  for (const RegistryLayer& layer : layers) {
    if (layer.damage.empty()) continue;
    status = ExitStatus::kLocal;
    reporter.Report(Failure(status, layer.path + ": " + layer.damage));
  }
  return status;
}

[[noreturn]] void RefuseMissing(const RegistryOptions& options) {
  throw Failure(ExitStatus::kFault, "no file has the key '" + options.key + "'").Called("no such key");
}

ExitStatus Get(const RegistryOptions& options, std::ostream& out, const Reporter& reporter) {
  const WideString key = FullKey(options.key);
  const ExitStatus damage = ReportDamage(ReadRegistry(), reporter);
  const WideString value = ReadRegistryValue(key);
  if (value.IsNull() && damage == ExitStatus::kOk) RefuseMissing(options);
  if (value.IsNull()) return damage;  // the damaged file may have it
  Json line;
  line["key"] = ToUtf8(key);
  line["value"] = ToUtf8(value);
  Write(options.json ? Dump(line) : ToUtf8(value) + "\n", out);
  return damage;
}

void WritePath(const std::string& path, const RegistryOptions& options, std::ostream& out) {
  Json line;
  line["file"] = path;
  Write(options.json ? Dump(line) : path + "\n", out);
}

// Why the library does not read this home directory as the user may expect; else empty.
std::string OddityOfHome(const WideString& home) {
  if (home.size() == 0) return "an empty home directory is read as none";
  if (home.size() > kLongestHomeDirectory)
    return "a home directory of more than " + std::to_string(kLongestHomeDirectory) +
           " characters is read as none";
  if (NativePath(home).front() == '/') return "";
  return "a home directory that does not begin with '/' is looked for below the current directory of each "
         "program";
}

void WarnOfHome(const WideString& key, const WideString& value, const Reporter& reporter) {
  if (!IsSameName(ToUtf8(key), ToUtf8(WideString(kHomeDirectoryKey)))) return;
  const std::string oddity = OddityOfHome(value);
  if (!oddity.empty()) reporter.Warn(oddity);
}

ExitStatus Set(const RegistryOptions& options, std::ostream& out, const Reporter& reporter) {
  const WideString key = FullKey(options.key);
  const WideString value = ToWide(options.value, "value");
  WritePath(WriteRegistryValue(key, value), options, out);
  WarnOfHome(key, value, reporter);
  return ExitStatus::kOk;
}

ExitStatus Remove(const RegistryOptions& options, std::ostream& out, const Reporter&) {
  const std::string path = RemoveRegistryValue(FullKey(options.key));
  if (path.empty()) RefuseMissing(options);
  WritePath(path, options, out);
  return ExitStatus::kOk;
}

// One text of a file. The key is null for a file without texts, the name for the text of the key itself.
struct ListedText {
  const RegistryLayer* layer;
  RegistryValue text;
};

// For each file the texts of the keys themselves, then those with names; one row for a file without texts.
std::vector<ListedText> AllTexts(const std::vector<RegistryLayer>& layers) {
  std::vector<ListedText> all;
  for (const RegistryLayer& layer : layers) {
    for (const RegistryEntry& entry : layer.entries)
      all.push_back({&layer, {entry.key, WideString(), entry.value}});
    for (const RegistryValue& named : layer.named) all.push_back({&layer, named});
    if (layer.entries.empty() && layer.named.empty()) all.push_back({&layer, {}});
  }
  return all;
}

std::string TableOf(const std::vector<ListedText>& texts) {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(texts.size());
  for (const auto& [layer, text] : texts)
    rows.push_back({layer->path, ToUtf8(text.key), ToUtf8(text.name), ToUtf8(text.value), layer->damage});
  return FormatColumns({"FILE", "KEY", "NAME", "VALUE", "DAMAGE"}, rows);
}

Json TextOrNull(const WideString& text) {
  return text.IsNull() ? Json() : Json(ToUtf8(text));
}

std::string JsonOf(const std::vector<ListedText>& texts) {
  std::string lines;
  for (const auto& [layer, text] : texts) {
    Json line;
    line["file"] = layer->path;
    line["key"] = TextOrNull(text.key);
    line["name"] = TextOrNull(text.name);
    line["value"] = TextOrNull(text.value);
    line["damage"] = layer->damage.empty() ? Json() : Json(layer->damage);
    lines += Dump(line);
  }
  return lines;
}

ExitStatus List(const RegistryOptions& options, std::ostream& out, const Reporter& reporter) {
  const std::vector<RegistryLayer> layers = ReadRegistry();
  const std::vector<ListedText> texts = AllTexts(layers);
  Write(options.json ? JsonOf(texts) : TableOf(texts), out);
  return ReportDamage(layers, reporter);
}

struct VerbRow {
  RegistryVerb verb;
  ExitStatus (*run)(const RegistryOptions&, std::ostream&, const Reporter&);
};

constexpr VerbRow kVerbs[] = {{RegistryVerb::kGet, Get},
                              {RegistryVerb::kSet, Set},
                              {RegistryVerb::kRemove, Remove},
                              {RegistryVerb::kList, List}};

}  // namespace

ExitStatus RegistryCommand(const RegistryOptions& options, std::ostream& out, std::ostream& err) {
  try {
    for (const VerbRow& row : kVerbs)
      if (row.verb == options.verb) return row.run(options, out, Reporter(err, FormOf(options.json)));
    return ExitStatus::kFault;
  } catch (const _com_error& error) {
    throw Failure(ExitStatus::kLocal, MessageOf(error));
  }
}

}  // namespace qv::cli
