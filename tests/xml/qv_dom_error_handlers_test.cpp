#include "xml/qv_dom_error_handlers.h"

#include "xml_fixture.h"

namespace qv {
namespace {

using XERCES_CPP_NAMESPACE::SAXParseException;

class QvDOMErrorHandlersTest : public XmlFixture {
 protected:
  const SAXParseException event_{u"words", u"public", u"system", 7, 9};
};

TEST_F(QvDOMErrorHandlersTest, FlagStartsAsTold) {
  EXPECT_TRUE(QvDOMErrorHandlers(true).Flag());
  EXPECT_FALSE(QvDOMErrorHandlers(false).Flag());
}

TEST_F(QvDOMErrorHandlersTest, ResetClearsTheFlag) {
  QvDOMErrorHandlers handler(true);
  handler.resetErrors();
  EXPECT_FALSE(handler.Flag());
}

TEST_F(QvDOMErrorHandlersTest, WarningSetsTheFlagAndGoesOn) {
  QvDOMErrorHandlers handler(false);
  handler.warning(event_);
  EXPECT_TRUE(handler.Flag());
}

TEST_F(QvDOMErrorHandlersTest, ErrorSetsTheFlagAndThrowsACopy) {
  QvDOMErrorHandlers handler(false);
  try {
    handler.error(event_);
    FAIL() << "nothing thrown";
  } catch (const SAXParseException& e) {
    EXPECT_NE(&e, &event_);
    EXPECT_EQ(std::u16string(e.getMessage()), u"words");
    EXPECT_EQ(std::u16string(e.getPublicId()), u"public");
    EXPECT_EQ(std::u16string(e.getSystemId()), u"system");
    EXPECT_EQ(e.getLineNumber(), 7U);
    EXPECT_EQ(e.getColumnNumber(), 9U);
  }
  EXPECT_TRUE(handler.Flag());
}

TEST_F(QvDOMErrorHandlersTest, FatalErrorDoesWhatErrorDoes) {
  QvDOMErrorHandlers handler(false);
  try {
    handler.fatalError(event_);
    FAIL() << "nothing thrown";
  } catch (const SAXParseException& e) {
    EXPECT_EQ(std::u16string(e.getMessage()), u"words");
    EXPECT_EQ(e.getLineNumber(), 7U);
  }
  EXPECT_TRUE(handler.Flag());
}

}  // namespace
}  // namespace qv
