// The XML namespaces of the wire. Those of the service begin with one host name, which the build sets.
#pragma once

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif
#define QV_NAMESPACE(path) u"" QV_NAMESPACE_HOST path

namespace qv {

constexpr char16_t kServiceNamespace[] = QV_NAMESPACE("/dev/ns/ivarnel/scriptwells");
constexpr char16_t kSofNamespace[] = QV_NAMESPACE("/dev/ns/SOF/2.0");
constexpr char16_t kDataTypesNamespace[] = QV_NAMESPACE("/ns/core/DataTypes/1.0");
constexpr char16_t kScriptNamespace[] = QV_NAMESPACE("/dev/ns/scriptwellsApp/scriptwell/1.0");
constexpr char16_t kScriptSchemaLocation[] =
    QV_NAMESPACE("/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd");

constexpr char16_t kXmlSchemaNamespace[] = u"http://www.w3.org/2001/XMLSchema";
constexpr char16_t kXmlSchemaInstanceNamespace[] = u"http://www.w3.org/2001/XMLSchema-instance";
constexpr char16_t kSoapEnvelopeNamespace[] = u"http://schemas.xmlsoap.org/soap/envelope/";
constexpr char16_t kSoapEncodingNamespace[] = u"http://schemas.xmlsoap.org/soap/encoding/";

}  // namespace qv

#undef QV_NAMESPACE
