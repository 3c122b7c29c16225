// Values of answers and cells.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "face/values/wire_value.h"
#include "fixtures/fake_object.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/record_list.h"

namespace scriptwells {
namespace {

template <class Call>
std::string FailureOf(const Call& call) {
  try {
    call();
    return "accepted";
  } catch (const Error& error) {
    EXPECT_EQ(error.phase(), Phase::kAnswer);
    return error.message();
  }
}

TEST(FromWire, EveryTagHasItsType) {
  const std::pair<qv::Variant, Value> rows[] = {{qv::Variant(), Value()},
                                                {qv::Variant::Null(), Value()},
                                                {qv::NullText(), Value()},
                                                {qv::Variant::FromObject(nullptr), Value()},
                                                {qv::I1(-128), Byte(-128)},
                                                {qv::UI1(255), Short(255)},
                                                {qv::I2(-32768), Short(-32768)},
                                                {qv::UI2(65535), Int(65535)},
                                                {qv::I4(-5), Int(-5)},
                                                {qv::Int(-5), Int(-5)},
                                                {qv::UI4(4294967295), Long(4294967295)},
                                                {qv::UInt(4294967295), Long(4294967295)},
                                                {qv::I8(INT64_MIN), Long(INT64_MIN)},
                                                {qv::UI8(INT64_MAX), Long(INT64_MAX)},
                                                {qv::R4(0.1F), Value(0.1F)},
                                                {qv::R8(0.1), Value(0.1)},
                                                {qv::Bool(true), Value(true)},
                                                {qv::Bool(false), Value(false)},
                                                {qv::Text(u""), Value("")},
                                                {qv::Text(u"caf\u00E9"), Value("caf\xC3\xA9")}};
  for (const auto& [variant, value] : rows) EXPECT_EQ(FromWire(variant), value) << variant.Tag();
  // A boolean is any number but 0.
  EXPECT_EQ(FromWire(qv::Raw(qv::VT_BOOL, 1)), Value(true));
}

TEST(FromWire, OtherTagsAreRefused) {
  EXPECT_EQ(FailureOf([] { FromWire(qv::Raw(qv::VT_CY, 5)); }), "a value of an unknown type: tag 6");
  EXPECT_EQ(FailureOf([] { FromWire(qv::Raw(qv::VT_DECIMAL, 5)); }), "a value of an unknown type: tag 14");
  const qv::Variant number = qv::Int(5);
  EXPECT_EQ(FailureOf([&] { FromWire(qv::PointerTo(number)); }), "a value of an unknown type: tag 16406");
  EXPECT_THROW(FromWire(qv::UI8(std::uint64_t{1} << 63)), ConversionError);
}

struct PointRow {
  double serial;
  std::int32_t column;
  Value value;
};

TEST(FromWire, TheNumberDecidesOnTheTypeOfAPoint) {
  const PointRow rows[] = {{45356, -1, Date{2024, 3, 5}},
                           {45356 + 36930007 / 86400000.0, -1, DateTime{{2024, 3, 5}, {10, 15, 30, 7}}},
                           {36930070 / 86400000.0, -1, Time{10, 15, 30, 70}},
                           {0, -1, Time()},
                           {-0.0, -1, Time()},
                           {-1, -1, Date{1899, 12, 29}},
                           {1, -1, Date{1899, 12, 31}},
                           {-693593, -1, Date{1, 1, 1}},
                           {2958465, -1, Date{9999, 12, 31}},
                           // Before day 0, time counts from the start of the day.
                           {-1.25, -1, DateTime{{1899, 12, 28}, {18, 0, 0, 0}}},
                           {-18260 + 0.5, -1, DateTime{{1850, 1, 1}, {12, 0, 0, 0}}},
                           {-0.25, -1, DateTime{{1899, 12, 29}, {18, 0, 0, 0}}},
                           {-1e-12, -1, DateTime{{1899, 12, 30}, {}}},
                           // A time that rounds to midnight belongs to the next day.
                           {45356.9999999999, -1, DateTime{{2024, 3, 6}, {}}},
                           {0.9999999999, -1, DateTime{{1899, 12, 31}, {}}},
                           // A zone of one day.
                           {2958466, -1, Date{10000, 1, 1}},
                           {2958466.5, -1, DateTime{{10000, 1, 1}, {12, 0, 0, 0}}},
                           {-693594, -1, Date{0, 12, 31}}};
  for (const PointRow& row : rows) EXPECT_EQ(FromWire(qv::Date(row.serial)), row.value) << row.serial;
}

TEST(FromWire, TheColumnDecidesOnTheTypeOfACell) {
  const PointRow rows[] = {
      {45356, qv::kColumnDateTime, DateTime{{2024, 3, 5}, {}}},
      {0.5, qv::kColumnDateTime, DateTime{{1899, 12, 30}, {12, 0, 0, 0}}},
      {0, qv::kColumnDateTime, DateTime()},
      {45356.5, qv::kColumnDateTime, DateTime{{2024, 3, 5}, {12, 0, 0, 0}}},
      {-1 + 18000000 / 86400000.0, qv::kColumnDateTime, DateTime{{1899, 12, 29}, {5, 0, 0, 0}}},
      {0.9999999999, qv::kColumnDateTime, DateTime{{1899, 12, 31}, {}}},
      {2958466, qv::kColumnDateTime, DateTime{{10000, 1, 1}, {}}},
      {0, qv::kColumnDate, Date()},
      {45356, qv::kColumnDate, Date{2024, 3, 5}},
      {45356.5, qv::kColumnDate, DateTime{{2024, 3, 5}, {12, 0, 0, 0}}},
      {0.5, qv::kColumnDate, Time{12, 0, 0, 0}},
      {0.5, qv::kColumnTime, Time{12, 0, 0, 0}},
      {0, qv::kColumnTime, Time()},
      {-0.25, qv::kColumnTime, DateTime{{1899, 12, 29}, {18, 0, 0, 0}}},
      {45356, qv::kColumnTime, Date{2024, 3, 5}},
      {45356, qv::kColumnString, Date{2024, 3, 5}}};
  for (const PointRow& row : rows)
    EXPECT_EQ(FromWire(qv::Date(row.serial), row.column), row.value) << row.serial << " " << row.column;
}

TEST(FromWire, NumbersThatAreNoDateAreRefused) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::pair<double, const char*> rows[] = {
      {1e300, "1e+300"}, {-1e7, "-1e+07"}, {infinity, "INF"}, {-infinity, "-INF"}, {std::nan(""), "NaN"}};
  for (const auto& [serial, text] : rows)
    for (const std::int32_t column : {-1, 16, 17, 18})
      EXPECT_EQ(FailureOf([&, number = serial] { FromWire(qv::Date(number), column); }),
                std::string("a date is out of range: ") + text);
  EXPECT_EQ(FailureOf([] { FromWire(qv::Date(9'999'999)); }), "accepted");
}

TEST(FromWire, ObjectsAreDurationsAndLinks) {
  const auto duration = [](const char16_t* text) {
    return FromWire(qv::Variant::FromObject(qv::CreateDuration(text).get()));
  };
  EXPECT_EQ(duration(u"-P1Y2M3DT4H5M6.5S"), Value(Duration{true, 1, 2, 3, 4, 5, 6.5}));
  // A count that did not fit 16 bits.
  EXPECT_EQ(duration(u"P40000D"), Value(Duration{false, 0, 0, -25536, 0, 0, 0}));
  const qv::IUrlPtr url = qv::CreateUrl();
  EXPECT_EQ(FromWire(qv::Variant::FromObject(url.get())), Value(Link()));
  ASSERT_EQ(url->put_Url(u"http://srv/a"), qv::S_OK);
  ASSERT_EQ(url->put_UrlCaption(u"here"), qv::S_OK);
  EXPECT_EQ(FromWire(qv::Variant::FromObject(url.get())), Value(Link{"http://srv/a", "here"}));
  EXPECT_EQ(FromWire(qv::UnderDispatch(url.get())), Value(Link{"http://srv/a", "here"}));
  EXPECT_EQ(FailureOf([] { FromWire(qv::Variant::FromObject(qv::CreateParameters().get())); }),
            "an object that is neither a duration nor a link");
  EXPECT_EQ(FailureOf([] { FromWire(qv::Variant::FromObject(qv::CreateRecordList().get())); }),
            "an object that is neither a duration nor a link");
}

// An object of another program, which the interfaces alone recognise.
class OtherUrl final : public qv::FakeObject<qv::IUrl> {
 public:
  qv::HRESULT get_UrlCaption(qv::WideString*) noexcept override { return caption; }
  qv::HRESULT put_UrlCaption(const qv::WideString&) noexcept override { return qv::E_NOTIMPL; }
  qv::HRESULT get_Url(qv::WideString* value) noexcept override {
    *value = u"other";
    return qv::S_OK;
  }
  qv::HRESULT put_Url(const qv::WideString&) noexcept override { return qv::E_NOTIMPL; }
  qv::HRESULT ToString(qv::WideString*) noexcept override { return qv::E_NOTIMPL; }
  qv::HRESULT GetTypeInfoCount(std::uint32_t*) noexcept override { return qv::E_NOTIMPL; }
  qv::HRESULT GetTypeInfo(std::uint32_t, qv::LCID, qv::ITypeInfo**) noexcept override {
    return qv::E_NOTIMPL;
  }
  qv::HRESULT GetIDsOfNames(const qv::Guid&, const char16_t* const*, std::uint32_t, qv::LCID,
                            qv::DISPID*) noexcept override {
    return qv::E_NOTIMPL;
  }
  qv::HRESULT Invoke(qv::DISPID, const qv::Guid&, qv::LCID, std::uint16_t, const qv::DISPPARAMS*,
                     qv::Variant*, qv::EXCEPINFO*, std::uint32_t*) noexcept override {
    return qv::E_NOTIMPL;
  }

  qv::HRESULT caption = qv::S_OK;
};

TEST(FromWire, ObjectsOfOthersAreAskedForTheirInterfaces) {
  auto* const url = new OtherUrl;
  const qv::Variant variant = qv::Variant::FromObject(url);
  EXPECT_EQ(FromWire(variant), Value(Link{"other", ""}));
  url->caption = qv::E_ACCESSDENIED;
  EXPECT_EQ(FailureOf([&] { FromWire(variant); }), "failure 0x80070005");
  url->caption = qv::E_OUTOFMEMORY;
  EXPECT_THROW(FromWire(variant), std::bad_alloc);
  EXPECT_EQ(url->References(), 1U);
}

TEST(FromWire, NumbersAndDatesTakeNoMemory) {
  const qv::Variant rows[] = {qv::I4(5),      qv::Int(5),        qv::R8(0.5),
                              qv::Bool(true), qv::Date(45356.5), qv::Text(u"abc")};
  const std::size_t before = qv::HeapBlocks();
  for (const qv::Variant& row : rows) static_cast<void>(FromWire(row, qv::kColumnDateTime));
  EXPECT_EQ(qv::HeapBlocks(), before);
}

}  // namespace
}  // namespace scriptwells
