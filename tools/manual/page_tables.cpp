#include "tools/manual/page_tables.h"

#include <map>
#include <regex>

#include "tools/manual/roff.h"

namespace qv::cli {

namespace {

struct Row {
  const char* option;  // only for commands with this option; empty: for all
  const char* name;
  const char* text;
};

constexpr Row kTypes[] = {
    {"--parameter", "byte", "a whole number of 8 bits"},
    {"--parameter", "short", "a whole number of 16 bits"},
    {"--parameter", "int", "a whole number of 32 bits"},
    {"--parameter", "long", "a whole number of 64 bits"},
    {"--parameter", "boolean", "true, false, 1 or 0"},
    {"--parameter", "float", "a decimal number, with or without exponent"},
    {"--parameter", "double", "the same with twice the precision"},
    {"--parameter", "string", "any UTF-8 text, also none"},
    {"--parameter", "date", "such as 2024-03-05, a day of the years 1 to 9999"},
    {"--parameter", "time", "10:15, 10:15:30 or 10:15:30.5, up to three digits after the point"},
    {"--parameter", "datetime", "a date, T and a time"},
    {"--parameter", "duration",
     "such as P1Y2M3DT4H5M6.5S, with any of its units left out and - in front or not; whole numbers up to "
     "32767, and only seconds may have a fraction"},
    {"--parameter", "file", "the path of a regular file, which is uploaded"}};

constexpr Row kOutputs[] = {
    {"--output", "text", "the value as text, a table with aligned columns"},
    {"--output", "json", "one line of JSON with type, value and tag; the same as --json"},
    {"--output", "table", "aligned columns; of a single value its name, type and value"},
    {"--output", "csv", "CSV (RFC 4180), a single value as a table of one row and one column"}};

constexpr Row kExitStatuses[] = {
    {"", "0", "success"},
    {"", "1",
     "the script or the server reported a fault; a download got a status other than success; no registry "
     "file has "
     "the key; the program itself failed"},
    {"", "2", "invalid command line"},
    {"--server", "3", "the server was not reached, the connection broke, or TLS rejected it"},
    {"--server", "4",
     "no connection, or no byte, within the time allowed; an answer that is too slow; more than --max-time"},
    {"--server", "5", "the server rejected the session"},
    {"", "6",
     "a local file or directory (a damaged registry file and a full disk, too), a parameter, a missing home "
     "directory for an upload, an address or a credential; the service cannot listen; standard output cannot "
     "be "
     "written (without a message if its reader has ended)"},
    {"--server", "7",
     "an answer that cannot be read; the server found the request too long (HTTP status 413)"},
    {"--server", "130", "Ctrl-C or SIGTERM; the session is closed if that takes at most 5 seconds"}};

constexpr Row kVariables[] = {
    {"--password-file", "SCRIPTWELLS_PASSWORD",
     "The password, unless --password-file or --password-stdin is given"},
    {"--ca-file", "CURL_CA_BUNDLE", "Trust the authorities of this file, unless --ca-file is given"},
    {"--ca-file", "SSL_CERT_FILE", "The same, if CURL_CA_BUNDLE is not set"},
    {"--ca-file", "SSL_CERT_DIR", "Replaces the system's directory of authorities"},
    {"--server", "TERM", "A terminal of the type dumb shows no progress"},
    {"", "QV_REGISTRY", "A registry file that is read before all others"},
    {"", "XDG_CONFIG_HOME", "The directory of this user's settings; default: ~/.config"},
    {"", "TEMP, TMP, TMPDIR",
     "The directory for temporary files, the first of these that is set; default: /tmp"}};

constexpr Row kFiles[] = {
    {"--profile", "$XDG_CONFIG_HOME/scriptwells/config.toml", "The profiles of this user"},
    {"", "$XDG_CONFIG_HOME/quorvane/registry.reg", "The registry of this user"},
    {"", "/etc/quorvane/registry.reg", "The registry of the administrator"},
    {"--results", "FILE.journal", "With --results: which rows were run, for --resume"},
    {"--home", "DIR/serve.reg", "With --home: a registry that names DIR, while the service runs"},
    {"--home", "DIR/ClientScripts", "The upload scripts of a home directory"}};

bool Belongs(const Row& row, const CommandText& command) {
  return *row.option == '\0' || HasOption(command, row.option);
}

template <std::size_t kCount>
std::string Items(const Row (&rows)[kCount], const CommandText& command) {
  std::string items;
  for (const Row& row : rows)
    if (Belongs(row, command)) items += Item(Bold(row.name), Prose(row.text));
  return items;
}

// With the forms of one answer. `map` explains its own itself.
bool PrintsOneAnswer(const CommandText& command) {
  return std::any_of(command.options.begin(), command.options.end(), [](const OptionText& option) {
    return !option.IsArgument() && option.names.back() == "--output" &&
           std::find(option.choices.begin(), option.choices.end(), "text") != option.choices.end();
  });
}

// Of the options, and of their descriptions: "(environment: SCRIPTWELLS_SERVER)".
void CollectVariables(const OptionText& option, std::map<std::string, std::string>& variables) {
  static const std::regex kNamed(R"(\(environment: ([A-Z_]+)\))");
  std::string name = option.variable;
  std::smatch match;
  if (name.empty() && std::regex_search(option.description, match, kNamed)) name = match[1];
  if (!name.empty()) variables[name] = option.names.back();
}

}  // namespace

// The two tables explain values, so they stand with the options themselves, and not with the commands above.
std::string ParameterTypes(const CommandText& command) {
  return command.commands.empty() ? Items(kTypes, command) : "";
}

std::string OutputFormats(const CommandText& command) {
  return PrintsOneAnswer(command) ? Items(kOutputs, command) : "";
}

std::string ExitStatuses(const CommandText& command) {
  return Items(kExitStatuses, command);
}

std::string Variables(const CommandText& command) {
  std::map<std::string, std::string> variables;
  for (const CommandText* one : AllCommands(command))
    for (const OptionText& option : one->options) CollectVariables(option, variables);
  std::string items;
  for (const auto& [name, option] : variables)
    items += Item(Bold(name), Prose("Sets " + option + ", which overrides it"));
  return items + Items(kVariables, command);
}

std::string Files(const CommandText& command) {
  return Items(kFiles, command);
}

std::vector<std::string> ParameterTypeNames() {
  std::vector<std::string> names;
  for (const Row& row : kTypes) names.emplace_back(row.name);
  return names;
}

}  // namespace qv::cli
