#include "tools/inspect/message_outline.h"

#include <algorithm>

#include "tools/inspect/finding.h"
#include "tools/inspect/value_rules.h"

namespace qv::cli {

namespace {

constexpr std::size_t kMostLines = 200;

class Outline {
 public:
  explicit Outline(std::vector<OutlineLine>& lines) : lines_(lines) {}

  void Add(std::size_t depth, const std::string& label, const std::string& text, const XmlNode& node) {
    if (lines_.size() < kMostLines)
      lines_.push_back({depth, label, text, false, node.begin});
    else
      ++left_;
  }
  void End() {
    if (left_ > 0) lines_.push_back({0, "left out", std::to_string(left_) + " more lines", false, 0});
  }

 private:
  std::vector<OutlineLine>& lines_;
  std::size_t left_ = 0;
};

const XmlNode* ChildCalled(const XmlNode& parent, std::string_view local) {
  for (const XmlNode& child : parent.children)
    if (child.IsElement() && LocalName(child.name) == local) return &child;
  return nullptr;
}

std::string AttributeOf(const XmlNode& node, std::string_view local) {
  for (const auto& [name, value] : node.attributes)
    if (LocalName(name) == local) return value;
  return {};
}

// "value xsd:int"
std::string Typed(const std::string& label, const XmlNode& value) {
  const std::string type = AttributeOf(value, "type");
  return label + (type.empty() ? " without a type" : " " + type);
}

// A ticket of a file is an element in the value.
std::string TextOf(const XmlNode& value) {
  const XmlNode* inner = value.FirstElement();
  return inner == nullptr ? value.OwnText() : inner->OwnText();
}

// The script is an XML document as text: its language and code, where it is one.
void AddScript(const XmlNode& script, Outline& outline) {
  const XmlTree document = ReadXml(script.OwnText());
  const XmlNode* code = document.root ? ChildCalled(*document.root, "Code") : nullptr;
  if (code == nullptr) return outline.Add(2, "script", script.OwnText(), script);
  outline.Add(2, "script in " + AttributeOf(*document.root, "Language"), code->OwnText(), script);
}

void AddRequest(const XmlNode& method, Outline& outline) {
  outline.Add(1, "method", method.name, method);
  for (const XmlNode& part : method.children) {
    if (!part.IsElement()) continue;
    if (LocalName(part.name) == "Script") {
      AddScript(part, outline);
    } else if (LocalName(part.name) == "parameters") {
      for (const XmlNode& parameter : part.children) {
        const XmlNode* name = ChildCalled(parameter, "Name");
        const XmlNode* value = ChildCalled(parameter, "Value");
        if (name != nullptr && value != nullptr)
          outline.Add(2, Typed("parameter " + name->OwnText(), *value), TextOf(*value), *value);
      }
    } else {
      outline.Add(2, part.name, part.OwnText(), part);
    }
  }
}

std::string CellsOf(const XmlNode& row) {
  std::string text;
  for (const XmlNode& cell : row.children)
    if (cell.IsElement()) text += (text.empty() ? "" : ", ") + cell.OwnText();
  return text;
}

// Rows are columns in the first block of a table.
void AddRows(const XmlNode& rows, bool areColumns, Outline& outline) {
  for (const XmlNode& row : rows.children) {
    if (!row.IsElement()) continue;
    if (areColumns)
      outline.Add(3, "column " + AttributeOf(row, "type"), AttributeOf(row, "name"), row);
    else
      outline.Add(3, "row", CellsOf(row), row);
  }
}

void AddTable(const XmlNode& table, Outline& outline) {
  std::size_t block = 0;
  for (const XmlNode& child : table.children) {
    if (!child.IsElement()) continue;
    const XmlNode* rows = block == 0 ? child.FirstElement() : &child;
    if (rows != nullptr) AddRows(*rows, block == 0, outline);
    ++block;
  }
}

void AddFault(const XmlNode& fault, Outline& outline) {
  outline.Add(1, "fault", fault.name, fault);
  for (const XmlNode& part : fault.children) {
    if (!part.IsElement()) continue;
    const std::string text = part.OwnText();
    const std::size_t object = text.find("<ErrorObject");
    const XmlTree tree =
        object == std::string::npos ? XmlTree() : ReadXml(std::string_view(text).substr(object));
    if (!tree.root) {
      outline.Add(2, part.name, text, part);
      continue;
    }
    for (const XmlNode& field : tree.root->children)
      if (field.IsElement()) outline.Add(2, field.name, field.OwnText(), part);
  }
}

void AddAnswer(const XmlNode& answer, const std::string& method, Outline& outline) {
  if (LocalName(answer.name) == "Fault") return AddFault(answer, outline);
  outline.Add(1, "answer", answer.name, answer);
  for (const XmlNode& value : answer.children) {
    if (!value.IsElement()) continue;
    const bool isTable = ReadingOf(AttributeOf(value, "type")) == Reading::kTable;
    const std::string label = method == "CreateUserSession" ? "session id" : Typed("value", value);
    outline.Add(2, label, isTable ? std::string() : value.OwnText(), value);
    if (isTable) AddTable(value, outline);
  }
}

void AddHead(const std::string& head, std::vector<OutlineLine>& lines) {
  for (std::size_t begin = 0; begin < head.size();) {
    const std::size_t end = std::min(head.find('\n', begin), head.size());
    std::string line = head.substr(begin, end - begin);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t colon = begin == 0 ? std::string::npos : line.find(':');
    const std::size_t value =
        std::min(line.find_first_not_of(": ", std::min(colon, line.size())), line.size());
    const bool isField = colon != std::string::npos;
    if (!line.empty() && lines.size() < kMostLines)
      lines.push_back(
          {1, isField ? line.substr(0, colon) : "start", isField ? line.substr(value) : line, true, begin});
    begin = end + 1;
  }
}

void LearnFrom(const XmlNode& node, KnownSecrets& secrets) {
  constexpr std::string_view kPassword = "Password=";
  const std::string_view name = LocalName(node.name);
  const std::string text = node.OwnText();
  if (name == "usid" || AttributeOf(node, "type") == "FileTicket") secrets.Add(TextOf(node));
  if (name == "ConnectionString")
    if (const std::size_t at = text.find(kPassword); at != std::string::npos)
      secrets.Add(
          std::string_view(text).substr(at + kPassword.size(), text.find(';', at) - at - kPassword.size()));
  if (name == "CreateUserSessionResponse" && node.FirstElement() != nullptr)
    secrets.Add(node.FirstElement()->OwnText());
  for (const XmlNode& child : node.children) LearnFrom(child, secrets);
}

// What comes after the mark, up to the end of a word: "...?ticket=1234".
void LearnAfter(std::string_view mark, std::string_view text, KnownSecrets& secrets) {
  for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark, at + 1)) {
    const std::size_t begin = at + mark.size();
    secrets.Add(text.substr(begin, text.find_first_of("&=<>; \"'\r\n", begin) - begin));
  }
}

