// One node of a parsed document, its links, and the text that formaters read.
#include "xml/xml_node.h"

#include "xml_fixture.h"

namespace qv {
namespace {

class XmlNodeTest : public XmlFixture {};

TEST_F(XmlNodeTest, NullNodeAnswersEverythingWithNothing) {
  const XmlNode node;
  for (const XmlNode& none :
       {node, node.FirstChild(), node.LastChild(), node.NextSibling(), node.Parent(), node.Attribute(u"a")})
    EXPECT_TRUE(none.IsNull());
  EXPECT_EQ(node.NodeType(), 0);
  for (const std::u16string_view text : {node.Name(), node.Value(), GetNodeText(node)}) EXPECT_EQ(text, u"");
  EXPECT_FALSE(node.HasValue());
  EXPECT_FALSE(node.HasAttributeMap());
}

TEST_F(XmlNodeTest, TypesHaveTheNumbersOfLevel1) {
  XmlNode child = Root(u"<r><e/>t<![CDATA[c]]><!--k--><?p d?></r>").FirstChild();
  for (const int type : {1, 3, 4, 8, 7}) {
    EXPECT_EQ(child.NodeType(), type);
    child = child.NextSibling();
  }
  EXPECT_TRUE(child.IsNull());
}

TEST_F(XmlNodeTest, NamesAreQualified) {
  const XmlNode root = Root(u"<soap:Envelope xmlns:soap='s' xsi:type='t'><NS2:x/></soap:Envelope>");
  EXPECT_EQ(root.Name(), u"soap:Envelope");
  EXPECT_EQ(root.FirstChild().Name(), u"NS2:x");
  EXPECT_EQ(root.Attribute(u"xsi:type").Name(), u"xsi:type");
}

TEST_F(XmlNodeTest, ElementHasNoValueTextAndCDataHave) {
  const XmlNode root = Root(u"<r>text<![CDATA[]]></r>");
  EXPECT_FALSE(root.HasValue());
  EXPECT_EQ(root.Value(), u"");
  EXPECT_TRUE(root.FirstChild().HasValue());
  EXPECT_EQ(root.FirstChild().Value(), u"text");
  EXPECT_TRUE(root.LastChild().HasValue());
  EXPECT_EQ(root.LastChild().Value(), u"");
}

TEST_F(XmlNodeTest, LinksLeadThroughTheTree) {
  const XmlNode root = Root(u"<r><a/><b/><c/></r>");
  EXPECT_EQ(root.FirstChild().Name(), u"a");
  EXPECT_EQ(root.LastChild().Name(), u"c");
  EXPECT_EQ(root.FirstChild().NextSibling().Name(), u"b");
  EXPECT_TRUE(root.LastChild().NextSibling().IsNull());
  EXPECT_TRUE(root.LastChild().Parent() == root);
  EXPECT_EQ(root.Parent().NodeType(), 9);
  EXPECT_TRUE(root.Parent().Parent().IsNull());
}

TEST_F(XmlNodeTest, EqualityIsSameness) {
  const XmlNode root = Root(u"<r><a/><a/></r>");
  EXPECT_TRUE(root.FirstChild() == root.FirstChild());
  EXPECT_TRUE(root.FirstChild() != root.LastChild());
  EXPECT_TRUE(XmlNode() == XmlNode());
  EXPECT_TRUE(root != XmlNode());
}

TEST_F(XmlNodeTest, OnlyElementsHaveAnAttributeMap) {
  const XmlNode root = Root(u"<r>t<e/></r>");
  EXPECT_TRUE(root.HasAttributeMap());
  EXPECT_TRUE(root.LastChild().HasAttributeMap());
  EXPECT_FALSE(root.FirstChild().HasAttributeMap());
  EXPECT_FALSE(root.Parent().HasAttributeMap());
}

TEST_F(XmlNodeTest, AttributeIsFoundByItsExactName) {
  const XmlNode root = Root(u"<r zeta='1' xsi:type='xsd:int' alpha='' Xsi:type='no'/>");
  EXPECT_EQ(root.Attribute(u"xsi:type").Value(), u"xsd:int");
  EXPECT_EQ(root.Attribute(u"xsi:type").NodeType(), 2);
  EXPECT_EQ(root.Attribute(u"zeta").Value(), u"1");
  EXPECT_EQ(root.Attribute(u"alpha").Value(), u"");
  EXPECT_FALSE(root.Attribute(u"alpha").IsNull());
  EXPECT_TRUE(root.Attribute(u"type").IsNull());
  EXPECT_TRUE(root.Attribute(u"").IsNull());
  EXPECT_TRUE(root.Attribute(std::u16string_view(u"zeta\0x", 6)).IsNull());
}

TEST_F(XmlNodeTest, AttributeNameOfAnyLengthIsFound) {
  std::u16string text = u"<r";
  for (const int length : {31, 32, 90})
    text += u" " + Repeat(u"n", length) + u"='" + Repeat(u"v", length) + u"'";
  const XmlNode root = Root(text + u"/>");
  for (const int length : {31, 32, 90})
    EXPECT_EQ(root.Attribute(Repeat(u"n", length)).Value(), Repeat(u"v", length));
}

// The first text child before all others, then the last child whatever it is, then the node itself.
TEST_F(XmlNodeTest, TextOfANode) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"<r>abc</r>", u"abc"},
      {u"<r><a>no</a>first<b/>second</r>", u"first"},
      {u"<r> <![CDATA[data]]></r>", u" "},
      {u"<r><a/><![CDATA[one]]><![CDATA[two]]></r>", u"two"},
      {u"<r><![CDATA[one]]><!--said--></r>", u"said"},
      {u"<r><a>no</a></r>", u""},
      {u"<r/>", u""}};
  for (const auto& [element, text] : rows) EXPECT_EQ(GetNodeText(Root(element)), text) << Shown(element);
  const XmlNode root = Root(u"<r a='v&amp;w' b=''>own</r>");
  EXPECT_EQ(GetNodeText(root.FirstChild()), u"own");
  EXPECT_EQ(GetNodeText(root.Attribute(u"a")), u"v&w");
  EXPECT_EQ(GetNodeText(root.Attribute(u"b")), u"");
  EXPECT_TRUE(root.FirstChild().Attribute(u"a").IsNull());
}

TEST_F(XmlNodeTest, FirstTextChildIsFoundAfterOthers) {
  EXPECT_EQ(FirstTextChild(Root(u"<a><b>no</b><!--c--><![CDATA[d]]>e<f/>g</a>")).Value(), u"e");
  for (const char16_t* element : {u"<a><b>no</b><![CDATA[d]]></a>", u"<a/>"})
    EXPECT_TRUE(FirstTextChild(Root(element)).IsNull());
  EXPECT_TRUE(FirstTextChild(XmlNode()).IsNull());
}

}  // namespace
}  // namespace qv
