#include "tools/registry_command.h"

#include <utf8.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "tools/failed_output.h"
#include "tools/failure.h"
#include "tools/json_text.h"
#include "tools/terminal_output.h"
#include "tools/text_table.h"

namespace qv::cli {

namespace {

using Json = nlohmann::ordered_json;

char Lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsSameKey(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lowered(x) == Lowered(y); });
}

WideString ToWide(const std::string& text, const char* what) {
  if (!utf8::is_valid(text.begin(), text.end()))
    throw Failure(ExitStatus::kLocal, std::string("the ") + what + " is not valid UTF-8");
  return FromUtf8(text);
}

// As the keys stand in exported files and in other programs.
std::string WithoutRoot(const std::string& key) {
  const std::pair<std::string, std::string> roots[] = {
      {"HKEY_LOCAL_MACHINE\\", ""}, {"HKEY_CLASSES_ROOT\\", ToUtf8(WideString(kClassesKey)) + "\\"}};
  for (const auto& [root, place] : roots)
    if (IsSameKey(key.substr(0, root.size()), root)) return place + key.substr(root.size());
  return key;
}

[[noreturn]] void RefuseKey(const std::string& key, const char* reason) {
  throw Failure(ExitStatus::kLocal, "the key '" + key + "' " + reason);
}

// Nothing else would ever look for such a key.
void CheckComponents(const std::string& key) {
  const bool hasBackslash = key.find('\\') != std::string::npos;
  if (!hasBackslash && key.find('/') != std::string::npos)
    RefuseKey(key, "has '/'; the components of a key are separated by a backslash '\\'");
  if (key.front() == '\\' || key.back() == '\\' || key.find("\\\\") != std::string::npos)
    RefuseKey(key, "has an empty component: a backslash '\\' stands between two components only");
}

WideString FullKey(const std::string& given) {
  if (IsSameKey(given, "home")) return WideString(kHomeDirectoryKey);
  const std::string key = WithoutRoot(given);
  if (key.empty()) throw Failure(ExitStatus::kLocal, "the key is empty");
  const WideString wide = ToWide(key, "key");
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

ExitStatus ReportDamage(const std::vector<RegistryLayer>& layers, bool asJson, std::ostream& err) {
  ExitStatus status = ExitStatus::kOk;
  for (const RegistryLayer& layer : layers) {
    if (layer.damage.empty()) continue;
    status = ExitStatus::kLocal;
    ReportFailure(Failure(status, layer.path + ": " + layer.damage), asJson, err);
  }
  return status;
}

[[noreturn]] void RefuseMissing(const RegistryOptions& options) {
  throw Failure(ExitStatus::kFault, "no file has the key '" + options.key + "'").Called("no such key");
}

ExitStatus Get(const RegistryOptions& options, std::ostream& out, std::ostream& err) {
  const WideString key = FullKey(options.key);
  const ExitStatus damage = ReportDamage(ReadRegistry(), options.json, err);
  const WideString value = ReadRegistryValue(key);
  if (value.IsNull() && damage == ExitStatus::kOk) RefuseMissing(options);
  if (value.IsNull()) return damage;  // it may stand in the damaged file
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

// What the library makes of such a home directory; empty when nothing is odd about it.
std::string OddityOfHome(const WideString& home) {
  if (home.size() == 0) return "an empty home directory is read as none";
  if (home.size() > kLongestHomeDirectory)
    return "a home directory of more than " + std::to_string(kLongestHomeDirectory) +
           " characters is read as none";
  if (NativePath(home).front() == '/') return "";
  return "a home directory that does not begin with '/' is looked for below the current directory of each "
         "program";
}

void WarnOfHome(const WideString& key, const WideString& value, bool asJson, std::ostream& err) {
  if (!IsSameKey(ToUtf8(key), ToUtf8(WideString(kHomeDirectoryKey)))) return;
  const std::string oddity = OddityOfHome(value);
  if (!oddity.empty()) ReportNote("warning", oddity, asJson, err);
}

ExitStatus Set(const RegistryOptions& options, std::ostream& out, std::ostream& err) {
  const WideString key = FullKey(options.key);
  const WideString value = ToWide(options.value, "value");
  WritePath(WriteRegistryValue(key, value), options, out);
  WarnOfHome(key, value, options.json, err);
  return ExitStatus::kOk;
}

ExitStatus Remove(const RegistryOptions& options, std::ostream& out, std::ostream&) {
  const std::string path = RemoveRegistryValue(FullKey(options.key));
  if (path.empty()) RefuseMissing(options);
  WritePath(path, options, out);
  return ExitStatus::kOk;
}

// One text of a file. What is null is not there: the key of a file without any, the name of a key's own text.
struct ListedText {
  const RegistryLayer* layer;
  RegistryValue text;
};

// Of each file the keys' own texts, then those with names; one row for a file without any.
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

ExitStatus List(const RegistryOptions& options, std::ostream& out, std::ostream& err) {
  const std::vector<RegistryLayer> layers = ReadRegistry();
  const std::vector<ListedText> texts = AllTexts(layers);
  Write(options.json ? JsonOf(texts) : TableOf(texts), out);
  return ReportDamage(layers, options.json, err);
}

struct VerbRow {
  RegistryVerb verb;
  ExitStatus (*run)(const RegistryOptions&, std::ostream&, std::ostream&);
};

constexpr VerbRow kVerbs[] = {{RegistryVerb::kGet, Get},
                              {RegistryVerb::kSet, Set},
                              {RegistryVerb::kRemove, Remove},
                              {RegistryVerb::kList, List}};

std::string WordsOf(const _com_error& error) {
  const std::string words = ToUtf8(error.Description());
  return words.empty() ? "failure " + HexCode(error.Error()) : words;
}

}  // namespace

ExitStatus RegistryCommand(const RegistryOptions& options, std::ostream& out, std::ostream& err) {
  try {
    for (const VerbRow& row : kVerbs)
      if (row.verb == options.verb) return row.run(options, out, err);
    return ExitStatus::kFault;
  } catch (const _com_error& error) {
    throw Failure(ExitStatus::kLocal, WordsOf(error));
  }
}

}  // namespace qv::cli
