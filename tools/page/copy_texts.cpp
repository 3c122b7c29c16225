#include "tools/page/copy_texts.h"

#include <cstdio>
#include <set>
#include <sstream>

#include "devservice/soap/namespaces.h"
#include "devservice/values/text.h"
#include "scriptwells/error.h"
#include "scriptwells/value.h"
#include "tools/page/page_error.h"

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif

namespace qv::cli {

namespace {

using devservice::EscapeXml;
using scriptwells::Type;
using scriptwells::Value;

constexpr char kFileType[] = "file";
constexpr char kDefaultLanguage[] = "JavaScript";

// One word of a POSIX shell.
std::string ShellWord(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

// A line as the literal of a text, in C++ and in Python.
std::string Literal(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    char code[8];
    static_cast<void>(std::snprintf(code, sizeof code, "\\%03o", byte));
    if (c == '"' || c == '\\')
      literal += std::string("\\") + c;
    else if (c == '\n')
      literal += "\\n";
    else if (byte < 0x20 || byte == 0x7F)
      literal += code;
    else
      literal += c;
  }
  return literal + "\"";
}

// A literal for each line, which both languages join.
std::string Literals(const std::string& text, const std::string& indent) {
  std::string literals;
  for (std::size_t at = 0; at < text.size() || literals.empty();) {
    const std::size_t end = text.find('\n', at);
    const std::size_t next = end == std::string::npos ? text.size() : end + 1;
    literals += (literals.empty() ? "" : "\n" + indent) + Literal(text.substr(at, next - at));
    at = next;
  }
  return literals;
}

std::string FileName(const PageParameter& parameter, const CopyPlace& place) {
  const auto found = place.fileNames.find(parameter.file);
  if (found == place.fileNames.end())
    throw PageError(400, "parameter '" + parameter.name + "': there is no such file");
  return found->second;
}

bool HasFiles(const PageScript& script) {
  for (const PageParameter& parameter : script.parameters)
    if (parameter.type == kFileType) return true;
  return false;
}

Value ValueOf(const PageParameter& parameter) {
  try {
    return scriptwells::Parse(parameter.type, parameter.value);
  } catch (const scriptwells::ConversionError& error) {
    throw PageError(400, "parameter '" + parameter.name + "': " + error.message());
  }
}

// It would end an argument of a command, and a literal of C++.
void CheckNull(const std::string& text, const std::string& what) {
  if (text.find('\0') != std::string::npos) throw PageError(400, what + " holds a null character");
}

// As a run refuses them.
void CheckParameters(const std::vector<PageParameter>& parameters) {
  std::set<std::string> names;
  for (const PageParameter& parameter : parameters) {
    const std::string what = "parameter '" + parameter.name + "'";
    if (parameter.name.empty()) throw PageError(400, "a parameter has no name");
    CheckNull(parameter.name, "the name of a parameter");
    if (!names.insert(parameter.name).second) throw PageError(400, what + " is given twice");
    if (parameter.type == kFileType) continue;
    CheckNull(parameter.value, what);
    static_cast<void>(ValueOf(parameter));
  }
}

// ---- Command line

std::string CommandLine(const PageScript& script, const CopyPlace& place) {
  std::string line;
  if (HasFiles(script) && !place.isOwnService && !place.registry.empty())
    line += "QV_REGISTRY=" + ShellWord(place.registry) + " ";
  if (place.needsPassword && !place.isOwnService) line += "SCRIPTWELLS_PASSWORD='PASSWORD' ";
  line += "scriptwells run";
  if (place.isOwnService)
    line += " --local";
  else
    line += " --server " + ShellWord(place.server) + " --user=" + ShellWord(place.user);
  if (script.language != kDefaultLanguage) line += " --language=" + ShellWord(script.language);
  for (const PageParameter& parameter : script.parameters) {
    if (parameter.name.find('=') != std::string::npos)
      return "# The command line takes no parameter whose name contains \"=\".\n";
    const std::string value = parameter.type == kFileType ? FileName(parameter, place) : parameter.value;
    line += " \\\n  --parameter=" + ShellWord(parameter.name + "=" + parameter.type + ":" + value);
  }
  return line + " \\\n  --eval=" + ShellWord(script.code) + "\n";
}

// ---- C++

std::string CppArguments(const PageScript& script, const CopyPlace& place) {
  std::string arguments;
  for (const PageParameter& parameter : script.parameters) {
    const bool isFile = parameter.type == kFileType;
    arguments += (arguments.empty() ? "" : ",\n         ") + ("{" + Literal(parameter.name)) + ", ";
    arguments +=
        isFile ? "scriptwells::File{" + Literal(FileName(parameter, place)) + "}}"
               : "scriptwells::Parse(" + Literal(parameter.type) + ", " + Literal(parameter.value) + ")}";
  }
  return arguments.empty() ? "" : ",\n        {" + arguments + "}";
}

std::string CppProgram(const PageScript& script, const CopyPlace& place) {
  std::ostringstream text;
  text << "// g++ -std=c++17 call.cpp $(pkg-config --cflags --libs scriptwells)\n"
          "#include <iostream>\n"
          "\n"
          "#include <scriptwells/scriptwells.h>\n"
          "\n"
          "int main() {\n"
          "  try {\n"
          "    scriptwells::Options options;\n";
  if (script.language != kDefaultLanguage)
    text << "    options.language = " << Literal(script.language) << ";\n";
  if (HasFiles(script) && !place.home.empty())
    text << "    options.homeDirectory = " << Literal(place.home) << ";  // has the upload scripts\n";
  text << "    scriptwells::Session session(" << Literal(place.server) << ", {" << Literal(place.user)
       << (place.needsPassword ? ", \"PASSWORD\"" : "") << "}, options);\n"
       << "    const scriptwells::Value answer = session.Run(\n        " << Literals(script.code, "        ")
       << CppArguments(script, place) << ");\n"
       << "    std::cout << answer.ToString() << \"\\n\";\n"
          "    return 0;\n"
          "  } catch (const std::exception& error) {\n"
          "    std::cerr << error.what() << \"\\n\";\n"
          "    return 1;\n"
          "  }\n"
          "}\n";
  return text.str();
}

// ---- Python

// How Python writes a value of the type: a function around its text, or around a literal.
struct PythonForm {
  Type type;
  const char* before;
  bool isLiteral;
  const char* after;
};

constexpr PythonForm kPythonForms[] = {
    {Type::kByte, "scriptwells.byte(", false, ")"},
    {Type::kShort, "scriptwells.short(", false, ")"},
    {Type::kInt, "scriptwells.int_(", false, ")"},
    {Type::kLong, "scriptwells.long(", false, ")"},
    {Type::kFloat, "scriptwells.float_(", false, ")"},
    {Type::kDouble, "scriptwells.double(", false, ")"},
    {Type::kString, "", true, ""},
    {Type::kDate, "datetime.date.fromisoformat(", true, ")"},
    {Type::kTime, "datetime.time.fromisoformat(", true, ")"},
    {Type::kDateTime, "datetime.datetime.fromisoformat(", true, ")"},
    {Type::kDuration, "scriptwells.Duration.parse(", true, ")"},
};

std::string PythonValue(const Value& value) {
  if (value.Is<bool>()) return value.As<bool>() ? "True" : "False";
  for (const PythonForm& form : kPythonForms)
    if (form.type == value.type())
      return form.before + (form.isLiteral ? Literal(value.ToString()) : value.ToString()) + form.after;
  return "None";
}

std::string PythonArguments(const PageScript& script, const CopyPlace& place) {
  std::string arguments;
  for (const PageParameter& parameter : script.parameters) {
    const bool isFile = parameter.type == kFileType;
    arguments += "            " + Literal(parameter.name) + ": " +
                 (isFile ? "pathlib.Path(" + Literal(FileName(parameter, place)) + ")"
                         : PythonValue(ValueOf(parameter))) +
                 ",\n";
  }
  return arguments.empty() ? "" : "        {\n" + arguments + "        },\n";
}

std::string PythonProgram(const PageScript& script, const CopyPlace& place) {
  std::string arguments = PythonArguments(script, place);
  std::string text;
  if (arguments.find(": datetime.") != std::string::npos) text += "import datetime\n";
  if (HasFiles(script)) text += "import pathlib\n";
  text += (text.empty() ? "" : "\n") + std::string("import scriptwells\n\n");
  text += "with scriptwells.connect(\n    " + Literal(place.server) + ",\n    user=" + Literal(place.user) +
          ",\n";
  if (place.needsPassword) text += "    password=\"PASSWORD\",\n";
  if (script.language != kDefaultLanguage) text += "    language=" + Literal(script.language) + ",\n";
  if (HasFiles(script) && !place.home.empty())
    text += "    home_directory=" + Literal(place.home) + ",  # has the upload scripts\n";
  return text + ") as session:\n    answer = session.run(\n        " + Literals(script.code, "        ") +
         ",\n" + arguments + "    )\n    print(answer)\n";
}

// ---- curl

const devservice::Namespaces& Spaces() {
  static const devservice::Namespaces spaces(QV_NAMESPACE_HOST);
  return spaces;
}

std::string ScriptElement(const std::string& language, const std::string& code) {
  const std::string document = "<Scriptwell Language=\"" + EscapeXml(language) + "\" xmlns=\"" +
                               Spaces().script + "\"><Code>" + EscapeXml(code) + "</Code></Scriptwell>";
  return "<Script xsi:type=\"xsd:string\">" + EscapeXml(document) + "</Script>";
}

// Text of a type, as the service reads it.
std::string ValueElement(const Value& value) {
  const std::string text = value.Is<bool>() ? (value.As<bool>() ? "1" : "0") : value.ToString();
  return "<Value xsi:type=\"xsd:" + std::string(ToString(value.type())) + "\">" + EscapeXml(text) +
         "</Value>";
}

std::string TicketVariable(std::size_t number) {
  return "ticket" + std::to_string(number);
}

// The content of Execute after the session's id, as a word of the shell.
std::string ExecuteWord(const PageScript& script) {
  std::string word = ScriptElement(script.language, script.code);
  if (script.parameters.empty()) return ShellWord(word);
  word += R"(<parameters xmlns:enc="http://schemas.xmlsoap.org/soap/encoding/" xmlns:sof=")" + Spaces().sof +
          "\" enc:arrayType=\"sof:Parameter[" + std::to_string(script.parameters.size()) + "]\">";
  std::string shell;
  std::size_t tickets = 0;
  for (const PageParameter& parameter : script.parameters) {
    word += R"(<Parameter><Name xsi:type="xsd:string">)" + EscapeXml(parameter.name) + "</Name>";
    if (parameter.type == kFileType) {
      word += R"(<Value xsi:type="FileTicket"><Id xsi:type="string">)";
      shell += ShellWord(word) + "\"$" + TicketVariable(++tickets) + "\"";
      word = "</Id></Value>";
    } else {
      word += ValueElement(ValueOf(parameter));
    }
    word += "</Parameter>";
  }
  return shell + ShellWord(word + "</parameters>");
}

std::string CurlUploads(const PageScript& script, const CopyPlace& place) {
  std::string text;
  std::size_t tickets = 0;
  for (const PageParameter& parameter : script.parameters) {
    if (parameter.type != kFileType) continue;
    text += "address=$(call Execute \"$usid\"" + ShellWord(ScriptElement(kDefaultLanguage, "uploadUrl()")) +
            " | text_of Execute)\n" +
            "curl --silent --show-error --fail --globoff --request POST --header \"usid: $id\" \\\n" +
            "  --upload-file " + ShellWord("./" + FileName(parameter, place)) + " \"$address\"\n" +
            TicketVariable(++tickets) + "=${address#*ticket=}\n";
  }
  return text;
}

std::string CurlScript(const PageScript& script, const CopyPlace& place) {
  const std::string& space = Spaces().service;
  const std::string login =
      "Username=" + place.user + ";" + (place.needsPassword ? "Password=PASSWORD;" : "");
  const std::string connection =
      "<ConnectionString xsi:type=\"xsd:string\">" + EscapeXml(login) + "</ConnectionString>";
  return "#!/bin/sh\n"
         "# Opens a session, runs the script, prints the answer as XML, and closes the session.\n"
         "set -eu\n"
         "service=" +
         ShellWord(place.server + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx") +
         "\n"
         "space=" +
         ShellWord(space) +
         "\n"
         "call() {  # METHOD CONTENT\n"
         "  printf '%s' '<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\"' \\\n"
         "    ' xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"' \\\n"
         "    ' xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><soap:Body>' \\\n"
         "    \"<$1 xmlns=\\\"$space\\\">$2</$1></soap:Body></soap:Envelope>\" |\n"
         "    curl --silent --show-error --header 'Content-Type: text/xml; charset=utf-8' \\\n"
         "      --header \"SOAPAction: $space#$1\" --data-binary @- \"$service\"\n"
         "}\n"
         "text_of() { sed -n \"s/.*<$1Result[^>]*>\\([^<]*\\)<.*/\\1/p\"; }\n"
         "id=$(call CreateUserSession " +
         ShellWord(connection) +
         " | text_of CreateUserSession)\n"
         "usid=\"<usid xsi:type=\\\"xsd:string\\\">$id</usid>\"\n" +
         CurlUploads(script, place) + "call Execute \"$usid\"" + ExecuteWord(script) +
         "\n"
         "echo\n"
         "call CloseUserSession \"$usid\" > /dev/null\n";
}

}  // namespace

CopyTexts MakeCopyTexts(const PageScript& script, const CopyPlace& place) {
  CheckNull(script.code, "the script");
  CheckNull(script.language, "the language");
  CheckParameters(script.parameters);
  return {CommandLine(script, place), CppProgram(script, place), PythonProgram(script, place),
          CurlScript(script, place)};
}

}  // namespace qv::cli
