// A running service and the verbs of its tests.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "devservice/service.h"
#include "raw_client.h"

namespace qv::devservice::testing {

inline constexpr char kServicePath[] = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";

// Options that tests start from: a free port, the worker program of this build.
ServiceOptions TestOptions();

// A request without a body, or the head of one: "GET /", then whole lines of headers.
std::string Request(const std::string& start, const std::string& headers = "Host: localhost\r\n");

// A complete POST request for the service path, with a prefix before it and other headers than the host.
std::string PostRequest(const std::string& prefix, const std::string& action, const std::string& body,
                        const std::string& headers = "Host: 127.0.0.1:80\r\n");

// The envelopes, written by hand in the form of the clients.
std::string CreateEnvelope(const std::string& connectionString);
std::string CloseEnvelope(const std::string& sessionId);
std::string ExecuteEnvelope(const std::string& sessionId, const std::string& script,
                            const std::string& parameters, const std::string& language = "JavaScript");
// The same with a whole script document, which is escaped already.
std::string DocumentEnvelope(const std::string& sessionId, const std::string& escapedDocument,
                             const std::string& parameters);

// The element of no parameters, and an array around the given elements.
std::string NilParameters();
std::string ArrayOf(int count, const std::string& elements);
std::string ParameterElement(const std::string& name, const std::string& type, const std::string& text);
// An array of one parameter "p"; without a type the element of no parameters.
std::string OneParameter(const std::string& type, const std::string& text);

// The five entities of XML.
std::string Escape(const std::string& text);
std::string Unescape(const std::string& text);

// The text between two others, "(none)" when one is missing.
std::string Between(const std::string& text, const std::string& start, const std::string& end);
// The text with `to` in place of the first `from`, which has to be there.
std::string Replaced(std::string text, const std::string& from, const std::string& to);
// "code|description|source" of a fault body, "(no fault)" otherwise.
std::string FaultIn(const std::string& body);
// "type|text" of an answer of Execute, "(no value)" otherwise.
std::string ValueIn(const std::string& body);

// Whether the text holds a part, for EXPECT_TRUE.
::testing::AssertionResult Contains(const std::string& text, const std::string& part);

// A script and what it answers, or the fault that it makes; with a type, the parameter "p" that it gets.
struct ScriptRow {
  std::string script;
  std::string outcome;
  std::string type{};
  std::string text{};
};
using ScriptRows = std::initializer_list<ScriptRow>;

class ServiceTest : public ::testing::Test {
 protected:
  // Without a call of these the first request starts a service with TestOptions. A new service has no
  // session.
  void StartWith(const ServiceOptions& options);
  // TestOptions with a change.
  void StartWith(const std::function<void(ServiceOptions&)>& change);
  int Port();
  // Expects that this is quick, whatever the service is doing.
  void StopAtOnce();
  // The test's session, opened when it is first needed.
  const std::string& Session();
  // Another one.
  std::string Login();

  // One request on its own connection.
  RawAnswer Ask(const std::string& request);
  RawAnswer Post(const std::string& prefix, const std::string& action, const std::string& body);
  RawAnswer Get(const std::string& path);
  // Runs a script in the test's session.
  RawAnswer Run(const std::string& prefix, const std::string& script,
                const std::string& parameters = NilParameters());
  // The body of its answer, without a prefix.
  std::string Execute(const std::string& script, const std::string& parameters = NilParameters());
  // The content of the ExecuteResult element: "type|text". Fails the test when there is none.
  std::string Value(const std::string& script, const std::string& parameters = NilParameters());
  // The content of the fault: "code|description|source". Fails the test when it is none.
  std::string Fault(const std::string& script, const std::string& parameters = NilParameters());
  // Its code alone.
  std::string FaultCode(const std::string& script, const std::string& parameters = NilParameters());

  void ExpectValues(ScriptRows rows);
  void ExpectFaults(ScriptRows rows);
  // The beginning of the faults of all scripts.
  void ExpectFaultStart(const std::string& start, std::initializer_list<std::string> scripts);

  nlohmann::json Stats();

  std::unique_ptr<Service> service_;
  std::string session_;
};

}  // namespace qv::devservice::testing
