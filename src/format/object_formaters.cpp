#include "format/object_formaters.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "format/text_conversions.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/string_helpers.h"
#include "support/wide_text_stream.h"

namespace qv {
namespace {

// E_POINTER for an object that has no text form.
IDurationRawPtr TextFormOf(IUnknown* object) {
  const IDurationPtr duration = As<IDuration>(object);
  IDurationRawPtr raw = As<IDurationRaw>(duration);
  if (raw == nullptr) _com_raise_error(E_POINTER);
  return raw;
}

WideString NodeText(const XmlNode& node) {
  const std::u16string_view text = GetNodeText(node);
  return DomStringToWide(text.data(), text.size());
}

// From `start` up to `end`.
WideString Substring(const WideString& text, std::int64_t start, std::int64_t end) {
  if (start > end) throw std::runtime_error("The end position is less then the start position.");
  return Copy(text, static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

// The marks of one part. The start is computed from the opening mark even if that is missing, so that the
// same texts fail as in deployed readers.
struct PartMarks {
  std::u16string_view open;
  std::u16string_view empty;
  std::u16string_view close;
};

constexpr PartMarks kLink = {u"<URL>", u"<URL/>", u"</URL>"};
constexpr PartMarks kCaption = {u"<C>", u"<C/>", u"</C>"};

std::int64_t Position(std::u16string_view pattern, const WideString& text) {
  const std::size_t found = text.view().find(pattern);
  return found == std::u16string_view::npos ? -1 : static_cast<std::int64_t>(found);
}

WideString PartOf(const WideString& text, const PartMarks& marks) {
  const std::int64_t start = Position(marks.open, text) + static_cast<std::int64_t>(marks.open.size());
  const std::int64_t empty = Position(marks.empty, text);
  return Substring(text, start, empty >= 0 ? empty : Position(marks.close, text));
}

// Calls the first slot of IUrl, which returns and stores nothing, so both parts are lost.
void HandOver(IUrl* url, const WideString& text) {
  WideString link = PartOf(text, kLink);
  const WideString caption = PartOf(text, kCaption);
  ThrowIfFailed(url->get_UrlCaption(&link), url, IUrl::kIid);
}

}  // namespace

Variant FormaterDuration::ReadValue(const XmlNode& node) {
  const WideString text = NodeText(node);
  const IDurationPtr duration = CreateDuration();
  const IDurationRawPtr raw = TextFormOf(duration.get());
  ThrowIfFailed(raw->SetText(text), raw.get(), IDurationRaw::kIid);
  return Variant::FromObject(duration.get());
}

WideString FormaterDuration::WriteValue(const Variant& value) {
  const IDurationRawPtr raw = TextFormOf(value.Object());
  WideString text;
  ThrowIfFailed(raw->GetText(&text), raw.get(), IDurationRaw::kIid);
  return EncodeXmlText(text);
}

Variant FormaterUrl::ReadValue(const XmlNode& node) {
  const IUrlPtr url = CreateUrl();
  const WideString text = NodeText(node);
  if (text.IsEmpty()) return {};
  try {
    HandOver(url.get(), text);
    return Variant::FromObject(url.get());
  } catch (...) {
    throw EQvException(u"Cannot build a url object.");
  }
}

WideString FormaterUrl::WriteValue(const Variant&) {
  return u"";
}

}  // namespace qv
