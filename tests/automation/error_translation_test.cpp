// The one place where exceptions become a result code and an error record.
#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <stdexcept>

#include "automation/waiting_record.h"
#include "com/guarded.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

ErrorInfo Record(const WideString& words) {
  ErrorInfo info;
  info.source = u"component";
  info.description = words;
  info.helpContext = 7;
  return info;
}

void ThrowQv() {
  throw EQvException(u"own words");
}
void ThrowQvWithCode() {
  throw EQvException(u"own words", 5);
}
void ThrowQvWithNegativeCode() {
  throw EQvException(u"own words", -5);
}
void ThrowQvWithEmptyWords() {
  throw EQvException(u"");
}
void ThrowQvWithoutWords() {
  throw EQvException(WideString());
}
void ThrowQvWithCodeWithoutWords() {
  throw EQvException(WideString(), 5);
}
void ThrowCom() {
  throw _com_error(E_POINTER);
}
void ThrowComWithWords() {
  throw _com_error(E_OUTOFMEMORY, Record(u"component words"));
}
void ThrowComWithRecordWithoutWords() {
  throw _com_error(E_FAIL, Record(WideString()));
}
void ThrowComWithoutCode() {
  throw _com_error(S_OK);
}
void ThrowComWithoutCodeWithWords() {
  throw _com_error(S_OK, Record(u"component words"));
}
void ThrowStd() {
  throw std::runtime_error("std words");
}
void ThrowBadAlloc() {
  throw std::bad_alloc();
}
void ThrowWideString() {
  throw WideString(u"bare words");
}
void ThrowInt() {
  throw 5;
}

struct Row {
  const char* name;
  void (*thrower)();
  std::uint32_t code;
  const char* words;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class ErrorTranslation : public testing::TestWithParam<Row> {
 protected:
  void SetUp() override { ClearErrorInfo(); }
};

TEST_P(ErrorTranslation, GivesThisCodeAndRecord) {
  HRESULT code = S_OK;
  try {
    GetParam().thrower();
  } catch (...) {
    code = ResultFromCaughtException(CLSID_Url);
  }
  EXPECT_EQ(static_cast<std::uint32_t>(code), GetParam().code);
  EXPECT_EQ(TakenWords(), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, ErrorTranslation,
    testing::Values(
        Row{"Qv", ThrowQv, 0x80020009, "own words"},
        Row{"QvWithCode", ThrowQvWithCode, 0x80040005, "own words"},
        Row{"QvWithNegativeCode", ThrowQvWithNegativeCode, 0xFFFFFFFB, "own words"},
        Row{"QvWithEmptyWords", ThrowQvWithEmptyWords, 0x80020009, ""},
        Row{"QvWithoutWords", ThrowQvWithoutWords, 0x80040000, "Unknown Error"},
        Row{"QvWithCodeWithoutWords", ThrowQvWithCodeWithoutWords, 0x80040005, "Unknown Error"},
        Row{"Com", ThrowCom, 0x80004003, "Unknown Error"},
        Row{"ComWithWords", ThrowComWithWords, 0x8007000E, "component words"},
        Row{"ComWithRecordWithoutWords", ThrowComWithRecordWithoutWords, 0x80004005, "Unknown Error"},
        Row{"ComWithoutCode", ThrowComWithoutCode, 0x80040000, "Unknown Error"},
        Row{"ComWithoutCodeWithWords", ThrowComWithoutCodeWithWords, 0x80020009, "component words"},
        Row{"Std", ThrowStd, 0x8000FFFF, "no record"},
        Row{"BadAlloc", ThrowBadAlloc, 0x8000FFFF, "no record"},
        Row{"WideString", ThrowWideString, 0x8000FFFF, "no record"},
        Row{"Int", ThrowInt, 0x8000FFFF, "no record"}),
    [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qv
