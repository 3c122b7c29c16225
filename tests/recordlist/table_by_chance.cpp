#include "recordlist/table_by_chance.h"

#include <iterator>
#include <limits>

#include "fixtures/counting_object.h"
#include "fixtures/fake_duration.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

constexpr std::u16string_view kTypes[] = {
    u"xsd:byte", u"xsd:string", u"qvdt:URL",     u"xsd:boolean", u"xsd:short",    u"xsd:double", u"xsd:int",
    u"xsd:date", u"xsd:time",   u"xsd:dateTime", u"sof:url",     u"xsd:duration", u"qvdt:Blob",  u"made up"};

constexpr std::u16string_view kNumbers[] = {
    u"#", u"-##", u"#########", u"####.##", u"-0.####", u"1e#", u"####.################"};
constexpr std::u16string_view kDates[] = {u"####-0#-1#", u"2024-0#-c#T1#:d#:d#.0Z", u"2024-0#-1#T1#:d#:d#"};
constexpr std::u16string_view kTimes[] = {u"1#:d#:d#.0Z", u"0#:d#"};
constexpr std::u16string_view kOthers[] = {
    u"",      u"true",   u"1",        u"a &amp; b", u"&#233;&lt;x&gt;", u" \n",
    u"<b/>x", u"x<b/>y", u"<b>5</b>", u"<!--c-->7", u"<![CDATA[x]]>",   u"&#x1F600;"};

}  // namespace

std::u16string TableByChance::Xml() {
  std::u16string columns;
  std::u16string_view types[6];
  const std::size_t count = texts_.Below(7);
  for (std::size_t column = 0; column < count; ++column) {
    types[column] = kTypes[texts_.Below(std::size(kTypes))];
    columns.append(u"<c xsd:name='a' xsd:type='").append(types[column]).append(u"'/>");
  }
  std::u16string records;
  for (std::size_t rows = texts_.Below(20); rows != 0; --rows) {
    records += u"<r>";
    const std::size_t cells = OneIn(10) ? texts_.Below(count + 1) : count;
    for (std::size_t cell = 0; cell < cells; ++cell) records += CellXml(types[cell]);
    if (OneIn(300)) records += u"<a>5</a>";
    records += u"</r>";
  }
  return u"<v><h><s>" + columns + u"</s></h><d>" + records + u"</d></v>";
}

std::u16string TableByChance::CellXml(std::u16string_view type) {
  const bool isTime = type == u"xsd:time";
  const bool isDate = isTime || type == u"xsd:date" || type == u"xsd:dateTime";
  std::u16string text;
  if (type == u"xsd:duration") {
    text = OneIn(100) ? u"1D" : u"P1DT2H";
  } else if (type == u"sof:url") {
    text = OneIn(3) ? u"" : u"&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;";
  } else if (isDate && !OneIn(200)) {
    do
      text = texts_.Next(isTime ? kTimes[texts_.Below(std::size(kTimes))]
                                : kDates[texts_.Below(std::size(kDates))]);
    while (!OneIn(200) && text.find(isTime ? u':' : u'-') == std::u16string::npos);
  } else {
    text = OneIn(3) ? std::u16string(kOthers[texts_.Below(std::size(kOthers))])
                    : std::u16string(texts_.Next(kNumbers[texts_.Below(std::size(kNumbers))]));
  }
  if (text.find(u'\0') != std::u16string::npos) text = u"0";  // no document has one
  return u"<a>" + text + u"</a>";
}

IRecordListPtr TableByChance::List() {
  IRecordListPtr list = CreateRecordList();
  IRecordListHeadersPtr headers;
  ThrowIfFailed(list->GetHeaders(Put(headers)));
  const std::size_t columns = texts_.Below(7);
  for (std::size_t column = 0; column < columns; ++column)
    ThrowIfFailed(
        headers->AddHeader(OneIn(3) ? u"name" : u"a", static_cast<std::int32_t>(texts_.Below(25)), nullptr));
  for (std::size_t rows = texts_.Below(12); rows != 0; --rows) {
    IUnknownPtr made;
    ThrowIfFailed(list->NewRecord(Put(made)));
    const IRecordListRecordPtr record = As<IRecordListRecord>(made);
    for (std::size_t column = 0; column < columns; ++column)
      if (!OneIn(10)) ThrowIfFailed(record->SetValue(static_cast<std::int32_t>(column), Value()));
  }
  return list;
}

Variant TableByChance::Value() {
  const auto number = static_cast<std::int64_t>(texts_.Below(2'000'000'000)) - 1'000'000'000;
  const double real = static_cast<double>(number) / 1e4;
  switch (texts_.Below(OneIn(100) ? 14 : 12)) {
    case 0:
      return I1(static_cast<std::int8_t>(number));
    case 1:
      return I2(static_cast<std::int16_t>(number));
    case 2:
      return Int(static_cast<std::int32_t>(number));
    case 3:
      return I8(number * number);
    case 4:
      return Bool(number > 0);
    case 5:
      return R4(static_cast<float>(real));
    case 6:
      return OneIn(10) ? R8(std::numeric_limits<double>::quiet_NaN()) : R8(real);
    case 7:
      return Date(real / 10);
    case 8:
      return Date(static_cast<double>(number % 40000));
    case 9:
      return Variant::FromString(OneIn(20) ? WideString() : Text());
    case 10:
      return Variant::FromString(Text());
    case 11:
      return Object();
    case 12:
      return Variant::Null();
    default:
      return Date(real * 1000);
  }
}

Variant TableByChance::Object() {
  switch (texts_.Below(4)) {
    case 0:
      return Variant::FromObject(CreateDuration(u"P1DT2H").get());
    case 1:
      return Variant::FromObject(new FakeDuration(Text()));
    case 2:
      return Variant::FromObject(new CountingObject);
    default:
      return Variant::FromObject(nullptr);
  }
}

WideString TableByChance::Text() {
  static constexpr std::u16string_view kPieces[] = {
      u"", u"a plain text of some length", u"&", u"<>\"'", u"\u00E9", u"\U0001F600", u"\n", u" "};
  std::u16string text;
  for (std::size_t pieces = texts_.Below(4); pieces != 0; --pieces)
    text += kPieces[texts_.Below(std::size(kPieces))];
  if (OneIn(30)) text += u'\0';
  if (OneIn(5)) text += texts_.Next(u"##.#");
  return WideString(text);
}

}  // namespace qv
