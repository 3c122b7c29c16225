// The faster builder against the library's own: the same documents must come out.
#include "xml/tree_builder.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>

#include "tree_comparison.h"
#include "xml_fixture.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr int kWaysToParse = 64;  // each of six settings on or off

class TreeBuilderTest : public XmlFixture {
 protected:
  void Parse(xc::XercesDOMParser* parser, const std::string& text, int way) {
    parser->setDoNamespaces((way & 1) != 0);
    parser->setCreateEntityReferenceNodes((way & 2) == 0);
    parser->setCreateCommentNodes((way & 4) == 0);
    parser->setIncludeIgnorableWhitespace((way & 8) == 0);
    parser->setCreateSchemaInfo((way & 16) != 0);
    parser->setDoXInclude((way & 32) != 0);
    parser->setErrorHandler(&handler_);
    parser->parse(
        xc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "x", false));
  }

  QvDOMErrorHandlers handler_{true};
};

TEST_F(TreeBuilderTest, DocumentIsTheLibrarysOwn) {
  for (const char* text :
       {"<a/>", "<a>text</a>", "<a><b/><b/><b/></a>", "<a>x<b>y</b>z<b/>w</a>", "<a z='1' m='' b='&lt;2'/>",
        "<a>&amp;&#65;x&lt;</a>", "<a><![CDATA[one]]><![CDATA[two]]>three</a>", "<a>x<!--c-->y<?p d?>z</a>",
        "<!--before--><?p?><a><b c='d'>e</b></a><!--after-->", "<a>\n <b>\n </b>\n</a>\n",
        "<!DOCTYPE a [<!ENTITY e '<b k=\"v\">in</b>tail'>]><a>x&e;y&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'text'>]><a b='&e;'>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e '&f;&f;'><!ENTITY f '<c/>'>]><a><b>&e;</b></a>",
        "<!DOCTYPE a [<!ATTLIST a d CDATA 'given' i ID #IMPLIED>]><a i='n'><a d='mine'/><b d='x'/></a>",
        "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]><a> <b/> </a>",
        "<s:a xmlns:s='u' xmlns='v'><s:b c='1' s:c='2'/></s:a>"}) {
    for (int way = 0; way < kWaysToParse; ++way) {
      xc::XercesDOMParser theirs;
      TreeBuilder ours;
      Parse(&theirs, text, way);
      Parse(&ours, text, way);
      ASSERT_NE(ours.getDocument()->getDocumentElement(), nullptr) << text;
      EXPECT_EQ(DifferenceBetween(ours.getDocument(), theirs.getDocument()), "") << text << ", way " << way;
    }
  }
}

}  // namespace
}  // namespace qv
