// The odd answers that a path can ask for, as data.
#pragma once

#include <string>
#include <string_view>

#include "devservice/http_server.h"

namespace qv::devservice {

enum class Charset { kUtf8, kLatin1, kUtf16 };

// A value that no script can answer with.
struct OddValue {
  const char* name;
  const char* type;  // xsi:type
  const char* text;  // unescaped
};

// What is to differ from an ordinary answer.
struct OddForms {
  bool prefixedAnswer = false;  // "NS2:" before the answer element
  bool leadingSpace = false;    // white space in front of the answer element
  bool faultStatus500 = false;
  bool spoiled = false;      // one byte makes the XML ill-formed
  bool html = false;         // a page with status 404 in place of the answer
  bool empty = false;        // Content-Length: 0
  bool refuseTwice = false;  // the first two requests of this path are dropped
  bool delayed = false;
  const OddValue* value = nullptr;  // in place of the script's value; lives for the whole process
  Charset charset = Charset::kUtf8;
  Delivery delivery = Delivery::kPlain;
};

// Adds the form with this name to `forms`; false when there is none.
bool AddOddForm(std::string_view name, OddForms& forms);

// The names, for people, separated by ", ".
std::string OddFormNames();

}  // namespace qv::devservice
