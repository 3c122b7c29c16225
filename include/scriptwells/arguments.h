// The arguments of a script, in order:
//
//   session.Run(code, {{"a", 2}, {"text", "1"}, {"small", scriptwells::Byte(5)}, {"doc",
//   File{"report.pdf"}}});
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "scriptwells/export.h"
#include "scriptwells/value.h"

namespace scriptwells {

// A regular file that is uploaded when the script runs. What the script gets for it is the server's matter.
struct File {
  std::filesystem::path path;
};

class Argument {
 public:
  Argument(std::string name, Value value) : name_(std::move(name)), content_(std::move(value)) {}
  Argument(std::string name, File file) : name_(std::move(name)), content_(std::move(file)) {}

  const std::string& Name() const noexcept { return name_; }
  // Null for a file.
  const Value* GetValue() const noexcept { return std::get_if<Value>(&content_); }
  // Null for a value.
  const File* GetFile() const noexcept { return std::get_if<File>(&content_); }

 private:
  std::string name_;
  std::variant<Value, File> content_;
};

// At most 32767 arguments, with different names. Run checks them all before anything is sent: it throws
// ConversionError for an empty value, a table, a link, a NaN or infinity, a point in time that would arrive
// as another one, a duration that has no form on the wire; and Error (kLocalFile) for a file that cannot be
// read.
class Arguments {
 public:
  Arguments() = default;
  Arguments(std::initializer_list<Argument> list) : list_(list) {}
  // From a map of names and values.
  template <class Map, class Mapped = typename Map::mapped_type>
  Arguments(const Map& map) {
    for (const auto& [name, value] : map) Add(name, value);
  }

  Arguments& Add(std::string name, Value value) { return Add(Argument(std::move(name), std::move(value))); }
  Arguments& Add(std::string name, File file) { return Add(Argument(std::move(name), std::move(file))); }
  Arguments& Add(Argument argument) {
    list_.push_back(std::move(argument));
    return *this;
  }

  std::size_t size() const noexcept { return list_.size(); }
  bool empty() const noexcept { return list_.empty(); }
  auto begin() const noexcept { return list_.begin(); }
  auto end() const noexcept { return list_.end(); }

 private:
  std::vector<Argument> list_;
};

}  // namespace scriptwells