// The text of elements with this name, where there is no tree.
void LearnElements(std::string_view name, std::string_view text, KnownSecrets& secrets) {
  for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
    const std::size_t begin = text.find('>', at);
    if (begin == std::string_view::npos) return;
    secrets.Add(text.substr(begin + 1, text.find('<', begin) - begin - 1));
  }
}

}  // namespace

std::vector<OutlineLine> OutlineOf(const SavedMessage& message) {
  std::vector<OutlineLine> lines;
  AddHead(message.head, lines);
  Outline outline(lines);
  const XmlNode* content = ContentOf(message);
  if (message.tree.root) outline.Add(0, "envelope", message.tree.root->name, *message.tree.root);
  if (content != nullptr && message.isRequest) AddRequest(*content, outline);
  if (content != nullptr && !message.isRequest) AddAnswer(*content, message.method, outline);
  outline.End();
  return lines;
}

void LearnSecrets(const SavedMessage& message, KnownSecrets& secrets) {
  for (const char* name : {"usid", "Authorization", "Proxy-Authorization", "Cookie", "Set-Cookie"}) {
    HeaderLine line;
    if (FindHeader(message.head, name, line)) secrets.Add(line.value);
  }
  if (message.tree.root) LearnFrom(*message.tree.root, secrets);
  LearnAfter("ticket=", message.head, secrets);
  LearnAfter("ticket=", message.body, secrets);
  if (message.tree.root) return;
  LearnAfter("Password=", message.body, secrets);
  for (const char* name : {"<usid", ":usid", "CreateUserSessionResult", "<Id"})
    LearnElements(name, message.body, secrets);
}

}  // namespace qv::cli
