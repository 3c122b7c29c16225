#include "support/tokenize_string.h"

#include <gtest/gtest.h>

#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

struct Split {
  const char* name;
  std::u16string_view text;
  std::u16string_view separator;
  std::vector<WideString> pieces;  // those that count
};

void ExpectSplit(const Split& row) {
  std::vector<WideString> tokens;
  EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), row.pieces.size()) << row.name;
  ASSERT_GE(tokens.size(), row.pieces.size()) << row.name;
  EXPECT_LE(tokens.size(), row.pieces.size() + 1) << row.name;
  for (std::size_t i = 0; i < row.pieces.size(); ++i)
    EXPECT_EQ(tokens[i], row.pieces[i]) << row.name << ", " << i;
}

TEST(TokenizeString, PiecesBetweenSeparatorsCount) {
  const Split rows[] = {
      {"one separator", u"a=b", u"=", {u"a", u"b"}},
      {"two separators", u"a=b=c", u"=", {u"a", u"b", u"c"}},
      {"longer pieces", u"host:8080", u":", {u"host", u"8080"}},
      {"closing separator", u"a=1;", u";", {u"a=1", u""}},
      {"closing separator behind two", u"a=1;b=2;", u";", {u"a=1", u"b=2", u""}},
      {"other characters stay", u" a ; b ", u";", {u" a ", u" b "}},
      {"null unit inside", u"a\0b=c"sv, u"=", {WideString(u"a\0b"sv), u"c"}},
      {"null unit as separator", u"a\0b"sv, u"\0"sv, {u"a", u"b"}},
      {"case counts", u"aXbxc", u"x", {u"aXb", u"c"}},
  };
  for (const Split& row : rows) ExpectSplit(row);
}

TEST(TokenizeString, SeparatorRightBehindASeparatorIsPartOfThePiece) {
  const Split rows[] = {
      {"two neighbours", u"a=1;;b=2", u";", {u"a=1", u";b=2"}},
      {"two equal signs", u"a==b", u"=", {u"a", u"=b"}},
      {"three neighbours", u"a===b", u"=", {u"a", u"=", u"b"}},
      {"four neighbours", u"a====b", u"=", {u"a", u"=", u"=b"}},
      {"two at the end", u"a==", u"=", {u"a", u"="}},
      {"three at the end", u"a===", u"=", {u"a", u"=", u""}},
      {"neighbours further on", u"a=b==c", u"=", {u"a", u"b", u"=c"}},
      {"one unit between", u"a=b=", u"=", {u"a", u"b", u""}},
  };
  for (const Split& row : rows) ExpectSplit(row);
}

TEST(TokenizeString, SeparatorOfSeveralUnits) {
  const Split rows[] = {
      {"protocol", u"scheme://srv/a", u"://", {u"scheme", u"srv/a"}},
      {"twice", u"a://b://c", u"://", {u"a", u"b", u"c"}},
      {"nothing behind", u"a://", u"://", {u"a", u""}},
      {"neighbour not seen", u"a://://b", u"://", {u"a", u"://b"}},
      {"one unit between is seen", u"a://x://b", u"://", {u"a", u"x", u"b"}},
      {"three neighbours", u"a://://://b", u"://", {u"a", u"://", u"b"}},
      {"overlapping", u"aXXXb", u"XX", {u"a", u"Xb"}},
      {"overlapping longer", u"aXXXXb", u"XX", {u"a", u"XXb"}},
      {"five in a row", u"aXXXXXb", u"XX", {u"a", u"X", u"b"}},
      {"slash before the path", u"a:///b", u"://", {u"a", u"/b"}},
      {"backslashes", u"scheme:\\\\srv/a", u":\\\\", {u"scheme", u"srv/a"}},
      {"first at one, one unit text", u"a::b", u"::", {u"a", u"b"}},
  };
  for (const Split& row : rows) ExpectSplit(row);
}

TEST(TokenizeString, WithoutSeparatorThereIsNothing) {
  const Split rows[] = {
      {"none in the text", u"Username=joe", u";", {}},
      {"empty text", u"", u";", {}},
      {"empty separator", u"abc", u"", {}},
      {"both empty", u"", u"", {}},
      {"separator longer than the text", u":/", u"://", {}},
      {"half a separator", u"a:/b", u"://", {}},
  };
  for (const Split& row : rows) {
    std::vector<WideString> tokens = {u"old", u"older"};
    EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), 0u) << row.name;
    EXPECT_TRUE(tokens.empty()) << row.name;
  }
}

TEST(TokenizeString, SeparatorAtTheStartGivesZeroAndOneEmptyToken) {
  const Split rows[] = {
      {"text behind", u";a;b", u";", {}},         {"separator only", u";", u";", {}},
      {"separators only", u";;;", u";", {}},      {"several units", u"://srv/a", u"://", {}},
      {"several units only", u"://", u"://", {}},
  };
  for (const Split& row : rows) {
    std::vector<WideString> tokens = {u"old", u"older"};
    EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), 0u) << row.name;
    ASSERT_EQ(tokens.size(), 1u) << row.name;
    EXPECT_TRUE(tokens[0].IsEmpty()) << row.name;
    EXPECT_FALSE(tokens[0].IsNull()) << row.name;
  }
}

TEST(TokenizeString, OldTokensAreCleared) {
  std::vector<WideString> tokens = {u"old", u"older", u"oldest", u"more", u"most"};
  EXPECT_EQ(TokenizeString(u"a=b", u"=", tokens), 2u);
  EXPECT_LE(tokens.size(), 3u);
  EXPECT_EQ(tokens[0], u"a");
}

TEST(TokenizeString, EmptyPieceIsNotNull) {
  std::vector<WideString> tokens;
  ASSERT_EQ(TokenizeString(u"Password=", u"=", tokens), 2u);
  EXPECT_TRUE(tokens[1].IsEmpty());
  EXPECT_FALSE(tokens[1].IsNull());
}

TEST(TokenizeString, ManyPieces) {
  std::u16string text;
  for (int i = 0; i < 10000; ++i) text += u"ab;";
  std::vector<WideString> tokens;
  EXPECT_EQ(TokenizeString(text, u";", tokens), 10001u);
  EXPECT_EQ(tokens[9999], u"ab");
  EXPECT_TRUE(tokens[10000].IsEmpty());
}

}  // namespace
}  // namespace qv
