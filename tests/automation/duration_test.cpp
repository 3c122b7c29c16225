// The Duration object as a host meets it.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "automation/slot_order.h"
#include "automation/waiting_record.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

using Getter = HRESULT (IDuration::*)(std::int16_t*) noexcept;
using Setter = HRESULT (IDuration::*)(std::int16_t) noexcept;

constexpr char kPlaceOfP[] =
    "Invalid duration format:  'P' is allowd only in the beginning of the string or after '-'.";

struct Count {
  const char* name;
  Getter get;
  Setter put;
  const char* refusal;
  const char* textWithSeven;
};
void PrintTo(const Count& row, std::ostream* out) {
  *out << row.name;
}

const Count kDay{"Day", &IDuration::get_Day, &IDuration::put_Day,
                 "Invalid duration format: day can't be negative.", "P7D"};
const Count kMonth{"Month", &IDuration::get_Month, &IDuration::put_Month,
                   "Invalid duration format: month can't be negative.", "P7M"};
const Count kYear{"Year", &IDuration::get_Year, &IDuration::put_Year,
                  "Invalid duration format: year can't be negative.", "P7Y"};
const Count kHour{"Hour", &IDuration::get_Hour, &IDuration::put_Hour,
                  "Invalid duration format: hour can't be negative.", "PT7H"};
const Count kMin{"Min", &IDuration::get_Min, &IDuration::put_Min,
                 "Invalid duration format: minutes can't be negative.", "PT7M"};

IDurationRawPtr RawOf(IDuration* duration) {
  return As<IDurationRaw>(duration);
}

std::string TextOf(IDuration* duration) {
  WideString text(u"before");
  EXPECT_EQ(RawOf(duration)->GetText(&text), S_OK);
  return Shown(text);
}

