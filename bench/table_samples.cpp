#include "table_samples.h"

#include <cstdio>

#include "soap/soap_response.h"

namespace qv::bench {
namespace {

constexpr char kHead[] =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
    "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
    "<soap:Body><ExecuteResponse xmlns=\"" QV_NAMESPACE_HOST
    "/dev/ns/ivarnel/scriptwells\"><ExecuteResult xmlns:q1=\"" QV_NAMESPACE_HOST
    "/dev/ns/sof\" xsi:type=\"q1:RecordList\"><q1:Headers>"
    "<xsd:schema targetNamespace=\"uuid:6d0a6a0e-58f5-4f0a-8a55-0c9c3b0e7d11\">";
constexpr char kTail[] = "</q1:Records></ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>";

struct Column {
  const char* name;
  const char* type;
};

constexpr Column kColumns[] = {
    {"customer", "xsd:string"},  {"city", "xsd:string"},        {"number", "xsd:int"},
    {"pieces", "xsd:int"},       {"price", "xsd:double"},       {"weight", "xsd:double"},
    {"ordered", "xsd:dateTime"}, {"delivered", "xsd:dateTime"}, {"paid", "xsd:boolean"},
    {"express", "xsd:boolean"},
};

// In the order of the columns.
constexpr char kRow[] =
    "<q1:Record><customer>Customer %zu &amp; Sons</customer><city>M\xC3\xBCnster %zu</city>"
    "<number>%zu</number><pieces>%zu</pieces><price>%zu.%02zu</price><weight>%zu.5</weight>"
    "<ordered>2024-%02zu-%02zuT10:15:30.0Z</ordered><delivered>2024-%02zu-%02zuT16:%02zu:00.0Z</delivered>"
    "<paid>%s</paid><express>%s</express></q1:Record>";

void AppendRow(std::size_t row, std::string* out) {
  char text[sizeof kRow + 200];
  const std::size_t month = row % 12 + 1;
  const std::size_t day = row % 28 + 1;
  const int length = std::snprintf(text, sizeof text, kRow, row, row % 100, 1'000'000 + row, row % 1000,
                                   row % 10'000, row % 100, row % 500, month, day, month, day, row % 60,
                                   row % 3 == 0 ? "true" : "false", row % 7 == 0 ? "true" : "false");
  out->append(text, static_cast<std::size_t>(length));
}

}  // namespace

std::string TableAnswer(std::size_t rows) {
  std::string answer = kHead;
  for (const Column& column : kColumns)
    answer.append("<xsd:element xsd:name=\"")
        .append(column.name)
        .append("\" xsd:type=\"")
        .append(column.type)
        .append("\" xsd:displayName=\"")
        .append(column.name)
        .append(R"(" qvrl:valueSize="" qvrl:valueSize2=""/>)");
  answer += "</xsd:schema></q1:Headers><q1:Records>";
  for (std::size_t row = 0; row < rows; ++row) AppendRow(row, &answer);
  return answer + kTail;
}

Variant ReadAnswer(const WideString& answer) {
  CSOAPResponse response;
  response.SetText(u"Execute", answer, false);
  response.ParseText();
  return response.Value();
}

}  // namespace qv::bench
