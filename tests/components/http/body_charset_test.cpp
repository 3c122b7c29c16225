// Which character set a body is read in.
#include "components/http/body_charset.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"

namespace qv {
namespace {

struct CharsetRow {
  const char* contentType;
  std::string bytes;
  const char* shown;
};

void ExpectShown(std::initializer_list<CharsetRow> rows) {
  for (const CharsetRow& row : rows) {
    const BodyCharset charset(row.contentType, row.bytes);
    const std::string_view text = std::string_view(row.bytes).substr(charset.MarkSize(row.bytes));
    EXPECT_EQ(Shown(charset.Decode(text)), row.shown) << row.contentType << " " << row.bytes;
  }
}

const std::string kLittleA("\xFF\xFE\x61\0", 4);
const std::string kBigA("\xFE\xFF\0a", 4);

TEST(BodyCharset, ParameterDecides) {
  ExpectShown({
      {"text/xml; charset=utf-8", "\xC3\xA9", "\\u00E9"},
      {"text/xml; CHARSET=\"UTF-8\"", "\xC3\xA9", "\\u00E9"},
      {"text/xml;charset=ISO-8859-1", "\xE9", "\\u00E9"},
      {"text/xml; x=\"a;charset=utf-8\"; charset=iso-8859-1", "\xE9", "\\u00E9"},
      {"text/xml; charset=windows-1252", "\x80", "\\u20AC"},
      {"text/xml; charset=utf-16le", std::string("a\0", 2), "a"},
      {"text/xml; charset=utf-16be", std::string("\0a", 2), "a"},
      {"text/xml; charset=utf-16", kLittleA, "a"},
      {"text/xml; charset=utf-16", kBigA, "a"},
      {"text/xml; charset=utf-16", std::string("\0a", 2), "a"},
      {"text/xml; charset=utf-16", std::string("<\0", 2), "<"},
      {"text/xml; charset=us-ascii", "a\xFFz", "a\\uFFFDz"},
      // It comes before a declaration and a mark.
      {"text/xml; charset=iso-8859-1", "<?xml encoding='utf-8'?>\xE9", "<?xml encoding='utf-8'?>\\u00E9"},
      {"text/xml; charset=iso-8859-1", "\xEF\xBB\xBF\x61", R"(\u00EF\u00BB\u00BFa)"},
  });
}

TEST(BodyCharset, Utf8WithoutAKnownParameter) {
  ExpectShown({
      {"", "\xC3\xA9", "\\u00E9"},
      {"text/xml", "\xC3\xA9", "\\u00E9"},
      {"text/xml; charset=x-klingon", "\xC3\xA9", "\\u00E9"},
      {"text/xml; charset=", "\xC3\xA9", "\\u00E9"},
      {"text/xml; charset=ascii//translit", "\xC3\xA9", "\\u00E9"},
      {"text/xml; charset=../../tmp/x", "\xC3\xA9", "\\u00E9"},
  });
}

TEST(BodyCharset, MarkDecidesAndIsDropped) {
  ExpectShown({
      {"text/xml", "\xEF\xBB\xBF\xC3\xA9", "\\u00E9"},
      {"text/xml; charset=utf-8", "\xEF\xBB\xBF\x61", "a"},
      {"text/xml; charset=x-klingon", kLittleA, "a"},
      {"text/xml", kLittleA, "a"},
      {"text/xml", kBigA, "a"},
      {"", "\xEF\xBB\xBF<?xml encoding='iso-8859-1'?>\xC3\xA9", "<?xml encoding='iso-8859-1'?>\\u00E9"},
  });
}

TEST(BodyCharset, DeclarationAtTheStartDecides) {
  ExpectShown({
      {"text/xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\xE9",
       R"(<?xml version="1.0" encoding="ISO-8859-1"?>\u00E9)"},
      {"", "<?xml version='1.0' encoding = 'latin1' ?>\xE9",
       "<?xml version='1.0' encoding = 'latin1' ?>\\u00E9"},
      // UTF-16 cannot be true, and without its end or elsewhere it is no declaration.
      {"", "<?xml encoding='utf-16'?>\xC3\xA9", "<?xml encoding='utf-16'?>\\u00E9"},
      {"", "<?xml encoding='latin1\xC3\xA9", "<?xml encoding='latin1\\u00E9"},
      {"", "<?xml ?><a encoding='latin1'>\xC3\xA9", "<?xml ?><a encoding='latin1'>\\u00E9"},
      {"", " <?xml encoding='latin1'?>\xC3\xA9", " <?xml encoding='latin1'?>\\u00E9"},
  });
}

}  // namespace
}  // namespace qv
