// Uploads to servers in memory, with a home directory that holds the two scripts.
#pragma once

#include <string>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "script/call_fixture.h"
#include "script/file_uploader.h"

namespace qv {

// The answer with this string; markup in it is escaped already.
inline std::u16string UrlAnswer(const std::u16string& url) {
  return ExecuteAnswer(ValueElement(u"xsd:string", url));
}

// The nested requests of session "u1": for a file without a ticket, and for one with this ticket.
inline std::string FreshRequest() {
  return RequestOfFile("&lt;fresh/&gt;\\u000A\\u000A", kNoParameters);
}
inline std::string AgainRequest(const std::string& ticket, const std::string& script = "again") {
  return RequestOfFile("&lt;" + script + "/&gt;\\u000A\\u000A",
                       ParameterArray("1", ParameterElement("fileTicket", "xsd:string", ticket)));
}

// "t1, -1": ticket and flag. Clears the flag, as every reading of the ticket does.
inline std::string TicketOf(const IAttachedFilePtr& file) {
  VARIANT_BOOL flag = 7;
  EXPECT_EQ(file->IsTicketId(&flag), S_OK);
  WideString ticket(u"unread");
  EXPECT_EQ(file->get_TicketId(&ticket), S_OK);
  return Shown(ticket) + ", " + std::to_string(flag);
}

class UploadFixture : public CallFixture {
 protected:
  UploadFixture()
      : registry_("QV_REGISTRY", home_.Path("registry.reg").c_str()),
        config_("XDG_CONFIG_HOME", home_.Path("config").c_str()) {
    home_.Write("ClientScripts/UploadScript.xml", "<fresh/>");
    home_.Write("ClientScripts/UploadScriptWithoutTicketdId.xml", "<again/>");
    SetHome(home_.Path());
    map_[u"UploadFile"] = Variant::FromString(u"http://srv:8080/unused");
  }

  // `text` as the registry has it between quotes.
  void SetHome(const std::string& text) const {
    home_.Write("registry.reg",
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + text + "\"\n");
  }
  // The answers to the script and to the file of one upload.
  void AnswerUpload(const std::u16string& url = u"http://files:81/up?ticket=t1") {
    http_.Answer(UrlAnswer(url));
    http_.AnswerFile();
  }

  WideString Upload(IAttachedFile* file) {
    return CFileUploader(u"http://srv:8080/svc", u"http://srv:8080/unused").Upload(file, map_);
  }
  WideString Upload() { return Upload(file_.get()); }
  // The upload of the next answer; its ticket.
  std::string Ticket(const std::u16string& url = u"http://files:81/up?ticket=t1") {
    AnswerUpload(url);
    return Shown(Upload());
  }
  std::string UploadThrows(IAttachedFile* file) {
    return Thrown([&] { Upload(file); });
  }
  std::string UploadThrows() { return UploadThrows(file_.get()); }

  TemporaryDirectory home_;
  IAttachedFilePtr file_ = CreateAttachedFile(u"c:\\data\\a b.txt");

 private:
  EnvironmentVariable registry_;
  EnvironmentVariable config_;
};

}  // namespace qv
