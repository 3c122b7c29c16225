#include "tools/output/answer_output.h"

#include <ostream>

#include "tools/output/answer_format.h"
#include "tools/output/table_output.h"
#include "tools/report/standard_output.h"

namespace qv::cli {

namespace {

void WriteTableAnswer(const AnswerForm& form, const scriptwells::Table& table, std::ostream& out,
                      const Reporter& reporter) {
  WriteTable(table, {form.output, form.csvNull, TerminalWidth(out)}, out);
  for (const std::string& loss : LossesOf(table)) reporter.Note(loss);
}

}  // namespace

void WriteAnswer(const AnswerForm& form, const scriptwells::Value& answer, std::ostream& out,
                 const Reporter& reporter) {
  if (answer.type() == scriptwells::Type::kTable)
    return WriteTableAnswer(form, answer.AsTable(), out, reporter);
  out << TextFor(out, FormatAnswer(form.output, answer, form.csvNull)) << std::flush;
  CheckWritten(out);
  for (const std::string& loss : LossesOf(answer)) reporter.Note(loss);
}

}  // namespace qv::cli
