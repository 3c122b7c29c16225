// A program with one connection model, and the development service that it talks to, over real sockets.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "fixtures/shown_value.h"
#include "qvscriptwells/qvscriptwells.h"
#include "service_fixture.h"

namespace qv {

// "ok", or the code and the message of the waiting error record: "0x800403EC The session ...".
std::string OutcomeText(HRESULT code);

using NamedValues = std::initializer_list<std::pair<const char16_t*, Variant>>;
IParametersPtr ParameterList(NamedValues values);

class ClientTest : public devservice::testing::ServiceTest {
 protected:
  // A service that stalls for a second where it does, and a model without session.
  void SetUp() override;
  void TearDown() override;

  // Points the model at the service, with `prefix` ("/odd/cut") in front of the path.
  void Use(const std::string& prefix = "");
  // Points the model at any server name.
  std::string SetServer(const WideString& serverName, const WideString& proxy = u"");
  // What the host's sink received last: "open ID USER DATABASE REPLICA" or "closed ...".
  std::string HostKnows();

  // Each gives what OutcomeText or ShownValue says.
  std::string Open(const WideString& connectionString = u"Username=joe;Password=secret;");
  std::string Close();
  std::string Run(const WideString& script, IParameters* parameters = nullptr,
                  const WideString& language = u"JavaScript");
  std::string Run(const WideString& script, NamedValues values);
  // Runs these scripts one after the other. An outcome that ends in "..." is only the start of one.
  struct ScriptRow {
    WideString script;
    const char* outcome;
  };
  void ExpectRuns(std::initializer_list<ScriptRow> rows);
  // A service with room for large scripts and values, also where a worker is built with sanitizers. Opens a
  // session.
  void UseLargeService();

  // How often the service has run a script so far.
  int ScriptsRun();

  IQvClientServicesPtr host_;
  IConnectionModelPtr model_;
};

}  // namespace qv
