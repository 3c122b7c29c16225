#include "recordlist/record_list_reader.h"

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "recordlist/column_types.h"
#include "recordlist/record_list_calls.h"
#include "support/numbers.h"
#include "text/join_text.h"

namespace qv {
namespace {

const XmlNode& Present(const XmlNode& node) {
  if (node.IsNull()) _com_raise_error(E_POINTER);
  return node;
}

[[noreturn]] void RaiseNoValue(std::int32_t columnType) {
  throw EQvException(JoinText({u"Value from type ", DecimalText(columnType).view(), u" doesn't exist."}));
}

}  // namespace

IRecordListPtr RecordListReader::Read(const XmlNode& element) {
  list_ = CreateRecordList();
  Lock(list_.get(), false);
  headers_ = HeadersOf(list_.get());
  Lock(headers_.get(), false);
  const XmlNode headersBlock = Present(element.FirstChild());
  ReadColumns(headersBlock);
  ReadRecords(Present(headersBlock.NextSibling()));
  Lock(list_.get(), true);
  Lock(headers_.get(), true);
  return list_;
}

void RecordListReader::ReadColumns(const XmlNode& headersBlock) {
  const XmlNode schema = Present(headersBlock.FirstChild());
  for (XmlNode column = schema.FirstChild(); !column.IsNull(); column = column.NextSibling()) {
    const WideString name(Present(column.Attribute(u"xsd:name")).Value());
    const XmlNode type = Present(column.Attribute(u"xsd:type"));
    AddColumn(headers_.get(), name, ColumnTypeOf(type.Value()));
    ++columns_;
  }
}

void RecordListReader::ReadRecords(const XmlNode& recordsBlock) {
  for (XmlNode record = recordsBlock.FirstChild(); !record.IsNull(); record = record.NextSibling()) {
    ++records_;
    RequireFilled();
    const IRecordListRecordPtr target = NewRecordOf(list_.get());
    Lock(target.get(), false);
    ReadCells(record, target.get());
    Lock(target.get(), true);
  }
}

void RecordListReader::ReadCells(const XmlNode& record, IRecordListRecord* target) {
  std::int32_t index = 0;
  for (XmlNode cell = record.FirstChild(); !cell.IsNull(); cell = cell.NextSibling(), ++index) {
    const XmlNode text = FirstTextChild(cell);
    const std::int32_t type = TypeOf(HeaderAt(headers_.get(), index).get());
    const Variant value = formaters_.ReadCell(type, text);
    if (value.Tag() == VT_NULL) RaiseNoValue(type);
    SetValueOf(target, index, value);
  }
  cells_ += index;
}

void RecordListReader::RequireFilled() const {
  if (records_ * columns_ - cells_ > kMostMissingCells) _com_raise_error(E_OUTOFMEMORY);
}

}  // namespace qv
