// What the parser of the command line produces: a command and its settings.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/output/output_format.h"
#include "tools/settings/settled_setting.h"

namespace qv::cli {

enum class Command {
  kText,
  kUsageError,
  kProfileError,
  kRun,
  kMap,
  kShell,
  kDownload,
  kSession,
  kServe,
  kRegistry,
  kDescribe,
  kConfig,
  kTape,
  kCheck,
  kExplain
};

// In milliseconds, rounded up, so that a short time never becomes 0 (no limit).
inline std::int64_t Milliseconds(double seconds) {
  return static_cast<std::int64_t>(std::ceil(seconds * 1000));
}

// How a session is opened, and how failures are reported. Times are in seconds.
struct SessionOptions {
  std::string server;
  std::string proxy;
  std::string user;
  std::string replica;
  std::string passwordFile;
  std::string passwordCommand;       // whose first line is the password; empty: none
  bool passwordFileIsSaved = false;  // in a profile, so nobody else may read it
  std::string caFile;                // for https, PEM: trusts only these authorities; empty: the usual ones
  std::string certificateFile;       // of this client, PEM
  std::string keyFile;               // empty: in the same file
  bool passwordFromInput = false;
  std::string usid;   // of a session to use; empty: a new one is opened
  bool json = false;  // result and failure, both as JSON
  double timeoutSeconds = 60;
  double connectTimeoutSeconds = 30;
  double maxTimeSeconds = 0;  // for all requests together; 0: no limit
  std::string traceFile;      // of the exchanges with the server; "-": standard error; empty: none
  bool traceSecrets = false;  // not masked there
  std::string recordFile;     // a tape of the exchanges; empty: none
  std::string replayFile;     // a tape in place of the server; empty: none
};

// Of all commands that run scripts.
struct ScriptOptions : SessionOptions {
  std::vector<std::string> parameters;  // "name=type:value", not checked yet
  bool local = false;                   // run in a service of this process; else on `server`
  std::string language = "JavaScript";
  OutputFormat output = OutputFormat::kText;
};

// Of `run` and `run-document`.
struct RunOptions : ScriptOptions {
  bool document = false;  // `file` is a script document; `code` and `language` are unused
  std::string file;       // "-" is standard input; empty if there is code
  std::string code;
  std::string csvNull;  // no value in CSV; needs no quotes
  std::string
      saveDirectory;   // the answer is the URL of a file to download into this directory; empty: print it
  bool force = false;  // with a directory: as in DownloadOptions
  bool watch = false;  // run again after each save of `file`
  bool page = false;   // with `local`: put the script on a page in place of running it
};

struct MapOptions : SessionOptions {
  std::string file;  // as in RunOptions
  std::string code;
  std::string rows;  // a CSV file
  std::string language = "JavaScript";
  int jobs = 4;
  OutputFormat output = OutputFormat::kCsv;  // or kJson
  std::string results;                       // a file; empty: standard output, and no journal
  std::string failed;                        // a file; empty: named after another
  bool resume = false;
  bool retryUnknown = false;
  bool force = false;  // replace files of an earlier start
};

struct DownloadOptions : SessionOptions {
  std::string url;
  std::string directory;  // empty: the current one
  bool force = false;     // replace a file, and save a name that begins with "."
};

struct ShellOptions : ScriptOptions {
  bool history = true;  // kept in a file
};

enum class SessionVerb { kOpen, kClose };

struct SessionCommandOptions : SessionOptions {
  SessionVerb verb = SessionVerb::kOpen;
};

struct ServeOptions {
  std::string host = "127.0.0.1";
  std::vector<std::string> names;  // further names of the host
  int port = 0;
  std::string usersFile;
  double scriptTimeoutSeconds = 5;
  int scriptMemoryMegabytes = 256;
  std::string home;               // home directory for clients on this machine, while the service runs
  bool installHome = false;       // permanently: in the registry
  bool json = false;              // the address, messages and failures as JSON
  bool page = false;              // with a page for people
  bool control = false;           // a control interface for tests; only with `json`, which shows its address
  std::vector<std::string> odds;  // odd answers for requests to come, as typed
  bool untilEof = false;          // stop also at the end of standard input
};

enum class RegistryVerb { kGet, kSet, kRemove, kList };

struct RegistryOptions {
  RegistryVerb verb = RegistryVerb::kList;
  std::string key;    // as typed, also "home"; not for kList
  std::string value;  // for kSet
  bool json = false;
};

enum class ConfigVerb { kShow, kSet, kUnset, kPath, kProfiles };

struct ConfigOptions {
  ConfigVerb verb = ConfigVerb::kShow;
  std::string profile;  // of --profile; for kSet and kUnset
  std::string key;      // for kSet and kUnset: a setting, or "default"
  std::string value;    // for kSet
  RunOptions checked;   // for kSet: this setting alone, as the flag sets it
  bool json = false;
  std::vector<SettledSetting> settings;  // for kShow
};

struct DescribeOptions {
  std::string object;  // "Parameters" or "Parameters.Add"; empty: all
  bool json = false;
  bool markdown = false;
};

enum class TapeVerb { kShow, kDiff, kVerify };

struct TapeOptions {
  TapeVerb verb = TapeVerb::kShow;
  std::vector<std::string> files;  // two for kDiff
};

struct CheckOptions : SessionOptions {
  std::string language = "JavaScript";
  // What the server runs; a step with an empty script is not tried.
  std::string valueScript = "parameters.value";
  std::string faultScript = "throw new Error('check')";
  std::string tableScript = "[{city: 'Rome', people: 2748109}, {city: 'Oslo', people: 709037}]";
  std::string uploadScript = "parameters.file.text()";
  std::string downloadScript = "publish('check.txt', 'scriptwells check')";
};

struct ExplainOptions {
  std::string file;    // "-" is standard input
  int entry = 0;       // of a tape, from 1 on; 0: all
  std::string method;  // of the request; empty: as the message says
  bool showSecrets = false;
  bool json = false;
};

struct ParsedArguments {
  Command command = Command::kUsageError;
  RunOptions run;                  // for kRun
  MapOptions map;                  // for kMap
  ShellOptions shell;              // for kShell
  DownloadOptions download;        // for kDownload
  SessionCommandOptions session;   // for kSession
  ServeOptions serve;              // for kServe
  RegistryOptions registry;        // for kRegistry
  DescribeOptions describe;        // for kDescribe
  ConfigOptions config;            // for kConfig
  TapeOptions tape;                // for kTape
  CheckOptions check;              // for kCheck
  ExplainOptions explain;          // for kExplain
  std::vector<std::string> notes;  // to be printed before the command runs
  bool json = false;               // report failures as JSON
  // kText: help or version, to be printed on standard output. kUsageError and kProfileError: the message, in
  // one line without a full stop.
  std::string text;
  // kUsageError: the command that explains it, such as "scriptwells run --help".
  std::string hint;
};

}  // namespace qv::cli
