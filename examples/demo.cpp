// A host program with its own service: starts the development service on a free port, opens a session with a
// connection string, runs examples/hello.js once per type and shows the typed answers, a link and a fault,
// runs the script document examples/document.xml, shows a table, uploads a file, downloads the script's
// result, and closes the session.
//   demo [SCRIPT]
#include <clocale>
#include <fstream>
#include <iostream>
#include <sstream>

#include "devservice/service.h"
#include "qvscriptwells/qvscriptwells.h"
#include "tools/output/answer_format.h"
#include "tools/output/record_list_output.h"
#include "tools/output/text_table.h"
#include "tools/service/local_service.h"
#include "tools/service/private_home.h"
#include "tools/values/object_text.h"

namespace {

struct Sample {
  const char16_t* name;
  qv::Variant value;
};

std::vector<Sample> Samples() {
  return {
      {u"aByte", qv::Variant::FromByte(41)},
      {u"aShort", qv::Variant::FromShort(1233)},
      {u"anInt", qv::Variant::FromInt(2024)},
      {u"aLong", qv::Variant::FromLong(5000000000)},
      {u"aBoolean", qv::Variant::FromBool(false)},
      {u"aFloat", qv::Variant::FromFloat(0.125F)},
      {u"aDouble", qv::Variant::FromDouble(3.14)},
      {u"aString", qv::Variant::FromString(u"W\u00F6rld \u2603")},
      {u"aDate", qv::Variant::FromDate(qv::EncodeDate(2024, 2, 28))},
      {u"aTime", qv::Variant::FromDate(qv::EncodeTime(10, 15, 30, 0))},
      {u"aDatetime", qv::Variant::FromDate(qv::EncodeDate(2024, 2, 28) + qv::EncodeTime(10, 15, 30, 0))},
      {u"aDuration", qv::Variant::FromObject(qv::CreateDuration(u"P1DT2H").get())},
  };
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file || text.str().empty()) throw std::runtime_error("cannot read " + path);
  return text.str();
}

// One session; every failure is a _com_error.
class Client {
 public:
  explicit Client(const std::string& server)
      : provider_(qv::CreateSimpleServiceProvider(qv::CreateSimpleHost({u"demo"}).get())),
        client_(qv::CreateQvScriptwells(qv::FromUtf8(server), u"", provider_.get())),
        model_(qv::ModelOf(client_.get())) {}

  void Open(const qv::WideString& connectionString) { Check(model_->CreateUserSession(connectionString)); }
  // The path as the library returns it.
  qv::WideString Download(const qv::WideString& url, const qv::WideString& directory) {
    qv::WideString path;
    Check(model_->DownloadFile(url, directory, &path));
    return path;
  }
  void Close() { Check(model_->CloseUserSession()); }

  qv::Variant Run(const qv::WideString& script, const qv::IParametersPtr& parameters) {
    qv::Variant answer;
    Check(model_->Execute(u"JavaScript", script, parameters.get(), &answer));
    return answer;
  }

  qv::Variant RunDocument(const qv::WideString& path, const qv::IParametersPtr& parameters) {
    qv::Variant answer;
    Check(model_->ExecuteFile(path, parameters.get(), &answer));
    return answer;
  }

 private:
  void Check(qv::HRESULT code) { qv::ThrowIfFailed(code, model_.get(), qv::IConnectionModel::kIid); }

  qv::IQvServiceProviderPtr provider_;
  qv::IQvScriptwellsPtr client_;
  qv::IConnectionModelPtr model_;
};

void Add(const qv::IParametersPtr& list, const qv::WideString& name, const qv::Variant& value) {
  qv::ThrowIfFailed(list->Add(name, value, nullptr), list.get(), qv::IParameters::kIid);
}

// Every sample, and the name of the one that the script must return.
qv::IParametersPtr MakeParameters(const qv::WideString& pick) {
  qv::IParametersPtr list = qv::CreateParameters();
  Add(list, u"pick", qv::Variant::FromString(pick));
  for (const Sample& sample : Samples()) Add(list, sample.name, sample.value);
  return list;
}

void ShowAnswers(Client& client, const qv::WideString& script) {
  std::vector<std::vector<std::string>> rows;
  for (const Sample& sample : Samples()) {
    const qv::Variant answer = client.Run(script, MakeParameters(sample.name));
    rows.push_back({qv::ToUtf8(qv::WideString(sample.name)), qv::cli::TypeName(sample.value),
                    qv::cli::ValueText(sample.value), qv::cli::TypeName(answer), qv::cli::ValueText(answer)});
  }
  std::cout
      << "\nOne answer per type:\n\n"
      << qv::cli::FormatColumns({"NAME", "TYPE", "SENT", "ANSWER", "VALUE"}, rows)
      << "\nA byte arrives as 0 and a long as an empty value: existing clients read them so, and this one "
         "keeps to it.\n";
}

