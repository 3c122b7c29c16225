// A running service and the verbs of its tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "devservice/service.h"
#include "raw_client.h"

namespace qv::devservice::testing {

// Options that tests start from: a free port, the worker program of this build.
ServiceOptions TestOptions();

// A complete POST request for the service path, with the prefix put in front of it.
std::string PostRequest(const std::string& prefix, const std::string& action, const std::string& body);

// The three envelopes, put together by hand in the form that clients write.
std::string CreateEnvelope(const std::string& connectionString);
std::string CloseEnvelope(const std::string& sessionId);
std::string ExecuteEnvelope(const std::string& sessionId, const std::string& script,
                            const std::string& parameters, const std::string& language = "JavaScript");

// The element of no parameters, and an array around the given elements.
std::string NilParameters();
std::string ArrayOf(int count, const std::string& elements);
std::string ParameterElement(const std::string& name, const std::string& type, const std::string& text);

// The five entities of XML.
std::string Escape(const std::string& text);
std::string Unescape(const std::string& text);

class ServiceTest : public ::testing::Test {
 protected:
  void StartWith(const ServiceOptions& options);

  // One request on a connection of its own.
  RawAnswer Post(const std::string& prefix, const std::string& action, const std::string& body);
  RawAnswer Get(const std::string& path);

  // Opens a session and returns its id.
  std::string Login();
  // Runs a script in `session` and returns the whole body of the answer.
  std::string Execute(const std::string& script, const std::string& parameters = NilParameters());
  // What stands in the ExecuteResult element: "type|text". Fails the test when there is none.
  std::string Value(const std::string& script, const std::string& parameters = NilParameters());
  // What stands in the fault: "code|description|source". Fails the test when it is none.
  std::string Fault(const std::string& script, const std::string& parameters = NilParameters());

  nlohmann::json Stats();

  std::unique_ptr<Service> service_;
  std::string session_;
};

// "code|description|source" of a fault body, "(no fault)" otherwise.
std::string FaultIn(const std::string& body);
// "type|text" of an answer of Execute, "(no value)" otherwise.
std::string ValueIn(const std::string& body);

}  // namespace qv::devservice::testing
