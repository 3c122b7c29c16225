// What both kinds of tables of a script have in common: the rows, from arrays and objects.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "devservice/js/key_reader.h"
#include "devservice/values/table.h"

namespace qv::devservice {

// The table cannot be made; what() is the message. Must not leave a function that the engine calls.
class TableError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The same for a value that the script itself threw, for example in a getter. Keep it on the stack where it
// is caught, so that the engine does not free it.
struct ThrownByScript {
  JSValueRef value;
};

// Number of elements of an array.
unsigned LengthOf(JSContextRef context, JSObjectRef array);

// What the object holds; code of the script may run. Both throw ThrownByScript.
JSValueRef ValueOfKey(JSContextRef context, JSObjectRef object, JSStringRef key);
JSValueRef ValueAt(JSContextRef context, JSObjectRef array, unsigned index);

// Reads plain objects one after another. Large tables have a million cells and few lists of keys, so the list
// of one object is kept for the next.
class PlainObjects {
 public:
  // Both are borrowed.
  PlainObjects(JSContextRef context, const KeyReader& reader);
  ~PlainObjects();
  PlainObjects(const PlainObjects&) = delete;
  PlainObjects& operator=(const PlainObjects&) = delete;

  // Whether the value is an object, but not an array, whose prototype is null or that of all objects.
  bool IsPlain(JSValueRef value) const;
  // Reads the keys of an object; true when they differ from the previous keys. Throws ThrownByScript.
  bool ReadKeys(JSObjectRef object);
  const std::vector<JsString>& Keys() const { return keys_; }

 private:
  JSContextRef context_;
  const KeyReader& reader_;
  JSValueRef prototype_;        // Lives in the script's global object.
  JSObjectRef list_ = nullptr;  // Protected.
  std::vector<JsString> keys_;
};

// "row 2", "row 2, column \"a\"". Rows are counted from 1.
std::string DescribeRow(std::size_t row);
std::string DescribeCell(std::size_t row, const std::string& column);

// Finds columns by their keys. Most rows have their keys in the order of the columns, so that is tried first.
class ColumnKeys {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // The column with this key, or kNone. `guess` may be any number.
  std::size_t Find(JSStringRef key, std::size_t guess) const;
  // Adds a column at the end. Throws TableError when the key cannot be the name of a column.
  void Add(JSStringRef key);

 private:
  std::vector<JsString> keys_;
  std::unordered_map<std::u16string, std::size_t> numbers_;
};

// The cells of one record, in any order.
class RecordCells {
 public:
  void Put(std::size_t column, std::string text);
  // Appends the record to `records` and clears the cells.
  void MoveTo(std::string& records);

 private:
  std::vector<std::string> texts_;
};

}  // namespace qv::devservice
