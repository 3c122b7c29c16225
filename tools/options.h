// The command line as a unit of its own: arguments in, settings or what went wrong out. Nothing is opened or
// run.
#pragma once

#include <string>
#include <vector>

namespace qv::cli {

enum class Command {
  kText,
  kUsageError,
  kRun,
  kDownload,
  kSession,
  kServe,
  kRegistry,
  kDescribe,
  kScriptWorker
};
enum class OutputFormat { kText, kJson, kTable, kCsv };

// How a session is opened, and how its failures are told.
struct SessionOptions {
  std::string server;
  std::string proxy;
  std::string user;
  std::string replica;
  std::string passwordFile;
  std::string caFile;  // for https, PEM: the only authorities that are trusted; empty: the usual ones
  std::string certificateFile;  // of this client, PEM
  std::string keyFile;          // empty: in the same file
  bool passwordFromInput = false;
  std::string usid;   // a session that is open already; empty: one is opened
  bool json = false;  // result and failure both as JSON
  double timeoutSeconds = 60;
  double connectTimeoutSeconds = 30;
  double maxTimeSeconds = 0;  // for everything that is asked of the server; 0: no limit
};

// Of `run` and `run-document`.
struct RunOptions : SessionOptions {
  bool document = false;  // `file` is a script document; there is no code then, and no language
  std::string file;       // "-" is standard input; empty when the code is given
  std::string code;
  std::vector<std::string> parameters;  // "name=type:value", not looked at yet
  bool local = false;                   // else there is a server
  std::string language = "JavaScript";
  OutputFormat output = OutputFormat::kText;
  std::string csvNull;  // stands for no value in CSV; as csv_text.h allows it
  // The answer is the URL of a file, which is downloaded into this directory; empty when it is an answer.
  std::string saveDirectory;
  bool force = false;  // with a directory: as of DownloadOptions
};

struct DownloadOptions : SessionOptions {
  std::string url;
  std::string directory;  // empty: the current one
  bool force = false;     // also a name that is taken or begins with "."
};

enum class SessionVerb { kOpen, kClose };

struct SessionCommandOptions : SessionOptions {
  SessionVerb verb = SessionVerb::kOpen;
};

struct ServeOptions {
  std::string host = "127.0.0.1";
  std::vector<std::string> names;  // further ones by which clients call the host
  int port = 0;
  std::string usersFile;
  double scriptTimeoutSeconds = 5;
  int scriptMemoryMegabytes = 256;
  std::string home;          // for clients on this machine while the service runs; empty: they have their own
  bool installHome = false;  // for good: in the registry
};

enum class RegistryVerb { kGet, kSet, kRemove, kList };

struct RegistryOptions {
  RegistryVerb verb = RegistryVerb::kList;
  std::string key;    // as written, "home" included; not for kList
  std::string value;  // for kSet
  bool json = false;
};

struct DescribeOptions {
  std::string object;  // "Parameters" or "Parameters.Add"; empty: all
  bool json = false;
  bool markdown = false;
};

struct ParsedArguments {
  Command command = Command::kUsageError;
  RunOptions run;                 // for kRun
  DownloadOptions download;       // for kDownload
  SessionCommandOptions session;  // for kSession
  ServeOptions serve;             // for kServe
  RegistryOptions registry;       // for kRegistry
  DescribeOptions describe;       // for kDescribe
  bool json = false;              // failures are wanted as JSON
  // kText: what to print on standard output, help or version. kUsageError: what is wrong, in one line without
  // a full stop.
  std::string text;
  // kUsageError: the command whose help explains it, such as "scriptwells run --help".
  std::string hint;
};

// `arguments` without the program's name. Reads the SCRIPTWELLS_ variables of the environment. Does not throw
// but for lack of memory.
ParsedArguments ParseArguments(const std::vector<std::string>& arguments);

}  // namespace qv::cli
