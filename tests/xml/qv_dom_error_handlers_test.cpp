// The handler that remembers and throws what the parser reports.
#include "xml/qv_dom_error_handlers.h"

#include "xml_fixture.h"

namespace qv {
namespace {

using XERCES_CPP_NAMESPACE::SAXParseException;

class QvDOMErrorHandlersTest : public XmlFixture {
 protected:
  const SAXParseException event_{u"message", u"public", u"system", 7, 9};
};

TEST_F(QvDOMErrorHandlersTest, FlagStartsAsGivenAndIsClearedByReset) {
  EXPECT_FALSE(QvDOMErrorHandlers(false).Flag());
  QvDOMErrorHandlers handler(true);
  EXPECT_TRUE(handler.Flag());
  handler.resetErrors();
  EXPECT_FALSE(handler.Flag());
}

TEST_F(QvDOMErrorHandlersTest, WarningSetsTheFlagAndGoesOn) {
  QvDOMErrorHandlers handler(false);
  handler.warning(event_);
  EXPECT_TRUE(handler.Flag());
}

TEST_F(QvDOMErrorHandlersTest, ErrorsSetTheFlagAndThrowACopy) {
  for (const auto report : {&QvDOMErrorHandlers::error, &QvDOMErrorHandlers::fatalError}) {
    QvDOMErrorHandlers handler(false);
    try {
      (handler.*report)(event_);
      ADD_FAILURE() << "nothing thrown";
    } catch (const SAXParseException& e) {
      EXPECT_NE(&e, &event_);
      EXPECT_EQ(std::u16string(e.getMessage()), u"message");
      EXPECT_EQ(std::u16string(e.getPublicId()), u"public");
      EXPECT_EQ(std::u16string(e.getSystemId()), u"system");
      EXPECT_EQ(e.getLineNumber(), 7U);
      EXPECT_EQ(e.getColumnNumber(), 9U);
    }
    EXPECT_TRUE(handler.Flag());
  }
}

}  // namespace
}  // namespace qv
