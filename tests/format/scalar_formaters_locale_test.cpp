// A host may have set any locale; the wire knows none.
#include <gtest/gtest.h>

#include <string>

#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

class ScalarFormatersInACommaLocale : public FactoryFixture {
 protected:
  static Variant Read(const char16_t* typeName, const std::u16string& content) {
    const XmlText text(u"<v>" + content + u"</v>");
    return Get(typeName)->ReadValue(text.Root());
  }
  static WideString Written(const char16_t* typeName, const Variant& value) {
    return Get(typeName)->WriteValue(value);
  }

  CommaLocale comma_;
};

TEST_F(ScalarFormatersInACommaLocale, WholeNumbersHaveNoSeparators) {
  EXPECT_EQ(Written(u"int", Variant::FromInt(1234567)), u"1234567");
  EXPECT_EQ(Written(u"long", Variant::FromLong(-1234567890123)), u"-1234567890123");
  EXPECT_EQ(Written(u"short", Variant::FromShort(12345)), u"12345");
  EXPECT_EQ(Written(u"byte", Variant::FromInt(1234)), u"1234");
  EXPECT_EQ(Written(u"string", Variant::FromString(u"\u20AC")), u"&#8364;");
}

TEST_F(ScalarFormatersInACommaLocale, FractionsAreWrittenWithAPoint) {
  EXPECT_EQ(Written(u"double", Variant::FromDouble(1234.5)), u"1234.5");
  EXPECT_EQ(Written(u"float", Variant::FromFloat(1234.5f)), u"1234.5");
  EXPECT_EQ(Written(u"double", Variant::FromDouble(1234567.0)), u"1.23457e+06");
}

TEST_F(ScalarFormatersInACommaLocale, FractionsAreReadWithAPoint) {
  EXPECT_EQ(Read(u"double", u"1.5").Data().dblVal, 1.5);
  EXPECT_EQ(Read(u"float", u"1.5").Data().fltVal, 1.5f);
  EXPECT_EQ(Read(u"double", u"1,5").Data().dblVal, 1.0);
  EXPECT_EQ(Read(u"int", u"1.234").Data().intVal, 1);
}

TEST_F(ScalarFormatersInACommaLocale, ByteConvertsWithAPoint) {
  EXPECT_EQ(Written(u"byte", Variant::FromString(u"3.5")), u"4");
}

}  // namespace
}  // namespace qv
