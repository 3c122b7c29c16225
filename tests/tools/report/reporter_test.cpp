// How failures and notes are printed, for people and as JSON.
#include "tools/report/reporter.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qv::cli {
namespace {

std::string Reported(const Failure& failure, ReportForm form = ReportForm::kText) {
  std::ostringstream err;
  Reporter(err, form).Report(failure);
  return err.str();
}

std::string Noted(const std::string& message, ReportForm form = ReportForm::kText) {
  std::ostringstream err;
  Reporter(err, form).Note(message);
  return err.str();
}

TEST(Reporter, LineNamesTheKindWhereTheMessageIsTheServers) {
  const std::uint32_t five = 0x80040005;
  const std::pair<Failure, const char*> rows[] = {
      {{ExitStatus::kFault, "no such customer", five}, "script fault 0x80040005 (5): no such customer"},
      {{ExitStatus::kFault, "no such customer"}, "script fault: no such customer"},
      {{ExitStatus::kRefused, "who are you", 0x800403EBU}, "session refused 0x800403EB (1003): who are you"},
      {{ExitStatus::kUnreachable, "cannot reach http://h:1: refused"}, "cannot reach http://h:1: refused"},
      {Failure(ExitStatus::kFault, "no file has it").Called("no such key"), "no file has it"},
  };
  for (const auto& [failure, line] : rows)
    EXPECT_EQ(Reported(failure), std::string("scriptwells: ") + line + "\n");
  EXPECT_EQ(FaultNumber(five), 5U);
  EXPECT_EQ(FaultNumber(0x800403EBU), 1003U);
  const Failure silent = Failure(ExitStatus::kLocal, "nobody reads").Silent();
  EXPECT_EQ(Reported(silent), "");
  EXPECT_EQ(Reported(silent, ReportForm::kJson), "");
  EXPECT_EQ(silent.Status(), ExitStatus::kLocal);
}

TEST(Reporter, JsonHasTheWholeFailure) {
  const std::pair<Failure, const char*> rows[] = {
      {{ExitStatus::kFault, "no \"such\"\ncustomer", 0x80040005U},
       R"("script fault","message":"no \"such\"\ncustomer","code":"0x80040005","number":5,"exit":1)"},
      {{ExitStatus::kTimeout, "late"}, R"("timeout","message":"late","exit":4)"},
      {{ExitStatus::kUsage, "x\xFFy"}, "\"usage\",\"message\":\"x\xEF\xBF\xBDy\",\"exit\":2"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
      {{ExitStatus::kTimeout, "a\x1b\x7f\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8z"},
       R"("timeout","message":"a\u001b\u007f\u009b\u202e\u2028z","exit":4)"},
      {Failure(ExitStatus::kFault, "no file has it").Called("no such key"),
       R"("no such key","message":"no file has it","exit":1)"},
  };
  for (const auto& [failure, fields] : rows)
    EXPECT_EQ(Reported(failure, ReportForm::kJson), std::string("{\"error\":{\"kind\":") + fields + "}}\n");
}

TEST(Reporter, NotesAreALineOrALineOfJson) {
  std::ostringstream text;
  Reporter(text, ReportForm::kText).Warn("two\nlines");
  EXPECT_EQ(text.str(), "scriptwells: warning: two lines\n");
  std::ostringstream json;
  Reporter(json, ReportForm::kJson).Warn("two\nlines \xFF");
  EXPECT_EQ(json.str(), "{\"warning\":\"two\\nlines \xEF\xBF\xBD\"}\n");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  EXPECT_EQ(Noted("a\x1b\x7f\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8z", ReportForm::kJson),
            "{\"note\":\"a\\u001b\\u007f\\u009b\\u202e\\u2028z\"}\n");
}

TEST(Reporter, LongMessageIsCutInTextOnly) {
  const std::string start(3999, 'a');
  // NOLINTNEXTLINE(bugprone-string-constructor): it is that long
  const Failure failure(ExitStatus::kTimeout, start + "\xC3\xA9" + std::string(20'000'000, 'z'));
  EXPECT_EQ(Reported(failure),
            "scriptwells: " + start + "... (cut; 20004001 bytes in all, which --json shows)\n");
  EXPECT_EQ(Reported(failure, ReportForm::kJson),
            "{\"error\":{\"kind\":\"timeout\",\"message\":\"" + failure.Message() + "\",\"exit\":4}}\n");
  const std::string whole(4000, 'a');
  EXPECT_EQ(Reported({ExitStatus::kTimeout, whole}), "scriptwells: " + whole + "\n");
  EXPECT_EQ(Noted(whole + "b"),
            "scriptwells: note: " + whole + "... (cut; 4001 bytes in all, which --json shows)\n");
}

}  // namespace
}  // namespace qv::cli
