// A request or an answer from a file: HTTP with its head, or XML alone.
#pragma once

#include <string>
#include <string_view>

#include "tools/inspect/xml_tree.h"

namespace qv::cli {

struct SavedMessage {
  bool isRequest = false;
  std::string method;         // "Execute"; empty if it is not known
  std::string head;           // with the empty line; empty for XML alone
  std::string body;           // chunks are put together
  std::size_t bodyBegin = 0;  // byte of the file
  bool isChunked = false;     // so places in the body are not those of the file
  XmlTree tree;
};

// `method` is that of the request, if the caller knows it. Line ends of the head may be LF alone, as editors
// write them.
SavedMessage ParseMessage(std::string_view text, const std::string& method);

// The first element of the envelope's body, or null.
const XmlNode* ContentOf(const SavedMessage& message);

}  // namespace qv::cli
