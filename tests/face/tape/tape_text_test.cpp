// Bytes as lines of a tape, and back.
#include "face/tape/tape_text.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace scriptwells {
namespace {

std::string LinesOf(const TapeText& text) {
  return MarkedLines(text, ">>");
}

TapeText Read(const std::string& lines) {
  TapeText text;
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);)
    (line.substr(0, 3) == ">b " ? ReadBase64Line : ReadTapeLine)(std::string_view(line).substr(3), &text);
  return text;
}

std::string Shown(const TapeText& text) {
  return JoinedBytes(
      text, [](const TapePiece& piece) { return "[" + piece.mask + " " + std::to_string(piece.size) + "]"; });
}

std::string FaultOf(const std::string& line) {
  try {
    TapeText text;
    ReadTapeLine(line, &text);
    return "read";
  } catch (const TapeFault& fault) {
    return fault.what();
  }
}

TEST(TapeText, IsReadable) {
  const struct {
    const char* bytes;
    const char* lines;
  } rows[] = {
      {"", ""},
      {"a", ">> a\\\n"},
      {"a\n", ">> a\n"},
      {"a\r\nb", ">> a\\r\n>> b\\\n"},
      {"\n\n", ">> \n>> \n"},
      {"a \n", ">> a\\x20\n"},
      {"C:\\x", ">> C:\\\\x\\\n"},
      {"a\tb\x1b[2J", ">> a\\tb\\x1b[2J\\\n"},
      // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
      {"Gr\xC3\xBC\xC3\x9F\x65 \xF0\x9F\x98\x80\xE2\x80\xAE",
       ">> Gr\xC3\xBC\xC3\x9F\x65 \xF0\x9F\x98\x80\\xe2\\x80\\xae\\\n"},
      {"Gr\xFC\xDF\x65, and more", ">> Gr\\xfc\\xdfe, and more\\\n"},
      {"<r><a>1</a><b/></r>", ">> <r>\\\n>> <a>1</a>\\\n>> <b/>\\\n>> </r>\\\n"},
      {"<session:1>{2}", ">> \\<session:1>{2}\\\n"},
      {"<sessions>", ">> <sessions>\\\n"},
      {"GIF\xFF\xFE\xFD\x01\x02", ">b R0lG//79AQI=\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LinesOf({{row.bytes}}), row.lines);
    EXPECT_EQ(Shown(Read(row.lines)), row.bytes);
  }
}

TEST(TapeText, HasMasksWithTheirLengths) {
  const TapeText text{{"<usid>"}, {{}, "session:1", 24}, {"</usid>x"}, {{}, "ticket:12", 0}};
  EXPECT_EQ(LinesOf(text), ">> <usid><session:1>{24}</usid>x<ticket:12>{0}\\\n");
  EXPECT_EQ(Shown(Read(LinesOf(text))), "<usid>[session:1 24]</usid>x[ticket:12 0]");
  EXPECT_EQ(TapeLines(text, TapeSizes::kLeftOut),
            std::vector<std::string>{"<usid><session:1></usid>x<ticket:12>\\"});
  EXPECT_EQ(SizeOf(text), 6U + 24 + 8);
}

TEST(TapeText, AnyBytesComeBack) {
  std::mt19937 random(7);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  const std::string alphabet("<>session:1{}\\\r\n\t \x00\x1b\xC3\xA9\xFF=a", 25);
  for (int i = 0; i < 3000; ++i) {
    std::string bytes;
    for (std::size_t size = random() % 60; size > 0; --size)
      bytes += i % 2 == 0 ? alphabet[random() % alphabet.size()] : static_cast<char>(random());
    const std::string lines = LinesOf({{bytes}});
    EXPECT_EQ(Shown(Read(lines)), bytes) << lines;
  }
}

TEST(TapeText, DamagedLinesAreRefused) {
  EXPECT_EQ(FaultOf("a\rb"), "a control character, such as an editor leaves");
  EXPECT_EQ(FaultOf("\\q"), "an escape that is not known");
  EXPECT_EQ(FaultOf("\\x4"), "\\x is not followed by two digits");
  EXPECT_EQ(FaultOf("\\xg0"), "\\x is not followed by two digits");
  EXPECT_EQ(FaultOf("<session:1>"), "a mask has no length");
  EXPECT_EQ(FaultOf("<session:>{1}"), "a mask has no number, or no length");
  EXPECT_EQ(FaultOf("<session:1"), "a mask has no number, or no length");
  EXPECT_EQ(FaultOf("<session:1>{1"), "a mask has no number, or no length");
  EXPECT_EQ(FaultOf("<session:1>{-1}"), "a mask has no number, or no length");
  EXPECT_EQ(FaultOf("<session:1>{99999999}"), "a mask is too long");
  EXPECT_EQ(FaultOf("<session:1>{65536}"), "read");
  for (const char* line : {"A", "AA", "AAAA=", "A===", "A*AA", "AA=A", "===="}) {
    TapeText text;
    EXPECT_THROW(ReadBase64Line(line, &text), TapeFault) << line;
  }
}

}  // namespace
}  // namespace scriptwells
