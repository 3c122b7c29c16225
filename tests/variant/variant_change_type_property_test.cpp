// What holds for every source and every target: a known result code, an untouched destination on failure, a
// value of the wanted tag on success, no reference and no byte left or lost.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "variant/valued_object.h"
#include "variant/variant_rows.h"

namespace qv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<VARTYPE> AllTargets() {
  std::vector<VARTYPE> tags = {64, 77, 0x2000, 0x2003, 0x6003, 0x8000, 0xFFFF};
  for (VARTYPE tag = 0; tag <= 33; ++tag)
    tags.insert(tags.end(), {tag, static_cast<VARTYPE>(VT_BYREF | tag)});
  return tags;
}

const std::vector<VARTYPE> kTargets = AllTargets();

bool IsKnownCode(HRESULT code) {
  return code == S_OK || code == DISP_E_TYPEMISMATCH || code == DISP_E_OVERFLOW ||
         code == DISP_E_BADVARTYPE || code == E_INVALIDARG;
}

// One change onto a destination that holds an object, so that a lost or doubled reference shows.
void ExpectSound(const Variant& source, VARTYPE tag) {
  ValuedObject old;
  Variant destination = Variant::FromObject(&old);
  const HRESULT code = VariantChangeType(&destination, source, tag);
  ASSERT_TRUE(IsKnownCode(code)) << ShownValue(source) << " to " << tag << ": " << code;
  if (Failed(code)) {
    ASSERT_EQ(destination.Object(), &old) << ShownValue(source) << " to " << tag;
    ASSERT_EQ(old.count, 2U);
    return;
  }
  ASSERT_EQ(destination.Tag(), tag) << ShownValue(source);
  ASSERT_EQ(old.count, 1U);
  Variant again;
  ASSERT_EQ(VariantChangeType(&again, source, tag), S_OK);
  ASSERT_TRUE(IsSame(again, destination)) << ShownValue(source) << " to " << tag;
  ASSERT_EQ(VariantChangeType(&again, again, tag), S_OK);
  ASSERT_TRUE(IsSame(again, destination)) << ShownValue(source) << " to " << tag;
}

// A pointer under VT_VARIANT would promise a whole Variant where there is only its value.
bool HasPointerForm(VARTYPE tag) {
  return tag != VT_VARIANT && (tag & VT_BYREF) == 0;
}

