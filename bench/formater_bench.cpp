// Each formater alone: the text of one node to its value, and one value to its text.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "format/formater_factory.h"
#include "qvscriptwells/create_objects.h"
#include "xml/qv_dom_parser.h"

namespace qv::bench {
namespace {

struct Sample {
  const char* name;  // of the benchmark and the type
  const char16_t* element;
  Variant (*value)();  // null for a type that is only read
};

Variant DurationValue() {
  return Variant::FromObject(CreateDuration(u"P1Y2M3DT4H5M6.5S").get());
}

const Sample kSamples[] = {
    {"boolean", u"<v>true</v>", [] { return Variant::FromBool(true); }},
    {"byte", u"<v>41</v>", [] { return Variant::FromByte(41); }},
    {"short", u"<v>1234</v>", [] { return Variant::FromShort(1234); }},
    {"int", u"<v>123456789</v>", [] { return Variant::FromInt(123456789); }},
    {"long", u"<v>5000000000</v>", [] { return Variant::FromLong(5000000000); }},
    {"float", u"<v>0.125</v>", [] { return Variant::FromFloat(0.125F); }},
    {"double", u"<v>3.14159265</v>", [] { return Variant::FromDouble(3.14159265); }},
    {"string", u"<v>twenty units of text</v>", [] { return Variant::FromString(u"twenty units of text"); }},
    {"date", u"<v>2024-03-05</v>", [] { return Variant::FromDate(45356.0); }},
    {"datetime", u"<v>2024-03-05T10:15:30.0Z</v>", [] { return Variant::FromDate(45356.427430555559); }},
    {"time", u"<v>10:15:30.0Z</v>", [] { return Variant::FromDate(0.427430555555556); }},
    {"duration", u"<v>P1Y2M3DT4H5M6.5S</v>", &DurationValue},
    {"url", u"<v>&lt;URL>http://h/p&lt;/URL>&lt;C>caption&lt;/C></v>", nullptr},
};

FormaterSerializer* FormaterOf(const Sample& sample) {
  return FormaterFactory::Instance()->GetFormater(FromUtf8(sample.name));
}

void Read(benchmark::State& state, const Sample& sample) {
  QvDomParser parser;
  parser.ParseHostileText(sample.element, "bench");
  const XmlNode element = parser.Document().FirstChild();
  FormaterSerializer* const formater = FormaterOf(sample);
  for (auto _ : state) benchmark::DoNotOptimize(formater->ReadValue(element).Data().llVal);
}

void Write(benchmark::State& state, const Sample& sample) {
  const Variant value = sample.value();
  FormaterSerializer* const formater = FormaterOf(sample);
  for (auto _ : state) benchmark::DoNotOptimize(formater->WriteValue(value).data());
}

int RegisterAll() {
  for (const Sample& sample : kSamples) {
    const std::string name = std::string("formater/") + sample.name;
    benchmark::RegisterBenchmark((name + "/read").c_str(), &Read, sample);
    if (sample.value != nullptr) benchmark::RegisterBenchmark((name + "/write").c_str(), &Write, sample);
  }
  return 0;
}

[[maybe_unused]] const int kRegistered = RegisterAll();

}  // namespace
}  // namespace qv::bench
