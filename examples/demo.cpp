// A tour of the library: starts the development service on a free port, opens a session, runs
// examples/hello.js once per type and shows the typed answers, a link and a fault, runs the script document
// examples/document.xml, shows a table, uploads a file, downloads the script's result, and closes the
// session.
//   demo [SCRIPT]
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include <scriptwells/scriptwells.h>
#include <scriptwells/testing.h>

namespace {

using scriptwells::Argument;
using scriptwells::Arguments;
using scriptwells::File;
using scriptwells::Session;
using scriptwells::Value;

const std::vector<Argument> kSamples = {
    {"aByte", scriptwells::Byte(41)},
    {"aShort", scriptwells::Short(1233)},
    {"anInt", 2024},
    {"aLong", 5'000'000'000},
    {"aBoolean", false},
    {"aFloat", 0.125F},
    {"aDouble", 3.14},
    {"aString", "W\u00F6rld \u2603"},
    {"aDate", scriptwells::Date{2024, 2, 28}},
    {"aTime", scriptwells::Time{10, 15, 30, 0}},
    {"aDatetime", scriptwells::DateTime::Parse("2024-02-28T10:15:30")},
    {"aDuration", scriptwells::Duration::Parse("P1DT2H")},
};

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file || text.str().empty()) throw std::runtime_error("cannot read " + path.string());
  return text.str();
}

// Every sample, and the name of the one that the script must return.
Arguments ArgumentsFor(const std::string& pick) {
  Arguments arguments = {{"pick", pick}};
  for (const Argument& sample : kSamples) arguments.Add(sample);
  return arguments;
}

// The text with blanks up to the column's width, in characters.
std::string Padded(const std::string& text, std::size_t width) {
  const auto isStart = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  const auto characters = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isStart));
  return text + std::string(characters < width ? width - characters : 1, ' ');
}

void ShowRow(const std::string& name, const std::string& type, const std::string& sent,
             const std::string& answer, const std::string& value) {
  std::cout << Padded(name, 10) << Padded(type, 9) << Padded(sent, 20) << Padded(answer, 9) << value << "\n";
}

void ShowAnswers(Session& session, const std::string& script) {
  std::cout << "\nOne answer per type:\n\n";
  ShowRow("NAME", "TYPE", "SENT", "ANSWER", "VALUE");
  for (const Argument& sample : kSamples) {
    const Value& sent = *sample.GetValue();
    const Value answer = session.Run(script, ArgumentsFor(sample.Name()));
    ShowRow(sample.Name(), ToString(sent.type()), sent.ToString(), ToString(answer.type()),
            answer.ToString());
  }
  std::cout << "\nA byte arrives as 0 and a long as an empty value: existing clients read them so, and this "
               "one keeps "
               "to it.\n";
}

void ShowLink(Session& session, const std::string& script) {
  const auto link = session.Run(script, ArgumentsFor("link")).As<scriptwells::Link>();
  std::cout << "\nA link that a script answers arrives as a link whose address is \"" << link.url
            << "\": existing clients never keep it.\n";
}

void ShowDocument(Session& session) {
  std::cout << "\nThe script document examples/document.xml answers:\n\n  "
            << session.RunDocument(DEMO_DOCUMENT, {{"who", "W\u00F6rld \u2603"}}) << "\n";
}

constexpr char kTableScript[] = R"([
  {city: "Rome", people: 2748109, founded: typed.date("0001-01-01"), density: 2129.4},
  {city: "Brasilia", people: 2817381, founded: typed.date("1960-04-21"), density: 489.1},
])";

void ShowTable(Session& session) {
  const scriptwells::Table table = session.Run(kTableScript).AsTable();
  std::cout << "\nA script that answers an array of objects answers a table:\n\n" << table;
  std::cout << "\n\nThe same as CSV:\n\n";
  table.WriteCsv(std::cout);
}

void ShowFault(Session& session, const std::string& script) {
  std::cout << "\nAsking for a parameter that is not there:\n\n";
  try {
    session.Run(script, ArgumentsFor("aDream"));
    throw std::runtime_error("the server reported no fault");
  } catch (const scriptwells::ScriptError& fault) {
    std::cout << "  fault " << fault.number().value_or(0) << ": " << fault.message() << "\n";
  }
}

// The answer is the URL of another file.
void ShowFiles(Session& session, const std::string& script, const std::filesystem::path& directory) {
  const std::filesystem::path notes = directory / "notes.txt";
  std::ofstream(notes) << "W\u00F6rld\n\u2603\n";
  const Value url = session.Run(script, {{"pick", "doc"}, {"doc", File{notes}}});
  const std::filesystem::path saved = session.Download(url.As<std::string>(), directory);
  std::cout << "\nThe script numbers the lines of " << notes.string() << " in\n"
            << saved.string() << ":\n\n"
            << ReadFile(saved);
}

void RunDemo(const std::string& scriptPath) {
  const std::string script = ReadFile(scriptPath);
  const scriptwells::DevelopmentService service;
  std::cout << "The development service runs at " << service.Url() << "\n";
  Session session = service.Connect();
  std::cout << "The session is open.\n";
  ShowAnswers(session, script);
  ShowLink(session, script);
  ShowDocument(session);
  ShowTable(session);
  ShowFiles(session, script, service.HomeDirectory());
  ShowFault(session, script);
  session.Close();
  std::cout << "\nThe session is closed.\n"
            << "\nTry: build/demo/tools/scriptwells run --local -e '6 * 7'\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    RunDemo(argc > 1 ? argv[1] : DEMO_SCRIPT);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "demo: " << error.what() << "\n";
    return 1;
  }
}
