// Files with a call and files fetched, over the development service.
#include <sys/stat.h>

#include "devservice/files/upload_scripts.h"
#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "value_test.h"

namespace qv {
namespace {

constexpr char kRegistryText[] = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"";

// A host whose installation has the service's upload scripts.
class Files : public ValueTest {
 protected:
  Files() {
    devservice::InstallUploadScripts(directory_.Path("home"));
    registry_.Set(directory_.Write("registry.reg", kRegistryText + directory_.Path("home") + "\"\n").c_str());
  }

  IAttachedFilePtr File(const std::string& bytes) {
    return CreateAttachedFile(FromUtf8(directory_.Write("in.txt", bytes)));
  }
  std::string RunWith(const WideString& script, const IAttachedFilePtr& file) {
    return Run(script, {{u"doc", Variant::FromObject(file.get())}});
  }
  static std::string Ticket(const IAttachedFilePtr& file) {
    WideString ticket;
    EXPECT_EQ(file->get_TicketId(&ticket), S_OK);
    return ToUtf8(ticket);
  }
  static bool HasTicket(const IAttachedFilePtr& file) {
    VARIANT_BOOL has = VARIANT_FALSE;
    EXPECT_EQ(file->IsTicketId(&has), S_OK);
    return has == VARIANT_TRUE;
  }
  // The native path of what `script` published, or what the failure says.
  std::string Fetch(const WideString& script, const WideString& target) {
    WideString path;
    const HRESULT code = model_->DownloadFile(Answer(script).Text(), target, &path);
    return code == S_OK ? NativePath(path) : OutcomeText(code);
  }
  std::string Content(const std::string& path) const {
    EXPECT_EQ(path.rfind(directory_.Path(), 0), 0U) << path;
    return directory_.Read(path.substr(directory_.Path().size() + 1));
  }

  TemporaryDirectory directory_;
  EnvironmentVariable registry_{"QV_REGISTRY", nullptr};
};

TEST_F(Files, ContentReachesTheScript) {
  EXPECT_EQ(RunWith(u"parameters.doc.text()", File("Gr\xC3\xBC\xC3\x9F")), "VT_BSTR Gr\\u00FC\\u00DF");
  EXPECT_EQ(RunWith(u"parameters.doc.size", File("12345")), "VT_INT 5");
  EXPECT_EQ(RunWith(u"parameters.doc.size", File("")), "VT_INT 0");
  EXPECT_EQ(RunWith(u"Array.from(parameters.doc.bytes()).join(' ')", File(std::string("\0\xFF\r\n", 4))),
            "VT_BSTR 0 255 13 10");
}

TEST_F(Files, FileKeepsItsTicketAndSendsUnderItAgain) {
  const IAttachedFilePtr file = File("first");
  EXPECT_FALSE(HasTicket(file));
  EXPECT_EQ(RunWith(u"parameters.doc.text()", file), "VT_BSTR first");
  EXPECT_TRUE(HasTicket(file));
  directory_.Write("in.txt", "second");
  EXPECT_EQ(RunWith(u"parameters.doc.text() + ' ' + parameters.doc.ticket.length", file),
            "VT_BSTR second 32");
  EXPECT_TRUE(HasTicket(file));
}

TEST_F(Files, SameTicketUntilTheHostReadsIt) {
  const IAttachedFilePtr file = File("x");
  const std::string first = RunWith(u"parameters.doc.ticket", file);
  EXPECT_EQ(RunWith(u"parameters.doc.ticket", file), first);
  EXPECT_EQ("VT_BSTR " + Ticket(file), first);
  EXPECT_NE(RunWith(u"parameters.doc.ticket", file), first);
}

TEST_F(Files, SeveralGoInOneCall) {
  const IAttachedFilePtr one = CreateAttachedFile(FromUtf8(directory_.Write("1", "one")));
  const IAttachedFilePtr two = CreateAttachedFile(FromUtf8(directory_.Write("2", "two")));
  EXPECT_EQ(Run(u"parameters.a.text() + parameters.n + parameters.b.text()",
                {{u"a", Variant::FromObject(one.get())},
                 {u"n", Variant::FromInt(5)},
                 {u"b", Variant::FromObject(two.get())}}),
            "VT_BSTR one5two");
}

TEST_F(Files, MissingFileFailsAfterItsTicketCame) {
  const IAttachedFilePtr file = CreateAttachedFile(FromUtf8(directory_.Path("none")));
  const std::string outcome = RunWith(u"1", file);
  EXPECT_NE(outcome.find("No such file or directory"), std::string::npos) << outcome;
  EXPECT_TRUE(HasTicket(file));
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(Files, WithoutTheScriptsNothingIsSent) {
  registry_.Set(directory_.Path("nothing.reg").c_str());
  const EnvironmentVariable config("XDG_CONFIG_HOME", directory_.Path().c_str());
  EXPECT_EQ(RunWith(u"1", File("x")), "0x80020009 Cannot create the xml document.");
  EXPECT_EQ(ScriptsRun(), 0);
}

TEST_F(Files, PublishedOneIsFetchedIntoADirectory) {
  const std::string path = Fetch(u"publish('out.txt', 'text')", FromUtf8(directory_.Path()));
  EXPECT_EQ(path, directory_.Path("out.txt"));
  EXPECT_EQ(Content(path), "text");
}

TEST_F(Files, WithoutATargetTheDirectoryIsNewAndPrivate) {
  const EnvironmentVariable temp("TEMP", directory_.Path().c_str());
  const std::string path = Fetch(u"publish('out.txt', 'text')", u"");
  EXPECT_EQ(Content(path), "text");
  const std::string made = path.substr(0, path.rfind('/'));
  EXPECT_EQ(made.substr(0, made.rfind('/')), directory_.Path());
  struct stat facts {};
  ASSERT_EQ(stat(made.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0700U);
}

TEST_F(Files, WhatIsSentComesBackAsItWas) {
  std::string bytes;
  for (int i = 0; i < 300'000; ++i) bytes += static_cast<char>(i * 7);
  const IAttachedFilePtr file = File(bytes);
  const IParametersPtr list = ParameterList({{u"doc", Variant::FromObject(file.get())}});
  Variant answer;
  ASSERT_EQ(model_->Execute(u"JavaScript", u"publish('copy.bin', parameters.doc)", list.get(), &answer),
            S_OK);
  WideString path;
  ASSERT_EQ(model_->DownloadFile(answer.Text(), FromUtf8(directory_.Path()), &path), S_OK);
  EXPECT_TRUE(Content(NativePath(path)) == bytes);
}

// The address stays the session's: its id is sent as a header.
TEST_F(Files, AnotherSessionGetsTheErrorPage) {
  const WideString url = Answer(u"publish('out.txt', 'secret')").Text();
  ASSERT_EQ(Close(), "ok");
  ASSERT_EQ(Open(u"Username=eve;Password=x;"), "ok");
  WideString path;
  EXPECT_EQ(OutcomeText(model_->DownloadFile(url, FromUtf8(directory_.Path()), &path)),
            "0x80020009 Unknown Http problem.");
  EXPECT_EQ(Content(directory_.Path("out.txt")), "");
}

}  // namespace
}  // namespace qv
