// A strict check that a text is well-formed XML.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

// The error message, without a full stop, if the bytes are not one well-formed XML document; empty if they
// are. The encoding is `encoding` ("UTF-8"), or for null that of byte order mark and declaration. Nothing
// outside the document is read. Pure; any thread.
std::string FaultInXml(std::string_view bytes, const char* encoding);

}  // namespace qv::devservice
