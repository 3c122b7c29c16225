#include "recordlist/record_list_reader.h"

#include "components/recordlist/record_list_object.h"
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
  CellTable* const table = CellsOf(list_.get());
  if (table != nullptr) types_ = ColumnTypes();
  for (XmlNode record = recordsBlock.FirstChild(); !record.IsNull(); record = record.NextSibling()) {
    ++records_;
    RequireFilled();
    if (table != nullptr)
      ReadRow(record, *table);
    else
      ReadRecord(record);
  }
}

void RecordListReader::ReadRecord(const XmlNode& record) {
  const IRecordListRecordPtr target = NewRecordOf(list_.get());
  Lock(target.get(), false);
  ReadCells(record, target.get());
  Lock(target.get(), true);
}

void RecordListReader::ReadCells(const XmlNode& record, IRecordListRecord* target) {
  std::int32_t index = 0;
  for (XmlNode cell = record.FirstChild(); !cell.IsNull(); cell = cell.NextSibling(), ++index) {
    const std::int32_t type = TypeOf(HeaderAt(headers_.get(), index).get());
    SetValueOf(target, index, ReadCell(cell, type));
  }
  cells_ += index;
}

void RecordListReader::ReadRow(const XmlNode& record, CellTable& table) {
  Variant* const row = table.AddRow(true);
  std::size_t index = 0;
  for (XmlNode cell = record.FirstChild(); !cell.IsNull(); cell = cell.NextSibling(), ++index) {
    if (index == types_.size()) _com_raise_error(DISP_E_BADINDEX);
    row[index] = ReadCell(cell, types_[index]);
  }
  cells_ += static_cast<std::int64_t>(index);
}

Variant RecordListReader::ReadCell(const XmlNode& cell, std::int32_t type) {
  Variant value = formaters_.ReadCell(type, FirstTextChild(cell));
  if (value.Tag() == VT_NULL) RaiseNoValue(type);
  return value;
}

std::vector<std::int32_t> RecordListReader::ColumnTypes() const {
  std::vector<std::int32_t> types(static_cast<std::size_t>(CountOf(headers_.get())));
  for (std::size_t index = 0; index < types.size(); ++index)
    types[index] = TypeOf(HeaderAt(headers_.get(), static_cast<std::int32_t>(index)).get());
  return types;
}

void RecordListReader::RequireFilled() const {
  if (records_ * columns_ - cells_ > kMostMissingCells) _com_raise_error(E_OUTOFMEMORY);
}

}  // namespace qv
