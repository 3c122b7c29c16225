// The formater of tables: an IRecordList (record_list.h) under VT_UNKNOWN.
#pragma once

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

class FormaterRecordList : public FormaterSerializer {
 public:
  // `node` is the element that holds the table. The reader uses positions and the attributes "xsd:name" and
  // "xsd:type", and ignores names of elements. The list is returned locked with all its parts. EQvException,
  // code 0: "Cannot deserializer - empty response." for a null node, a formater's message, "Value from type N
  // doesn't exist.", and "Cannot create the recordlist" for any other failure.
  Variant ReadValue(const XmlNode& node) override;
  // The whole element as text. Each call creates a new schema id. EQvException as ReadValue, and "Header
  // contains special Xml chars that are not valid for tag name"; `_com_error` from the list: E_POINTER if
  // `value` holds none.
  WideString WriteValue(const Variant& value) override;
};

class FormaterRecordListCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterRecordList formater_;
};

}  // namespace qv