class DurationCountProperty : public testing::TestWithParam<Count> {
 protected:
  DurationCountProperty() : object_(CreateDuration()) { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  int Get() {
    std::int16_t value = -77;
    EXPECT_EQ((object_.get()->*GetParam().get)(&value), S_OK);
    return value;
  }
  HRESULT Put(int value) { return (object_.get()->*GetParam().put)(static_cast<std::int16_t>(value)); }

  IDurationPtr object_;
};

TEST_P(DurationCountProperty, StartsAtZeroAndKeepsWhatWasPut) {
  EXPECT_EQ(Get(), 0);
  for (const int value : {7, 32767, 0}) {
    EXPECT_EQ(Put(value), S_OK);
    EXPECT_EQ(Get(), value);
  }
}

TEST_P(DurationCountProperty, ReachesItsOwnField) {
  EXPECT_EQ(Put(7), S_OK);
  EXPECT_EQ(TextOf(object_.get()), GetParam().textWithSeven);
}

TEST_P(DurationCountProperty, NegativeFailsWithItsWordsAndChangesNothing) {
  EXPECT_EQ(Put(7), S_OK);
  for (const int value : {-1, -32768}) {
    EXPECT_EQ(Put(value), DISP_E_EXCEPTION);
    EXPECT_EQ(TakenWords(), GetParam().refusal);
  }
  EXPECT_EQ(TextOf(object_.get()), GetParam().textWithSeven);
}

TEST_P(DurationCountProperty, ClearsTheStaleRecord) {
  Get();
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  Put(1);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_P(DurationCountProperty, MissingPlaceIsRefused) {
  EXPECT_EQ((object_.get()->*GetParam().get)(nullptr), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(Properties, DurationCountProperty, testing::Values(kDay, kMonth, kYear, kHour, kMin),
                         [](const testing::TestParamInfo<Count>& row) {
                           return std::string(row.param.name);
                         });

class DurationObject : public testing::Test {
 protected:
  DurationObject() : object_(CreateDuration()), raw_(RawOf(object_.get())) { LeaveStaleRecord(); }
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
  // Code is DISP_E_EXCEPTION; the words.
  std::string Refused(const WideString& text) {
    EXPECT_EQ(raw_->SetText(text), DISP_E_EXCEPTION);
    return TakenWords();
  }
  std::string Text() { return TextOf(object_.get()); }

  IDurationPtr object_;
  IDurationRawPtr raw_;
};

TEST_F(DurationObject, SecondsAreKeptWithTheirFraction) {
  EXPECT_EQ(Seconds(), 0.0);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(object_->put_Sec(12345678.9), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  EXPECT_EQ(Seconds(), 12345678.9);
  EXPECT_EQ(Text(), "PT1.23457e+07S");
}

TEST_F(DurationObject, NegativeSecondsFailWithTheirWords) {
  EXPECT_EQ(object_->put_Sec(1.5), S_OK);
  EXPECT_EQ(object_->put_Sec(-0.5), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "Invalid duration format: seconds can't be negative.");
  EXPECT_EQ(Seconds(), 1.5);
}

TEST_F(DurationObject, SignIsKeptAsItWasPut) {
  EXPECT_EQ(Negative(), 0);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  for (const int value : {-1, 1, 5, -32768}) {
    EXPECT_EQ(object_->put_Negative(static_cast<VARIANT_BOOL>(value)), S_OK);
    EXPECT_EQ(Negative(), value);
    EXPECT_EQ(Text(), "-P0");
  }
  EXPECT_EQ(TakenWords(), "no record");
  EXPECT_EQ(object_->put_Negative(0), S_OK);
  EXPECT_EQ(Text(), "P0");
}

TEST_F(DurationObject, MissingPlacesAreRefused) {
  EXPECT_EQ(object_->get_Sec(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_Negative(nullptr), E_POINTER);
  EXPECT_EQ(raw_->GetText(nullptr), E_POINTER);
}

TEST_F(DurationObject, TextReachesEveryProperty) {
  EXPECT_EQ(raw_->SetText(u"-P1Y2M3DT4H5M6.5S"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  int expected = 1;
  for (const Count& count : {kYear, kMonth, kDay, kHour, kMin}) {
    std::int16_t value = 0;
    EXPECT_EQ((object_.get()->*count.get)(&value), S_OK);
    EXPECT_EQ(value, expected++) << count.name;
  }
  EXPECT_EQ(Seconds(), 6.5);
  EXPECT_EQ(Negative(), -1);
  LeaveStaleRecord();
  EXPECT_EQ(Text(), "-P1Y2M3DT4H5M6.5S");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(DurationObject, RefusedTextsHaveTheirWords) {
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

TEST_F(DurationObject, OneMadeFromATextHoldsIt) {
  EXPECT_EQ(TextOf(CreateDuration(u"P1DT2H").get()), "P1DT2H");
  EXPECT_EQ(TextOf(CreateDuration().get()), "P0");
}

TEST_F(DurationObject, OneMadeFromABadTextThrowsTheWords) {
  EXPECT_EQ(Thrown([] { CreateDuration(u"1D"); }), std::string("_com_error 0x80020009 ") + kPlaceOfP);
  EXPECT_EQ(Thrown([] { CreateDuration(WideString()); }), std::string("_com_error 0x80020009 ") + kPlaceOfP);
}

TEST_F(DurationObject, IsCountedOverBothInterfaces) {
  EXPECT_EQ(object_->AddRef(), 3u);  // object_, raw_, this one
  EXPECT_EQ(raw_->AddRef(), 4u);
  EXPECT_EQ(object_->Release(), 3u);
  EXPECT_EQ(raw_->Release(), 2u);
}

TEST_F(DurationObject, OutlivesItsFirstInterface) {
  EXPECT_EQ(object_->put_Day(7), S_OK);
  object_.reset();
  WideString text;
  EXPECT_EQ(raw_->GetText(&text), S_OK);
  EXPECT_EQ(Shown(text), "P7D");
}

TEST_F(DurationObject, OnlyItsFirstInterfaceLeavesRecords) {
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(raw_);
  ASSERT_NE(support, nullptr);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IDuration::kIid), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IDurationRaw::kIid), S_FALSE);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUnknown::kIid), S_FALSE);
}

TEST(DurationInterfaces, HaveTheirPublishedIds) {
  const Guid first = {0xe279f37a, 0xfbe2, 0x4860, {0x8e, 0x6f, 0xff, 0x7d, 0xf6, 0x9e, 0x5a, 0x23}};
  const Guid raw = {0xb1ea6b4f, 0x65b0, 0x44e7, {0xbb, 0x6d, 0xaa, 0xa2, 0x35, 0x61, 0x03, 0x1a}};
  EXPECT_TRUE(IDuration::kIid == first);
  EXPECT_TRUE(IDurationRaw::kIid == raw);
}

TEST(DurationInterfaces, EachPropertyIsReadBeforeItIsWritten) {
  const Count counts[] = {kDay, kMonth, kYear, kHour, kMin};
  const std::ptrdiff_t first = PlaceOf(&kDay.get);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(PlaceOf(&counts[i].get) - first, 2 * i * kSlot) << counts[i].name;
    EXPECT_EQ(PlaceOf(&counts[i].put) - first, (2 * i + 1) * kSlot) << counts[i].name;
  }
  const auto getSec = &IDuration::get_Sec;
  const auto putSec = &IDuration::put_Sec;
  const auto getNegative = &IDuration::get_Negative;
  const auto putNegative = &IDuration::put_Negative;
  EXPECT_EQ(PlaceOf(&getSec) - first, 10 * kSlot);
  EXPECT_EQ(PlaceOf(&putSec) - first, 11 * kSlot);
  EXPECT_EQ(PlaceOf(&getNegative) - first, 12 * kSlot);
  EXPECT_EQ(PlaceOf(&putNegative) - first, 13 * kSlot);
}

TEST(DurationInterfaces, RawOneSetsBeforeItGets) {
  const auto set = &IDurationRaw::SetText;
  const auto get = &IDurationRaw::GetText;
  EXPECT_EQ(PlaceOf(&get) - PlaceOf(&set), kSlot);
}

}  // namespace
}  // namespace qv
