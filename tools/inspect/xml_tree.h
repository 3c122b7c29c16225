// An answer as a tree that knows where everything is: it has what the client's reader drops, such as white
// space and the bytes of each tag.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv::cli {

struct XmlNode {
  enum class Kind { kElement, kText, kComment };  // comments and instructions alike

  Kind kind = Kind::kElement;
  std::string name;                                             // as written, with its prefix
  std::vector<std::pair<std::string, std::string>> attributes;  // the same
  std::string text;                                             // of texts, with references resolved
  std::size_t begin = 0, end = 0;                               // bytes
  std::vector<XmlNode> children;

  bool IsElement() const noexcept { return kind == Kind::kElement; }
  // Of an element: what it contains, without what its elements contain.
  std::string OwnText() const;
  // Null if there is none.
  const std::string* Attribute(std::string_view attribute) const;
  const XmlNode* FirstElement() const;
};

struct XmlFlaw {
  std::string message;
  std::size_t at = 0;  // byte
};

struct XmlTree {
  std::optional<XmlNode> root;  // none if there is a flaw
  std::optional<XmlFlaw> flaw;
};

// "Body" of "soap:Body".
std::string_view LocalName(std::string_view name);
// "soap", and nothing of "Body".
std::string_view PrefixOf(std::string_view name);

// `charset` is the name of the encoding, or empty for that of the text itself. Nothing outside the text is
// read. At most a million nodes, 200 deep.
XmlTree ReadXml(std::string_view bytes, const std::string& charset = {});

}  // namespace qv::cli
