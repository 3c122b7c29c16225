#include "devservice/soap/well_formed.h"

#include <gtest/gtest.h>

namespace qv::devservice::testing {
namespace {

using std::string_literals::operator""s;

TEST(WellFormed, DocumentsPass) {
  for (const std::string& text :
       {"<a/>"s, "<?xml version=\"1.0\"?>\n<a b='&amp;'>\t&#9;&#128512;\xC3\xA9<![CDATA[<]]></a>\n"s,
        "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"s, "<a>\xC2\x85</a>"s,
        "<a>" + std::string(3000000, 'x') + "</a>"}) {
    EXPECT_EQ(FaultInXml(text, nullptr), "") << text.substr(0, 100);
  }
}

TEST(WellFormed, WhatClientsWriteAndXmlForbidsIsNamed) {
  EXPECT_EQ(FaultInXml("<a>&#55357;&#56832;</a>", nullptr),
            "reference to invalid character number at byte 3, \"&#55357;\"");
  EXPECT_EQ(FaultInXml("<a>&#1;</a>", nullptr), "reference to invalid character number at byte 3, \"&#1;\"");
  EXPECT_EQ(FaultInXml("<a>x\x01</a>", nullptr),
            "not well-formed (invalid token) at byte 4, the character code 1");
  EXPECT_EQ(FaultInXml("<a>\xED\xA0\xBD</a>", nullptr), "not well-formed (invalid token) at byte 3");
}

TEST(WellFormed, OtherTextsAreNoDocuments) {
  EXPECT_EQ(FaultInXml("", nullptr), "no element found at byte 0");
  EXPECT_EQ(FaultInXml("<a>", nullptr), "no element found at byte 3");
  EXPECT_EQ(FaultInXml("<a></b>", nullptr), "mismatched tag at byte 5");
  EXPECT_EQ(FaultInXml("<a/><a/>", nullptr), "junk after document element at byte 4");
  EXPECT_EQ(FaultInXml("<a b='1' b='2'/>", nullptr), "duplicate attribute at byte 9");
  EXPECT_EQ(FaultInXml("<a>&e;</a>", nullptr), "undefined entity at byte 3, \"&e;\"");
  EXPECT_EQ(FaultInXml("<!DOCTYPE ><a/>", nullptr), "syntax error at byte 10");
  EXPECT_EQ(FaultInXml("<a>\0</a>"s, nullptr),
            "not well-formed (invalid token) at byte 3, the character code 0");
}

// The text of a script document has left its encoding behind.
TEST(WellFormed, GivenEncodingHoldsAgainstTheDeclaration) {
  const std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xC3\xA9</a>";
  EXPECT_EQ(FaultInXml(text, "UTF-8"), "");
  EXPECT_EQ(FaultInXml("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", "UTF-8"), "");
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
