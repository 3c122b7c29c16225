// What both ways to a table have in common: rows out of a script's arrays and objects.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "devservice/js/key_reader.h"
#include "devservice/values/table.h"

namespace qv::devservice {

// Ends the making of a table, with words for people. Must not leave a function that the engine calls.
class TableError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The same for what the script itself threw, in a getter for instance. Keep it on the stack where it is
// caught: the engine does not see it elsewhere.
struct ThrownByScript {
  JSValueRef value;
};

// Number of elements of an array.
unsigned LengthOf(JSContextRef context, JSObjectRef array);

// What the object holds; code of the script may run. Both throw ThrownByScript.
JSValueRef ValueOfKey(JSContextRef context, JSObjectRef object, JSStringRef key);
JSValueRef ValueAt(JSContextRef context, JSObjectRef array, unsigned index);

// Looks into plain objects one after another. Large tables have a million cells and few lists of keys, so the
// list of one object is kept for the next.
class PlainObjects {
 public:
  // Both are borrowed.
  PlainObjects(JSContextRef context, const KeyReader& reader);
  ~PlainObjects();
  PlainObjects(const PlainObjects&) = delete;
  PlainObjects& operator=(const PlainObjects&) = delete;

  // Whether the value is an object, but no array, whose prototype is null or that of all objects.
  bool IsPlain(JSValueRef value) const;
  // Reads the keys of an object; true when they are others than those before. Throws ThrownByScript.
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

// Finds columns by their keys. Rows tend to have their keys in the order of the columns, so that is tried
// first.
class ColumnKeys {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // The column with this key, or kNone. `guess` may be any number.
  std::size_t Find(JSStringRef key, std::size_t guess) const;
  // Adds a column behind the others. Throws TableError when the key is no name of a column.
  void Add(JSStringRef key);

 private:
  std::vector<JsString> keys_;
  std::unordered_map<std::u16string, std::size_t> numbers_;
};

// The cells of one record, in any order.
class RecordCells {
 public:
  void Put(std::size_t column, std::string text);
  // Puts the record at the end of `records` and forgets the cells.
  void MoveTo(std::string& records);

 private:
  std::vector<std::string> texts_;
};

}  // namespace qv::devservice
