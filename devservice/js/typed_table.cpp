#include "devservice/js/typed_table.h"

#include <memory>

#include "devservice/js/handles.h"
#include "devservice/js/table_rows.h"
#include "devservice/js/typed_values.h"
#include "devservice/values/column_types.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// Makes one table.
class TypedTable {
 public:
  TypedTable(JSContextRef context, const ValueReaders& readers)
      : context_(context), dates_(readers.dates), objects_(context, readers.keys) {}

  void AddColumns(JSValueRef columns) {
    if (!objects_.IsPlain(columns)) throw TableError("the columns are no object such as {name: \"string\"}");
    JSObjectRef object = JSValueToObject(context_, columns, nullptr);
    objects_.ReadKeys(object);
    for (const JsString& key : objects_.Keys()) AddColumn(key.get(), ValueOfKey(context_, object, key.get()));
    FindColumns();
  }

  void AddRows(JSValueRef rows) {
    if (!JSValueIsArray(context_, rows)) throw TableError("the rows are no array");
    JSObjectRef array = JSValueToObject(context_, rows, nullptr);
    const unsigned count = LengthOf(context_, array);
    for (unsigned i = 0; i < count; ++i) AddRow(ValueAt(context_, array, i));
  }

  Table Take() { return std::move(table_); }

 private:
  void AddColumn(JSStringRef key, JSValueRef definition) {
    keys_.Add(key);
    const std::string name = Utf16ToUtf8(UnitsOf(key));
    const std::string place = "column \"" + name + "\"";
    const ColumnType& type = ReadType(definition, place);
    types_.push_back(FindValueType(type.value));
    table_.columns.push_back({name, ReadDisplayName(definition, name, place), type.wireName});
  }

  // A definition is the name of a type, or {type, displayName}.
  const ColumnType& ReadType(JSValueRef definition, const std::string& place) const {
    const JSValueRef value = objects_.IsPlain(definition) ? Field(definition, "type") : definition;
    if (!JSValueIsString(context_, value))
      throw TableError(place + " has no type (a text, or an object such as {type, displayName})");
    const std::string name = Utf16ToUtf8(TextOfValue(context_, value, nullptr).value_or(u""));
    const ColumnType* type = FindColumnType(name);
    if (type) return *type;
    throw TableError(place + " has the unknown type \"" + name + "\" (known: " + ColumnTypeNames() + ")");
  }

  std::string ReadDisplayName(JSValueRef definition, const std::string& name,
                              const std::string& place) const {
    if (!objects_.IsPlain(definition)) return name;
    const JSValueRef value = Field(definition, "displayName");
    if (JSValueIsUndefined(context_, value)) return name;
    std::string text;
    const bool good = JSValueIsString(context_, value) && CarriableText(context_, value, text, nullptr) &&
                      text.find_first_of("\t\n\r") == std::string::npos;
    if (!good) throw TableError(place + " has a display name that is no text of one line");
    return text;
  }

  JSValueRef Field(JSValueRef object, const char* name) const {
    return ValueOfKey(context_, JSValueToObject(context_, object, nullptr), MakeJsString(name).get());
  }

  void AddRow(JSValueRef row) {
    ++row_;
    if (JSValueIsArray(context_, row)) {
      AddCellsInOrder(JSValueToObject(context_, row, nullptr));
    } else if (objects_.IsPlain(row)) {
      AddCellsByKey(JSValueToObject(context_, row, nullptr));
    } else {
      throw TableError(DescribeRow(row_) + " is neither an array nor a plain object");
    }
    cells_.MoveTo(table_.records);
  }

  void AddCellsInOrder(JSObjectRef row) {
    const unsigned count = LengthOf(context_, row);
    if (count > types_.size()) {
      throw TableError(DescribeRow(row_) + " has " + std::to_string(count) + " cells, the table has " +
                       std::to_string(types_.size()) + " columns");
    }
    for (unsigned i = 0; i < count; ++i) AddCell(i, ValueAt(context_, row, i));
  }

