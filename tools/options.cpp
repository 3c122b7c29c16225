#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

#ifndef SCRIPTWELLS_VERSION
#define SCRIPTWELLS_VERSION "unknown"
#endif

namespace qv::cli {

namespace {

constexpr char kProgramFooter[] = R"(Examples:
  scriptwells run --local -e '6 * 7'
  scriptwells run report.js --server https://scripts.example --user joe -p year=int:2024
  scriptwells serve --port 8080

Exit codes: 0 ok, 1 script or server fault, 2 usage, 3 server not reached, 4 timeout, 5 session refused,
6 local file or parameter, 7 answer not understood, 130 interrupted.)";

constexpr char kRunFooter[] =
    R"(Parameters are written name=type:value. Types: byte, short, int, long, boolean, float, double, string.
Everything behind the first ':' is the value, so a string may hold '=' and ':' and may be empty.
float and double travel with 6 significant digits.

The password never stands on the command line. It comes from the first of: --password-file,
--password-stdin, the variable SCRIPTWELLS_PASSWORD, a question on the terminal; else it is empty.
A user name, password or replica id cannot hold ';' or '='.

What the protocol's client reads back: a long answer arrives as an empty value and a byte answer as 0;
let the script answer with a string or a double where that matters. A script that answers null or
nothing (undefined) ends as an answer that is not understood (7).

Examples:
  scriptwells run --local -e 'parameters.a + parameters.b' -p a=int:2 -p b=int:40
  scriptwells run --local hello.js -p name=string:World --output table
  echo '6 * 7' | scriptwells run - --server http://127.0.0.1:8080 --user joe --json)";

constexpr char kServeFooter[] =
    R"(The service is for development: it keeps everything in memory, and it runs the scripts that it is sent.
It prints its address on standard output and stops at Ctrl-C or SIGTERM.
The users file holds one name:password per line; '#' starts a comment line. Without it every user name
is welcome, with any password.

Example:
  scriptwells serve --port 8080 --users-file users.txt)";

constexpr double kLongestWait = 86400;

