#include "face/table/strict_answer.h"

#include <string>
#include <vector>

#include "face/table/table_messages.h"
#include "face/text/failures.h"
#include "face/text/short_quote.h"
#include "format/formater_factory.h"
#include "format/response_value_reader.h"
#include "format/text_conversions.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/record_list.h"
#include "qvscriptwells/value_types_hold.h"
#include "recordlist/column_types.h"
#include "scriptwells/error.h"
#include "soap/soap_response.h"
#include "xml/answer_document.h"
#include "xml/xml_library_guard.h"
#include "xml/xml_walk.h"

namespace scriptwells {

namespace {

using Text = std::u16string_view;

constexpr std::int32_t kMinutesOfDay = 24 * 60;
constexpr int kGreatestCount = 32767;

// How a value of a type may be changed on its way.
enum class Risk { kNone, kType, kPoint, kSpan };

struct TypeRow {
  Text name;
  Risk risk;
};

// The types of a value outside tables that are read with losses. A byte reads as 0 there.
constexpr TypeRow kTypes[] = {
    {u"long", Risk::kType},      {u"xsd:long", Risk::kType},     {u"byte", Risk::kType},
    {u"xsd:byte", Risk::kType},  {u"url", Risk::kType},          {u"sof:url", Risk::kType},
    {u"date", Risk::kPoint},     {u"xsd:date", Risk::kPoint},    {u"time", Risk::kPoint},
    {u"xsd:time", Risk::kPoint}, {u"datetime", Risk::kPoint},    {u"xsd:datetime", Risk::kPoint},
    {u"duration", Risk::kSpan},  {u"xsd:duration", Risk::kSpan},
};

Risk RiskOfType(const qv::WideString& name) {
  for (const TypeRow& row : kTypes)
    if (row.name == name.view()) return row.risk;
  return qv::FindFormater(name) == nullptr ? Risk::kType : Risk::kNone;
}

Risk RiskOfColumn(std::int32_t columnType) {
  switch (columnType) {
    case qv::kColumnUnknown:
    case qv::kColumnUrl:
      return Risk::kType;
    case qv::kColumnDate:
    case qv::kColumnTime:
    case qv::kColumnDateTime:
      return Risk::kPoint;
    case qv::kColumnDuration:
      return Risk::kSpan;
    default:
      return Risk::kNone;
  }
}

bool HasFraction(Text time) {
  const std::size_t point = time.find(u'.');
  if (point == Text::npos) return false;
  const std::size_t digit = time.find_first_not_of(u'0', point + 1);
  return digit != Text::npos && time[digit] >= u'1' && time[digit] <= u'9';
}

const char* LossOfPoint(Text text) {
  const std::size_t mark = text.find(u'T');
  if (mark == Text::npos && text.find(u':') == Text::npos) return nullptr;
  if (HasFraction(mark == Text::npos ? text : text.substr(mark)))
    return " has a fraction of a second, which does not arrive";
  if (qv::ParseDateTimeText(text).TimeZone % kMinutesOfDay != 0)
    return " has a time zone, which does not arrive";
  return nullptr;
}

// The seconds are no such count.
const char* LossOfSpan(Text text) {
  int count = 0;
  for (const char16_t unit : text) {
    if (unit >= u'0' && unit <= u'9') {
      count = count > kGreatestCount ? count : count * 10 + (unit - u'0');
      continue;
    }
    if (count > kGreatestCount && Text(u"YMDH").find(unit) != Text::npos)
      return " has a count above 32767, which arrives as another one";
    count = 0;
  }
  return nullptr;
}

// Empty for none.
std::string LossOf(Risk risk, Text type, Text text) {
  if (risk == Risk::kType) return "a value of the type " + ShortQuote(qv::ToUtf8(type)) + " does not arrive";
  const char* loss = nullptr;
  if (risk == Risk::kPoint) loss = LossOfPoint(text);
  if (risk == Risk::kSpan) loss = LossOfSpan(text);
  return loss == nullptr ? "" : ShortQuote(qv::ToUtf8(text)) + loss;
}

struct DeclaredColumn {
  std::string name;
  Text type;
  Risk risk;
};

// By position, as the reader of tables does.
std::vector<DeclaredColumn> DeclaredColumns(const qv::XmlNode& schema) {
  std::vector<DeclaredColumn> columns;
  for (qv::XmlNode node = schema.FirstChild(); !node.IsNull(); node = node.NextSibling()) {
    const Text type = node.Attribute(u"xsd:type").Value();
    columns.push_back(
        {qv::ToUtf8(node.Attribute(u"xsd:name").Value()), type, RiskOfColumn(qv::ColumnTypeOf(type))});
  }
  return columns;
}

void CheckCell(const qv::XmlNode& cell, const DeclaredColumn& column, std::size_t row) {
  if (column.risk == Risk::kNone) return;
  const Text text = FirstTextChild(cell).Value();
  if (text.empty()) return;
  const std::string loss = LossOf(column.risk, column.type, text);
  if (!loss.empty()) RefuseConversion(loss + InCell(column.name, row));
}

void CheckRecord(const qv::XmlNode& record, const std::vector<DeclaredColumn>& columns, std::size_t row) {
  std::size_t index = 0;
  for (qv::XmlNode cell = record.FirstChild(); !cell.IsNull() && index < columns.size();
       cell = cell.NextSibling())
    CheckCell(cell, columns[index++], row);
}

void CheckTable(const qv::XmlNode& table) {
  const qv::XmlNode headers = table.FirstChild();
  const std::vector<DeclaredColumn> columns = DeclaredColumns(headers.FirstChild());
  std::size_t row = 0;
  for (qv::XmlNode record = headers.NextSibling().FirstChild(); !record.IsNull();
       record = record.NextSibling())
    CheckRecord(record, columns, row++);
}

void CheckValue(const qv::XmlNode& value) {
  const qv::XmlNode type = value.Attribute(u"xsi:type");
  if (type.IsNull()) return;
  const qv::WideString name = qv::ReadTypeName(type);
  if (name.view() == u"sof:recordlist") return CheckTable(value);
  const std::string loss = LossOf(RiskOfType(name), GetNodeText(type), GetNodeText(value));
  if (!loss.empty()) RefuseConversion(loss);
}

void Read(const qv::WideString& text, qv::AnswerDocument& document) {
  try {
    document.ReadText(text.view(), "application/xml");
  } catch (...) {
    qv::RethrowAsResponseFailure();
  }
}

}  // namespace

void CheckStrict(std::string_view answerXml) {
  try {
    const qv::XmlLibraryGuardScope library;
    const qv::ValueTypesHold types;
    const qv::WideString text = qv::FromUtf8(answerXml);
    qv::AnswerDocument document;
    Read(text, document);
    CheckValue(DocumentElement(document.Document()).FirstChild().FirstChild().FirstChild());
  } catch (const qv::QvException& error) {
    throw Error(Phase::kAnswer, error.what());
  }
}

}  // namespace scriptwells
