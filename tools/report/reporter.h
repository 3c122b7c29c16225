// Failures and notes on standard error, as lines for people or as lines of JSON.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/report/failure.h"

namespace qv::cli {

enum class ReportForm { kText, kJson };

inline ReportForm FormOf(bool json) noexcept {
  return json ? ReportForm::kJson : ReportForm::kText;
}

// "script fault 0x80040005 (5): no such customer", in one line, with at most 4000 bytes of the message.
std::string DescriptionOf(const Failure& failure);

class Reporter {
 public:
  // Writes to `err`, which must outlive this object.
  Reporter(std::ostream& err, ReportForm form) : err_(err), form_(form) {}

  // One line, with at most 4000 bytes of the message; JSON has the whole message. Nothing for a silent
  // failure.
  //   scriptwells: script fault 0x80040005 (5): no such customer
  //   {"error":{"kind":"script fault","message":"no such customer","code":"0x80040005","number":5,"exit":1}}
  void Report(const Failure& failure) const;

  // Neither changes the exit status.
  //   scriptwells: note: parameter 'a' travels with 6 significant digits
  //   {"note":"parameter 'a' travels with 6 significant digits"}
  void Note(const std::string& message) const { Remark("note", message); }
  void Warn(const std::string& message) const { Remark("warning", message); }

  // Before the output of one of several runs of `name`.
  //   --- report.js, 14:03:07 ---
  //   {"run":{"file":"report.js","time":"14:03:07"}}
  void Separate(const std::string& name, const std::string& time) const;

 private:
  void Remark(const char* kind, const std::string& message) const;

  std::ostream& err_;
  ReportForm form_;
};

}  // namespace qv::cli
