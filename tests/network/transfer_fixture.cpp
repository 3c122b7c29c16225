#include "transfer_fixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "child_process.h"
#include "client_fixture.h"
#include "fixtures/shown_text.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/native_path.h"
#include "recordlist/register_formaters.h"

namespace qv::test {
namespace {

namespace fs = std::filesystem;

constexpr int kPatience = 10;

constexpr char kUploadScript[] =
    "<Scriptwell Language=\"JavaScript\" "
    "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>upload()</Code></"
    "Scriptwell>";

// Times vary; what is said about them does not.
std::string WithoutTimes(const std::string& words) {
  static const std::regex time("[0-9]+ milliseconds");
  return std::regex_replace(words, time, "N milliseconds");
}

std::string Facts(const fs::directory_entry& entry) {
  if (entry.is_symlink()) return "link to " + fs::read_symlink(entry.path()).string();
  if (entry.is_directory()) return "directory";
  std::ifstream file(entry.path(), std::ios::binary);
  return "file " + std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

}  // namespace

Tree TreeOf(const std::string& directory) {
  Tree tree;
  for (const auto& entry : fs::recursive_directory_iterator(directory))
    tree[entry.path().lexically_relative(directory).string()] = Facts(entry);
  return tree;
}

std::string ScriptAnswer(const std::string& escapedText) {
  return RawAnswerText("<soap:Envelope><soap:Body><ExecuteResponse><ExecuteResult xsi:type=\"xsd:string\">" +
                       escapedText + "</ExecuteResult></ExecuteResponse></soap:Body></soap:Envelope>");
}

std::string FileHeader(const std::string& name) {
  return "Content-Disposition: attachment; filename=" + name + "\r\n";
}

std::string FileAnswer(const std::string& name, const std::string& content) {
  return RawAnswerText(content, FileHeader(name));
}

TransferTest::TransferTest()
    : registry_("QV_REGISTRY", files_.Path("registry.reg").c_str()),
      programs_("TMPDIR", fs::temp_directory_path().c_str()),
      temporary_("TEMP", files_.Path("temp").c_str()),
      before_(fs::current_path().string()) {
  for (const char* name : {"temp", "target", "here"}) fs::create_directory(files_.Path(name));
  files_.Write("registry.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" +
                                   files_.Path("home") + "\"\n");
  files_.Write("home/ClientScripts/UploadScript.xml", kUploadScript);
  files_.Write("home/ClientScripts/UploadScriptWithoutTicketdId.xml", kUploadScript);
  fs::current_path(files_.Path("here"));
  SetIdleTimeout(10'000);
  model_ = CreateConnectionModel();
  UseServer(ServerUrl());
  EXPECT_EQ(model_->SetUSID(u"s1"), S_OK);
  FillFormaters();
  ExpectNextDownloadWorks();  // what is opened once per process is open now
  fs::remove(Target() + "/next.txt");
  EXPECT_TRUE(server_.WaitForClosed(server_.Connections()));
  descriptors_ = OpenDescriptors();
}

TransferTest::~TransferTest() {
  model_.reset();
  fs::current_path(before_);
}

void TransferTest::UseServer(const std::string& url, const std::string& proxy) {
  const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model_);
  EXPECT_EQ(OutcomeText(raw->SetServer(Wide(url), Wide(proxy))), "ok");
}

std::string TransferTest::Download(const std::string& url, const WideString& directory) {
  downloaded_ = u"untouched";
  const HRESULT code = model_->DownloadFile(Wide(url), directory, &downloaded_);
  if (code != S_OK) {
    EXPECT_EQ(downloaded_, WideString(u"untouched"));
  }
  return WithoutTimes(OutcomeText(code));
}

void TransferTest::ExpectNoDownload(const std::string& url, const WideString& directory,
                                    const std::string& outcome) {
  const Tree before = AllFiles();
  EXPECT_EQ(Download(url, directory), outcome);
  EXPECT_EQ(AllFiles(), before);
}

void TransferTest::ExpectDownload(const std::string& name, const std::string& content) {
  Tree expected = AllFiles();
  expected["target/" + name] = "file " + content;
  EXPECT_EQ(DownloadHere(), "ok");
  EXPECT_EQ(downloaded_, Wide(Target() + "\\" + name));
  EXPECT_EQ(AllFiles(), expected);
}

std::string TransferTest::RunWith(const IAttachedFilePtr& file) {
  const IParametersPtr list = ParameterList({{u"f", Variant::FromObject(file.get())}});
  Variant result;
  const HRESULT code = model_->Execute(u"JavaScript", u"1", list.get(), &result);
  return code == S_OK ? ShownValue(result) : WithoutTimes(OutcomeText(code));
}

IAttachedFilePtr TransferTest::File(const std::string& content) const {
  return CreateAttachedFile(Wide(files_.Write("here/f.bin", content)));
}

void TransferTest::ExpectNextDownloadWorks() {
  const std::size_t before = server_.Connections();
  Reply(FileAnswer("next.txt", "fine"));
  EXPECT_EQ(DownloadHere(), "ok");
  EXPECT_EQ(NativePath(downloaded_), Target() + "/next.txt");
  EXPECT_EQ(files_.Read("target/next.txt"), "fine");
  EXPECT_EQ(server_.Connections(), before + 1);
  CloseKeptConnections();
}

void TransferTest::ExpectNextUploadWorks() {
  const std::size_t before = server_.Connections();
  const std::string name = files_.Write("here/next.bin", "next");
  server_.Expect(WholeUpload());
  EXPECT_EQ(RunWith(CreateAttachedFile(Wide(name))), "VT_BSTR arrived");
  EXPECT_EQ(server_.Connections(), before + 1);
  CloseKeptConnections();
}

void TransferTest::ExpectNoDescriptorLeft(std::size_t stuck) const {
  CloseKeptConnections();
  // The server's ends belong to this process too and close a moment later.
  EXPECT_TRUE(WaitUntil([&] { return OpenDescriptors() == descriptors_ + stuck; }, kPatience))
      << OpenDescriptors() << " in place of " << descriptors_ + stuck;
}

RawScript TransferTest::WholeUpload() const {
  return RawScript().Reply(ScriptAnswer(UploadUrl())).Answer("").Reply(ScriptAnswer("arrived"));
}

}  // namespace qv::test
