// What is found in answers, and where.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "tools/inspect/finding.h"
#include "tools/inspect/known_secrets.h"
#include "tools/inspect/value_rules.h"
#include "tools/inspect/xml_tree.h"

namespace qv::cli {
namespace {

std::string ReadSource(const std::string& path) {
  std::ifstream file(std::string(SOURCE_FOLDER) + "/" + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// "type-name@57": with the bytes of the body.
std::string FoundIn(const std::string& body, const std::string& method = "Execute") {
  Findings findings;
  FindEnvelopeFaults({method, {}, body}, findings);
  std::string text;
  for (const Finding& finding : findings)
    text +=
        (text.empty() ? "" : "|") + std::string(RowOf(finding.rule).id) + "@" + std::to_string(finding.begin);
  return text;
}

std::string InBody(const std::string& content) {
  return "<soap:Envelope><soap:Body>" + content + "</soap:Body></soap:Envelope>";
}

std::string Value(const std::string& value) {
  return InBody("<ExecuteResponse>" + value + "</ExecuteResponse>");
}

TEST(AnswerRules, Envelopes) {
  const std::pair<std::string, const char*> rows[] = {
      {Value("<r xsi:type='xsd:int'>1</r>"), ""},
      {"<e/>", "service-path@0"},
      {"<soap:Envelope></e>", "well-formed@17"},
      {"<S:Envelope><S:Body><ExecuteResponse><r xsi:type='int'>1</r></ExecuteResponse></S:Body></S:Envelope>",
       "envelope-prefix@0"},
      {"<soap:Envelope><soap:Header/><soap:Body><ExecuteResponse><r xsi:type='int'>1</r></ExecuteResponse>"
       "</soap:Body></soap:Envelope>",
       "no-header@15"},
      {InBody(" <ExecuteResponse><r xsi:type='int'>1</r></ExecuteResponse>"), "white-space@26"},
      {InBody("<!-- a --><ExecuteResponse><r xsi:type='int'>1</r></ExecuteResponse>"), "white-space@26"},
      {InBody("<m:ExecuteResponse><r xsi:type='int'>1</r></m:ExecuteResponse>"), "answer-name@26"},
      {InBody("<NS2:ExecuteResponse><r xsi:type='int'>1</r></NS2:ExecuteResponse>"), ""},
      {InBody("<ExecuteResponse/>"), "one-value@26"},
      {InBody("<ExecuteResponse>42</ExecuteResponse>"), "one-value@26"},
      {InBody("<SOAP:Fault><faultstring>a</faultstring></SOAP:Fault>"), "fault-prefix@26"},
      {InBody("<soap:Fault> <faultstring>a</faultstring></soap:Fault>"), ""},
      {InBody("<soap:Fault><soap:Reason/></soap:Fault>"), "fault-text@26"},
  };
  for (const auto& [body, found] : rows) EXPECT_EQ(FoundIn(body), found) << body;
  EXPECT_EQ(
      FoundIn(InBody("<CreateUserSessionResponse><r/></CreateUserSessionResponse>"), "CreateUserSession"),
      "session-id@26");
}

TEST(AnswerRules, Values) {
  const std::pair<const char*, const char*> rows[] = {
      {"<r xsi:type='xsd:boolean'>TRUE</r>", "value-text"},
      {"<r xsi:type='xsd:int'>12 apples</r>", "value-text"},
      {"<r xsi:type='xsd:int'>2147483648</r>", "value-text"},
      {"<r xsi:type='xsd:short'>-32768</r>", ""},
      {"<r xsi:type='xsd:float'>0.5</r>", "type-name"},
      {"<r xsi:type='FLOAT'>0.5</r>", ""},
      {"<r xsi:type='xs:int'>1</r>", "type-name"},
      {"<r x:type='xsd:int'>1</r>", "type-attribute"},
      {"<r xsi:type='xsd:long'>1</r>", "type-lost"},
      {"<r xsi:nil='true'/>", "null-value"},
      {"<r href='#1'/>", "value-in-place"},
      {"<r xsi:type='xsd:date'>2024-02-30</r>", "value-text"},
      {"<r xsi:type='xsd:date'>2024-02-29</r>", ""},
      {"<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30.7Z</r>", "value-lost"},
      {"<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30.000Z</r>", ""},
      {"<r xsi:type='xsd:dateTime'>2024-03-05T10:15:30+02:00</r>", "value-lost"},
      {"<r xsi:type='xsd:duration'>P1DT2H</r>", ""},
      {"<r xsi:type='xsd:duration'>P</r>", "value-text"},
      {"<r xsi:type='sof:url'>&lt;URL&gt;u&lt;/URL&gt;&lt;C&gt;&lt;/C&gt;</r>", "value-lost"},
      {"<r xsi:type='recordlist'><h><s><c xsd:name='a' xsd:type='xsd:date'/></s></h><d><w><v/></w></d></r>",
       "value-text"},
      {"<r xsi:type='recordlist'><h><s><c name='a' xsd:type='xsd:int'/></s></h><d/></r>", "column-names"},
      {"<r xsi:type='recordlist'><h><s><c xsd:name='a' xsd:type='xsd:int'/></s></h><d><w/></d></r>",
       "cell-count"},
      {"<r xsi:type='recordlist'><h/></r>", "table-blocks"},
  };
  for (const auto& [value, found] : rows) {
    const std::string all = FoundIn(Value(value));
    EXPECT_EQ(all.substr(0, all.find('@')), found) << value;
  }
}

TEST(AnswerRules, Heads) {
  const std::pair<const char*, const char*> rows[] = {
      {"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n", ""},
      {"HTTP/1.1 200 OK\r\ncontent-length:5\r\n\r\n", "whole-body"},
      {"HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n", "content-length"},
      {"HTTP/1.1 200 OK\r\n\r\n", "content-length"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 4\r\nContent-Encoding: gzip\r\n\r\n", "compression"},
      {"HTTP/1.1 302 Found\r\nLocation: /b\r\nContent-Length: 4\r\n\r\n", "redirect"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n", "chunked"},
  };
  for (const auto& [head, found] : rows) {
    Findings findings;
    FindHttpFaults({"Execute", head, "body"}, findings);
    EXPECT_EQ(findings.empty() ? "" : RowOf(findings.front().rule).id, std::string(found)) << head;
  }
  EXPECT_EQ(CharsetOf("HTTP/1.1 200 OK\r\nContent-Type: text/xml; Charset=\"UTF-8\"; a=b\r\n\r\n"), "utf-8");
}

TEST(AnswerRules, HostileXml) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  EXPECT_EQ(ReadXml(deep).flaw->message, "elements deeper than 200 in each other");
  EXPECT_TRUE(ReadXml("<!DOCTYPE a [<!ENTITY b SYSTEM 'file:///etc/passwd'>]><a>&b;</a>").root);
  EXPECT_TRUE(ReadXml("").flaw);
}

TEST(AnswerRules, TypesAreThoseOfTheClient) {
  const std::string source = ReadSource("src/recordlist/register_formaters.cpp");
  const std::regex name("Creator \\w+\\{u\"([^\"]+)\"\\}");
  int names = 0;
  for (std::sregex_iterator at(source.begin(), source.end(), name), end; at != end; ++at, ++names)
    EXPECT_NE(ReadingOf((*at)[1].str()), Reading::kNone) << (*at)[1];
  EXPECT_EQ(names, 27);
  for (const char* other : {"xsd:float", "xsd:decimal", "xs:int", ""})
    EXPECT_EQ(ReadingOf(other), Reading::kNone);
}

TEST(AnswerRules, EachIsInTheDocument) {
  const std::string page = ReadSource("docs/protocol.md");
  for (std::size_t i = 0; i < kRules; ++i) {
    const RuleRow& row = RowOf(static_cast<Rule>(i));
    EXPECT_NE(page.find("| `" + std::string(row.id) + "` | " + row.sentence + " |"), std::string::npos)
        << row.id;
  }
}

TEST(KnownSecrets, PartsOfSecretsAreMasked) {
  KnownSecrets secrets;
  secrets.Add("a<b 7");
  secrets.Add("");
  EXPECT_EQ(secrets.Masked("x a<b 7 a&lt;b 7 a&amp;lt;b 7 a%3Cb%207 y"), "x *** *** *** *** y");
  EXPECT_EQ(secrets.Masked(std::string("a\0<\0b\0 \0"
                                       "7\0",
                                       10)),
            "***");
  EXPECT_EQ(secrets.MaskedPart("x a<b 7 y", 4, 9), "*** y");
  EXPECT_EQ(secrets.MaskedPart("x a<b 7 y", 0, 4), "x ***");
}

TEST(Place, LinesAndColumns) {
  EXPECT_EQ(PlaceOf("a\nbc\nd", 3).line, 2U);
  EXPECT_EQ(PlaceOf("a\nbc\nd", 3).column, 2U);
  EXPECT_EQ(PlaceOf("", 0).column, 1U);
}

}  // namespace
}  // namespace qv::cli
