#include "devservice/soap/table_xml.h"

#include <algorithm>
#include <string_view>

#include "devservice/values/fault_codes.h"
#include "devservice/values/random_id.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// A short script can make very many empty cells.
constexpr std::size_t kMostMarkup = std::size_t{256} << 20;

std::string NewSchemaId() {
  std::string id = RandomId();
  for (const std::size_t at : {20U, 16U, 12U, 8U}) id.insert(at, "-");
  return "uuid:" + id;
}

// One table being written.
class TableWriter {
 public:
  TableWriter(const Table& table, const Namespaces& spaces, const TableForms& forms)
      : table_(table), spaces_(spaces), forms_(forms) {}

  std::string Write(const std::string& element) {
    CheckSize();
    xml_ = "<" + element;
    Attribute("xsi:type", forms_.type);
    Attribute("xmlns:q1", spaces_.sof);
    xml_ += '>';
    if (!forms_.noHeaders) WriteHeaders();
    const std::size_t start = xml_.size();
    if (!forms_.noRecords) WriteRecords();
    if (forms_.cut) CutFrom(start);
    Close(element);
    return std::move(xml_);
  }

 private:
  // Bytes of the tags inside one record.
  std::size_t RecordMarkup() const {
    std::size_t bytes = 0;
    for (const TableColumn& column : table_.columns) bytes += 2 * column.name.size() + 5;
    return bytes;
  }

  void CheckSize() const {
    const auto records =
        static_cast<std::size_t>(std::count(table_.records.begin(), table_.records.end(), kRecordEnd));
    const std::size_t bytes = RecordMarkup();
    if (bytes == 0 || records <= kMostMarkup / bytes) return;
    throw FaultError(kNoWireForm,
                     "The script's table of " + std::to_string(records) + " rows and " +
                         std::to_string(table_.columns.size()) + " columns is too large for an answer.",
                     "script");
  }

  void WriteHeaders() {
    Open(forms_.names->headers);
    if (!forms_.noSchema) WriteSchema();
    Close(forms_.names->headers);
  }

  void WriteSchema() {
    const std::string id = NewSchemaId();
    Gap();
    xml_ += std::string("<") + forms_.names->schema;
    Attribute("targetNamespace", id);
    Attribute("xmlns:qvrl", spaces_.sof);
    Attribute("xmlns:qvdt", spaces_.dataTypes);
    Attribute("xmlns:sof", spaces_.sof);
    Attribute("xmlns:xsd", kSchema);
    Attribute("xmlns:tns", id);
    xml_ += '>';
    const char* oddType = forms_.firstColumnType;
    for (const TableColumn& column : table_.columns) {
      WriteColumn(column, oddType ? oddType : column.type);
      oddType = nullptr;
    }
    Close(forms_.names->schema);
  }

  void WriteColumn(const TableColumn& column, std::string_view type) {
    Gap();
    xml_ += std::string("<") + forms_.names->column;
    if (!forms_.noColumnNames) Attribute("xsd:name", column.name);
    if (!forms_.noColumnTypes) Attribute("xsd:type", type);
    Attribute("xsd:displayName", column.displayName);
    Attribute("qvrl:valueSize", "");
    Attribute("qvrl:valueSize2", "");
    xml_ += "/>";
  }

  void WriteRecords() {
    Open(forms_.names->records);
    std::string_view rest = table_.records;
    while (!rest.empty()) {
      const std::size_t end = rest.find(kRecordEnd);
      WriteRecord(rest.substr(0, end));
      rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    Close(forms_.names->records);
  }

  void WriteRecord(std::string_view cells) {
    Open(forms_.names->record);
    const std::size_t left = forms_.missingCell && !table_.columns.empty() ? 1 : 0;
    for (std::size_t i = 0; i + left < table_.columns.size(); ++i) {
      const std::size_t end = std::min(cells.find(kCellEnd), cells.size());
      WriteCell(forms_.names->cell ? forms_.names->cell : table_.columns[i].name, cells.substr(0, end));
      cells.remove_prefix(std::min(end + 1, cells.size()));
    }
    if (forms_.extraCell) WriteCell("extra", "1");
    Close(forms_.names->record);
  }

  void WriteCell(std::string_view name, std::string_view text) {
    Gap();
    xml_.append("<").append(name);
    if (text.empty()) {
      xml_ += "/>";
      return;
    }
    xml_.append(">").append(EscapeXml(text)).append("</").append(name).append(">");
  }

  void Open(const char* name) {
    Gap();
    xml_.append("<").append(name).append(">");
  }
  void Close(std::string_view name) {
    Gap();
    xml_.append("</").append(name).append(">");
  }
  void Gap() { xml_ += forms_.gap; }
  void Attribute(const char* name, std::string_view value) {
    xml_.append(" ").append(name).append("=\"").append(EscapeXml(value)).append("\"");
  }

  // Cuts the text off in the middle of its part after `start`, but not inside a character.
  void CutFrom(std::size_t start) {
    std::size_t end = start + (xml_.size() - start) / 2;
    while (end > start && (static_cast<unsigned char>(xml_[end]) & 0xC0) == 0x80) --end;
    xml_.resize(end);
  }

  const Table& table_;
  const Namespaces& spaces_;
  const TableForms& forms_;
  std::string xml_;
};

}  // namespace

std::string WriteTable(const std::string& element, const Table& table, const Namespaces& spaces,
                       const TableForms& forms) {
  return TableWriter(table, spaces, forms).Write(element);
}

}  // namespace qv::devservice
