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

}  // namespace

bool AddOddForm(std::string_view name, OddForms& forms) {
  for (const OddForm& form : kOddForms) {
    if (name != form.name) continue;
    form.apply(forms);
    return true;
  }
  return false;
}

std::string OddFormNames() {
  std::string names;
  for (const OddForm& form : kOddForms) names += (names.empty() ? "" : ", ") + std::string(form.name);
  return names;
}

}  // namespace qv::devservice
