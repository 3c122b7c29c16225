// The Duration object as a host meets it.
#include <gtest/gtest.h>

#include "automation/property_checks.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr char kPlaceOfP[] =
    "Invalid duration format:  'P' is allowd only in the beginning of the string or after '-'.";

struct Count {
  const char* name;
  HRESULT (IDuration::*get)(std::int16_t*) noexcept;
  HRESULT (IDuration::*put)(std::int16_t) noexcept;
  const char* refusal;
  const char* textWithSeven;
};
const Count kCounts[] = {{"Year", &IDuration::get_Year, &IDuration::put_Year,
                          "Invalid duration format: year can't be negative.", "P7Y"},
                         {"Month", &IDuration::get_Month, &IDuration::put_Month,
                          "Invalid duration format: month can't be negative.", "P7M"},
                         {"Day", &IDuration::get_Day, &IDuration::put_Day,
                          "Invalid duration format: day can't be negative.", "P7D"},
                         {"Hour", &IDuration::get_Hour, &IDuration::put_Hour,
                          "Invalid duration format: hour can't be negative.", "PT7H"},
                         {"Min", &IDuration::get_Min, &IDuration::put_Min,
                          "Invalid duration format: minutes can't be negative.", "PT7M"}};

std::string TextOf(const IDurationPtr& duration) {
  WideString text(u"before");
  EXPECT_EQ(As<IDurationRaw>(duration)->GetText(&text), S_OK);
  return Shown(text);
}

class DurationObject : public testing::Test {
 protected:
  DurationObject() { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  double Seconds() {
    double value = -77;
    EXPECT_EQ(object_->get_Sec(&value), S_OK);
    return value;
  }
  int Negative() {
    VARIANT_BOOL value = -77;
    EXPECT_EQ(object_->get_Negative(&value), S_OK);
    return value;
  }
  // The message of a text that is refused.
  std::string Refused(const WideString& text) {
    EXPECT_EQ(raw_->SetText(text), DISP_E_EXCEPTION);
    return TakenWords();
  }
  std::string Text() { return TextOf(object_); }

  IDurationPtr object_ = CreateDuration();
  const IDurationRawPtr raw_ = As<IDurationRaw>(object_);
};

TEST_F(DurationObject, CountsAreKeptInTheirOwnFields) {
  for (const Count& count : kCounts) {
    const IDurationPtr object = CreateDuration();
    ExpectProperty<IDuration, std::int16_t>(count.name, object, count.get, count.put, -77, 0,
                                            {7, 32767, 0, 7});
    EXPECT_EQ(TextOf(object), count.textWithSeven);
  }
}

TEST_F(DurationObject, NegativeCountFailsWithItsMessageAndChangesNothing) {
  for (const Count& count : kCounts) {
    const IDurationPtr object = CreateDuration();
    EXPECT_EQ((object.get()->*count.put)(7), S_OK);
    for (const std::int16_t value : std::initializer_list<std::int16_t>{-1, -32768}) {
      EXPECT_EQ((object.get()->*count.put)(value), DISP_E_EXCEPTION);
      EXPECT_EQ(TakenWords(), count.refusal);
    }
    EXPECT_EQ(TextOf(object), count.textWithSeven);
  }
}

TEST_F(DurationObject, SecondsAreKeptWithTheirFraction) {
  ExpectProperty<IDuration, double>("Sec", object_, &IDuration::get_Sec, &IDuration::put_Sec, -77, 0,
                                    {12345678.9});
  EXPECT_EQ(Text(), "PT1.23457e+07S");
}

TEST_F(DurationObject, NegativeSecondsFailWithTheirMessage) {
  EXPECT_EQ(object_->put_Sec(1.5), S_OK);
  EXPECT_EQ(object_->put_Sec(-0.5), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "Invalid duration format: seconds can't be negative.");
  EXPECT_EQ(Seconds(), 1.5);
}

TEST_F(DurationObject, SignIsKeptAsItWasPut) {
  ExpectProperty<IDuration, VARIANT_BOOL>("Negative", object_, &IDuration::get_Negative,
                                          &IDuration::put_Negative, -77, 0, {-1, 1, 5, -32768});
  for (const VARIANT_BOOL value : std::initializer_list<VARIANT_BOOL>{-1, 1, 5, -32768}) {
    EXPECT_EQ(object_->put_Negative(value), S_OK);
    EXPECT_EQ(Text(), "-P0");
  }
  EXPECT_EQ(object_->put_Negative(0), S_OK);
  EXPECT_EQ(Text(), "P0");
}

TEST_F(DurationObject, TextReachesEveryProperty) {
  EXPECT_EQ(raw_->SetText(u"-P1Y2M3DT4H5M6.5S"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  int expected = 1;
  for (const Count& count : kCounts) {
    std::int16_t value = 0;
    EXPECT_EQ((object_.get()->*count.get)(&value), S_OK);
    EXPECT_EQ(value, expected++) << count.name;
  }
  EXPECT_EQ(Seconds(), 6.5);
  EXPECT_EQ(Negative(), -1);
  LeaveStaleRecord();
  EXPECT_EQ(Text(), "-P1Y2M3DT4H5M6.5S");
  EXPECT_EQ(TakenWords(), "no record");
  EXPECT_EQ(raw_->GetText(nullptr), E_POINTER);
}

TEST_F(DurationObject, RefusedTextsHaveTheirMessages) {
  EXPECT_EQ(Refused(u"p1d"), "Invalid duration format:  only capital letters are allowed for separators.");
  EXPECT_EQ(Refused(u"P-1D"), "Invalid duration format:  '-' is allowd only in the beginning of the string.");
  EXPECT_EQ(Refused(u"1D"), kPlaceOfP);
  EXPECT_EQ(Refused(u""), kPlaceOfP);
  EXPECT_EQ(Refused(WideString()), kPlaceOfP);
  EXPECT_EQ(Text(), "P0");
}

TEST_F(DurationObject, SignOutlivesARefusal) {
  EXPECT_EQ(Refused(u"-1D"), kPlaceOfP);
  EXPECT_EQ(Negative(), -1);
  EXPECT_EQ(Refused(u"P1D"), kPlaceOfP);
  EXPECT_EQ(raw_->SetText(u"1P2D"), S_OK);
  EXPECT_EQ(Text(), "-P2D");
}

TEST_F(DurationObject, CanBeMadeFromAText) {
  EXPECT_EQ(TextOf(CreateDuration(u"P1DT2H")), "P1DT2H");
  EXPECT_EQ(TextOf(CreateDuration()), "P0");
  EXPECT_EQ(Thrown([] { CreateDuration(u"1D"); }), std::string("_com_error 0x80020009 ") + kPlaceOfP);
  EXPECT_EQ(Thrown([] { CreateDuration(WideString()); }), std::string("_com_error 0x80020009 ") + kPlaceOfP);
}

TEST_F(DurationObject, IsCountedOverBothInterfaces) {
  EXPECT_EQ(object_->AddRef(), 3U);  // object_, raw_, this one
  EXPECT_EQ(raw_->AddRef(), 4U);
  EXPECT_EQ(object_->Release(), 3U);
  EXPECT_EQ(raw_->Release(), 2U);
}

TEST_F(DurationObject, OutlivesItsFirstInterface) {
  EXPECT_EQ(object_->put_Day(7), S_OK);
  object_.reset();
  WideString text;
  EXPECT_EQ(raw_->GetText(&text), S_OK);
  EXPECT_EQ(Shown(text), "P7D");
}

}  // namespace
}  // namespace qv
