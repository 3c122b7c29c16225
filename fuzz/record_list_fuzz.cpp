// Feeds the reader of tables with the answers of servers, and writes what was read. Nothing may crash, leak
// or take long; the written text is XML and a table of as many columns and rows again, if the names of the
// columns can be names of elements. Input is UTF-8; its root element holds the table.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <xercesc/sax/SAXParseException.hpp>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/record_list.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/formater_record_list.h"
#include "recordlist/register_formaters.h"
#include "xml/qv_dom_parser.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsLetter(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_';
}

// The plain part of XML's names: no colon, and nothing beyond ASCII.
bool IsPlainName(std::u16string_view name) {
  return !name.empty() && IsLetter(name[0]) && std::all_of(name.begin(), name.end(), [](char16_t unit) {
    return IsLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'-' || unit == u'.';
  });
}

struct Shape {
  std::int32_t columns = 0;
  std::int32_t rows = 0;
  bool plainNames = true;
};

void CountColumns(qv::IRecordList* list, Shape* shape) {
  qv::IRecordListHeaders* raw = nullptr;
  Require(list->GetHeaders(&raw) == qv::S_OK);
  const qv::IRecordListHeadersPtr headers(raw, false);
  Require(headers->GetCount(&shape->columns) == qv::S_OK);
  for (std::int32_t index = 0; index < shape->columns; ++index) {
    qv::IRecordListHeader* rawHeader = nullptr;
    Require(headers->GetHeader(index, &rawHeader) == qv::S_OK);
    const qv::IRecordListHeaderPtr header(rawHeader, false);
    qv::WideString name;
    Require(header->GetName(&name) == qv::S_OK);
    shape->plainNames = shape->plainNames && IsPlainName(name.view());
  }
}

void CountRows(qv::IRecordList* list, Shape* shape) {
  qv::IRecordListCursor* raw = nullptr;
  Require(list->OpenCursor(qv::VARIANT_TRUE, &raw) == qv::S_OK);
  const qv::IRecordListCursorPtr cursor(raw, false);
  qv::VARIANT_BOOL more = qv::VARIANT_FALSE;
  while (cursor->HasMore(&more) == qv::S_OK && more != qv::VARIANT_FALSE) {
    qv::IUnknown* next = nullptr;
    Require(cursor->Next(&next) == qv::S_OK);
    const qv::IUnknownPtr record(next, false);
    ++shape->rows;
  }
}

Shape ShapeOf(const qv::Variant& table) {
  const qv::IRecordListPtr list = qv::As<qv::IRecordList>(table.Object());
  Require(list != nullptr);
  Shape shape;
  CountColumns(list.get(), &shape);
  CountRows(list.get(), &shape);
  return shape;
}

qv::XmlNode RootOf(const qv::XmlNode& document) {
  qv::XmlNode node = document.FirstChild();
  while (!node.IsNull() && node.NodeType() != qv::XmlNode::kElement) node = node.NextSibling();
  return node;
}

// False for a text whose cells are refused: a span beyond 16 bits, say, reads but is written as no span.
bool Read(std::u16string_view text, qv::Variant* table) {
  qv::QvDomParser parser;
  parser.ParseHostileText(text, "application/xml");
  try {
    *table = qv::FormaterRecordList().ReadValue(RootOf(parser.Document()));
    return true;
  } catch (const qv::EQvException&) {
    return false;
  }
}

// False for a table that has no text: one with a link, say, or with a name that the escape would change.
bool Write(const qv::Variant& table, qv::WideString* text) {
  try {
    *text = qv::FormaterRecordList().WriteValue(table);
    return true;
  } catch (const qv::EQvException&) {
    return false;
  } catch (const qv::_com_error&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  qv::RegisterFormaters();
  const qv::WideString text = qv::FromUtf8({reinterpret_cast<const char*>(data), size});
  qv::Variant table;
  try {
    if (!Read(text.view(), &table)) return 0;
  } catch (const XERCES_CPP_NAMESPACE::SAXParseException&) {
    return 0;
  }
  const Shape shape = ShapeOf(table);
  qv::WideString written;
  if (!Write(table, &written) || !shape.plainNames) return 0;
  qv::Variant again;
  if (!Read(written.view(), &again)) return 0;
  const Shape same = ShapeOf(again);
  Require(same.columns == shape.columns && same.rows == shape.rows);
  return 0;
}
