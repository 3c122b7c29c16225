// Uploads against servers in memory, with a home directory of their own that holds the two scripts.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/create_objects.h"
#include "script/execute_envelope.h"
#include "script/file_uploader.h"
#include "script/script_files.h"

namespace qv {

using Lines = std::vector<std::string>;

constexpr char kNotParsed[] =
    "EQvException 0x00000000 Cannot parse url, expecting 'http://' after protocol name.";
constexpr char kUnknownProblem[] = "EQvException 0x00000000 Unknown Http problem.";
constexpr char kNoDocument[] = "EQvException 0x00000000 Cannot create the xml document.";

// The answer to a script: `value` is the whole element of the value, or nothing.
inline std::u16string ValueAnswer(const std::u16string& value) {
  return u"<soap:Envelope><soap:Body><ExecuteResponse>" + value +
         u"</ExecuteResponse></soap:Body></soap:Envelope>";
}

// The answer with this string; markup in it is escaped already.
inline std::u16string UrlAnswer(const std::u16string& url) {
  return ValueAnswer(u"<r xsi:type=\"xsd:string\">" + url + u"</r>");
}

// The nested requests of session "u1": for a file without a ticket, and for one with this ticket.
inline std::string FreshRequest() {
  return RequestOfFile("&lt;fresh/&gt;\\u000A\\u000A", kNoParameters);
}
inline std::string AgainRequest(const std::string& ticket) {
  return RequestOfFile("&lt;again/&gt;\\u000A\\u000A",
                       ParameterArray("1", ParameterElement("fileTicket", "xsd:string", ticket)));
}

// "t1, -1": ticket and flag. Clears the flag, as every reading of the ticket does.
inline std::string TicketOf(IAttachedFile* file) {
  VARIANT_BOOL flag = 7;
  EXPECT_EQ(file->IsTicketId(&flag), S_OK);
  WideString ticket(u"unread");
  EXPECT_EQ(file->get_TicketId(&ticket), S_OK);
  return Shown(ticket) + ", " + std::to_string(flag);
}

class UploadFixture : public testing::Test {
 protected:
  UploadFixture()
      : registry_("QV_REGISTRY", home_.Path("registry.reg").c_str()),
        config_("XDG_CONFIG_HOME", home_.Path("config").c_str()) {
    EnsureFormaters();
    home_.Write("ClientScripts/UploadScript.xml", "<fresh/>");
    home_.Write("ClientScripts/UploadScriptWithoutTicketdId.xml", "<again/>");
    SetHome(home_.Path());
    map_ = {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"UploadFile", Variant::FromString(u"http://srv:8080/unused")}};
  }
  void TearDown() override {
    map_.clear();
    EXPECT_EQ(http_.LiveObjects(), 0);
  }

  // `text` as it stands between the registry's quotes.
  void SetHome(const std::string& text) const {
    home_.Write("registry.reg",
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + text + "\"\n");
  }
  // The answers to the script and to the file of one upload.
  void AnswerUpload(const std::u16string& url) {
    http_.Answer(UrlAnswer(url));
    http_.AnswerFile();
  }

  WideString Upload(IAttachedFile* file) {
    return CFileUploader(u"http://srv:8080/svc", u"http://srv:8080/unused").Upload(file, map_);
  }
  WideString Upload() { return Upload(file_.get()); }
  std::string UploadThrows(IAttachedFile* file) {
    return Thrown([&] { Upload(file); });
  }
  std::string UploadThrows() { return UploadThrows(file_.get()); }

  // The component's calls. Whether an unset spare text is null or empty is nobody's business.
  Lines Calls() const {
    Lines calls = http_.Calls();
    for (std::string& call : calls) call = Plain(call);
    return calls;
  }
  Lines Opens() const {
    Lines calls = http_.CallsNamed("Open(");
    for (std::string& call : calls) call = Plain(call);
    return calls;
  }
  // "RS" for a request and a session that were closed in this order.
  std::string Closes() const {
    std::string closes;
    for (const std::string& call : http_.CallsNamed("Close ")) closes += call == "Close request" ? "R" : "S";
    return closes;
  }

  TemporaryDirectory home_;
  FakeHttp http_;
  NamedArguments map_;
  IAttachedFilePtr file_ = CreateAttachedFile(u"c:\\data\\a b.txt");

 private:
  static std::string Plain(std::string call) {
    const std::string null = "<null>";
    while (call.compare(0, 5, "Open(") == 0 && call.find(null) != std::string::npos)
      call.erase(call.find(null), null.size());
    return call;
  }

  EnvironmentVariable registry_;
  EnvironmentVariable config_;
};

}  // namespace qv
