// How a table in an answer differs from an ordinary one.
#pragma once

namespace qv::devservice {

// The names of a table's elements, which readers ignore.
struct TableNames {
  const char* headers;
  const char* schema;
  const char* column;
  const char* records;
  const char* record;
  const char* cell;  // Null: that of its column.
};
inline constexpr TableNames kTableNames{"q1:Headers", "xsd:schema", "xsd:element",
                                        "q1:Records", "q1:Record",  nullptr};

// What is to differ in a table that a script answers. All pointers live for the whole process.
struct TableForms {
  const char* type = "q1:RecordList";  // xsi:type
  const TableNames* names = &kTableNames;
  const char* gap = "";                   // before every tag inside the table
  const char* firstColumnType = nullptr;  // in place of the first column's type
  bool noHeaders = false;
  bool noSchema = false;
  bool noRecords = false;
  bool noColumnNames = false;
  bool noColumnTypes = false;
  bool extraCell = false;    // one after the last column, in every record
  bool missingCell = false;  // every record lacks its last one
  bool cut = false;          // the markup breaks off inside the records
};

}  // namespace qv::devservice
