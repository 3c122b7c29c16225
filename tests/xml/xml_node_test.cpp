#include "xml/xml_node.h"

#include "xml_fixture.h"

namespace qv {
namespace {

class XmlNodeTest : public XmlFixture {};

TEST_F(XmlNodeTest, NullNodeAnswersEverythingWithNothing) {
  const XmlNode node;
  EXPECT_TRUE(node.IsNull());
  EXPECT_EQ(node.NodeType(), 0);
  EXPECT_EQ(node.Name(), u"");
  EXPECT_EQ(node.Value(), u"");
  EXPECT_FALSE(node.HasValue());
  EXPECT_TRUE(node.FirstChild().IsNull());
  EXPECT_TRUE(node.LastChild().IsNull());
  EXPECT_TRUE(node.NextSibling().IsNull());
  EXPECT_TRUE(node.Parent().IsNull());
  EXPECT_FALSE(node.HasAttributeMap());
  EXPECT_TRUE(node.Attribute(u"a").IsNull());
  EXPECT_EQ(GetNodeText(node), u"");
}

TEST_F(XmlNodeTest, TypesHaveTheNumbersOfLevel1) {
  XmlNode child = Root(u"<r><e/>t<![CDATA[c]]><!--k--><?p d?></r>").FirstChild();
  EXPECT_EQ(child.NodeType(), 1);
  child = child.NextSibling();
  EXPECT_EQ(child.NodeType(), 3);
  child = child.NextSibling();
  EXPECT_EQ(child.NodeType(), 4);
  child = child.NextSibling();
  EXPECT_EQ(child.NodeType(), 8);
  child = child.NextSibling();
  EXPECT_EQ(child.NodeType(), 7);
  EXPECT_TRUE(child.NextSibling().IsNull());
}

TEST_F(XmlNodeTest, NamesAreQualified) {
  const XmlNode root = Root(u"<soap:Envelope xmlns:soap='s' xsi:type='t'><NS2:x/></soap:Envelope>");
  EXPECT_EQ(root.Name(), u"soap:Envelope");
  EXPECT_EQ(root.FirstChild().Name(), u"NS2:x");
  EXPECT_EQ(root.Attribute(u"xsi:type").Name(), u"xsi:type");
}

TEST_F(XmlNodeTest, ElementHasNoValueTextHas) {
  const XmlNode root = Root(u"<r>text</r>");
  EXPECT_FALSE(root.HasValue());
  EXPECT_EQ(root.Value(), u"");
  EXPECT_TRUE(root.FirstChild().HasValue());
  EXPECT_EQ(root.FirstChild().Value(), u"text");
}

TEST_F(XmlNodeTest, EmptyCDataHasAnEmptyValue) {
  const XmlNode data = Root(u"<r><![CDATA[]]></r>").FirstChild();
  EXPECT_TRUE(data.HasValue());
  EXPECT_EQ(data.Value(), u"");
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
  const std::u16string name31 = Repeat(u"n", 31);
  const std::u16string name32 = Repeat(u"n", 32);
  const std::u16string name90 = Repeat(u"n", 90);
  const XmlNode root = Root(u"<r " + name31 + u"='a' " + name32 + u"='b' " + name90 + u"='c'/>");
  EXPECT_EQ(root.Attribute(name31).Value(), u"a");
  EXPECT_EQ(root.Attribute(name32).Value(), u"b");
  EXPECT_EQ(root.Attribute(name90).Value(), u"c");
}

TEST_F(XmlNodeTest, AttributeOfATextIsNull) {
  EXPECT_TRUE(Root(u"<r>t</r>").FirstChild().Attribute(u"a").IsNull());
}

using GetNodeTextTest = XmlNodeTest;

TEST_F(GetNodeTextTest, OneTextGivesItself) {
  EXPECT_EQ(GetNodeText(Root(u"<r>abc</r>")), u"abc");
}

TEST_F(GetNodeTextTest, FirstTextWinsOverOtherChildren) {
  EXPECT_EQ(GetNodeText(Root(u"<r><a>no</a>first<b/>second</r>")), u"first");
}

TEST_F(GetNodeTextTest, FirstTextWinsOverALaterCData) {
  EXPECT_EQ(GetNodeText(Root(u"<r> <![CDATA[data]]></r>")), u" ");
}

TEST_F(GetNodeTextTest, LastChildCDataGivesItsValue) {
  EXPECT_EQ(GetNodeText(Root(u"<r><a/><![CDATA[one]]><![CDATA[two]]></r>")), u"two");
}

TEST_F(GetNodeTextTest, LastChildCommentGivesItsValue) {
  EXPECT_EQ(GetNodeText(Root(u"<r><![CDATA[one]]><!--said--></r>")), u"said");
}

TEST_F(GetNodeTextTest, ElementChildrenGiveTheEmptyText) {
  EXPECT_EQ(GetNodeText(Root(u"<r><a>no</a></r>")), u"");
}

TEST_F(GetNodeTextTest, NoChildrenGiveTheOwnValue) {
  EXPECT_EQ(GetNodeText(Root(u"<r/>")), u"");
  EXPECT_EQ(GetNodeText(Root(u"<r>own</r>").FirstChild()), u"own");
}

TEST_F(GetNodeTextTest, AttributeGivesItsValue) {
  EXPECT_EQ(GetNodeText(Root(u"<r a='v&amp;w'/>").Attribute(u"a")), u"v&w");
  EXPECT_EQ(GetNodeText(Root(u"<r a=''/>").Attribute(u"a")), u"");
}

TEST_F(XmlNodeTest, FirstTextChildIsFoundBehindOthers) {
  EXPECT_EQ(FirstTextChild(Root(u"<a><b>no</b><!--c--><![CDATA[d]]>e<f/>g</a>")).Value(), u"e");
  EXPECT_TRUE(FirstTextChild(Root(u"<a><b>no</b><![CDATA[d]]></a>")).IsNull());
  EXPECT_TRUE(FirstTextChild(Root(u"<a/>")).IsNull());
  EXPECT_TRUE(FirstTextChild(XmlNode()).IsNull());
}

}  // namespace
}  // namespace qv
