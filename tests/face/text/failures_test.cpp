// Failures of the interfaces below, as errors.
#include "face/text/failures.h"

#include <gtest/gtest.h>

#include <new>

#include "qvscriptwells/result_codes.h"

namespace scriptwells {
namespace {

qv::_com_error Failed(qv::HRESULT code, const char16_t* description) {
  qv::ErrorInfo info;
  info.description = description;
  return qv::_com_error(code, info);
}

TEST(ThrowFailure, KeepsCodeAndFixedText) {
  try {
    ThrowFailure(Phase::kAnswer, Failed(qv::E_ACCESSDENIED, u"caf\u00E9 is locked"));
  } catch (const Error& error) {
    EXPECT_EQ(error.phase(), Phase::kAnswer);
    EXPECT_STREQ(error.what(), "caf\xC3\xA9 is locked");
    EXPECT_EQ(error.details().text, "caf\xC3\xA9 is locked");
    EXPECT_EQ(error.details().result, static_cast<std::uint32_t>(qv::E_ACCESSDENIED));
  }
}

TEST(ThrowFailure, WithoutTextHasTheCode) {
  try {
    ThrowFailure(Phase::kScript, qv::_com_error(qv::E_POINTER));
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "failure 0x80004003");
    EXPECT_EQ(error.details().text, "");
  }
}

TEST(ThrowFailure, LackOfMemoryStaysOne) {
  EXPECT_THROW(ThrowFailure(Phase::kAnswer, Failed(qv::E_OUTOFMEMORY, u"x")), std::bad_alloc);
}

TEST(RefuseConversion, ThrowsAConversionError) {
  EXPECT_THROW(RefuseConversion("no"), ConversionError);
}

}  // namespace
}  // namespace scriptwells
