// The buffer that the serializer writes into.
#include "xml/mem_buf_format_target.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "qvscriptwells/xml_library_hold.h"

namespace qv {
namespace {

class MemBufFormatTargetTest : public ::testing::Test {
 protected:
  void Write(const std::string& bytes) {
    target_.writeChars(reinterpret_cast<const XMLByte*>(bytes.data()), bytes.size(), nullptr);
  }

 private:
  XmlLibraryHold library_;  // the buffer's memory is the XML library's

 protected:
  MemBufFormatTarget target_{std::make_unique<xercesc::XMLBuffer>(MemBufFormatTarget::kCapacity)};
};

TEST_F(MemBufFormatTargetTest, EachByteIsAUnitAndCallsFollowEachOther) {
  EXPECT_EQ(MemBufFormatTarget::kCapacity, 0x4000U);
  EXPECT_EQ(target_.view(), u"");
  Write("aZ\x01\x7F\x80\xC3\xA9\xFF");
  EXPECT_EQ(target_.view(), std::u16string_view(u"aZ\x01\x7F\x80\xC3\xA9\xFF", 8));
  for (const std::string& bytes :
       {std::string("a\0b", 3), std::string(), std::string("\xE2\x82"), std::string("\xAC.")})
    Write(bytes);
  EXPECT_EQ(target_.view().substr(8), std::u16string_view(u"a\0b\u00E2\u0082\u00AC.", 7));
}

TEST_F(MemBufFormatTargetTest, OneCallGoesBeyondTheFirstCapacity) {
  for (const std::size_t size : {std::size_t{0x3FFF}, std::size_t{0x4000}, std::size_t{0x4001}}) {
    const std::size_t before = target_.view().size();
    Write(std::string(size, '\xE9'));
    EXPECT_TRUE(target_.view().substr(before) == std::u16string(size, u'\u00E9')) << size;
  }
}

TEST_F(MemBufFormatTargetTest, MuchMoreThanTheFirstCapacityIsKept) {
  Write(std::string(1'000'000, 'a'));
  Write(std::string(1'000'000, '\xFF'));
  EXPECT_TRUE(target_.view() == std::u16string(1'000'000, u'a') + std::u16string(1'000'000, u'\u00FF'));
}

TEST_F(MemBufFormatTargetTest, ManySmallCallsAddUp) {
  for (int i = 0; i < 100'000; ++i) Write("ab");
  std::u16string expected;
  for (int i = 0; i < 100'000; ++i) expected += u"ab";
  EXPECT_TRUE(target_.view() == expected);
}

}  // namespace
}  // namespace qv
