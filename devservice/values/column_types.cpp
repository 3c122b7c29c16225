#include "devservice/values/column_types.h"

namespace qv::devservice {
namespace {

// First every value type under its own name, then further names that real servers use.
constexpr ColumnType kColumnTypes[] = {
    {"byte", "xsd:byte", "byte"},
    {"short", "xsd:short", "short"},
    {"int", "xsd:int", "int"},
    {"long", "xsd:long", "long"},
    {"boolean", "xsd:boolean", "boolean"},
    {"float", "xsd:float", "float"},
    {"double", "xsd:double", "double"},
    {"string", "xsd:string", "string"},
    {"date", "xsd:date", "date"},
    {"time", "xsd:time", "time"},
    {"datetime", "xsd:datetime", "datetime"},
    {"duration", "xsd:duration", "duration"},
    {"url", "sof:url", "url"},
    {"xsd:dateTime", "xsd:dateTime", "datetime"},
    {"xsd:smallint", "xsd:smallint", "short"},
    {"xsd:objectidentifier", "xsd:objectidentifier", "int"},
    {"sof:URL", "sof:URL", "url"},
    {"qvdt:Blob", "qvdt:Blob", "string"},
    {"qvdt:Char", "qvdt:Char", "string"},
    {"qvdt:EffectiveDateFrom", "qvdt:EffectiveDateFrom", "date"},
    {"qvdt:EffectiveDateUntil", "qvdt:EffectiveDateUntil", "date"},
    {"qvdt:HTML", "qvdt:HTML", "string"},
    {"qvdt:Memo", "qvdt:Memo", "string"},
    {"qvdt:Money", "qvdt:Money", "double"},
    {"qvdt:ObjectIdentifier", "qvdt:ObjectIdentifier", "int"},
    {"qvdt:RelTimeStamp", "qvdt:RelTimeStamp", "double"},
    {"qvdt:URL", "qvdt:URL", "string"},
};

}  // namespace

const ColumnType* FindColumnType(std::string_view name) {
  for (const ColumnType& type : kColumnTypes) {
    if (name == type.name) return &type;
  }
  return nullptr;
}

std::string ColumnTypeNames() {
  std::string names;
  for (const ColumnType& type : kColumnTypes) names += (names.empty() ? "" : ", ") + std::string(type.name);
  return names;
}

}  // namespace qv::devservice
