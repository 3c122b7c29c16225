#include "face/tape/typed_values.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "components/http/body_charset.h"
#include "components/http/http_error.h"
#include "components/http/response_head.h"
#include "face/exchange/escaped_text.h"
#include "face/table/table_access.h"
#include "face/text/json_text.h"
#include "face/text/unsafe_characters.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/value_types_hold.h"
#include "scriptwells/value.h"
#include "soap/soap_call.h"
#include "soap/soap_response.h"
#include "xml/xml_library_guard.h"

namespace scriptwells {

namespace {

constexpr std::size_t kMostText = 400;  // of a text, in bytes
constexpr std::size_t kMostRows = 5;    // of a table
constexpr std::uint32_t kFaultBits = 0x80040000;

std::string ShownBytes(const TapeText& text) {
  return JoinedBytes(text, [](const TapePiece& piece) { return "[" + piece.mask + "]"; });
}

std::string Quoted(const std::string& text) {
  if (text.size() <= kMostText) return JsonText(text);
  std::size_t size = kMostText;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  return JsonText(text.substr(0, size)) + "... (" + std::to_string(text.size()) + " bytes)";
}

// Reads what the client itself wrote: nothing in it is nested, and no text holds a "<".
class RequestReader {
 public:
  explicit RequestReader(std::string_view xml) : rest_(xml) {}

  // The text of the next element that begins like this; false if there is none.
  bool Next(std::string_view start, std::string* text, std::string* tag = nullptr) {
    const std::size_t at = rest_.find(start);
    const std::size_t begin = rest_.find('>', std::min(at, rest_.size()));
    const std::size_t end = rest_.find('<', std::min(begin, rest_.size()));
    if (end == std::string_view::npos) return false;
    if (tag != nullptr) *tag = rest_.substr(at, begin - at);
    *text = DecodeXmlText(rest_.substr(begin + 1, end - begin - 1));
    rest_.remove_prefix(end);
    return true;
  }

 private:
  std::string_view rest_;
};

// Of the tag of a value, such as xsi:type="xsd:int".
std::string TypeIn(const std::string& tag) {
  const std::size_t begin = tag.find('"');
  if (begin == std::string::npos) return {};
  const std::string name = tag.substr(begin + 1, tag.find('"', begin + 1) - begin - 1);
  return name.substr(name.find(':') + 1);
}

// The code of the script document that the client writes around it, or all of it.
std::string CodeIn(const std::string& document) {
  constexpr std::string_view kStart = "<Code>";
  const std::size_t begin = document.find(kStart);
  const std::size_t end = document.rfind("</Code>");
  if (begin == std::string::npos || end == std::string::npos || end < begin + kStart.size()) return document;
  return DecodeXmlText(std::string_view(document).substr(begin + kStart.size(), end - begin - kStart.size()));
}

std::string ArgumentText(RequestReader& reader, const std::string& name) {
  std::string text;
  std::string tag;
  if (!reader.Next("<Value ", &text, &tag)) return name + " = nothing";
  const std::string type = TypeIn(tag);
  if (type == "FileTicket") {
    reader.Next("<Id ", &text);
    return name + " = file " + text;
  }
  return name + " = " + type + " " + (type == "string" ? Quoted(text) : EscapeInLine(text));
}

// The first rows, as JSON.
void AddTable(const Table& table, std::vector<std::string>* lines) {
  lines->push_back("table, " + std::to_string(table.size()) + " rows");
  std::string columns;
  for (const Column& column : table.Columns())
    columns += (columns.empty() ? "" : ", ") + EscapeInLine(column.name) + " " + column.typeName;
  lines->push_back("  " + columns);
  for (std::size_t i = 0; i < std::min(table.size(), kMostRows); ++i) {
    std::string cells;
    for (std::size_t column = 0; column < table[i].size(); ++column)
      cells += (cells.empty() ? "" : ",") + table[i].At(column).Get().ToJson();
    lines->push_back("  [" + cells + "]");
  }
  if (table.size() > kMostRows) lines->emplace_back("  ...");
}

std::vector<std::string> TypedValue(const Value& value) {
  std::vector<std::string> lines = ShownValue(value);
  lines.front().insert(0, "= ");
  return lines;
}

std::string ShownFailure(const qv::EQvException& fault) {
  const auto code = static_cast<std::uint32_t>(fault.Code());
  const std::string number = code == 0 ? "" : std::to_string(code & ~kFaultBits) + " ";
  return "= failure " + number + Quoted(fault.what());
}

Value ReadAnswer(const qv::WideString& text) {
  const qv::XmlLibraryGuardScope library;
  const qv::ValueTypesHold types;
  try {
    qv::CSOAPResponse response;
    response.SetText(u"Execute", text, false);
    response.ParseText();
    return AnswerOf(response.Value());
  } catch (const Error&) {
    throw;
  } catch (...) {
    qv::RethrowAsCallFailure();
  }
}

// False for a text that is not a head.
bool Parse(const TapeText& text, qv::ResponseHead* head) {
  try {
    head->Parse(ShownBytes(text));
    return true;
  } catch (const qv::HttpFailure&) {
    return false;
  }
}

}  // namespace

std::vector<std::string> ShownValue(const Value& value) {
  if (value.IsEmpty()) return {"empty"};
  std::vector<std::string> lines;
  if (value.Is<Table>())
    AddTable(value.AsTable(), &lines);
  else
    lines.push_back(
        std::string(ToString(value.type())) + " " +
        (value.Is<std::string>() ? Quoted(value.As<std::string>()) : EscapeInLine(value.ToString())));
  return lines;
}

std::vector<std::string> TypedArguments(const TapeText& body) {
  const std::string xml = ShownBytes(body);
  std::vector<std::string> lines;
  RequestReader reader(xml);
  std::string text;
  if (reader.Next("<Script ", &text)) lines.push_back("script = " + Quoted(CodeIn(text)));
  while (reader.Next("<Name ", &text)) lines.push_back(ArgumentText(reader, EscapeInLine(text)));
  return lines;
}

std::vector<std::string> TypedAnswer(Purpose purpose, const TapeText& head, const TapeText& body) {
  if ((purpose != Purpose::kExecute && purpose != Purpose::kUploadAddress) || body.empty()) return {};
  const std::string bytes = ShownBytes(body);
  try {
    qv::ResponseHead parsed;
    std::string_view type;
    if (Parse(head, &parsed)) parsed.Find("Content-Type", &type);
    const qv::BodyCharset charset(type, bytes);
    return TypedValue(ReadAnswer(charset.Decode(std::string_view(bytes).substr(charset.MarkSize(bytes)))));
  } catch (const qv::EQvException& fault) {
    return {ShownFailure(fault)};
  } catch (const Error& error) {
    return {"= failure " + Quoted(error.message())};
  }
}

}  // namespace scriptwells