  void AddCellsByKey(JSObjectRef row) {
    if (objects_.ReadKeys(row)) FindColumns();
    for (std::size_t i = 0; i < columns_.size(); ++i)
      AddCell(columns_[i], ValueOfKey(context_, row, objects_.Keys()[i].get()));
  }

  void FindColumns() {
    columns_.clear();
    for (const JsString& key : objects_.Keys()) {
      const std::size_t column = keys_.Find(key.get(), columns_.size());
      if (column == ColumnKeys::kNone) {
        throw TableError(DescribeRow(row_) + " has the key \"" + Utf16ToUtf8(UnitsOf(key.get())) +
                         "\", which is no column");
      }
      columns_.push_back(column);
    }
  }

  void AddCell(std::size_t column, JSValueRef value) {
    if (JSValueIsUndefined(context_, value) || JSValueIsNull(context_, value)) return;
    const ValueType& type = *types_[column];
    JSValueRef exception = nullptr;
    std::string text;
    const bool good = WriteCell(type, value, text, &exception);
    if (exception) throw ThrownByScript{exception};
    if (good) return cells_.Put(column, std::move(text));
    throw TableError(DescribeCell(row_, table_.columns[column].name) + ": the value is none of the type " +
                     type.name + DescribeWelcome(type));
  }

  // A typed value has to be of the column's type, but a column of texts takes any.
  bool WriteCell(const ValueType& type, JSValueRef value, std::string& text, JSValueRef* exception) const {
    const TypedValue* typed = TypedValueOf(context_, value);
    if (!typed) return WriteTypedText(context_, type, dates_, value, text, exception);
    text = typed->text;
    return typed->type == &type || type.kind == ValueKind::kString;
  }

  JSContextRef context_;
  const DateReader& dates_;
  PlainObjects objects_;
  std::vector<std::size_t> columns_;  // Those of the objects' keys.
  ColumnKeys keys_;
  std::vector<const ValueType*> types_;
  RecordCells cells_;
  Table table_;
  std::size_t row_ = 0;
};

JSClassRef TableClass() {
  static JSClassRef shared = MakeClass("Table", nullptr, DeletePrivate<Table>);
  return shared;
}

Table MakeTable(JSContextRef context, const ValueReaders& readers, std::size_t count,
                const JSValueRef arguments[]) {
  if (count < 1 || count > 2) throw TableError("takes columns and rows");
  TypedTable table(context, readers);
  table.AddColumns(arguments[0]);
  if (count > 1 && !JSValueIsUndefined(context, arguments[1])) table.AddRows(arguments[1]);
  return table.Take();
}

JSValueRef CallTable(JSContextRef context, JSObjectRef function, JSObjectRef, std::size_t count,
                     const JSValueRef arguments[], JSValueRef* exception) {
  const auto& readers = *static_cast<const ValueReaders*>(JSObjectGetPrivate(function));
  try {
    auto table = std::make_unique<Table>(MakeTable(context, readers, count, arguments));
    return JSObjectMake(context, TableClass(), table.release());
  } catch (const ThrownByScript& thrown) {
    *exception = thrown.value;
  } catch (const TableError& error) {
    *exception = MakeError(context, std::string("typed.table: ") + error.what() + ".");
  }
  return JSValueMakeUndefined(context);
}

JSClassRef TableFunctionClass() {
  static JSClassRef shared = MakeClass("TableFunction", CallTable, nullptr);
  return shared;
}

}  // namespace

void InstallTable(JSContextRef context, JSObjectRef typed, const ValueReaders& readers) {
  SetProperty(context, typed, "table",
              JSObjectMake(context, TableFunctionClass(), const_cast<ValueReaders*>(&readers)));
}

const Table* TableOf(JSContextRef context, JSValueRef value) {
  return PrivateOf<Table>(context, value, TableClass());
}

}  // namespace qv::devservice
