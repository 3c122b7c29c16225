// The pieces of a request for a script, written out as they stand on the wire.
#pragma once

#include <string>

#include "fixtures/soap_texts.h"

namespace qv {

// The whole request for session "u1" with this text in its "Script" element, and this "parameters" element.
inline std::string RequestOfFile(const std::string& script, const std::string& parameters) {
  return SoapRequest(
      "<Execute xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
      "<usid xsi:type=\"xsd:string\">u1</usid>"
      "<Script xsi:type=\"xsd:string\">" +
      script + "</Script>" + parameters + "</Execute>");
}

// The text that a script in this language makes; both are escaped already, the script twice.
inline std::string ScriptDocument(const std::string& language, const std::string& script) {
  return "&lt;Scriptwell Language=&quot;" + language +
         "&quot; xmlns:xsi=&quot;http://www.w3.org/2001/XMLSchema-instance&quot; "
         "xsi:schemaLocation=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
         "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd&quot; "
         "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;"
         "&lt;Code&gt;" +
         script + "&lt;/Code&gt;&lt;/Scriptwell&gt;";
}

// The whole request for session "u1", language "VBScript", script "a<b" and this "parameters" element.
inline std::string RequestWith(const std::string& parameters) {
  return RequestOfFile(ScriptDocument("VBScript", "a&amp;lt;b"), parameters);
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
// That of an attached file under this ticket.
inline std::string TicketElement(const std::string& name, const std::string& ticket) {
  return ParameterElement(name, "FileTicket", "<Id xsi:type=\"string\">" + ticket + "</Id>");
}

// The whole request for one parameter "k".
inline std::string RequestWithOne(const std::string& type, const std::string& content) {
  return RequestWith(ParameterArray("1", ParameterElement("k", type, content)));
}

}  // namespace qv