void ExpectSoundEverywhere(const Variant& source) {
  for (const VARTYPE tag : kTargets) {
    ExpectSound(source, tag);
    if (HasPointerForm(source.Tag())) ExpectSound(PointerTo(source), tag);
    ExpectSound(PointerToVariant(source), tag);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

bool OwnsOrPoints(VARTYPE tag) {
  return tag == VT_BSTR || tag == VT_UNKNOWN || tag == VT_DISPATCH || (tag & VT_BYREF) != 0;
}

std::vector<std::int64_t> EdgeBytes() {
  std::vector<std::int64_t> bytes = {0, 1, -1, 5, 300, 77777};
  for (int bits = 7; bits < 64; ++bits) {
    const auto power = static_cast<std::int64_t>(std::uint64_t{1} << bits);
    bytes.insert(bytes.end(), {power, ~power});
  }
  for (const double value : {0.5, -0.5, 1.5, 127.5, 255.5, -0.75, 45356.427, 2958465.99, -657434.99, 1e10,
                             9.3e18, 1.8446744073709552e19, 1e300, 5e-324, kInfinity, -kInfinity,
                             std::numeric_limits<double>::quiet_NaN()}) {
    bytes.push_back(Variant::FromDouble(value).Data().llVal);
    bytes.push_back(Variant::FromFloat(static_cast<float>(value)).Data().llVal);
  }
  return bytes;
}

std::u16string RandomText(std::mt19937* random) {
  static const std::u16string_view pieces[] = {
      u"0",    u"1",  u"2",      u"5",      u"9",       u"12",     u"2024", u"99999999999999999999",
      u".",    u",",  u"-",      u"+",      u"e",       u"E",      u" ",    u"/",
      u":",    u"AM", u"pm",     u"True",   u"#FALSE#", u"0x",     u"&H",   u"1E+15",
      u"3/5/", u"#",  u"\xD800", u"\xDFFF", u"\uFF11",  u"\u00A0", u"$",    {u"\0", 1},
  };
  std::u16string text;
  for (auto left = (*random)() % 7; left != 0; --left)
    text += pieces[(*random)() % (sizeof pieces / sizeof pieces[0])];
  return text;
}

TEST(VariantChangeTypeProperty, EveryTagWithEdgeBytesIsSound) {
  for (const VARTYPE tag : kTargets) {
    if (OwnsOrPoints(tag)) continue;
    for (const std::int64_t bytes : EdgeBytes()) ExpectSoundEverywhere(Raw(tag, bytes));
    ASSERT_FALSE(HasFatalFailure()) << tag;
  }
}

TEST(VariantChangeTypeProperty, EveryTagWithANullPointerIsSound) {
  for (const VARTYPE tag : kTargets) {
    ExpectSoundEverywhere(Raw(tag, 0));
    ASSERT_FALSE(HasFatalFailure()) << tag;
  }
}

TEST(VariantChangeTypeProperty, RandomTextsAreSound) {
  std::mt19937 random(20240305);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  for (int i = 0; i < 4000; ++i) {
    ExpectSoundEverywhere(Text(RandomText(&random)));
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST(VariantChangeTypeProperty, LongTextsAreSound) {
  for (const char16_t unit : {u'0', u'9', u',', u' ', u'-', u'.', u'e', u'/', u':', u'\xD800', u'\0'}) {
    ExpectSoundEverywhere(Text(std::u16string(20000, unit)));
    ExpectSoundEverywhere(Text(u"1" + std::u16string(20000, unit)));
    ExpectSoundEverywhere(Text(u"0." + std::u16string(20000, unit) + u"1"));
    ExpectSoundEverywhere(Text(u"1e" + std::u16string(20000, unit)));
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST(VariantChangeTypeProperty, ObjectsOfAllMannersAreSound) {
  using Answer = ValuedObject::Answer;
  for (const Answer answer : {Answer::kItself, Answer::kNothing, Answer::kNullOnSuccess,
                              Answer::kPointerOnFailure, Answer::kOutOfMemory}) {
    ValuedObject object(answer);
    ExpectSoundEverywhere(Variant::FromObject(&object));
    ExpectSoundEverywhere(FromDispatch(&object));
    ASSERT_EQ(object.count, 1U);
  }
}

TEST(VariantChangeTypeProperty, WholeNumbersThatFitComeBack) {
  const VARTYPE tags[] = {VT_I1,  VT_I2,  VT_I4,   VT_INT, VT_I8,  VT_UI1,
                          VT_UI2, VT_UI4, VT_UINT, VT_UI8, VT_BSTR};
  for (const std::int64_t bytes : EdgeBytes()) {
    const Variant wide[] = {I8(bytes), UI8(static_cast<std::uint64_t>(bytes))};
    for (const Variant& value : wide) {
      for (const VARTYPE tag : tags) {
        Variant changed;
        if (Failed(VariantChangeType(&changed, value, tag))) continue;
        ASSERT_EQ(VariantChangeType(&changed, changed, value.Tag()), S_OK) << ShownValue(value) << ' ' << tag;
        ASSERT_TRUE(IsSame(changed, value)) << ShownValue(value) << " by way of " << tag;
      }
    }
  }
}

TEST(VariantChangeTypeProperty, FractionsRoundAsTheProcessorDoes) {
  std::mt19937_64 random(20240305);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  for (int i = 0; i < 100000; ++i) {
    const double value = static_cast<double>(static_cast<std::int64_t>(random() % 400001) - 200000) / 4;
    const double rounded = std::nearbyint(value);
    Variant whole;
    ASSERT_EQ(VariantChangeType(&whole, R8(value), VT_I4), S_OK) << value;
    ASSERT_EQ(whole.Data().lVal, rounded) << value;
    ASSERT_EQ(VariantChangeType(&whole, Text(u"x"), VT_I4), DISP_E_TYPEMISMATCH);
    const std::string ascii = std::to_string(value);
    ASSERT_EQ(VariantChangeType(&whole, Text(std::u16string(ascii.begin(), ascii.end())), VT_I4), S_OK);
    ASSERT_EQ(whole.Data().lVal, rounded) << ascii;
  }
}

TEST(VariantChangeTypeProperty, DoublesComeBackFromTheirTextToFifteenDigits) {
  std::mt19937_64 random(20240305);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  for (int i = 0; i < 100000; ++i) {
    const Variant source = Raw(VT_R8, static_cast<std::int64_t>(random()));
    const double value = source.Data().dblVal;
    if (!std::isnormal(value) || std::fabs(value) > 1e308) continue;
    Variant text;
    ASSERT_EQ(VariantChangeType(&text, source, VT_BSTR), S_OK);
    ASSERT_EQ(VariantChangeType(&text, text, VT_R8), S_OK) << value;
    ASSERT_LE(std::fabs(text.Data().dblVal - value), std::fabs(value) * 1e-14) << value;
  }
}

TEST(VariantChangeTypeProperty, DatesComeBackFromTheirTextToTheSecond) {
  std::mt19937_64 random(20240305);  // NOLINT(cert-msc32-c,cert-msc51-cpp): repeatable
  for (int i = 0; i < 100000; ++i) {
    const double day = static_cast<double>(static_cast<std::int64_t>(random() % 3615898) - 657433);
    const double seconds = static_cast<double>(random() % 86400);
    const double value = day < 0 ? day - seconds / 86400 : day + seconds / 86400;
    Variant text;
    ASSERT_EQ(VariantChangeType(&text, Date(value), VT_BSTR), S_OK) << day << ' ' << seconds;
    ASSERT_EQ(VariantChangeType(&text, text, VT_DATE), S_OK) << day << ' ' << seconds;
    ASSERT_EQ(text.Data().date, value) << day << ' ' << seconds;
  }
}

}  // namespace
}  // namespace qv
