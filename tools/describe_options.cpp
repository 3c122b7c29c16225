#include "tools/describe_options.h"

#include <CLI/CLI.hpp>

#include "tools/help_texts.h"

namespace qv::cli {

DescribeArguments::DescribeArguments(CLI::App& app)
    : command_(app.add_subcommand("describe", "Show the members of the objects, with ids and types")) {
  command_->footer(kDescribeFooter);
  command_->add_option("OBJECT", describe_.object, "The object, or object and member")->type_name("");
  CLI::Option* json = command_->add_flag("--json", describe_.json, "As JSON");
  command_->add_flag("--markdown", describe_.markdown, "As the page of the documentation")->excludes(json);
}

bool DescribeArguments::Parsed() const {
  return command_->parsed();
}

}  // namespace qv::cli
