// The namespaces of the protocol.
#pragma once

#include <string>
#include <string_view>

namespace qv::devservice {

inline constexpr std::string_view kSoapEnvelope = "http://schemas.xmlsoap.org/soap/envelope/";
inline constexpr std::string_view kSoapEncoding = "http://schemas.xmlsoap.org/soap/encoding/";
inline constexpr std::string_view kSchema = "http://www.w3.org/2001/XMLSchema";
inline constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";

// The product's own namespaces share a host that the installation chooses.
struct Namespaces {
  explicit Namespaces(const std::string& host)
      : service(host + "/dev/ns/ivarnel/scriptwells"),
        sof(host + "/dev/ns/SOF/2.0"),
        dataTypes(host + "/ns/core/DataTypes/1.0"),
        script(host + "/dev/ns/scriptwellsApp/scriptwell/1.0") {}
  std::string service;
  std::string sof;
  std::string dataTypes;
  std::string script;
};

}  // namespace qv::devservice
