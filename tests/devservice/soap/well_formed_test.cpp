// The strict check of XML, and its messages.
#include "devservice/soap/well_formed.h"

#include <gtest/gtest.h>

namespace qv::devservice::testing {
namespace {

using namespace std::string_literals;

TEST(WellFormed, DocumentsPass) {
  for (const std::string& text :
       {"<a/>"s, "<?xml version=\"1.0\"?>\n<a b='&amp;'>\t&#9;&#128512;\xC3\xA9<![CDATA[<]]></a>\n"s,
        "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"s, "<a>\xC2\x85</a>"s,
        "<a>" + std::string(3000000, 'x') + "</a>"})
    EXPECT_EQ(FaultInXml(text, nullptr), "") << text.substr(0, 100);
  // A given encoding is stronger than the declaration.
  EXPECT_EQ(FaultInXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xC3\xA9</a>", "UTF-8"), "");
  EXPECT_EQ(FaultInXml("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", "UTF-8"), "");
}

TEST(WellFormed, ErrorsHaveMessages) {
  const std::pair<std::string, const char*> rows[] = {
      {"<a>&#55357;&#56832;</a>", "reference to invalid character number at byte 3, \"&#55357;\""},
      {"<a>&#1;</a>", "reference to invalid character number at byte 3, \"&#1;\""},
      {"<a>x\x01</a>", "not well-formed (invalid token) at byte 4, the character code 1"},
      {"<a>\xED\xA0\xBD</a>", "not well-formed (invalid token) at byte 3"},
      {"<a>\0</a>"s, "not well-formed (invalid token) at byte 3, the character code 0"},
      {"", "no element found at byte 0"},
      {"<a>", "no element found at byte 3"},
      {"<a></b>", "mismatched tag at byte 5"},
      {"<a/><a/>", "junk after document element at byte 4"},
      {"<a b='1' b='2'/>", "duplicate attribute at byte 9"},
      {"<a>&e;</a>", "undefined entity at byte 3, \"&e;\""},
      {"<!DOCTYPE ><a/>", "syntax error at byte 10"},
  };
  for (const auto& [text, message] : rows) EXPECT_EQ(FaultInXml(text, nullptr), message) << text;
}

TEST(WellFormed, GrowthByEntitiesIsLimited) {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'>";
  for (int i = 1; i < 12; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) text += "&e" + std::to_string(i - 1) + ";";
    text += "'>";
  }
  EXPECT_EQ(FaultInXml(text + "]><a>&e11;</a>", nullptr).substr(0, 40),
            "limit on input amplification factor (fro");
}

}  // namespace
}  // namespace qv::devservice::testing
