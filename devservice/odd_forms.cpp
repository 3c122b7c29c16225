#include "devservice/odd_forms.h"

namespace qv::devservice {
namespace {

struct OddForm {
  const char* name;
  void (*apply)(OddForms& forms);
};

constexpr OddForm kOddForms[] = {
    {"ns2", [](OddForms& forms) { forms.prefixedAnswer = true; }},
    {"status500", [](OddForms& forms) { forms.faultStatus500 = true; }},
    {"nolength", [](OddForms& forms) { forms.delivery = Delivery::kCloseDelimited; }},
    {"chunked", [](OddForms& forms) { forms.delivery = Delivery::kChunked; }},
    {"cut", [](OddForms& forms) { forms.delivery = Delivery::kCut; }},
    {"stall", [](OddForms& forms) { forms.delivery = Delivery::kStall; }},
    {"stallhead", [](OddForms& forms) { forms.delayed = true; }},
    {"whitespace", [](OddForms& forms) { forms.leadingSpace = true; }},
    {"html", [](OddForms& forms) { forms.html = true; }},
    {"spoil", [](OddForms& forms) { forms.spoiled = true; }},
    {"refuse2", [](OddForms& forms) { forms.refuseTwice = true; }},
    {"latin1", [](OddForms& forms) { forms.charset = Charset::kLatin1; }},
    {"utf16", [](OddForms& forms) { forms.charset = Charset::kUtf16; }},
    {"zero", [](OddForms& forms) { forms.empty = true; }},
};

// Texts that readers accept in ways of their own, or refuse.
constexpr OddValue kOddValues[] = {
    {"url-empty-parts", "sof:url", "<URL/><C/>"},
    {"url-no-caption", "sof:url", "<URL>u</URL><C/>"},
    {"url-no-marks", "sof:url", "http://quorvane.example/"},
    {"url-nothing", "sof:url", ""},
    {"bad-date", "xsd:date", "2024-02-30"},
    {"short-date", "xsd:date", "2024-03"},
    {"empty-date", "xsd:date", ""},
    {"date-with-time", "xsd:date", "2024-03-05T10:15:30Z"},
    {"bad-time", "xsd:time", "25:00:00Z"},
    {"short-time", "xsd:time", "10:15"},
    {"bad-datetime", "xsd:dateTime", "2024-03T10:15:30Z"},
    {"datetime-with-offset", "xsd:dateTime", "2024-03-05T10:15:30+02:00"},
    {"datetime-with-day-offset", "xsd:dateTime", "2024-03-05T10:15:30+24:00"},
    {"bad-duration", "xsd:duration", "p1d"},
    {"loose-duration", "xsd:duration", "P3D1Y"},
    {"exponent-duration", "xsd:duration", "PT1.23457e+007S"},
    {"unknown-type", "xsd:decimal", "1.5"},
};

}  // namespace

bool AddOddForm(std::string_view name, OddForms& forms) {
  for (const OddForm& form : kOddForms) {
    if (name != form.name) continue;
    form.apply(forms);
    return true;
  }
  for (const OddValue& value : kOddValues) {
    if (name != value.name) continue;
    forms.value = &value;
    return true;
  }
  return false;
}

std::string OddFormNames() {
  std::string names;
  for (const OddForm& form : kOddForms) names += (names.empty() ? "" : ", ") + std::string(form.name);
  for (const OddValue& value : kOddValues) names += ", " + std::string(value.name);
  return names;
}

}  // namespace qv::devservice
