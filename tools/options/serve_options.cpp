#include "tools/options/serve_options.h"

#include <CLI/CLI.hpp>
#include <cmath>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/time_span.h"

namespace qv::cli {

namespace {

constexpr double kLongestScript = 86400;

bool IsHostName(const std::string& text) {
  constexpr char kAllowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_";
  return !text.empty() && text.size() <= 255 && text.find_first_not_of(kAllowed) == std::string::npos;
}

}  // namespace

ServeArguments::ServeArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("serve", "Run the development service until it is stopped")) {
  SetHelp(*command_, kServeExamples, kServeNotes);
  command_->add_option("--host", serve_.host, "Address to listen on")
      ->capture_default_str()
      ->type_name("HOST");
  command_
      ->add_option("--name", serve_.names,
                   "Also accept requests for this host name, such as that of a tunnel; may be repeated")
      ->type_name("HOST")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false);
  command_->add_option("--port", serve_.port, "Port to listen on; 0: a free one")
      ->capture_default_str()
      ->type_name("PORT")
      ->check(CLI::Range(0, 65535).description("0 to 65535"));
  command_->add_option("--users-file", serve_.usersFile, "Who may open a session")->type_name("FILE");
  AddTime(*command_, "--script-timeout", serve_.scriptTimeoutSeconds,
          "Time for one script, such as 90, 1.5s or 2m");
  command_->add_option("--script-memory", serve_.scriptMemoryMegabytes, "Memory for one script")
      ->capture_default_str()
      ->type_name("MB")
      ->check(CLI::Range(1, 65536).description("1 to 65536"));
  home_ = command_
              ->add_option("--home", serve_.home,
                           "Lend clients on this machine this home directory while the service runs: it gets "
                           "the upload scripts, and serve.reg for QV_REGISTRY")
              ->type_name("DIR");
  command_->add_flag(
      "--install-home", serve_.installHome,
      "Permanently: put the upload scripts into --home DIR and make it the home directory of your registry; "
      "without --home, complete the one that the registry names");
  command_->add_flag("--json", serve_.json, "Print the address as a line of JSON, and so all messages");
  command_->add_flag(
      "--page", serve_.page,
      "Add a page on which you run scripts and see the requests, and print its address: it lets one "
      "browser in; without --home the service makes a home directory and removes it at its end");
  command_->add_flag("--control", serve_.control,
                     "For tests: add a control interface, whose address is in the line of --json; without "
                     "--home the service makes a home directory and removes it at its end");
  command_
      ->add_option("--odd", serve_.odds,
                   "For tests: give requests this odd answer, such as 'cut,n=2' (the first two) or "
                   "'stall,p=0.1,seed=7' (each with this chance); may be repeated")
      ->type_name("NAME[,n=N][,p=P][,seed=N][,action=A]")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false);
  command_->add_flag("--until-eof", serve_.untilEof, "Stop also when standard input ends");
}

const char* ServeArguments::Check() const {
  for (const std::string& name : serve_.names)
    if (!IsHostName(name)) return "--name must be a host name, without http:// and without a port";
  if (home_->count() > 0 && serve_.home.empty()) return "--home must name a directory";
  if (serve_.control && !serve_.json) return "--control needs --json, which prints the secret address";
  if (serve_.page && serve_.host.find(':') != std::string::npos)
    return "--page needs a host with a name or an IPv4 address";
  const double seconds = serve_.scriptTimeoutSeconds;
  if (std::isfinite(seconds) && seconds >= 0.001 && seconds <= kLongestScript) return nullptr;
  return "--script-timeout must be between 0.001 and 86400 seconds";
}

}  // namespace qv::cli
