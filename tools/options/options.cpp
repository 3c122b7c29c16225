#include "tools/options/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "scriptwells/version.h"
#include "tools/options/check_options.h"
#include "tools/options/config_options.h"
#include "tools/options/describe_options.h"
#include "tools/options/download_options.h"
#include "tools/options/explain_options.h"
#include "tools/options/help_format.h"
#include "tools/options/help_options.h"
#include "tools/options/help_texts.h"
#include "tools/options/map_options.h"
#include "tools/options/meant_word.h"
#include "tools/options/registry_options.h"
#include "tools/options/run_options.h"
#include "tools/options/serve_options.h"
#include "tools/options/session_command_options.h"
#include "tools/options/setting_options.h"
#include "tools/options/shell_options.h"
#include "tools/options/tape_options.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

constexpr char kVersion[] = "scriptwells " SCRIPTWELLS_VERSION;

CLI::App& Prepared(CLI::App& app) {
  SetHelp(app, kProgramExamples, kProgramNotes);
  app.set_version_flag("-V,--version", kVersion, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  AddProfile(app);
  app.require_subcommand(0, 1);
  return app;
}

// Reads the whole command line. Owns the CLI11 objects.
class ArgumentParser {
 public:
  explicit ArgumentParser(ParsedArguments& result) : result_(result) {}

  void Parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());  // CLI11 takes them from the end
    try {
      app_.parse(arguments);
      Decide();
    } catch (const CLI::CallForVersion& version) {
      Print(version.what());
    } catch (const CLI::CallForHelp&) {
      Print(app_.help());
    } catch (const CLI::ExtrasError& error) {
      Refuse(error.what() + MeantWord(app_));
    } catch (const CLI::ParseError& error) {
      Refuse(error.what());
    } catch (const Failure& failure) {
      result_.command = Command::kProfileError;
      result_.text = failure.Message();
    }
  }

  CLI::App& Program() { return app_; }

 private:
  void Decide() {
    std::string profile;
    if (const char* wrong = TakeProfile(profile)) return Refuse(wrong);
    if (config_.Parsed()) config_.SetProfile(profile);
    if (SettlesOptions()) Settle(profile);
    Choose();
  }

  // The name may be before and after the command.
  const char* TakeProfile(std::string& name) {
    const CLI::App& command = Innermost();
    const CLI::Option* before = app_.get_option("--profile");
    const CLI::Option* after = &command == &app_ ? nullptr : command.get_option_no_throw("--profile");
    if (before->count() > 0 && after == nullptr)
      return "--profile is for commands that call a server, and for config show, set and unset";
    if (after == nullptr || before->count() + after->count() == 0) return nullptr;
    if (before->count() > 0 && after->count() > 0) return "give --profile once";
    name = (before->count() > 0 ? before : after)->results().back();
    return name.empty() ? "--profile must name a profile" : nullptr;
  }

  // Others do not read the file of profiles.
  bool SettlesOptions() {
    const bool calls = run_.Parsed() || document_.Parsed() || shell_.Parsed() || map_.Parsed() ||
                       download_.Parsed() || session_.Parsed() || check_.Parsed();
    const bool hasSettings = Innermost().get_option_no_throw("--profile") != nullptr;
    return (calls && hasSettings) || (config_.Parsed() && config_.Shows());
  }

  void Settle(const std::string& profile) {
    CLI::App& command = Innermost();
    const CLI::Option* local = command.get_option_no_throw("--local");
    settled_ = SettleOptions(command, profile, local != nullptr && local->count() > 0);
    result_.notes = settled_.notes;
  }

  void Choose() {
    if (serve_.Parsed()) {
      Accept(Command::kServe, serve_.Check());
    } else if (run_.Parsed()) {
      Accept(Command::kRun, run_.Check());
    } else if (document_.Parsed()) {
      Accept(Command::kRun, document_.Check());
    } else if (map_.Parsed()) {
      Accept(Command::kMap, map_.Check());
    } else if (download_.Parsed()) {
      Accept(Command::kDownload, download_.Check());
    } else if (session_.Parsed()) {
      Accept(Command::kSession, session_.Check());
    } else if (registry_.Parsed()) {
      Accept(Command::kRegistry, registry_.Check());
    } else if (config_.Parsed()) {
      DecideConfig();
    } else if (describe_.Parsed()) {
      Accept(Command::kDescribe, describe_.Check());
    } else if (tape_.Parsed()) {
      Accept(Command::kTape, tape_.Check());
    } else if (shell_.Parsed()) {
      Accept(Command::kShell, shell_.Check());
    } else if (check_.Parsed()) {
      Accept(Command::kCheck, check_.Check());
    } else if (explain_.Parsed()) {
      Accept(Command::kExplain, explain_.Check());
    } else if (help_.AsksForVersion()) {
      Print(kVersion);
    } else if (help_.AsksForHelp()) {
      PrintHelp();
    } else {
      Refuse("no command given");
    }
  }

  void DecideConfig() {
    const std::string wrong = config_.Check();
    Accept(Command::kConfig, wrong.empty() ? nullptr : wrong.c_str());
  }

  void Accept(Command command, const char* wrong) {
    if (wrong != nullptr) return Refuse(wrong);
    result_.command = command;
    result_.run = document_.Parsed() ? document_.Options() : run_.Options();
    result_.map = map_.Options();
    result_.download = download_.Options();
    result_.session = session_.Options();
    result_.serve = serve_.Options();
    result_.registry = registry_.Options();
    result_.describe = describe_.Options();
    result_.shell = shell_.Options();
    result_.tape = tape_.Options();
    result_.check = check_.Options();
    result_.explain = explain_.Options();
    result_.config = config_.Options();
    result_.config.settings = settled_.settings;
    for (SessionOptions* session :
         {static_cast<SessionOptions*>(&result_.run), static_cast<SessionOptions*>(&result_.shell),
          static_cast<SessionOptions*>(&result_.map), static_cast<SessionOptions*>(&result_.download),
          static_cast<SessionOptions*>(&result_.session), static_cast<SessionOptions*>(&result_.check)})
      session->passwordFileIsSaved = settled_.hasSavedPasswordFile;
    result_.json = result_.config.json || result_.run.json || result_.shell.json || result_.map.json ||
                   result_.download.json || result_.session.json || result_.serve.json ||
                   result_.registry.json || result_.describe.json || result_.check.json ||
                   result_.explain.json;
  }

  void PrintHelp() {
    const std::string text = help_.Text();
    if (text.empty()) return Refuse(help_.Wrong());
    Print(text);
  }

  void Print(const std::string& text) {
    result_.command = Command::kText;
    result_.text = text;
    if (result_.text.empty() || result_.text.back() != '\n') result_.text += '\n';
  }

  void Refuse(const std::string& text) {
    result_.command = Command::kUsageError;
    result_.text = text;
    result_.hint = CommandPath() + " --help";
  }

  CLI::App& Innermost() {
    CLI::App* command = &app_;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().back();
    return *command;
  }

  // "scriptwells registry get", as far as it was parsed.
  std::string CommandPath() const {
    std::string path = app_.get_name();
    const CLI::App* command = &app_;
    while (!command->get_subcommands().empty()) {
      command = command->get_subcommands().back();
      path += " " + command->get_name();
    }
    return path;
  }

  ParsedArguments& result_;
  Settled settled_;
  CLI::App app_{"Runs scripts on a Scriptwells server, or in a service inside this program.", "scriptwells"};
  RunArguments run_{Prepared(app_), RunArguments::Kind::kScript};
  RunArguments document_{app_, RunArguments::Kind::kDocument};
  MapArguments map_{app_};
  DownloadArguments download_{app_};
  SessionCommandArguments session_{app_};
  ShellArguments shell_{app_};
  CheckArguments check_{app_};
  ExplainArguments explain_{app_};
  ServeArguments serve_{app_};
  RegistryArguments registry_{app_};
  ConfigArguments config_{app_};
  DescribeArguments describe_{app_};
  TapeArguments tape_{app_};
  HelpArguments help_{app_};
};

}  // namespace

ParsedArguments ParseArguments(const std::vector<std::string>& arguments) {
  ParsedArguments result;
  ArgumentParser(result).Parse(arguments);
  // Programs expect JSON also when parsing failed before the flag.
  if (result.command == Command::kUsageError || result.command == Command::kProfileError ||
      result.command == Command::kText)
    result.json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
  return result;
}

void ShowOptions(const std::function<void(CLI::App&)>& show) {
  ParsedArguments unused;
  show(ArgumentParser(unused).Program());
}

}  // namespace qv::cli
