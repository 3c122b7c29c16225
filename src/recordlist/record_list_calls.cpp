#include "recordlist/record_list_calls.h"

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

void Require(const IUnknown* object) {
  if (object == nullptr) _com_raise_error(E_POINTER);
}

VARIANT_BOOL VariantBool(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

IRecordListRecordPtr AsRecord(IUnknown* object) {
  return As<IRecordListRecord>(object);
}

void Check(HRESULT code, IRecordList* list) {
  ThrowIfFailed(code, list, IRecordList::kIid);
}
void Check(HRESULT code, IRecordListHeaders* headers) {
  ThrowIfFailed(code, headers, IRecordListHeaders::kIid);
}
void Check(HRESULT code, IRecordListHeader* header) {
  ThrowIfFailed(code, header, IRecordListHeader::kIid);
}
void Check(HRESULT code, IRecordListRecord* record) {
  ThrowIfFailed(code, record, IRecordListRecord::kIid);
}
void Check(HRESULT code, IRecordListCursor* cursor) {
  ThrowIfFailed(code, cursor, IRecordListCursor::kIid);
}

}  // namespace

IRecordListPtr CreateRecordList() {
  const IUnknownPtr object = CreateComponent(CLSID_RecordList);
  return As<IRecordList>(object);
}

IRecordListHeadersPtr HeadersOf(IRecordList* list) {
  Require(list);
  IRecordListHeaders* raw = nullptr;
  Check(list->GetHeaders(&raw), list);
  return IRecordListHeadersPtr(raw, false);
}

IRecordListHeadersPtr HeadersOf(IRecordListRecord* record) {
  IRecordListHeaders* raw = nullptr;
  Check(record->GetHeaders(&raw), record);
  return IRecordListHeadersPtr(raw, false);
}

IRecordListHeaderPtr HeaderAt(IRecordListHeaders* headers, std::int32_t index) {
  Require(headers);
  IRecordListHeader* raw = nullptr;
  Check(headers->GetHeader(index, &raw), headers);
  return IRecordListHeaderPtr(raw, false);
}

std::int32_t CountOf(IRecordListHeaders* headers) {
  Require(headers);
  std::int32_t count = 0;
  Check(headers->GetCount(&count), headers);
  return count;
}

std::int32_t TypeOf(IRecordListHeader* header) {
  Require(header);
  std::int32_t type = 0;
  Check(header->GetType(&type), header);
  return type;
}

WideString NameOf(IRecordListHeader* header) {
  Require(header);
  WideString name;
  Check(header->GetName(&name), header);
  return name;
}

WideString DisplayNameOf(IRecordListHeader* header) {
  Require(header);
  WideString name;
  Check(header->GetDisplayName(&name), header);
  return name;
}

Variant ValueOf(IRecordListRecord* record, std::int32_t index) {
  Variant value;
  Check(record->GetValue(index, &value), record);
  return value;
}

void AddColumn(IRecordListHeaders* headers, const WideString& name, std::int32_t columnType) {
  IRecordListHeader* raw = nullptr;
  Check(headers->AddHeader(name, columnType, &raw), headers);
  const IRecordListHeaderPtr header(raw, false);
  Require(header.get());
  Check(header->SetDisplayName(name), header.get());
}

IRecordListRecordPtr NewRecordOf(IRecordList* list) {
  IUnknown* raw = nullptr;
  Check(list->NewRecord(&raw), list);
  const IUnknownPtr object(raw, false);
  return AsRecord(object.get());
}

void SetValueOf(IRecordListRecord* record, std::int32_t index, const Variant& value) {
  Check(record->SetValue(index, value), record);
}

IRecordListCursorPtr CursorOf(IRecordList* list) {
  IRecordListCursor* raw = nullptr;
  Check(list->OpenCursor(VARIANT_TRUE, &raw), list);
  return IRecordListCursorPtr(raw, false);
}

bool HasMore(IRecordListCursor* cursor) {
  Require(cursor);
  VARIANT_BOOL more = VARIANT_FALSE;
  Check(cursor->HasMore(&more), cursor);
  return more != VARIANT_FALSE;
}

IRecordListRecordPtr NextOf(IRecordListCursor* cursor) {
  IUnknown* raw = nullptr;
  Check(cursor->Next(&raw), cursor);
  const IUnknownPtr object(raw, false);
  return AsRecord(object.get());
}

void Lock(IRecordList* list, bool locked) {
  Require(list);
  Check(list->SetLocked(VariantBool(locked)), list);
}

void Lock(IRecordListHeaders* headers, bool locked) {
  Require(headers);
  Check(headers->SetLocked(VariantBool(locked)), headers);
}

void Lock(IRecordListRecord* record, bool locked) {
  Require(record);
  Check(record->SetLocked(VariantBool(locked)), record);
}

}  // namespace qv
