#include "tools/failure.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qv::cli {
namespace {

std::string Report(const Failure& failure, bool asJson) {
  std::ostringstream err;
  ReportFailure(failure, asJson, err);
  return err.str();
}

TEST(FailureReport, FaultShowsCodeAndNumber) {
  EXPECT_EQ(Report(Failure(ExitStatus::kFault, "no such customer", MakeResult(0x80040005)), false),
            "scriptwells: script fault 0x80040005 (5): no such customer\n");
}

TEST(FailureReport, FaultWithoutCodeShowsItsWordsOnly) {
  EXPECT_EQ(Report(Failure(ExitStatus::kFault, "no such customer"), false),
            "scriptwells: script fault: no such customer\n");
}

TEST(FailureReport, RefusedSessionNamesItself) {
  EXPECT_EQ(Report(Failure(ExitStatus::kRefused, "who are you", MakeResult(0x800403EB)), false),
            "scriptwells: session refused 0x800403EB (1003): who are you\n");
}

TEST(FailureReport, OtherFailuresAreTheirWords) {
  EXPECT_EQ(Report(Failure(ExitStatus::kUnreachable, "cannot reach http://h:1: refused"), false),
            "scriptwells: cannot reach http://h:1: refused\n");
}

TEST(FailureReport, SilentFailureSaysNothing) {
  const Failure silent = Failure(ExitStatus::kLocal, "nobody reads").Silent();
  EXPECT_EQ(Report(silent, false), "");
  EXPECT_EQ(Report(silent, true), "");
  EXPECT_EQ(silent.Status(), ExitStatus::kLocal);
}

TEST(FailureReport, JsonHoldsEverything) {
  EXPECT_EQ(Report(Failure(ExitStatus::kFault, "no \"such\"\ncustomer", MakeResult(0x80040005)), true),
            "{\"error\":{\"kind\":\"script fault\",\"message\":\"no \\\"such\\\"\\ncustomer\","
            "\"code\":\"0x80040005\",\"number\":5,\"exit\":1}}\n");
  EXPECT_EQ(Report(Failure(ExitStatus::kTimeout, "late"), true),
            "{\"error\":{\"kind\":\"timeout\",\"message\":\"late\",\"exit\":4}}\n");
}

TEST(FailureReport, JsonOfBytesThatAreNoUtf8IsStillJson) {
  EXPECT_EQ(Report(Failure(ExitStatus::kUsage, "x\xFFy"), true),
            "{\"error\":{\"kind\":\"usage\",\"message\":\"x\xEF\xBF\xBDy\",\"exit\":2}}\n");
}

TEST(FailureReport, JsonHoldsNothingThatDrivesATerminal) {
  const std::string words = "a\x1b\x7f\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8z";
  EXPECT_EQ(Report(Failure(ExitStatus::kTimeout, words), true),
            "{\"error\":{\"kind\":\"timeout\",\"message\":\"a\\u001b\\u007f\\u009b\\u202e\\u2028z\","
            "\"exit\":4}}\n");
  std::ostringstream note;
  ReportNote("note", words, true, note);
  EXPECT_EQ(note.str(), "{\"note\":\"a\\u001b\\u007f\\u009b\\u202e\\u2028z\"}\n");
}

TEST(FailureReport, WordsOfAServerCannotDriveTheTerminal) {
  EXPECT_EQ(OneLine("a\nb\x1b[31mc\x7f"
                    "d\xC2\x9B"
                    "e\xE2\x80\xAE\tf\r\n"),
            "a b\\x1b[31mc\\x7fd\\xc2\\x9be\\u202e f");
  EXPECT_EQ(OneLine("\xC3\xA9\xE2\x98\x83"), "\xC3\xA9\xE2\x98\x83");
}

TEST(FailureReport, NotesAreALineOrALineOfJson) {
  std::ostringstream text;
  ReportNote("warning", "two\nlines", false, text);
  EXPECT_EQ(text.str(), "scriptwells: warning: two lines\n");
  std::ostringstream json;
  ReportNote("warning", "two\nlines \xFF", true, json);
  EXPECT_EQ(json.str(), "{\"warning\":\"two\\nlines \xEF\xBF\xBD\"}\n");
}

TEST(FailureReport, LongMessageIsCutForPeopleOnly) {
  const std::string start(3999, 'a');
  const std::string message = start + "\xC3\xA9" + std::string(20'000'000, 'z');
  EXPECT_EQ(Report(Failure(ExitStatus::kTimeout, message), false),
            "scriptwells: " + start + "... (cut; 20004001 bytes in all, which --json shows)\n");
  EXPECT_EQ(Report(Failure(ExitStatus::kTimeout, message), true),
            "{\"error\":{\"kind\":\"timeout\",\"message\":\"" + message + "\",\"exit\":4}}\n");
  const std::string whole(4000, 'a');
  EXPECT_EQ(Report(Failure(ExitStatus::kTimeout, whole), false), "scriptwells: " + whole + "\n");
  std::ostringstream note;
  ReportNote("note", whole + "b", false, note);
  EXPECT_EQ(note.str(), "scriptwells: note: " + whole + "... (cut; 4001 bytes in all, which --json shows)\n");
}

TEST(FailureReport, NumberIsTheServersErrorNumber) {
  EXPECT_EQ(FaultNumber(MakeResult(0x80040005)), 5u);
  EXPECT_EQ(FaultNumber(MakeResult(0x800403EB)), 1003u);
}

TEST(Failure, NameOfItsOwnTakesThePlaceOfTheStatuss) {
  const Failure failure = Failure(ExitStatus::kFault, "no file has it").Called("no such key");
  std::ostringstream text;
  ReportFailure(failure, false, text);
  EXPECT_EQ(text.str(), "scriptwells: no file has it\n");
  std::ostringstream json;
  ReportFailure(failure, true, json);
  EXPECT_EQ(json.str(), "{\"error\":{\"kind\":\"no such key\",\"message\":\"no file has it\",\"exit\":1}}\n");
}

}  // namespace
}  // namespace qv::cli
