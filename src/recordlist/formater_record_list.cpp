#include "recordlist/formater_record_list.h"

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "qvscriptwells/record_list.h"
#include "recordlist/record_list_reader.h"
#include "recordlist/record_list_writer.h"

namespace qv {

Variant FormaterRecordList::ReadValue(const XmlNode& node) {
  try {
    if (node.IsNull()) throw EQvException(u"Cannot deserializer - empty response.");
    RecordListReader reader;
    return Variant::FromObject(reader.Read(node).get());
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(messages::kRecordList);
  }
}

WideString FormaterRecordList::WriteValue(const Variant& value) {
  const IRecordListPtr list = As<IRecordList>(value.Object());
  RecordListWriter writer;
  return writer.Write(list.get());
}

}  // namespace qv
