// Which documents are plain, and what an answer's document is read from.
#include "xml/plain_scanner.h"

#include <xercesc/util/OutOfMemoryException.hpp>

#include "needs_plain_scanner.h"
#include "stock_parser.h"
#include "tree_comparison.h"
#include "xml/answer_document.h"
#include "xml_fixture.h"

namespace qv {
namespace {

class PlainScannerTest : public XmlFixture {
 protected:
  void SetUp() override { NEEDS_PLAIN_SCANNER(); }
  // Scans a copy of the text, which the nodes are views of.
  bool IsPlain(std::u16string_view text) {
    text_ = text;
    tree_.Forget();
    memory_.GiveAllBack();
    tree_.Start(text_, CompactTree::CeilingFor(text_.size()));
    return ScanPlainDocument(text_, tree_);
  }
  void ExpectPlain(std::u16string_view text) {
    ASSERT_TRUE(IsPlain(text)) << Start(text);
    EXPECT_EQ(DifferenceBetween(XmlNode(tree_, 0), stock_.Parse(text)), "") << Start(text);
  }
  void ExpectNotPlain(std::u16string_view text) { EXPECT_FALSE(IsPlain(text)) << Start(text); }

  std::u16string text_;
  ParseMemory memory_;
  CompactTree tree_{memory_};
  StockParser stock_;
};

TEST_F(PlainScannerTest, PlainDocumentsAreReadAsTheLibraryReadsThem) {
  for (const char16_t* text :
       {u"<a/>", u"<a></a>", u" \n\t<a >text</a\n>\n\n", u"<a><b/>x<b>y</b>z<b><c/></b></a>",
        u"<?xml version='1.0'?><a/>", u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a/>",
        u"<?xml  version = '1.0' encoding='a.b_C-1' standalone='yes' ?><a/>",
        u"<?xml version='1.0' standalone='no'?><a/>",
        u"<a k='1' xsi:type=\"x'y\" z = '>\"'\n_-.1='\u00FC\U0001F600'/>", u"<a k='' m=\"\"></a>",
        u"<a k='&lt;&amp;&gt;&quot;&apos;&#10;&#x9;&#13;'>&lt;&amp;&gt;&quot;&apos;&#10;&#x1f600;</a>",
        u"<a>\n\t<b>\n</b> </a>", u"<a>] ]&#93;&gt; > / = \u2028\u00FC\u4E2D\U0001F600\uFFFD\u007F</a>",
        u"<a>x&amp;</a>", u"<a>&amp;x</a>", u"<a>&#0065;</a>", u"<A:b:c.d-e_1 F='g'/>"})
    ExpectPlain(text);
}

TEST_F(PlainScannerTest, OthersAreLeftToTheLibrary) {
  using namespace std::literals::string_view_literals;
  for (const std::u16string_view text : {u""sv,
                                         u"x"sv,
                                         u"  "sv,
                                         u">"sv,
                                         u"<"sv,
                                         u"<>"sv,
                                         u"</>"sv,
                                         u"</a>"sv,
                                         u"<a"sv,
                                         u"<a>"sv,
                                         u"<a>x"sv,
                                         u"<a>x>"sv,
                                         u"<a/"sv,
                                         u"<a/>x"sv,
                                         u"<a/><b/>"sv,
                                         u"<a/></a>"sv,
                                         u"<a></b>"sv,
                                         u"<ab></a>"sv,
                                         u"<a></ab>"sv,
                                         u"<a/ >"sv,
                                         u"< a/>"sv,
                                         u"<a>< /a>"sv,
                                         u"<a></ a>"sv,
                                         u"<a><b></a></b>"sv,
                                         u"\uFEFF<a/>"sv,
                                         u"<?xml version='1.1'?><a/>"sv,
                                         u" <?xml version='1.0'?><a/>"sv,
                                         u"<?p?><a/>"sv,
                                         u"<?xml version='1.0'?>"sv,
                                         u"<?xml version='1.0' encoding='1'?><a/>"sv,
                                         u"<?xml?><a/>"sv,
                                         u"<?xml version='1.0'encoding='a'?><a/>"sv,
                                         u"<!--c--><a/>"sv,
                                         u"<!DOCTYPE a><a/>"sv,
                                         u"<a/><!--c-->"sv,
                                         u"<a><!--c--></a>"sv,
                                         u"<a><?p?></a>"sv,
                                         u"<a><![CDATA[x]]></a>"sv,
                                         u"<a>x]]y</a>"sv,
                                         u"<a>\r</a>"sv,
                                         u"<a>\x01</a>"sv,
                                         u"<a>\0</a>"sv,
                                         u"<a>\uFFFE</a>"sv,
                                         u"<a>\uFFFF</a>"sv,
                                         u"<a>&nobody;</a>"sv,
                                         u"<a>&lt</a>"sv,
                                         u"<a>&;</a>"sv,
                                         u"<a>& </a>"sv,
                                         u"<a>&#;</a>"sv,
                                         u"<a>&#x;</a>"sv,
                                         u"<a>&#X41;</a>"sv,
                                         u"<a>&#0;</a>"sv,
                                         u"<a>&#xD800;</a>"sv,
                                         u"<a>&#x110000;</a>"sv,
                                         u"<a>&#xFFFE;</a>"sv,
                                         u"<a>&#4294967361;</a>"sv,
                                         u"<a k/>"sv,
                                         u"<a k=v/>"sv,
                                         u"<a k='v/>"sv,
                                         u"<a k='<'/>"sv,
                                         u"<a k='\n'/>"sv,
                                         u"<a k='\t'/>"sv,
                                         u"<a k='1'm='2'/>"sv,
                                         u"<a k='1' k='2'/>"sv,
                                         u"<a k='&'/>"sv,
                                         u"<\u00E9/>"sv,
                                         u"<a \u00E9=''/>"sv,
                                         u"<:a/>"sv,
                                         u"<1/>"sv,
                                         u"<a>\0</a>\0"sv})
    ExpectNotPlain(text);
  for (const char16_t half : {char16_t{0xD83D}, char16_t{0xDE00}})
    ExpectNotPlain(u"<a>" + std::u16string(1, half) + u"</a>");
}

TEST_F(PlainScannerTest, CountsAndLengthsAreLimited) {
  const auto names = [](int count) { return u"<r>" + Numbered(u"<n", count - 1, u"/>") + u"</r>"; };
  const auto attributes = [](int count) { return u"<r" + Numbered(u" n", count, u"=''") + u"/>"; };
  ExpectPlain(names(128));
  ExpectNotPlain(names(129));
  ExpectPlain(attributes(32));
  ExpectNotPlain(attributes(33));
  ExpectPlain(u"<" + Repeat(u"n", 256) + u"/>");
  ExpectNotPlain(u"<" + Repeat(u"n", 257) + u"/>");
}

TEST_F(PlainScannerTest, DepthIsNotLimited) {
  ASSERT_TRUE(IsPlain(Repeat(u"<a>", 1000000) + Repeat(u"</a>", 1000000)));
  XmlNode node(tree_, 0);
  int depth = 0;
  for (; !node.IsNull(); node = node.FirstChild()) ++depth;
  EXPECT_EQ(depth, 1000001);
}

// 20 bytes for each of two nodes in five units, and a little for the growth.
TEST_F(PlainScannerTest, DensestMarkupStaysBelowTheCeiling) {
  ASSERT_TRUE(IsPlain(u"<r>" + Repeat(u"x<a/>", 4000000) + u"</r>"));
  EXPECT_LT(memory_.BytesInUse(), CompactTree::CeilingFor(20000007));
}

TEST_F(PlainScannerTest, CeilingIsToldWhileScanning) {
  const std::u16string text = u"<r>" + Repeat(u"x<a/>", 100000) + u"</r>";
  tree_.Start(text, 1000000);
  EXPECT_THROW(ScanPlainDocument(text, tree_), XERCES_CPP_NAMESPACE::OutOfMemoryException);
  EXPECT_LT(memory_.BytesInUse(), 1000000U + (1U << 20));  // what the first block leaves unused, too
}

class AnswerDocumentTest : public XmlFixture {};

TEST_F(AnswerDocumentTest, NothingIsThereBeforeReading) {
  const AnswerDocument document;
  EXPECT_TRUE(document.Document().IsNull());
  EXPECT_EQ(document.BytesInUse(), 0U);
}

// A parser takes 200 kB and more.
TEST_F(AnswerDocumentTest, PlainTextNeedsNoParser) {
  NEEDS_PLAIN_SCANNER();
  AnswerDocument plain;
  plain.ReadText(u"<a k='v'>text</a>", "application/xml");
  EXPECT_EQ(GetNodeText(plain.Document().FirstChild()), u"text");
  EXPECT_LT(plain.BytesInUse(), 10000U);
  AnswerDocument other;
  other.ReadText(u"<a k='v'>text<!----></a>", "application/xml");
  EXPECT_EQ(GetNodeText(other.Document().FirstChild()), u"text");
  EXPECT_GT(other.BytesInUse(), 100000U);
}

TEST_F(AnswerDocumentTest, ElementNamesOfTheDocumentAreKnown) {
  for (const char16_t* text : {u"<a><x:b c='d'/></a>", u"<a><x:b c='d'/><!----></a>"}) {
    AnswerDocument document;
    document.ReadText(text, "application/xml");
    EXPECT_TRUE(document.MayHold(u"a"));
    EXPECT_TRUE(document.MayHold(u"x:b"));
    for (const char16_t* name : {u"b", u"c", u"", u"a "}) EXPECT_FALSE(document.MayHold(name)) << Shown(name);
  }
}

TEST_F(AnswerDocumentTest, ErrorsAreTheLibrarysOwn) {
  AnswerDocument document;
  try {
    document.ReadText(u"<a>\n<b>\n</a>", "application/xml");
    FAIL() << "read";
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException& error) {
    EXPECT_EQ(std::u16string(error.getMessage()), u"expected end of tag 'b'");
    EXPECT_EQ(error.getLineNumber(), 3U);
    EXPECT_EQ(error.getColumnNumber(), 3U);
  }
}

// A ceiling that the scanner reaches is reported by the parser, with the place that it reached.
TEST_F(AnswerDocumentTest, CeilingOfTheThreadHoldsForBothWays) {
  const std::u16string dense = u"<r>\n" + Repeat(u"<a/>", 1000000);
  for (const char16_t* end : {u"</r>", u"<!----></r>"}) {
    SetThreadXmlMemoryCeiling(std::size_t{4} << 20);
    const std::u16string text = dense + end;
    AnswerDocument document;
    try {
      document.ReadText(text, "application/xml");
      ADD_FAILURE() << "read";
    } catch (const XERCES_CPP_NAMESPACE::SAXParseException& error) {
      EXPECT_EQ(std::u16string(error.getMessage()), u"The document needs more memory than it may have.");
      EXPECT_EQ(error.getLineNumber(), 2U);
      EXPECT_GT(error.getColumnNumber(), 1000U);
    }
    EXPECT_LT(document.BytesInUse(), std::size_t{5} << 20);
    SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling);
  }
}

}  // namespace
}  // namespace qv
