// What the libraries of commands and the library of the XML parts agree on. All come from one build.
#pragma once

namespace qv {
struct XmlParts;
}  // namespace qv

namespace qv::cli {

constexpr char kXmlPartsEntry[] = "ScriptwellsXmlParts";
// Null for a library of commands of another version.
using XmlPartsEntry = const XmlParts* (*)(const char* version);

}  // namespace qv::cli