const std::map<std::string, OutputFormat> kOutputs = {
    {"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"table", OutputFormat::kTable}};

// Reads the whole command line. Owns the CLI11 objects, which point into `result`.
class ArgumentParser {
 public:
  explicit ArgumentParser(ParsedArguments& result) : result_(result) {
    app_.footer(kProgramFooter);
    app_.set_version_flag("--version", "scriptwells " SCRIPTWELLS_VERSION, "Print the version and exit");
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.require_subcommand(0, 1);
    DefineRun();
    DefineServe();
    worker_ = app_.add_subcommand("script-worker", "Run scripts for a service");
    worker_->group("");
  }

  void Parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // CLI11 takes them from the end
    try {
      app_.parse(arguments);
      Decide();
    } catch (const CLI::CallForVersion& version) {
      Tell(version.what());
    } catch (const CLI::CallForHelp&) {
      Tell(app_.help());
    } catch (const CLI::ParseError& error) {
      Refuse(error.what());
    }
  }

 private:
  void DefineRun() {
    run_ = app_.add_subcommand("run", "Run a script on a server and print its answer");
    run_->footer(kRunFooter);
    RunOptions& run = result_.run;
    run_->add_option("FILE", run.file, "The script; - reads it from standard input")->type_name("");
    code_ = run_->add_option("-e,--eval", run.code, "The script itself, in place of FILE")->type_name("CODE");
    run_->add_option("-p,--parameter", run.parameters, "A parameter of the script; may be repeated")
        ->type_name("NAME=TYPE:VALUE")
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false);
    run_->add_flag(
        "--local", run.local,
        "Run in a service inside this program; nothing else is needed. A script has 5 s and 256 MiB "
        "there; for more: serve --script-timeout, --script-memory, and --server");
    server_ = run_->add_option("--server", run.server,
                               "The server, such as https://scripts.example:8443 "
                               "(environment: SCRIPTWELLS_SERVER)")
                  ->type_name("URL");
    DefineSession();
    DefineOutput();
  }

  void DefineSession() {
    RunOptions& run = result_.run;
    run_->add_option("--proxy", run.proxy, "HTTP proxy")
        ->type_name("HOST[:PORT]")
        ->envname("SCRIPTWELLS_PROXY");
    run_->add_option("--user", run.user, "User name (with --local: \"local\" if not given)")
        ->type_name("NAME")
        ->envname("SCRIPTWELLS_USER");
    run_->add_option("--password-file", run.passwordFile, "The first line of this file is the password")
        ->type_name("FILE");
    run_->add_flag("--password-stdin", run.passwordFromInput,
                   "The first line of standard input is the password");
    run_->add_option("--replica", run.replica, "Replica id of the database")
        ->type_name("ID")
        ->envname("SCRIPTWELLS_REPLICA");
    run_->add_option("--language", run.language, "Language of the script")
        ->capture_default_str()
        ->type_name("NAME")
        ->envname("SCRIPTWELLS_LANGUAGE");
    run_->add_option("--timeout", run.timeoutSeconds,
                     "Longest silence of the server; 0: no limit (for connecting: --connect-timeout)")
        ->capture_default_str()
        ->type_name("SECONDS")
        ->envname("SCRIPTWELLS_TIMEOUT");
    run_->add_option("--connect-timeout", run.connectTimeoutSeconds,
                     "Longest wait for a connection; 0: no limit")
        ->capture_default_str()
        ->type_name("SECONDS")
        ->envname("SCRIPTWELLS_CONNECT_TIMEOUT");
  }

  void DefineOutput() {
    outputOption_ = run_->add_option("-o,--output", output_,
                                     "How the answer is printed (environment: SCRIPTWELLS_OUTPUT)")
                        ->capture_default_str()
                        ->type_name("FORMAT")
                        ->check(CLI::IsMember(kOutputs));
    run_->add_flag("--json", result_.run.json,
                   "The answer, or what failed, and every note, as one line of JSON each");
  }

  void DefineServe() {
    serve_ = app_.add_subcommand("serve", "Run the development service until it is stopped");
    serve_->footer(kServeFooter);
    ServeOptions& serve = result_.serve;
    serve_->add_option("--host", serve.host, "Address to listen on")
        ->capture_default_str()
        ->type_name("HOST");
    serve_->add_option("--port", serve.port, "Port to listen on; 0: a free one")
        ->capture_default_str()
        ->type_name("PORT")
        ->check(CLI::Range(0, 65535).description("0 to 65535"));
    serve_->add_option("--users-file", serve.usersFile, "Who may open a session")->type_name("FILE");
    serve_->add_option("--script-timeout", serve.scriptTimeoutSeconds, "Time for one script")
        ->capture_default_str()
        ->type_name("SECONDS");
    serve_->add_option("--script-memory", serve.scriptMemoryMegabytes, "Memory for one script")
        ->capture_default_str()
        ->type_name("MB")
        ->check(CLI::Range(1, 65536).description("1 to 65536"));
  }

  void Decide() {
    if (worker_->parsed()) {
      result_.command = Command::kScriptWorker;
    } else if (serve_->parsed()) {
      DecideServe();
    } else if (run_->parsed()) {
      DecideRun();
    } else {
      Refuse("no command given");
    }
  }

  void DecideServe() {
    const double seconds = result_.serve.scriptTimeoutSeconds;
    if (!std::isfinite(seconds) || seconds < 0.001 || seconds > kLongestWait)
      return Refuse("--script-timeout has to lie between 0.001 and 86400 seconds");
    result_.command = Command::kServe;
  }

  void DecideRun() {
    RunOptions& run = result_.run;
    const char* wrong = WrongWithOutput();
    if (wrong == nullptr) wrong = WrongWithScript();
    if (wrong == nullptr) wrong = WrongWithServer();
    if (wrong == nullptr) wrong = WrongWithPassword();
    if (wrong == nullptr && !IsWait(run.timeoutSeconds))
      wrong = "--timeout has to lie between 0 and 86400 seconds";
    if (wrong == nullptr && !IsWait(run.connectTimeoutSeconds))
      wrong = "--connect-timeout has to lie between 0 and 86400 seconds";
    if (wrong != nullptr) return Refuse(wrong);
    result_.command = Command::kRun;
  }

  // The variable stands for a usual form, so --json wins over it.
  const char* WrongWithOutput() {
    RunOptions& run = result_.run;
    const bool chosen = outputOption_->count() > 0;
    const char* usual = std::getenv("SCRIPTWELLS_OUTPUT");
    if (!chosen && !run.json && usual != nullptr && *usual != '\0') output_ = usual;
    const auto found = kOutputs.find(output_);
    if (found == kOutputs.end()) return "SCRIPTWELLS_OUTPUT has to be text, json or table";
    run.output = run.json ? OutputFormat::kJson : found->second;
    if (chosen && found->second != run.output) return "give --json or another --output, not both";
    return nullptr;
  }

  const char* WrongWithScript() const {
    const bool hasFile = !result_.run.file.empty();
    if (hasFile && code_->count() > 0) return "give the script as FILE or with -e, not both";
    if (!hasFile && code_->count() == 0) return "no script given (FILE, - or -e CODE)";
    return nullptr;
  }

  // The variable stands for a usual server, so --local wins over it.
  const char* WrongWithServer() {
    RunOptions& run = result_.run;
    if (run.local && server_->count() > 0) return "give --local or --server, not both";
    if (run.local && !run.proxy.empty()) run.proxy.clear();
    if (run.local || server_->count() > 0) return nullptr;
    const char* usual = std::getenv("SCRIPTWELLS_SERVER");
    if (usual == nullptr || *usual == '\0') return "no server given (--local or --server URL)";
    run.server = usual;
    return nullptr;
  }

  const char* WrongWithPassword() const {
    const RunOptions& run = result_.run;
    if (run.passwordFromInput && !run.passwordFile.empty())
      return "give --password-file or --password-stdin, not both";
    if (run.passwordFromInput && run.file == "-")
      return "standard input cannot hold both the script and the password";
    return nullptr;
  }

  static bool IsWait(double seconds) {
    return std::isfinite(seconds) && seconds >= 0 && seconds <= kLongestWait;
  }

  void Tell(const std::string& text) {
    result_.command = Command::kText;
    result_.text = text;
    if (result_.text.empty() || result_.text.back() != '\n') result_.text += '\n';
  }

  void Refuse(const std::string& text) {
    result_.command = Command::kUsageError;
    result_.text = text;
    result_.hint = "scriptwells --help";
    if (run_->parsed()) result_.hint = "scriptwells run --help";
    if (serve_->parsed()) result_.hint = "scriptwells serve --help";
  }

  ParsedArguments& result_;
  std::string output_ = "text";
  CLI::App app_{"Runs scripts on a Scriptwells server, or on one of its own.", "scriptwells"};
  CLI::App* run_ = nullptr;
  CLI::App* serve_ = nullptr;
  CLI::App* worker_ = nullptr;
  CLI::Option* code_ = nullptr;
  CLI::Option* server_ = nullptr;
  CLI::Option* outputOption_ = nullptr;
};

}  // namespace

ParsedArguments ParseArguments(const std::vector<std::string>& arguments) {
  ParsedArguments result;
  ArgumentParser(result).Parse(arguments);
  // A program that reads JSON wants to read this failure too, also when parsing never came to the flag.
  for (const std::string& argument : arguments)
    if (argument == "--json") result.run.json = true;
  return result;
}

}  // namespace qv::cli
