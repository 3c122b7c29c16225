#include "tools/options/describe_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

DescribeArguments::DescribeArguments(CLI::App& app)
    : CommandArguments(
          app.add_subcommand("describe", "Show the members of the objects, with ids and types")) {
  SetHelp(*command_, kDescribeExamples, kDescribeNotes);
  object_ =
      command_->add_option("OBJECT", describe_.object, "The object, or object and member")->type_name("");
  CLI::Option* json = command_->add_flag("--json", describe_.json, "As JSON");
  command_->add_flag("--markdown", describe_.markdown, "As the page of the documentation")->excludes(json);
}

const char* DescribeArguments::Check() const {
  if (object_->empty()) return nullptr;
  const std::string& name = describe_.object;
  if (name.empty()) return "OBJECT is empty; leave it out to see all objects";
  if (name.front() == '.') return "OBJECT names no object before its '.'";
  return name.back() == '.' ? "OBJECT names no member after its '.'" : nullptr;
}

}  // namespace qv::cli
