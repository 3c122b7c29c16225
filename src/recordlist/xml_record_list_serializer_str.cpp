#include "recordlist/xml_record_list_serializer_str.h"

#include "qvscriptwells/e_qv_exception.h"
#include "support/escape_units.h"
#include "support/namespaces.h"
#include "support/path_helpers.h"
#include "text/join_text.h"

namespace qv {

void CXMLRecordListSerializerStr::StartRecordList() {
  stream_.Append(u"<RecordList");
  stream_.AppendAttribute(u"xmlns:q1", kSofNamespace);
  stream_.AppendAttribute(u"xsi:type", u"q1:RecordList");
  stream_.AppendAttribute(u"xmlns:xsi", kXmlSchemaInstanceNamespace);
  stream_.Append(u">");
}

void CXMLRecordListSerializerStr::StartHeaders() {
  stream_.Append(u"<q1:Headers>");
}

void CXMLRecordListSerializerStr::StartSchema(std::u16string_view id) {
  stream_.Append(u"<xsd:schema");
  stream_.AppendAttribute(u"targetNamespace", id);
  stream_.AppendAttribute(u"xmlns:qvrl", kSofNamespace);
  stream_.AppendAttribute(u"xmlns:qvdt", kDataTypesNamespace);
  stream_.AppendAttribute(u"xmlns:xsd", kXmlSchemaNamespace);
  stream_.AppendAttribute(u"xmlns:tns", id);
  stream_.Append(u">");
}

// A name that needs no escape may still be invalid in XML, for example with a blank; it is sent unchanged, as
// deployed servers expect.
void CXMLRecordListSerializerStr::WriteColumn(std::u16string_view name, std::u16string_view xmlTypeName,
                                              std::u16string_view displayName) {
  if (PlainRun(name) != name.size())
    throw EQvException(u"Header contains special Xml chars that are not valid for tag name");
  stream_.Append(u"<xsd:element");
  stream_.AppendAttribute(u"xsd:name", name);
  stream_.AppendAttribute(u"xsd:type", xmlTypeName);
  stream_.AppendAttribute(u"xsd:displayName", displayName);
  stream_.AppendAttribute(u"qvrl:valueSize", u"");
  stream_.AppendAttribute(u"qvrl:valueSize2", u"");
  stream_.Append(u"/>");
}

void CXMLRecordListSerializerStr::EndSchema() {
  stream_.Append(u"</xsd:schema>");
}

void CXMLRecordListSerializerStr::EndHeaders() {
  stream_.Append(u"</q1:Headers>");
}

void CXMLRecordListSerializerStr::StartRecords() {
  stream_.Append(u"<q1:Records>");
}

void CXMLRecordListSerializerStr::StartRecord() {
  stream_.Append(u"<q1:Record>");
}

void CXMLRecordListSerializerStr::WriteCell(std::u16string_view name, std::u16string_view text) {
  stream_.AppendElement(name, text);
}

void CXMLRecordListSerializerStr::EndRecord() {
  stream_.Append(u"</q1:Record>");
}

void CXMLRecordListSerializerStr::EndRecords() {
  stream_.Append(u"</q1:Records>");
}

void CXMLRecordListSerializerStr::EndRecordList() {
  stream_.Append(u"</RecordList>");
}

WideString CXMLRecordListSerializerStr::TakeText() {
  stream_.AppendNull();
  return stream_.TakeText();
}

WideString NewSchemaId() {
  const WideString text = NewGuidText();
  return JoinText({u"uuid:", text.view().substr(1, text.size() - 2)});
}

}  // namespace qv
