// The pieces around a request's script and parameters, written out as they stand on the wire.
#pragma once

#include <string>

namespace qv {

// The whole request for session "u1", language "VBScript", script "a<b" and this "parameters" element.
inline std::string RequestWith(const std::string& parameters) {
  return "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
         "<SOAP-ENV:Body>"
         "<Execute xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
         "<usid xsi:type=\"xsd:string\">u1</usid>"
         "<Script xsi:type=\"xsd:string\">"
         "&lt;Scriptwell Language=&quot;VBScript&quot; "
         "xmlns:xsi=&quot;http://www.w3.org/2001/XMLSchema-instance&quot; "
         "xsi:schemaLocation=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
         "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd&quot; "
         "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;"
         "&lt;Code&gt;a&amp;lt;b&lt;/Code&gt;&lt;/Scriptwell&gt;"
         "</Script>" +
         parameters + "</Execute></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

constexpr char kNoParameters[] =
    "<parameters xsi:nil=\"true\" xsi:type=\"ns1:Parameter\" "
    "xmlns:ns1=\"http://quorvane.example/dev/ns/SOF/2.0\" "
    "xmlns:ns2=\"http://schemas.xmlsoap.org/soap/encoding/\" "
    "ns2:arrayType=\"ns1:Parameter[]\"/>";

// The array form with this count in its brackets and these "Parameter" elements.
inline std::string ParameterArray(const std::string& count, const std::string& elements) {
  return "<parameters xmlns:ns1=\"http://schemas.xmlsoap.org/soap/encoding/\" "
         "xmlns:ns2=\"http://quorvane.example/dev/ns/SOF/2.0\" "
         "ns1:arrayType=\"ns2:Parameter[" +
         count + "]\">" + elements + "</parameters>";
}

// One "Parameter" element; `type` with its prefix, name and content as they stand on the wire.
inline std::string ParameterElement(const std::string& name, const std::string& type,
                                    const std::string& content) {
  return "<Parameter xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
         "<Name xsi:type=\"xsd:string\">" +
         name + "</Name><Value xsi:type=\"" + type + "\">" + content + "</Value></Parameter>";
}

}  // namespace qv
