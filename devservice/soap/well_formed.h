// Whether a text is well-formed XML, to the letter.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// What keeps the bytes from being one well-formed XML document, in words without a full stop; empty when
// nothing does. The encoding is that of `encoding` ("UTF-8"), or for null that of byte order mark and
// declaration. Nothing outside the document is read. Pure; any thread.
std::string FaultInXml(std::string_view bytes, const char* encoding);

}  // namespace qv::devservice
