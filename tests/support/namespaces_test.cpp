// The namespaces of the service and of the standards.
#include "support/namespaces.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#define QV_TEST_WIDE(text) u"" text

namespace qv {
namespace {

TEST(Namespaces, OfTheServiceBeginWithTheChosenHost) {
  const std::u16string host = QV_TEST_WIDE(QV_NAMESPACE_HOST);
  EXPECT_EQ(std::u16string_view(kServiceNamespace), host + u"/dev/ns/ivarnel/scriptwells");
  EXPECT_EQ(std::u16string_view(kSofNamespace), host + u"/dev/ns/SOF/2.0");
  EXPECT_EQ(std::u16string_view(kScriptNamespace), host + u"/dev/ns/scriptwellsApp/scriptwell/1.0");
  EXPECT_EQ(std::u16string_view(kScriptSchemaLocation),
            host + u"/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd");
}

TEST(Namespaces, OfXmlSchemaAndSoapAreThePublishedOnes) {
  EXPECT_EQ(std::u16string_view(kXmlSchemaNamespace), u"http://www.w3.org/2001/XMLSchema");
  EXPECT_EQ(std::u16string_view(kXmlSchemaInstanceNamespace), u"http://www.w3.org/2001/XMLSchema-instance");
  EXPECT_EQ(std::u16string_view(kSoapEnvelopeNamespace), u"http://schemas.xmlsoap.org/soap/envelope/");
  EXPECT_EQ(std::u16string_view(kSoapEncodingNamespace), u"http://schemas.xmlsoap.org/soap/encoding/");
}

}  // namespace
}  // namespace qv
