// Tapes that were cut, edited, or are none.
#include <gtest/gtest.h>

#include "face/tape/tape.h"
#include "face/tape/taped_session.h"
#include "fixtures/temporary_directory.h"

namespace scriptwells {
namespace {

using test::ErrorOf;

std::string ReadingOf(const std::string& text) {
  return ErrorOf([&] { ReadTape("t", text); });
}

const std::string kStart = "scriptwells tape 1\n\n";

TEST(DamagedTape, IsRefusedWithItsLine) {
  const struct {
    std::string text;
    const char* reason;
  } rows[] = {
      {"", "line 0: not a tape: the file is empty"},
      {"hello\n", "line 1: not a tape"},
      {"scriptwells tape 2\n", "line 1: a tape of another version of this program"},
      {"scriptwells tape 1", "line 1: the last line has no end: the tape was cut"},
      {kStart + "hello\n", "line 3: no number of a session"},
      {kStart + "0 execute http://h\n\n", "line 3: no number of a session"},
      {kStart + "9999999999 execute http://h\n\n", "line 3: no number of a session"},
      {kStart + "1 dance http://h\n\n", "line 3: no purpose or no server of an exchange"},
      {kStart + "1 execute \\\n\n", "line 3: no purpose or no server of an exchange"},
      {kStart + "1 execute http://h\n> \\\n\n", "line 5: an entry without a request"},
      {kStart + "session 1 2\n", "line 3: more than the number of a session"},
      {kStart + "1 execute http://h\n", "line 3: no empty line after the last entry: the tape was cut"},
      {kStart + "1 execute http://h\n\n", "line 4: an entry without a request"},
      {kStart + "1 execute http://h\n< HTTP/1.1 200 OK\\r\n\n", "line 5: an entry without a request"},
      {kStart + "1 execute http://h\n? a\n", "line 4: a line without a known mark"},
      {kStart + "1 execute http://h\n> a\\q\n", "line 4: an escape that is not known"},
      {kStart + "1 execute http://h\n<b A\n", "line 4: a damaged line of base64"},
      {kStart + "1 execute http://h\n! receive 0x1 a\n", "line 4: a failure without phase, code or message"},
      {kStart + "1 execute http://h\n! dance 0x80004005 a\n",
       "line 4: a failure without phase, code or message"},
      {kStart + "1 execute http://h\xFF\n", "line 3: bytes that are not UTF-8"},
      {kStart + "1 execute http://h\n> a\r\n", "line 4: a control character, such as an editor leaves"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(ReadingOf(row.text), std::string("local file: cannot read the tape t, ") + row.reason)
        << row.text;
  EXPECT_EQ(ReadingOf(kStart), "no error");
  EXPECT_EQ(ReadingOf(kStart + "session 1\n\n1 execute http://h\n! connect 0x80072EFD refused\n\n"),
            "no error");
}

TEST(DamagedTape, MasksCannotTakeAllMemory) {
  std::string masks;
  for (int i = 0; i < 300; ++i) masks += "<ticket:1>{65536}";
  EXPECT_EQ(ReadingOf(kStart + "1 execute http://h\n> " + masks + "\n\n"),
            "local file: cannot read the tape t, line 5: the masked secrets are longer than 16 MB");
}

TEST(DamagedTape, AFileThatIsNoneIsRefusedBeforeAnythingIsSent) {
  const qv::TemporaryDirectory directory;
  Options options;
  const auto open = [&options] { return ErrorOf([&] { Session("http://127.0.0.1:1", {"joe"}, options); }); };
  options.replay = directory.Path("none");
  EXPECT_EQ(open(),
            "local file: cannot read the tape " + directory.Path("none") + ": No such file or directory");
  options.replay = directory.Path();
  EXPECT_EQ(open(), "local file: cannot read the tape " + directory.Path() + ": not a regular file");
  options.replay = directory.Write("text", "hello\n");
  EXPECT_EQ(open(), "local file: cannot read the tape " + directory.Path("text") + ", line 1: not a tape");
  options.replay = directory.Write("empty.tape", kStart);
  EXPECT_EQ(open(), "local file: the tape " + directory.Path("empty.tape") + " has no session left to play");
}

}  // namespace
}  // namespace scriptwells
