// Texts cut at a separator, neighbouring separators included.
#include "support/tokenize_string.h"

#include <gtest/gtest.h>

#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

using Pieces = std::vector<WideString>;

struct Split {
  std::u16string_view text;
  std::u16string_view separator;
  Pieces pieces;  // those that count
};

void ExpectSplit(const std::vector<Split>& rows) {
  for (const Split& row : rows) {
    SCOPED_TRACE(Shown(WideString(row.text)));
    Pieces tokens;
    EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), row.pieces.size());
    ASSERT_GE(tokens.size(), row.pieces.size());
    EXPECT_LE(tokens.size(), row.pieces.size() + 1);
    for (std::size_t i = 0; i < row.pieces.size(); ++i) EXPECT_EQ(tokens[i], row.pieces[i]) << i;
  }
}

TEST(TokenizeString, PiecesBetweenSeparatorsCount) {
  const std::vector<Split> rows = {{u"a=b", u"=", {u"a", u"b"}},       {u"a=b=c", u"=", {u"a", u"b", u"c"}},
                                   {u"a=1;", u";", {u"a=1", u""}},     {u" a ; b ", u";", {u" a ", u" b "}},
                                   {u"a\0b"sv, u"\0"sv, {u"a", u"b"}}, {u"aXbxc", u"x", {u"aXb", u"c"}}};
  ExpectSplit(rows);
  ExpectSplit({{u"host:8080", u":", {u"host", u"8080"}},
               {u"a=1;b=2;", u";", {u"a=1", u"b=2", u""}},
               {u"a\0b=c"sv, u"=", {WideString(u"a\0b"sv), u"c"}}});
}

TEST(TokenizeString, SeparatorRightAfterASeparatorIsPartOfThePiece) {
  const std::vector<Split> rows = {
      {u"a=1;;b=2", u";", {u"a=1", u";b=2"}}, {u"a==b", u"=", {u"a", u"=b"}},
      {u"a===b", u"=", {u"a", u"=", u"b"}},   {u"a====b", u"=", {u"a", u"=", u"=b"}},
      {u"a==", u"=", {u"a", u"="}},           {u"a===", u"=", {u"a", u"=", u""}},
      {u"a=b==c", u"=", {u"a", u"b", u"=c"}}, {u"a=b=", u"=", {u"a", u"b", u""}}};
  ExpectSplit(rows);
}

// A neighbour is not seen, one after at least one unit is.
TEST(TokenizeString, SeparatorOfSeveralUnits) {
  const std::vector<Split> rows = {{u"scheme://srv/a", u"://", {u"scheme", u"srv/a"}},
                                   {u"a://b://c", u"://", {u"a", u"b", u"c"}},
                                   {u"a://", u"://", {u"a", u""}},
                                   {u"a://://b", u"://", {u"a", u"://b"}},
                                   {u"a://x://b", u"://", {u"a", u"x", u"b"}},
                                   {u"a://://://b", u"://", {u"a", u"://", u"b"}},
                                   {u"aXXXb", u"XX", {u"a", u"Xb"}},
                                   {u"aXXXXb", u"XX", {u"a", u"XXb"}},
                                   {u"aXXXXXb", u"XX", {u"a", u"X", u"b"}},
                                   {u"a:///b", u"://", {u"a", u"/b"}},
                                   {u"a::b", u"::", {u"a", u"b"}}};
  ExpectSplit(rows);
  ExpectSplit({{u"scheme:\\\\srv/a", u":\\\\", {u"scheme", u"srv/a"}}});
}

struct Unsplit {
  std::u16string_view text, separator;
};

TEST(TokenizeString, WithoutSeparatorThereIsNothing) {
  const Unsplit rows[] = {{u"Username=joe", u";"}, {u"", u";"},      {u"abc", u""}, {u"", u""},
                          {u":/", u"://"},         {u"a:/b", u"://"}};
  for (const Unsplit& row : rows) {
    std::vector<WideString> tokens = {u"old", u"older"};
    EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), 0U) << Shown(WideString(row.text));
    EXPECT_TRUE(tokens.empty()) << Shown(WideString(row.text));
  }
}

TEST(TokenizeString, SeparatorAtTheStartGivesZeroAndOneEmptyToken) {
  const Unsplit rows[] = {
      {u";a;b", u";"}, {u";", u";"}, {u";;;", u";"}, {u"://srv/a", u"://"}, {u"://", u"://"}};
  for (const Unsplit& row : rows) {
    std::vector<WideString> tokens = {u"old", u"older"};
    EXPECT_EQ(TokenizeString(row.text, row.separator, tokens), 0U) << Shown(WideString(row.text));
    ASSERT_EQ(tokens.size(), 1U) << Shown(WideString(row.text));
    EXPECT_TRUE(tokens[0].IsEmpty()) << Shown(WideString(row.text));
    EXPECT_FALSE(tokens[0].IsNull()) << Shown(WideString(row.text));
  }
}

TEST(TokenizeString, OldTokensAreCleared) {
  std::vector<WideString> tokens = {u"old", u"older", u"oldest", u"more", u"most"};
  EXPECT_EQ(TokenizeString(u"a=b", u"=", tokens), 2U);
  EXPECT_LE(tokens.size(), 3U);
  EXPECT_EQ(tokens[0], u"a");
}

TEST(TokenizeString, EmptyPieceIsNotNull) {
  std::vector<WideString> tokens;
  ASSERT_EQ(TokenizeString(u"Password=", u"=", tokens), 2U);
  EXPECT_TRUE(tokens[1].IsEmpty());
  EXPECT_FALSE(tokens[1].IsNull());
}

TEST(TokenizeString, ManyPieces) {
  std::u16string text;
  for (int i = 0; i < 10000; ++i) text += u"ab;";
  std::vector<WideString> tokens;
  EXPECT_EQ(TokenizeString(text, u";", tokens), 10001U);
  EXPECT_EQ(tokens[9999], u"ab");
  EXPECT_TRUE(tokens[10000].IsEmpty());
}

}  // namespace
}  // namespace qv
