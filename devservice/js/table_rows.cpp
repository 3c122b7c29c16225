#include "devservice/js/table_rows.h"

#include "devservice/values/names.h"
#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

void ThrowIfSet(JSValueRef exception) {
  if (exception) throw ThrownByScript{exception};
}

}  // namespace

unsigned LengthOf(JSContextRef context, JSObjectRef array) {
  const JSValueRef length = GetProperty(context, array, "length");
  return length ? static_cast<unsigned>(JSValueToNumber(context, length, nullptr)) : 0;
}

PlainObjects::PlainObjects(JSContextRef context, const KeyReader& reader)
    : context_(context),
      reader_(reader),
      prototype_(JSObjectGetPrototype(context, JSObjectMake(context, nullptr, nullptr))) {}

PlainObjects::~PlainObjects() {
  if (list_) JSValueUnprotect(context_, list_);
}

bool PlainObjects::IsPlain(JSValueRef value) const {
  if (!JSValueIsObject(context_, value) || JSValueIsArray(context_, value)) return false;
  const JSValueRef prototype = JSObjectGetPrototype(context_, JSValueToObject(context_, value, nullptr));
  return JSValueIsStrictEqual(context_, prototype, prototype_) || JSValueIsNull(context_, prototype);
}

bool PlainObjects::ReadKeys(JSObjectRef object) {
  JSValueRef exception = nullptr;
  JSObjectRef list = reader_.KeysOf(context_, object, list_, &exception);
  ThrowIfSet(exception);
  if (list == list_) return false;
  JSValueProtect(context_, list);
  if (list_) JSValueUnprotect(context_, list_);
  list_ = list;
  keys_.clear();
  const unsigned count = LengthOf(context_, list);
  for (unsigned i = 0; i < count; ++i)
    keys_.emplace_back(JSValueToStringCopy(context_, ValueAt(context_, list, i), nullptr));
  return true;
}

JSValueRef ValueOfKey(JSContextRef context, JSObjectRef object, JSStringRef key) {
  JSValueRef exception = nullptr;
  const JSValueRef value = JSObjectGetProperty(context, object, key, &exception);
  ThrowIfSet(exception);
  return value;
}

JSValueRef ValueAt(JSContextRef context, JSObjectRef array, unsigned index) {
  JSValueRef exception = nullptr;
  const JSValueRef value = JSObjectGetPropertyAtIndex(context, array, index, &exception);
  ThrowIfSet(exception);
  return value;
}

std::string DescribeRow(std::size_t row) {
  return "row " + std::to_string(row);
}

std::string DescribeCell(std::size_t row, const std::string& column) {
  return DescribeRow(row) + ", column \"" + column + "\"";
}

std::size_t ColumnKeys::Find(JSStringRef key, std::size_t guess) const {
  if (guess < keys_.size() && JSStringIsEqual(keys_[guess].get(), key)) return guess;
  const auto found = numbers_.find(UnitsOf(key));
  return found == numbers_.end() ? kNone : found->second;
}

void ColumnKeys::Add(JSStringRef key) {
  const std::u16string units = UnitsOf(key);
  if (!IsColumnName(units)) {
    throw TableError(
        "\"" + Utf16ToUtf8(units) +
        R"(" is no name for a column (a letter or "_", then letters, digits, "-", "." and "_"))");
  }
  numbers_.emplace(units, keys_.size());
  keys_.emplace_back(JSStringRetain(key));
}

void RecordCells::Put(std::size_t column, std::string text) {
  if (column >= texts_.size()) texts_.resize(column + 1);
  texts_[column] = std::move(text);
}

void RecordCells::MoveTo(std::string& records) {
  for (std::string& text : texts_) {
    records += text;
    records += kCellEnd;
    text.clear();
  }
  records += kRecordEnd;
}

}  // namespace qv::devservice
