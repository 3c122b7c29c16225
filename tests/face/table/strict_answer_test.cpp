// Which answers arrive changed. Each text is one that the library reads without failure.
#include "face/table/strict_answer.h"

#include <gtest/gtest.h>

#include "fixtures/soap_texts.h"
#include "qvscriptwells/value_types_hold.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/soap_response.h"
#include "tests/face/table/sample_table.h"

namespace scriptwells {
namespace {

class StrictAnswer : public ::testing::Test {
 protected:
  static std::string Checked(const std::u16string& answer) {
    return Failure([&] { CheckStrict(qv::ToUtf8(answer)); });
  }
  // What the library makes of the answer.
  static qv::Variant Read(const std::u16string& answer) {
    qv::CSOAPResponse response;
    response.SetText(u"Execute", answer, false);
    response.ParseText();
    return response.Value();
  }
  static std::string OfValue(const std::u16string& type, const std::u16string& content) {
    const std::u16string answer = qv::ExecuteAnswer(qv::ValueElement(type, content));
    EXPECT_NO_THROW(Read(answer)) << qv::ToUtf8(answer);
    return Checked(answer);
  }
  // A table of one column with this type, and one row for each text.
  static std::string OfColumn(const std::u16string& type, const std::vector<std::u16string>& cells) {
    std::u16string records;
    for (const std::u16string& cell : cells) records += u"<R><c>" + cell + u"</c></R>";
    const std::u16string answer =
        qv::ExecuteAnswer(qv::ValueElement(u"q1:RecordList", u"<H><S><C xsd:name=\"c\" xsd:type=\"" + type +
                                                                 u"\"/></S></H><Rs>" + records + u"</Rs>"));
    EXPECT_NO_THROW(Read(answer)) << qv::ToUtf8(answer);
    return Checked(answer);
  }

