// The one escape of hand-built XML.
#pragma once

#include "qvscriptwells/wide_string.h"

namespace qv {

// " & ' < > become their predefined entities (XML 1.0, 4.6); units from 0x7F up become decimal character
// references, one per 16-bit unit; all else stays, control characters too. Stops at the first null unit.
// Never null.
WideString EncodeXmlText(const WideString& text);

}  // namespace qv
