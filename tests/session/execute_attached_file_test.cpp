// Scripts with attached files, run through the model.
#include <string>

#include "script/upload_fixture.h"
#include "session/connection_model_impl.h"

namespace qv {
namespace {

class ModelAttachedFile : public UploadFixture {
 protected:
  ModelAttachedFile() {
    model_.SetServer(u"http://srv:8080", u"proxy:3128");
    model_.SetUSID(u"u1");
  }
  std::string ExecuteThrows() {
    return Thrown([this] { model_.Execute(u"VBScript", u"a<b", list_.get()); });
  }
  static std::string RequestFor(const std::string& ticket) {
    return RequestWith(ParameterArray("1", TicketElement("doc", ticket)));
  }

  const IParametersPtr list_ = List({{u"doc", Variant::FromObject(file_.get())}});
  ConnectionModelImpl model_;
};

// The script is sent to the server directly, the file and the host's request through the proxy.
TEST_F(ModelAttachedFile, UploadsComeFirstAndTheProxyIsForTheFile) {
  AnswerUpload(u"http://files/up?t=t1");
  http_.Answer(kScriptDone);
  EXPECT_EQ(ExecuteThrows(), "nothing");
  EXPECT_EQ(http_.Opens(), (Lines{"Open(http, srv, 8080, , , )", "Open(http, files, 80, , , proxy)",
                                  "Open(http, srv, 8080, , , proxy)"}));
  EXPECT_EQ(http_.CallsNamed("OpenRequest("),
            (Lines{"OpenRequest(POST, /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx, text/xml, 0)",
                   "OpenRequest(POST, /up?t=t1, */*, 0)",
                   "OpenRequest(POST, /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx, text/xml, 0)"}));
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), RequestFor("t1")}));
}

TEST_F(ModelAttachedFile, SecondCallSendsTheFileUnderItsTicket) {
  AnswerUpload(u"http://files/up?t=t1");
  http_.Answer(kScriptDone);
  AnswerUpload(u"http://files/up?t=t2");
  http_.Answer(kScriptDone);
  EXPECT_EQ(ExecuteThrows(), "nothing");
  EXPECT_EQ(ExecuteThrows(), "nothing");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), RequestFor("t1"), AgainRequest("t1"), RequestFor("t2")}));
  EXPECT_EQ(TicketOf(file_), "t2, -1");
}

TEST_F(ModelAttachedFile, FailedUploadKeepsSessionAndState) {
  AnswerUpload(u"http://files/up?t=t1");
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"no such file");
  EXPECT_EQ(ExecuteThrows(), Refused("no such file"));
  EXPECT_EQ(model_.State(), SessionState::kOpen);
  EXPECT_EQ(Shown(model_.ContextHandle()), "u1");
  EXPECT_EQ(Shown(model_.CookieHandle()), "");
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
}

TEST_F(ModelAttachedFile, WithoutASessionNothingIsUploaded) {
  model_.SetUSID(u"");
  EXPECT_EQ(ExecuteThrows(), kNoSession);
  EXPECT_TRUE(http_.Calls().empty());
}

}  // namespace
}  // namespace qv