  qv::XmlLibraryHold library_;
  qv::ValueTypesHold types_;
};

struct Sample {
  const char16_t* type;
  const char16_t* content;
};

TEST_F(StrictAnswer, PassesWhatArrivesWhole) {
  const Sample samples[] = {{u"xsd:boolean", u"1"},
                            {u"xsd:short", u"1"},
                            {u"int", u"1"},
                            {u"float", u"0.5"},
                            {u"xsd:double", u"1.5"},
                            {u"xsd:string", u"10:15:30.5+01:00"},
                            {u"idref", u"x"},
                            {u"xsd:date", u"2024-03-05"},
                            {u"xsd:date", u"2024-03-05Z"},
                            {u"xsd:dateTime", u"2024-03-05T10:15:30"},
                            {u"xsd:datetime", u"2024-03-05T10:15:30.000Z"},
                            {u"dateTime", u"2024-03-05T10:15:30.0+00:00"},
                            {u"xsd:dateTime", u"2024-03-05T10:15:30+24:00"},
                            {u"xsd:time", u"10:15"},
                            {u"time", u"10:15:30Z"},
                            {u"xsd:duration", u"P1Y2M3DT4H5M6.5S"},
                            {u"duration", u"-P32767DT100000S"}};
  for (const Sample& sample : samples) {
    EXPECT_EQ(OfValue(sample.type, sample.content), "none") << qv::ToUtf8(sample.type);
    EXPECT_EQ(OfColumn(u"xsd:string", {sample.content}), "none");
  }
}

TEST_F(StrictAnswer, RefusesTypesThatDoNotArrive) {
  for (const char16_t* type : {u"xsd:long", u"long", u"xsd:byte", u"byte", u"sof:url", u"URL", u"xsd:float",
                               u"xsd:decimal", u"xsd:unsignedInt"})
    EXPECT_EQ(OfValue(type, u""),
              "conversion: a value of the type '" + qv::ToUtf8(type) + "' does not arrive");
  EXPECT_EQ(OfValue(u"XSD:Long", u"5000000000"),
            "conversion: a value of the type 'XSD:Long' does not arrive");
}

TEST_F(StrictAnswer, RefusesFractionsOfASecond) {
  const Sample samples[] = {{u"xsd:time", u"10:15:30.5"},
                            {u"xsd:dateTime", u"2024-03-05T10:15:30.001"},
                            {u"datetime", u"2024-03-05T10:15:30.010Z"},
                            {u"xsd:date", u"2024-03-05T10:15:30.10-00:00"}};
  for (const Sample& sample : samples) {
    const std::string text = qv::ToUtf8(sample.content);
    const std::string message =
        "conversion: '" + text + "' has a fraction of a second, which does not arrive";
    EXPECT_EQ(OfValue(sample.type, sample.content), message);
  }
}

TEST_F(StrictAnswer, RefusesZones) {
  const Sample samples[] = {{u"xsd:time", u"10:15:30+01:00"},
                            {u"xsd:time", u"10:15-05:30"},
                            {u"xsd:dateTime", u"2024-03-05T10:15:30.0+00:01"},
                            {u"xsd:dateTime", u"2024-03-05T10:15:30-08:00"}};
  for (const Sample& sample : samples) {
    const std::string text = qv::ToUtf8(sample.content);
    EXPECT_EQ(OfValue(sample.type, sample.content),
              "conversion: '" + text + "' has a time zone, which does not arrive");
  }
}

TEST_F(StrictAnswer, RefusesLargeCountsOfDurations) {
  for (const char16_t* text :
       {u"P32768Y", u"P40000M", u"P99999999999999999999D", u"PT65536H", u"-PT40000M1S"})
    EXPECT_EQ(OfValue(u"xsd:duration", text),
              "conversion: '" + qv::ToUtf8(text) + "' has a count above 32767, which arrives as another one");
}

TEST_F(StrictAnswer, NamesColumnAndRow) {
  EXPECT_EQ(
      OfColumn(u"xsd:time", {u"10:15:30", u"10:15:30.0", u"10:15:30.7Z"}),
      "conversion: '10:15:30.7Z' has a fraction of a second, which does not arrive, in column 'c', row 2");
  EXPECT_EQ(
      OfColumn(u"xsd:datetime", {u"2024-03-05T10:15:30+01:00"}),
      "conversion: '2024-03-05T10:15:30+01:00' has a time zone, which does not arrive, in column 'c', row 0");
  EXPECT_EQ(
      OfColumn(u"xsd:duration", {u"P1D", u"P40000D"}),
      "conversion: 'P40000D' has a count above 32767, which arrives as another one, in column 'c', row 1");
}

TEST_F(StrictAnswer, RefusesColumnsThatAreNotRead) {
  for (const char16_t* type : {u"xsd:long", u"xsd:float", u"float", u"xsd:decimal", u"XSD:INT"})
    EXPECT_EQ(OfColumn(type, {u"", u"1"}), "conversion: a value of the type '" + qv::ToUtf8(type) +
                                               "' does not arrive, in column 'c', row 1");
  EXPECT_EQ(OfColumn(u"sof:url", {u"<URL>a</URL><C>b</C>"}), "none");  // elements, which are read as no text
  EXPECT_EQ(OfColumn(u"sof:URL", {u"&lt;URL>a&lt;/URL>&lt;C>b&lt;/C>"}),
            "conversion: a value of the type 'sof:URL' does not arrive, in column 'c', row 0");
}

TEST_F(StrictAnswer, PassesColumnsWithoutText) {
  EXPECT_EQ(OfColumn(u"xsd:long", {}), "none");
  EXPECT_EQ(OfColumn(u"xsd:long", {u"", u""}), "none");
}

TEST_F(StrictAnswer, PassesColumnsThatAreRead) {
  for (const char16_t* type :
       {u"xsd:byte", u"xsd:string", u"qvdt:URL", u"qvdt:Blob", u"xsd:double", u"qvdt:Money"})
    EXPECT_EQ(OfColumn(type, {u"1"}), "none") << qv::ToUtf8(type);
}

// A byte arrives as 0 outside a table, and whole in one.
TEST_F(StrictAnswer, AgreesWithTheLibraryOnBytes) {
  EXPECT_EQ(Read(qv::ExecuteAnswer(qv::ValueElement(u"xsd:byte", u"5"))).Data().intVal, 0);
  const Value table = AnswerOf(Read(qv::ExecuteAnswer(qv::ValueElement(
      u"RecordList", u"<H><S><C xsd:name=\"c\" xsd:type=\"xsd:byte\"/></S></H><Rs><R><c>5</c></R></Rs>"))));
  EXPECT_EQ(table.AsTable()[0]["c"].As<int>(), 5);
}

TEST_F(StrictAnswer, PassesAnswersWithoutValue) {
  EXPECT_EQ(Checked(qv::ExecuteAnswer(u"")), "none");
  EXPECT_EQ(Checked(qv::ExecuteAnswer(u"text")), "none");
  EXPECT_EQ(Checked(qv::ExecuteAnswer(u"<r xsi:null=\"1\"/>")), "none");
  EXPECT_EQ(Checked(u"<soap:Envelope/>"), "none");
}

TEST_F(StrictAnswer, RefusesWhatCannotBeParsed) {
  EXPECT_EQ(Checked(u"<soap:Envelope>").substr(0, 16), "error (answer): ");
  EXPECT_EQ(Checked(u"").substr(0, 16), "error (answer): ");
}

// The document has a comment, so the XML library's parser reads it.
TEST_F(StrictAnswer, ReadsDocumentsThatAreNotPlain) {
  const std::u16string answer = u"<!-- x -->" + qv::ExecuteAnswer(qv::ValueElement(u"xsd:long", u"5"));
  EXPECT_EQ(Checked(answer), "conversion: a value of the type 'xsd:long' does not arrive");
  EXPECT_EQ(Checked(u"<!DOCTYPE a>" + answer.substr(10)),
            "conversion: a value of the type 'xsd:long' does not arrive");
}

TEST_F(StrictAnswer, MessageIsSafeInALine) {
  EXPECT_EQ(Checked(qv::ExecuteAnswer(qv::ValueElement(u"x&#10;y\u202E", u""))),
            "conversion: a value of the type 'x\\ny\\u202e' does not arrive");
}

}  // namespace
}  // namespace scriptwells
