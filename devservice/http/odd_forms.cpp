#include "devservice/http/odd_forms.h"

#include <iterator>

#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kOddPrefix = "/odd/";
constexpr std::chrono::milliseconds kSlowness{1000};

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
    {"refuse2", [](OddForms& forms) { forms.refusals = 2; }},
    {"latin1", [](OddForms& forms) { forms.charset = Charset::kLatin1; }},
    {"utf16", [](OddForms& forms) { forms.charset = Charset::kUtf16; }},
    {"strictxml", [](OddForms& forms) { forms.strictXml = true; }},
    {"zero", [](OddForms& forms) { forms.empty = true; }},
    {"refuse", [](OddForms& forms) { forms.refusals = OddForms::kAlways; }},
    {"slow", [](OddForms& forms) { forms.silence = kSlowness; }},
    {"drip", [](OddForms& forms) { forms.delivery = Delivery::kDrip; }},
    {"short", [](OddForms& forms) { forms.delivery = Delivery::kShort; }},
    {"long", [](OddForms& forms) { forms.delivery = Delivery::kLong; }},
};

// What scripts see of addresses for uploads.
constexpr OddForm kOddAddresses[] = {
    {"url-file", [](OddForms& forms) { forms.transfer.uploadUrl = "file:///etc/passwd"; }},
    {"url-crlf", [](OddForms& forms) { forms.transfer.ticketEnd = "\r\nX-Odd: 1"; }},
};

// What happens to files.
constexpr OddForm kOddTransfers[] = {
    {"upload-refused", [](OddForms& forms) { forms.transfer.upload = UploadEnd::kRefused; }},
    {"upload-drop", [](OddForms& forms) { forms.transfer.upload = UploadEnd::kDropped; }},
    {"upload-stall", [](OddForms& forms) { forms.transfer.upload = UploadEnd::kStalled; }},
    {"download-cut", [](OddForms& forms) { forms.transfer.download = Delivery::kCut; }},
    {"download-stall", [](OddForms& forms) { forms.transfer.download = Delivery::kStall; }},
    {"download-long", [](OddForms& forms) { forms.transfer.download = Delivery::kLong; }},
    {"download-short", [](OddForms& forms) { forms.transfer.download = Delivery::kShort; }},
    {"download-no-length", [](OddForms& forms) { forms.transfer.download = Delivery::kCloseDelimited; }},
    {"download-no-name", [](OddForms& forms) { forms.transfer.unnamed = true; }},
    {"url-redirect", [](OddForms& forms) { forms.transfer.redirected = true; }},
    // Names that would take a file out of its directory, and invalid names.
    {"download-name-dotdot", [](OddForms& forms) { forms.transfer.fileName = ".."; }},
    {"download-name-dot", [](OddForms& forms) { forms.transfer.fileName = "."; }},
    {"download-name-slash", [](OddForms& forms) { forms.transfer.fileName = "a/b"; }},
    {"download-name-backslash", [](OddForms& forms) { forms.transfer.fileName = "a\\b"; }},
    {"download-name-empty", [](OddForms& forms) { forms.transfer.fileName = ""; }},
    {"download-name-nul", [](OddForms& forms) { forms.transfer.fileName = std::string_view("a\0b", 3); }},
};

constexpr TableNames kOtherTableNames{"a", "b", "c", "d", "e", "f"};

// What happens to tables.
constexpr OddForm kOddTables[] = {
    {"table-sof", [](OddForms& forms) { forms.table.type = "sof:RecordList"; }},
    {"table-other-type", [](OddForms& forms) { forms.table.type = "any:MyRECORDLIST2"; }},
    {"table-other-names", [](OddForms& forms) { forms.table.names = &kOtherTableNames; }},
    {"table-whitespace", [](OddForms& forms) { forms.table.gap = "\n  "; }},
    {"table-unknown-type", [](OddForms& forms) { forms.table.firstColumnType = "xsd:decimal"; }},
    {"table-no-headers", [](OddForms& forms) { forms.table.noHeaders = true; }},
    {"table-no-schema", [](OddForms& forms) { forms.table.noSchema = true; }},
    {"table-no-records", [](OddForms& forms) { forms.table.noRecords = true; }},
    {"table-no-names", [](OddForms& forms) { forms.table.noColumnNames = true; }},
    {"table-no-types", [](OddForms& forms) { forms.table.noColumnTypes = true; }},
    {"table-extra-cell", [](OddForms& forms) { forms.table.extraCell = true; }},
    {"table-missing-cell", [](OddForms& forms) { forms.table.missingCell = true; }},
    {"table-cut", [](OddForms& forms) { forms.table.cut = true; }},
};

// Texts that readers accept in their own way, or refuse.
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

struct FormGroup {
  const char* name;
  OddUse use;
  const OddForm* begin;
  const OddForm* end;
};

constexpr FormGroup kGroups[] = {
    {"answers", OddUse::kCalls, std::begin(kOddForms), std::end(kOddForms)},
    {"tables", OddUse::kCalls, std::begin(kOddTables), std::end(kOddTables)},
    {"addresses", OddUse::kCalls, std::begin(kOddAddresses), std::end(kOddAddresses)},
    {"files", OddUse::kFiles, std::begin(kOddTransfers), std::end(kOddTransfers)},
};

}  // namespace

bool AddOddForm(std::string_view name, OddForms& forms) {
  for (const FormGroup& group : kGroups) {
    for (const OddForm* form = group.begin; form != group.end; ++form) {
      if (name != form->name) continue;
      form->apply(forms);
      return true;
    }
  }
  for (const OddValue& value : kOddValues) {
    if (name != value.name) continue;
    forms.value = &value;
    return true;
  }
  return false;
}

std::vector<OddName> OddNames() {
  std::vector<OddName> names;
  for (const FormGroup& group : kGroups)
    for (const OddForm* form = group.begin; form != group.end; ++form)
      names.push_back({form->name, group.name, group.use});
  for (const OddValue& value : kOddValues) names.push_back({value.name, "values", OddUse::kCalls});
  return names;
}

std::vector<std::string_view> SplitOddNames(std::string_view names) {
  std::vector<std::string_view> parts;
  while (!names.empty()) {
    const std::size_t end = names.find('+');
    parts.push_back(names.substr(0, end));
    names = end == std::string_view::npos ? std::string_view{} : names.substr(end + 1);
  }
  return parts;
}

OddForms ReadOddForms(std::string_view path, std::string& unknown) {
  OddForms forms;
  if (!StartsWith(path, kOddPrefix)) return forms;
  std::string_view names = path.substr(kOddPrefix.size());
  names = names.substr(0, names.find('/'));
  for (const std::string_view name : SplitOddNames(names))
    if (!AddOddForm(name, forms)) unknown = name;
  return forms;
}

std::string OddFormNames() {
  std::string names;
  for (const OddName& odd : OddNames()) names += (names.empty() ? "" : ", ") + std::string(odd.name);
  return names;
}

}  // namespace qv::devservice
