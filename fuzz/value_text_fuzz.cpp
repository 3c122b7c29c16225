// Feeds the readers of dates, durations and links, which see what servers send. Nothing may crash or be
// undefined; what was read has to be written and read again to the same value. Input is UTF-8.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include <xercesc/sax/SAXParseException.hpp>

#include "format/formater_factory.h"
#include "format/text_conversions.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/serial_date.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/register_formaters.h"
#include "support/numbers.h"
#include "support/wide_text_stream.h"
#include "values/duration_impl.h"
#include "xml/qv_dom_parser.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// A day and a time that were read are written as a text that reads the same.
void LookAtDate(const qv::WideString& text) {
  const double serial = qv::ParseSerialDate(text.view());
  Require(std::isfinite(serial));
  qv::DateTimeValue day;
  day.Accuracy = qv::DateTimeValue::kDate;
  const qv::CalendarDate date = qv::DecodeDate(serial);
  day.Year = date.year;
  day.Month = date.month;
  day.Day = date.day;
  Require(qv::ParseSerialDate(qv::WriteDateTimeValue(day).view()) ==
          qv::EncodeDate(date.year, date.month, date.day));
  const qv::ClockTime time = qv::DecodeTime(serial);
  Require(time.hour >= -24 && time.hour <= 24 && time.minute > -60 && time.minute < 60);
}

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// The bits that were read, or the message of the failure.
template <class Read>
std::pair<std::uint64_t, qv::WideString> OutcomeOf(const Read& read) {
  try {
    return {BitsOf(read()), qv::WideString()};
  } catch (const qv::EQvException& error) {
    return {0, error.Description()};
  }
}

// The usual dates and numbers are read directly: with the same result as by the general way.
void LookAtUsualForms(const qv::WideString& text) {
  const std::u16string_view all = text.view();
  Require(OutcomeOf([&] { return qv::ParseSerialDate(all); }) ==
          OutcomeOf([&] { return qv::DateTimeToSerial(qv::ParseDateTimeText(all)); }));
  if (const std::optional<std::int32_t> plain = qv::PlainInt(all)) Require(*plain == qv::ParseInt(all));
  std::string narrow;
  for (const char16_t unit : all) narrow += unit > 0x7F ? '!' : static_cast<char>(unit);
  const double number = qv::ParseDouble(all);
  const double expected = std::strtod(narrow.c_str(), nullptr);
  Require(std::isnan(number) ? std::isnan(expected) : BitsOf(number) == BitsOf(expected));
}

void LookAtDuration(const qv::WideString& text) {
  qv::DurationImpl duration;
  duration.SetText(text);
  const qv::WideString written = duration.GetText();
  Require(!written.IsEmpty());
  if (written.view().find(u'-', 1) != std::u16string_view::npos) return;  // a count beyond 16 bits
  qv::DurationImpl again;
  try {
    again.SetText(written);
  } catch (const qv::EQvException&) {
    return;  // seconds with an exponent, or none
  }
  Require(again.GetText() == written);
}

void LookAtNode(const qv::WideString& text) {
  qv::QvDomParser parser;
  const std::u16string element =
      std::u16string(u"<v>").append(qv::EncodeXmlText(text).view()).append(u"</v>");
  parser.ParseHostileText(element, "application/xml");
  const qv::XmlNode node = parser.Document().FirstChild();
  for (const char16_t* type : {u"url", u"duration", u"datetime"}) {
    try {
      qv::FormaterFactory::Instance()->GetFormater(type)->ReadValue(node);
    } catch (const qv::EQvException&) {  // refused is fine
    } catch (const qv::_com_error&) {    // refused is fine
    }
  }
}

// Runs one look; a refusal of any kind is fine.
void Refusable(void (*look)(const qv::WideString&), const qv::WideString& text) {
  try {
    look(text);
  } catch (const qv::EQvException&) {                         // refused is fine
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException&) {  // refused is fine
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  qv::RegisterFormaters();
  const qv::WideString text = qv::FromUtf8({reinterpret_cast<const char*>(data), size});
  LookAtUsualForms(text);
  Refusable(LookAtDate, text);
  Refusable(LookAtDuration, text);
  Refusable(LookAtNode, text);
  return 0;
}