// A link arrives as an object without link and caption.
void ShowLink(Client& client, const qv::WideString& script) {
  const qv::Variant answer = client.Run(script, MakeParameters(u"link"));
  const qv::IUrlPtr url = qv::As<qv::IUrl>(answer.Object());
  if (!url) throw std::runtime_error("the answer is no link");
  qv::WideString link;
  qv::ThrowIfFailed(url->get_Url(&link), url.get(), qv::IUrl::kIid);
  std::cout << "\nA link that a script answers arrives as a " << qv::cli::TypeName(answer)
            << " object whose link is \"" << qv::ToUtf8(link) << "\": existing clients never keep it.\n";
}

void ShowDocument(Client& client) {
  const qv::IParametersPtr parameters = qv::CreateParameters();
  Add(parameters, u"who", qv::Variant::FromString(u"W\u00F6rld \u2603"));
  const qv::Variant answer = client.RunDocument(qv::FromUtf8(DEMO_DOCUMENT), parameters);
  std::cout << "\nThe script document examples/document.xml answers:\n\n  " << qv::cli::ValueText(answer)
            << "\n";
}

constexpr char16_t kTableScript[] =
    uR"([
  {city: "Rome", people: 2748109, founded: typed.date("0001-01-01"), density: 2129.4},
  {city: "Brasilia", people: 2817381, founded: typed.date("1960-04-21"), density: 489.1},
])";

void ShowTable(Client& client) {
  const qv::Variant answer = client.Run(kTableScript, qv::CreateParameters());
  const qv::IRecordListPtr table = qv::cli::AsRecordList(answer);
  if (!table) throw std::runtime_error("the answer is no table");
  std::cout << "\nA script that answers an array of objects answers a table:\n\n";
  qv::cli::WriteRecordList(table, {qv::cli::OutputFormat::kTable}, std::cout);
  std::cout << "\nThe same as CSV:\n\n";
  qv::cli::WriteRecordList(table, {qv::cli::OutputFormat::kCsv}, std::cout);
}

void ShowFault(Client& client, const qv::WideString& script) {
  std::cout << "\nAsking for a parameter that is not there:\n\n";
  try {
    client.Run(script, MakeParameters(u"aDream"));
    throw std::runtime_error("the server reported no fault");
  } catch (const qv::_com_error& fault) {
    std::cout << "  fault 0x" << std::hex << static_cast<std::uint32_t>(fault.Error()) << std::dec << ": "
              << qv::ToUtf8(fault.Description()) << "\n";
  }
}

// The file is uploaded when the call is serialized; the answer is the URL of another file.
void ShowFiles(Client& client, const qv::WideString& script, const std::string& directory) {
  const std::string name = directory + "/notes.txt";
  std::ofstream(name) << "W\u00F6rld\n\u2603\n";
  const qv::IParametersPtr parameters = qv::CreateParameters();
  const qv::IAttachedFilePtr file = qv::CreateAttachedFile(qv::FromUtf8(name));
  Add(parameters, u"pick", qv::Variant::FromString(u"doc"));
  Add(parameters, u"doc", qv::Variant::FromObject(file.get()));
  const qv::Variant url = client.Run(script, parameters);
  const std::string path = qv::NativePath(client.Download(url.Text(), qv::FromUtf8(directory)));
  std::cout << "\nThe script numbers the lines of " << name << " in\n" << path << ":\n\n" << ReadFile(path);
}

void RunDemo(const std::string& scriptPath) {
  const qv::WideString script = qv::FromUtf8(ReadFile(scriptPath));
  const qv::cli::PrivateHome home;  // with the upload scripts; removed at the end
  qv::devservice::ServiceOptions options;
  options.workerCommand = qv::cli::WorkerCommand();
  qv::devservice::Service service(options);
  service.Start();
  std::cout << "The development service runs at " << service.Url() << "\n";

  const qv::XmlLibraryHold hold;
  Client client(service.Url());
  client.Open(u"DbReplicationId=;Username=demo;Password=secret;");
  std::cout << "The session is open.\n";
  ShowAnswers(client, script);
  ShowLink(client, script);
  ShowDocument(client);
  ShowTable(client);
  ShowFiles(client, script, home.Path());
  ShowFault(client, script);
  client.Close();
  qv::CloseKeptConnections();
  std::cout << "\nThe session is closed.\n"
            << "\nTry: build/demo/tools/scriptwells run --local -e '6 * 7'\n";
}

}  // namespace

int main(int argc, char** argv) {
  static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));  // the table counts characters
  try {
    RunDemo(argc > 1 ? argv[1] : DEMO_SCRIPT);
    return 0;
  } catch (const qv::_com_error& error) {
    std::cerr << "demo: failed: " << qv::ToUtf8(error.Description()) << "\n";
  } catch (const std::exception& error) {
    std::cerr << "demo: " << error.what() << "\n";
  }
  return 1;
}
