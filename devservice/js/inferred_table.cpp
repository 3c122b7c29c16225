#include "devservice/js/inferred_table.h"

#include "devservice/js/script_fault.h"
#include "devservice/js/single_value.h"
#include "devservice/js/table_rows.h"
#include "devservice/values/column_types.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// The type of a column so far, and that of one more value. Empty: none yet.
std::string CommonType(const std::string& first, const std::string& second) {
  if (first.empty() || first == second) return second;
  const bool numbers = (first == "int" && second == "double") || (first == "double" && second == "int");
  return numbers ? "double" : "string";
}

class InferredTable {
 public:
  InferredTable(JSContextRef context, const ValueReaders& readers)
      : context_(context), dates_(readers.dates), objects_(context, readers.keys) {}

  // False when the value is not a plain object.
  bool AddRow(JSValueRef value) {
    if (!objects_.IsPlain(value)) return false;
    ++row_;
    JSObjectRef row = JSValueToObject(context_, value, nullptr);
    if (objects_.ReadKeys(row)) FindColumns();
    for (std::size_t i = 0; i < columns_.size(); ++i)
      AddCell(columns_[i],
              ResultOfSingle(context_, ValueOfKey(context_, row, objects_.Keys()[i].get()), dates_));
    cells_.MoveTo(table_.records);
    return true;
  }

  Table Take() {
    for (TableColumn& column : table_.columns) {
      const ColumnType* type = FindColumnType(column.type.empty() ? "string" : column.type);
      column.type = type->wireName;
    }
    return std::move(table_);
  }

 private:
  void FindColumns() {
    columns_.clear();
    for (const JsString& key : objects_.Keys()) columns_.push_back(ColumnOf(key.get(), columns_.size()));
  }

  std::size_t ColumnOf(JSStringRef key, std::size_t guess) {
    const std::size_t found = keys_.Find(key, guess);
    if (found != ColumnKeys::kNone) return found;
    keys_.Add(key);
    const std::string name = Utf16ToUtf8(UnitsOf(key));
    table_.columns.push_back({name, name, ""});
    return table_.columns.size() - 1;
  }

  void AddCell(std::size_t number, ScriptResult cell) {
    TableColumn& column = table_.columns[number];
    if (cell.kind == ResultKind::kFault) throw TableError(DescribeCell(row_, column.name) + ": " + cell.text);
    if (cell.kind != ResultKind::kValue) return;
    if (column.type != cell.type) column.type = CommonType(column.type, cell.type);
    cells_.Put(number, std::move(cell.text));
  }

  JSContextRef context_;
  const DateReader& dates_;
  PlainObjects objects_;
  std::vector<std::size_t> columns_;  // Those of the objects' keys.
  ColumnKeys keys_;
  RecordCells cells_;
  Table table_;  // A column's type is the name of a value type until all rows are known.
  std::size_t row_ = 0;
};

bool AddRows(JSContextRef context, JSObjectRef array, InferredTable& table) {
  const unsigned count = LengthOf(context, array);
  for (unsigned i = 0; i < count; ++i) {
    if (!table.AddRow(ValueAt(context, array, i))) return false;
  }
  return count > 0;
}

}  // namespace

std::optional<ScriptResult> ResultOfRows(JSContextRef context, JSObjectRef array,
                                         const ValueReaders& readers) {
  ScriptResult result;
  result.kind = ResultKind::kTable;
  try {
    InferredTable table(context, readers);
    if (!AddRows(context, array, table)) return std::nullopt;
    result.table = table.Take();
    return result;
  } catch (const ThrownByScript& thrown) {
    return ResultOfException(context, thrown.value);
  } catch (const TableError& error) {
    return MakeFault(kNoWireForm, std::string("The script's table: ") + error.what());
  }
}

}  // namespace qv::devservice
