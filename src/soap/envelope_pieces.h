// The constant pieces of all envelopes.
#pragma once

#include "support/escape_units.h"
#include "support/joined_literals.h"
#include "support/namespaces.h"

namespace qv {

// Namespaces are written without escaping. The build can change only the host at their start.
static_assert(IsPlain(kServiceNamespace), "QV_NAMESPACE_HOST contains a character that XML escapes");

inline constexpr auto kEnvelopeStart = JoinLiterals(
    u"<SOAP-ENV:Envelope xmlns:xsd=\"", kXmlSchemaNamespace, u"\" xmlns:xsi=\"", kXmlSchemaInstanceNamespace,
    u"\" xmlns:SOAP-ENV=\"", kSoapEnvelopeNamespace, u"\"><SOAP-ENV:Body>");
inline constexpr char16_t kEnvelopeEnd[] = u"</SOAP-ENV:Body></SOAP-ENV:Envelope>";

}  // namespace qv
