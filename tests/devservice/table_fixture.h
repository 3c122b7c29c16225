// What tests look for in the answers that are tables.
#pragma once

#include <string>

#include "service_fixture.h"

namespace qv::devservice::testing {

// The whole ExecuteResult element of an answer, "(none)" without one.
inline std::string ResultElementIn(const std::string& body) {
  const std::string content = Between(body, "<ExecuteResult ", "</ExecuteResponse>");
  return content == "(none)" ? content : "<ExecuteResult " + content;
}

// The 36 characters of the schema's id, which differ from answer to answer.
inline std::string SchemaIdIn(const std::string& body) {
  return Between(body, " targetNamespace=\"uuid:", "\"");
}

// "name type, name type" of the columns.
inline std::string ColumnsIn(const std::string& body) {
  std::string columns;
  const std::string mark = "<xsd:element xsd:name=\"";
  for (std::size_t at = body.find(mark); at != std::string::npos; at = body.find(mark, at + 1)) {
    const std::string element = body.substr(at, body.find("/>", at) - at);
    columns += (columns.empty() ? "" : ", ") + Between(element, "xsd:name=\"", "\"") + " " +
               Between(element, "xsd:type=\"", "\"");
  }
  return columns;
}

// The content of the records block, "(none)" without one.
inline std::string RecordsIn(const std::string& body) {
  return Between(body, "<q1:Records>", "</q1:Records>");
}

// The whole element of a table with these elements of columns and records.
inline std::string TableElement(const std::string& schemaId, const std::string& columns,
                                const std::string& records) {
  return "<ExecuteResult xsi:type=\"q1:RecordList\" xmlns:q1=\"http://quorvane.example/dev/ns/SOF/2.0\">"
         "<q1:Headers><xsd:schema targetNamespace=\"uuid:" +
         schemaId +
         "\" xmlns:qvrl=\"http://quorvane.example/dev/ns/SOF/2.0\" "
         "xmlns:qvdt=\"http://quorvane.example/ns/core/DataTypes/1.0\" "
         "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\" "
         "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" xmlns:tns=\"uuid:" +
         schemaId + "\">" + columns + "</xsd:schema></q1:Headers><q1:Records>" + records +
         "</q1:Records></ExecuteResult>";
}

// One of its columns.
inline std::string ColumnElement(const std::string& name, const std::string& type,
                                 const std::string& displayName) {
  return "<xsd:element xsd:name=\"" + name + "\" xsd:type=\"" + type + "\" xsd:displayName=\"" + displayName +
         R"(" qvrl:valueSize="" qvrl:valueSize2=""/>)";
}

// A record of cells, each an element: "<a>1</a><b/>".
inline std::string Record(const std::string& cells) {
  return "<q1:Record>" + cells + "</q1:Record>";
}

class TableTest : public ServiceTest {
 protected:
  std::string Columns(const std::string& script) { return ColumnsIn(Execute(script)); }
  std::string Records(const std::string& script) { return RecordsIn(Execute(script)); }

  // The columns, and the records, of the tables that scripts answer.
  void ExpectColumns(ScriptRows rows) {
    for (const ScriptRow& row : rows) EXPECT_EQ(Columns(row.script), row.outcome) << row.script;
  }
  void ExpectRecords(ScriptRows rows) {
    for (const ScriptRow& row : rows) EXPECT_EQ(Records(row.script), row.outcome) << row.script;
  }
};

}  // namespace qv::devservice::testing
