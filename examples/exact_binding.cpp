// The shortest host on the interfaces below the C++ library: opens a session, adds two numbers on the server,
// closes the session.
//   exact_binding http://127.0.0.1:8080
#include <iostream>

#include "qvscriptwells/qvscriptwells.h"

namespace {

void AddOnTheServer(const char* server) {
  const qv::XmlLibraryHold library;  // make all calls under these two: see their headers
  const qv::ValueTypesHold types;
  const auto provider = qv::CreateSimpleServiceProvider(qv::CreateSimpleHost({u"joe"}).get());
  const auto client = qv::CreateQvScriptwells(qv::FromUtf8(server), u"", provider.get());
  const auto model = qv::ModelOf(client.get());
  qv::ThrowIfFailed(model->CreateUserSession(u"Username=joe;Password=secret;"));
  const auto parameters = qv::CreateParameters();
  qv::ThrowIfFailed(parameters->Add(u"a", qv::Variant::FromInt(40), nullptr));
  qv::Variant answer;
  qv::ThrowIfFailed(model->Execute(u"JavaScript", u"parameters.a + 2", parameters.get(), &answer));
  std::cout << answer.Data().intVal << "\n";  // 42
  qv::ThrowIfFailed(model->CloseUserSession());
}

}  // namespace

int main(int argc, char** argv) {
  try {
    AddOnTheServer(argc > 1 ? argv[1] : "http://127.0.0.1:8080");
    return 0;
  } catch (const qv::_com_error& error) {
    std::cerr << "failed: " << qv::ToUtf8(error.Description()) << "\n";
  } catch (const qv::EQvException& error) {  // the XML library cannot be started
    std::cerr << "failed: " << qv::ToUtf8(error.Description()) << "\n";
  }
  return 1;
}
