// The odd answers that a path or a test can ask for, as data: each name is listed here once.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "devservice/http/http_message.h"
#include "devservice/values/table_forms.h"

namespace qv::devservice {

enum class Charset { kUtf8, kLatin1, kUtf16 };

// A value that no script can answer with.
struct OddValue {
  const char* name;
  const char* type;  // xsi:type
  const char* text;  // unescaped
};

// What happens to an upload.
enum class UploadEnd { kKept, kRefused, kDropped, kStalled };

// How transfers of files differ. These names do not change answers to SOAP requests.
struct TransferForms {
  UploadEnd upload = UploadEnd::kKept;
  bool redirected = false;  // uploads and downloads are sent to another host
  Delivery download = Delivery::kPlain;
  bool unnamed = false;                      // no Content-Disposition
  std::optional<std::string_view> fileName;  // in place of the name; lives for the whole process
  const char* uploadUrl = nullptr;           // in place of what uploadUrl() answers
  const char* ticketEnd = "";                // put after the ticket
};

// How an answer differs from an ordinary one.
struct OddForms {
  static constexpr int kAlways = -1;

  bool prefixedAnswer = false;  // "NS2:" before the answer element
  bool leadingSpace = false;    // white space in front of the answer element
  bool faultStatus500 = false;
  bool spoiled = false;  // one byte makes the XML ill-formed
  bool html = false;     // a page with status 404 in place of the answer
  bool empty = false;    // Content-Length: 0
  int refusals = 0;      // so many requests of this path, the first ones, are dropped; or kAlways
  bool delayed = false;
  std::chrono::milliseconds silence{0};  // before the first byte
  bool strictXml = false;                // requests that are not well-formed XML are refused
  const OddValue* value = nullptr;       // in place of the script's value; lives for the whole process
  Charset charset = Charset::kUtf8;
  Delivery delivery = Delivery::kPlain;
  TransferForms transfer;
  TableForms table;
};

// What a name changes: answers to SOAP requests, or transfers of files.
enum class OddUse { kCalls, kFiles };

struct OddName {
  std::string_view name;   // these live for the whole process
  std::string_view group;  // "answers", "tables", "values", "addresses" or "files"
  OddUse use = OddUse::kCalls;
};

// The forms that a path asks for by starting with "/odd/NAME+NAME/". A name that does not exist is put into
// `unknown`.
OddForms ReadOddForms(std::string_view path, std::string& unknown);

// Adds the form with this name to `forms`; false for an unknown name.
bool AddOddForm(std::string_view name, OddForms& forms);

// All names, each once.
std::vector<OddName> OddNames();

// The parts of "cut+ns2"; may be empty texts.
std::vector<std::string_view> SplitOddNames(std::string_view names);

// The names for a message, separated by ", ".
std::string OddFormNames();

}  // namespace qv::devservice
