// Prints what a script answered.
#pragma once

#include <iosfwd>
#include <string>

#include "scriptwells/value.h"
#include "tools/output/output_format.h"
#include "tools/report/reporter.h"

namespace qv::cli {

struct AnswerForm {
  OutputFormat output = OutputFormat::kText;
  std::string csvNull{};
};

// Prints the value, a table, too. Notes say what did not arrive as it was sent. Throws as WriteTable.
void WriteAnswer(const AnswerForm& form, const scriptwells::Value& answer, std::ostream& out,
                 const Reporter& reporter);

}  // namespace qv::cli
