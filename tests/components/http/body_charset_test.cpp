#include "components/http/body_charset.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"

namespace qv {
namespace {

struct CharsetRow {
  const char* name;
  std::string contentType;
  std::string bytes;
  const char* shown;
};

class BodyCharsetTable : public ::testing::TestWithParam<CharsetRow> {};

TEST_P(BodyCharsetTable, GivesThisText) {
  const std::string& bytes = GetParam().bytes;
  const BodyCharset charset(GetParam().contentType, bytes);
  EXPECT_EQ(Shown(charset.Decode(std::string_view(bytes).substr(charset.MarkSize(bytes)))), GetParam().shown);
}

const std::string kLittleA(
    "\xFF\xFE"
    "a\0",
    4);
const std::string kBigA("\xFE\xFF\0a", 4);

INSTANTIATE_TEST_SUITE_P(
    , BodyCharsetTable,
    ::testing::Values(
        CharsetRow{"NothingSaysUtf8", "", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"TypeAloneSaysUtf8", "text/xml", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"ParameterUtf8", "text/xml; charset=utf-8", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"ParameterInQuotesAndCapitals", "text/xml; CHARSET=\"UTF-8\"", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"ParameterLatin1", "text/xml;charset=ISO-8859-1", "\xE9", "\\u00E9"},
        CharsetRow{"ParameterBehindAnother", "text/xml; x=\"a;charset=utf-8\"; charset=iso-8859-1", "\xE9",
                   "\\u00E9"},
        CharsetRow{"ParameterByConverter", "text/xml; charset=windows-1252", "\x80", "\\u20AC"},
        CharsetRow{"ParameterUtf16Little", "text/xml; charset=utf-16le", std::string("a\0", 2), "a"},
        CharsetRow{"ParameterUtf16Big", "text/xml; charset=utf-16be", std::string("\0a", 2), "a"},
        CharsetRow{"ParameterUtf16WithLittleMark", "text/xml; charset=utf-16", kLittleA, "a"},
        CharsetRow{"ParameterUtf16WithBigMark", "text/xml; charset=utf-16", kBigA, "a"},
        CharsetRow{"ParameterUtf16WithoutMark", "text/xml; charset=utf-16", std::string("\0a", 2), "a"},
        CharsetRow{"ParameterUtf16WithoutMarkLittle", "text/xml; charset=utf-16", std::string("<\0", 2), "<"},
        CharsetRow{"ParameterBeatsDeclaration", "text/xml; charset=iso-8859-1",
                   "<?xml encoding='utf-8'?>\xE9", "<?xml encoding='utf-8'?>\\u00E9"},
        CharsetRow{"ParameterBeatsMark", "text/xml; charset=iso-8859-1",
                   "\xEF\xBB\xBF"
                   "a",
                   "\\u00EF\\u00BB\\u00BFa"},
        CharsetRow{"UnknownParameterIsUtf8", "text/xml; charset=x-klingon", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"EmptyParameterIsUtf8", "text/xml; charset=", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"ParameterWithOptionsIsUtf8", "text/xml; charset=ascii//translit", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"ParameterWithPathIsUtf8", "text/xml; charset=../../tmp/x", "\xC3\xA9", "\\u00E9"},
        CharsetRow{"UnknownParameterLeavesMark", "text/xml; charset=x-klingon", kLittleA, "a"},
        CharsetRow{"MarkUtf8IsDropped", "text/xml", "\xEF\xBB\xBF\xC3\xA9", "\\u00E9"},
        CharsetRow{"MarkOfParameterIsDropped", "text/xml; charset=utf-8",
                   "\xEF\xBB\xBF"
                   "a",
                   "a"},
        CharsetRow{"MarkLittle", "text/xml", kLittleA, "a"}, CharsetRow{"MarkBig", "text/xml", kBigA, "a"},
        CharsetRow{"MarkBeatsDeclaration", "", "\xEF\xBB\xBF<?xml encoding='iso-8859-1'?>\xC3\xA9",
                   "<?xml encoding='iso-8859-1'?>\\u00E9"},
        CharsetRow{"Declaration", "text/xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\xE9",
                   "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\\u00E9"},
        CharsetRow{"DeclarationWithBlanks", "", "<?xml version='1.0' encoding = 'latin1' ?>\xE9",
                   "<?xml version='1.0' encoding = 'latin1' ?>\\u00E9"},
        CharsetRow{"DeclarationThatCannotBe", "", "<?xml encoding='utf-16'?>\xC3\xA9",
                   "<?xml encoding='utf-16'?>\\u00E9"},
        CharsetRow{"DeclarationWithoutEnd", "", "<?xml encoding='latin1\xC3\xA9",
                   "<?xml encoding='latin1\\u00E9"},
        CharsetRow{"EncodingBehindTheDeclaration", "", "<?xml ?><a encoding='latin1'>\xC3\xA9",
                   "<?xml ?><a encoding='latin1'>\\u00E9"},
        CharsetRow{"DeclarationNotAtTheStart", "", " <?xml encoding='latin1'?>\xC3\xA9",
                   " <?xml encoding='latin1'?>\\u00E9"},
        CharsetRow{"BadBytes", "text/xml; charset=us-ascii", "a\xFFz", "a\\uFFFDz"}),
    [](const ::testing::TestParamInfo<CharsetRow>& row) { return row.param.name; });

}  // namespace
}  // namespace qv
