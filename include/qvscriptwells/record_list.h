// SPDX-License-Identifier: Apache-2.0
// A record list: a table with named, typed columns and rows of values. A table that a script returns arrives
// as such an object under VT_UNKNOWN:
//   IRecordListPtr table = As<IRecordList>(answer.Object());
// The library creates it by class id (class_registry.h), so a host can register its own class. Text in
// brackets applies to the built-in class only.
//
// A record list cannot be sent as a parameter: it has no type name on the wire, and the call fails with
// "Cannot create the xml document." before anything is sent.
//
// Failure: a negative result code [with an error record (error_info.h): E_ACCESSDENIED for a change of a
// locked object, DISP_E_BADINDEX, DISP_E_BADVARTYPE, E_POINTER, E_OUTOFMEMORY]; then nothing is changed and
// no output parameter written [except that a returned object is null]. Ownership: unknown.h. [Headers,
// columns, records and cursors keep their list alive.] Threads: one at a time for a list and all that comes
// from it.
//
// Locking: SetLocked on the list, on its headers and on each record. A locked object cannot be changed. [A
// locked list locks all its parts; locked headers reject new columns and display names, a locked record new
// values. All begin unlocked. A list from an answer is locked with all its parts: to change it, unlock the
// list first, then the headers or the record.]
#pragma once

#include <cstdint>

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// Records of an answer may have fewer cells than the table has columns. Missing cells are VT_EMPTY but take
// memory too: with more than this many (4,194,304) the answer fails with "Cannot create the recordlist".
constexpr std::int64_t kMostMissingCells = std::int64_t{4} << 20;

constexpr Guid CLSID_RecordList = ParseGuid("c73901ac-34f6-4bb9-991e-9ea5ed22add4");

// The types of columns that the library knows. A host's own list may hold others, whose cells have no text.
// The comment of each type gives the tag of its cells in an answer. The wire has no null cell; servers send a
// cell without text instead. It arrives as 0, false, an empty string or (unknown, url) VT_EMPTY, the same as
// such a value. In a column of dates, times or durations it makes the whole answer fail.
enum ColumnType : std::int32_t {
  kColumnUnknown = 0,         // VT_EMPTY, whatever the cell says
  kColumnString = 1,          // VT_BSTR
  kColumnBoolean = 2,         // VT_BOOL
  kColumnFloat = 3,           // not in answers; VT_R4
  kColumnDouble = 4,          // VT_R8
  kColumnDuration = 5,        // VT_UNKNOWN: IDuration
  kColumnBlob = 6,            // VT_BSTR, unchanged from the answer
  kColumnUrlText = 8,         // VT_BSTR
  kColumnInt = 10,            // VT_INT
  kColumnShort = 11,          // VT_I2
  kColumnLong = 12,           // not in answers
  kColumnByte = 13,           // VT_I1
  kColumnUnsignedShort = 14,  // not in answers; its cells have no text
  kColumnDateTime = 16,       // VT_DATE
  kColumnTime = 17,           // VT_DATE
  kColumnDate = 18,           // VT_DATE
  kColumnUrl = 23,            // VT_UNKNOWN: IUrl, or VT_EMPTY
};

// One column.
class IRecordListHeader : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("d6bc29cc-e6f8-4f31-8786-0a3558863e5a");
  // For people; in an answer the same as the name.
  virtual HRESULT GetDisplayName(WideString* name) noexcept = 0;
  virtual HRESULT SetDisplayName(const WideString& name) noexcept = 0;
  // The tag name of the column's cells on the wire.
  virtual HRESULT GetName(WideString* name) noexcept = 0;
  virtual HRESULT GetType(std::int32_t* columnType) noexcept = 0;

 protected:
  ~IRecordListHeader() = default;
};

// The columns, counted from 0.
class IRecordListHeaders : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("b937d297-498d-4cef-805e-3faf51510878");
  // Adds a column at the end; `header` gets it and may be null. [Its display name is null until it is set;
  // rows that are there already get an empty cell. Names may repeat.]
  virtual HRESULT AddHeader(const WideString& name, std::int32_t columnType,
                            IRecordListHeader** header) noexcept = 0;
  virtual HRESULT GetHeader(std::int32_t index, IRecordListHeader** header) noexcept = 0;
  virtual HRESULT GetCount(std::int32_t* count) noexcept = 0;
  virtual HRESULT SetLocked(VARIANT_BOOL locked) noexcept = 0;

 protected:
  ~IRecordListHeaders() = default;
};

// One row.
class IRecordListRecord : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("ee5e2cee-bdfb-49b1-bd65-f5c96b70dc37");
  // VT_EMPTY for a cell that was never set.
  virtual HRESULT GetValue(std::int32_t index, Variant* value) noexcept = 0;
  // [The value is stored as it is, whatever the column's type. DISP_E_BADVARTYPE for a tag with VT_BYREF or
  // one that cannot be copied. A list that is put into its own cells is never freed.]
  virtual HRESULT SetValue(std::int32_t index, const Variant& value) noexcept = 0;
  virtual HRESULT GetHeaders(IRecordListHeaders** headers) noexcept = 0;
  virtual HRESULT SetLocked(VARIANT_BOOL locked) noexcept = 0;

 protected:
  ~IRecordListRecord() = default;
};

// Iterates over the rows once, from the first to the last. [Rows that are added meanwhile are included.]
class IRecordListCursor : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("f367aeb3-3365-42a8-b981-18d3684162ac");
  // VARIANT_FALSE at the end.
  virtual HRESULT HasMore(VARIANT_BOOL* more) noexcept = 0;
  // The next row; query it for IRecordListRecord. [DISP_E_BADINDEX at the end. Two objects for one row share
  // its content and its lock.]
  virtual HRESULT Next(IUnknown** record) noexcept = 0;

 protected:
  ~IRecordListCursor() = default;
};

class IRecordList : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("4a965b6d-1327-4570-95d5-93be6f8878d7");
  // Appends an empty row and returns it; query it for IRecordListRecord.
  virtual HRESULT NewRecord(IUnknown** record) noexcept = 0;
  virtual HRESULT GetHeaders(IRecordListHeaders** headers) noexcept = 0;
  // The library passes VARIANT_TRUE. [The value has no effect.]
  virtual HRESULT OpenCursor(VARIANT_BOOL option, IRecordListCursor** cursor) noexcept = 0;
  virtual HRESULT SetLocked(VARIANT_BOOL locked) noexcept = 0;

 protected:
  ~IRecordList() = default;
};

using IRecordListHeaderPtr = boost::intrusive_ptr<IRecordListHeader>;
using IRecordListHeadersPtr = boost::intrusive_ptr<IRecordListHeaders>;
using IRecordListRecordPtr = boost::intrusive_ptr<IRecordListRecord>;
using IRecordListCursorPtr = boost::intrusive_ptr<IRecordListCursor>;
using IRecordListPtr = boost::intrusive_ptr<IRecordList>;

}  // namespace qv
