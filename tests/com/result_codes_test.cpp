// The published numbers of result codes.
#include "qvscriptwells/result_codes.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

struct PublishedCode {
  const char* name;
  HRESULT code;
  std::uint32_t bits;
};

const PublishedCode kPublished[] = {
    {"S_OK", S_OK, 0},
    {"S_FALSE", S_FALSE, 1},
    {"E_NOTIMPL", E_NOTIMPL, 0x80004001},
    {"E_NOINTERFACE", E_NOINTERFACE, 0x80004002},
    {"E_POINTER", E_POINTER, 0x80004003},
    {"E_FAIL", E_FAIL, 0x80004005},
    {"E_UNEXPECTED", E_UNEXPECTED, 0x8000FFFF},
    {"E_OUTOFMEMORY", E_OUTOFMEMORY, 0x8007000E},
    {"E_INVALIDARG", E_INVALIDARG, 0x80070057},
    {"REGDB_E_CLASSNOTREG", REGDB_E_CLASSNOTREG, 0x80040154},
    {"CLASS_E_NOAGGREGATION", CLASS_E_NOAGGREGATION, 0x80040110},
    {"DISP_E_TYPEMISMATCH", DISP_E_TYPEMISMATCH, 0x80020005},
    {"DISP_E_BADVARTYPE", DISP_E_BADVARTYPE, 0x80020008},
    {"DISP_E_EXCEPTION", DISP_E_EXCEPTION, 0x80020009},
    {"DISP_E_OVERFLOW", DISP_E_OVERFLOW, 0x8002000A},
};

TEST(ResultCodes, HavePublishedValues) {
  for (const PublishedCode& row : kPublished)
    EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.bits) << row.name;
}

TEST(ResultCodes, NegativeIsFailureAndTheRestSuccess) {
  EXPECT_TRUE(Failed(E_FAIL));
  EXPECT_TRUE(Failed(-1));
  EXPECT_FALSE(Failed(S_OK));
  EXPECT_FALSE(Failed(S_FALSE));
  EXPECT_TRUE(Succeeded(S_OK));
  EXPECT_TRUE(Succeeded(S_FALSE));
  EXPECT_TRUE(Succeeded(0x7FFFFFFF));
  EXPECT_FALSE(Succeeded(E_FAIL));
}

}  // namespace
}  // namespace qv
