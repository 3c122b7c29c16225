#include "face/table/column_kind.h"

#include "qvscriptwells/record_list.h"

namespace scriptwells {

namespace {

constexpr ColumnKind kUnknown = {qv::kColumnUnknown, "unknown", Type::kEmpty};

constexpr ColumnKind kKinds[] = {
    {qv::kColumnString, "string", Type::kString},
    {qv::kColumnBoolean, "boolean", Type::kBoolean},
    {qv::kColumnFloat, "float", Type::kFloat},
    {qv::kColumnDouble, "double", Type::kDouble},
    {qv::kColumnDuration, "duration", Type::kDuration},
    {qv::kColumnBlob, "blob", Type::kString},
    {qv::kColumnUrlText, "url", Type::kString},
    {qv::kColumnInt, "int", Type::kInt},
    {qv::kColumnShort, "short", Type::kShort},
    {qv::kColumnLong, "long", Type::kLong},
    {qv::kColumnByte, "byte", Type::kByte},
    {qv::kColumnUnsignedShort, "unsigned short", Type::kInt},
    {qv::kColumnDateTime, "datetime", Type::kDateTime},
    {qv::kColumnTime, "time", Type::kTime},
    {qv::kColumnDate, "date", Type::kDate},
    {qv::kColumnUrl, "url", Type::kLink},
};

}  // namespace

const ColumnKind& KindOf(std::int32_t columnType) noexcept {
  for (const ColumnKind& kind : kKinds)
    if (kind.columnType == columnType) return kind;
  return kUnknown;
}

}  // namespace scriptwells
