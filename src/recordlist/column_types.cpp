#include "recordlist/column_types.h"

#include "qvscriptwells/record_list.h"

namespace qv {
namespace {

struct ReadingName {
  std::u16string_view name;
  std::int32_t type;
};

// Both spellings of a date and time, since the comparison is case-sensitive.
constexpr ReadingName kReadingNames[] = {
    {u"xsd:byte", kColumnByte},
    {u"xsd:string", kColumnString},
    {u"qvdt:Char", kColumnString},
    {u"qvdt:Memo", kColumnString},
    {u"qvdt:HTML", kColumnString},
    {u"qvdt:URL", kColumnUrlText},
    {u"xsd:boolean", kColumnBoolean},
    {u"xsd:short", kColumnShort},
    {u"xsd:smallint", kColumnShort},
    {u"xsd:double", kColumnDouble},
    {u"qvdt:Money", kColumnDouble},
    {u"qvdt:RelTimeStamp", kColumnDouble},
    {u"xsd:int", kColumnInt},
    {u"xsd:objectidentifier", kColumnInt},
    {u"qvdt:ObjectIdentifier", kColumnInt},
    {u"xsd:date", kColumnDate},
    {u"qvdt:EffectiveDateFrom", kColumnDate},
    {u"qvdt:EffectiveDateUntil", kColumnDate},
    {u"xsd:time", kColumnTime},
    {u"xsd:datetime", kColumnDateTime},
    {u"xsd:dateTime", kColumnDateTime},
    {u"sof:url", kColumnUrl},
    {u"sof:URL", kColumnUrl},
    {u"xsd:duration", kColumnDuration},
    {u"qvdt:Blob", kColumnBlob},
};

constexpr std::u16string_view kUndefined = u"Undefined";

struct TypeRow {
  std::int32_t type;
  std::u16string_view writingName;
  std::u16string_view formater;
};

// No formater is registered as "unsigned short": such cells have no text, and hosts rely on it.
constexpr TypeRow kTypes[] = {
    {kColumnString, u"xsd:string", u"string"},
    {kColumnBoolean, u"xsd:boolean", u"boolean"},
    {kColumnFloat, kUndefined, u"float"},
    {kColumnDouble, u"xsd:double", u"double"},
    {kColumnDuration, u"xsd:duration", u"duration"},
    {kColumnBlob, u"qvdt:Blob", u"string"},
    {kColumnUrlText, u"qvdt:URL", u"string"},
    {kColumnInt, u"xsd:int", u"int"},
    {kColumnShort, u"xsd:short", u"short"},
    {kColumnLong, kUndefined, u"long"},
    {kColumnByte, u"xsd:byte", u"byte"},
    {kColumnUnsignedShort, kUndefined, u"unsigned short"},
    {kColumnDateTime, u"xsd:datetime", u"datetime"},
    {kColumnTime, u"xsd:time", u"time"},
    {kColumnDate, u"xsd:date", u"date"},
    {kColumnUrl, u"sof:url", u"url"},
};

const TypeRow* FindType(std::int32_t columnType) {
  for (const TypeRow& row : kTypes)
    if (row.type == columnType) return &row;
  return nullptr;
}

}  // namespace

std::int32_t ColumnTypeOf(std::u16string_view xmlTypeName) {
  for (const ReadingName& row : kReadingNames)
    if (row.name == xmlTypeName) return row.type;
  return kColumnUnknown;
}

std::u16string_view XmlTypeNameOf(std::int32_t columnType) {
  const TypeRow* row = FindType(columnType);
  return row == nullptr ? kUndefined : row->writingName;
}

std::u16string_view FormaterNameOf(std::int32_t columnType) {
  const TypeRow* row = FindType(columnType);
  return row == nullptr ? std::u16string_view() : row->formater;
}

}  // namespace qv
