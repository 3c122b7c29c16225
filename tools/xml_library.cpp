// The parts that need the XML library, as a library: see loaded_xml_parts.cpp.
#include "tools/xml_library.h"

#include <string_view>

#include "scriptwells/version.h"
#include "src/xml/xml_library_start.h"

extern "C" __attribute__((visibility("default"))) const qv::XmlParts* ScriptwellsXmlParts(
    const char* version) noexcept {
  return std::string_view(version) == SCRIPTWELLS_VERSION ? &qv::RequireXmlParts() : nullptr;
}
