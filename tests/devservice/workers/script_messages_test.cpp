// The messages between service and worker.
#include "devservice/workers/script_messages.h"

#include <gtest/gtest.h>

namespace qv::devservice::testing {
namespace {

using nlohmann::json;

json JobMessage() {
  ScriptJob job;
  job.code = "1";
  job.parameters = {{"a", "int", "7"}};
  job.files.readable = {{"t", "/tmp/x", 4}};
  job.files.ticketsLeft = 3;
  job.files.newFilesLeft = 18446744073709551615U;
  return ToJson(job);
}

json ResultMessage() {
  ScriptResult result;
  result.kind = ResultKind::kFault;
  result.code = -5;
  return ToJson(result);
}

// As the other end receives it.
json Sent(const json& message) {
  return json::parse(message.dump());
}

TEST(ScriptMessages, ArriveAsTheyWereSent) {
  const ScriptJob job = JobFromJson(Sent(JobMessage()));
  EXPECT_EQ(job.code, "1");
  EXPECT_EQ(job.parameters.at(0).text, "7");
  EXPECT_EQ(job.files.readable.at(0).size, 4U);
  EXPECT_EQ(job.files.ticketsLeft, 3U);
  EXPECT_EQ(job.files.newFilesLeft, 18446744073709551615U);
  const ScriptResult result = ResultFromJson(Sent(ResultMessage()));
  EXPECT_EQ(result.kind, ResultKind::kFault);
  EXPECT_EQ(result.code, -5);
}

TEST(ScriptMessages, NumbersThatAreNotWholeAreRefused) {
  for (const char* place : {"/files/ticketsLeft", "/files/newFilesLeft", "/files/readable/0/2"}) {
    for (const json& wrong : {json(1e300), json(-1), json("3")}) {
      json message = JobMessage();
      message[json::json_pointer(place)] = wrong;
      EXPECT_THROW(JobFromJson(message), json::exception) << place << " " << wrong;
    }
  }
  for (const char* key : {"kind", "code"}) {
    json message = ResultMessage();
    message[key] = -1e300;
    EXPECT_THROW(ResultFromJson(message), json::exception) << key;
  }
}

}  // namespace
}  // namespace qv::devservice::testing
