// After many good and failing calls nothing is left: no descriptor, no object, no reference.
#include <dirent.h>

#include "client_fixture.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_host.h"
#include "fixtures/temporary_directory.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

constexpr const char* kOddForms[] = {"ns2",  "status500", "whitespace", "nolength", "chunked", "cut",
                                     "html", "spoil",     "refuse2",    "zero",     "utf16"};

// Values in place of the script's, every one of which fails.
constexpr const char* kUnreadable[] = {"bad-date", "bad-duration", "url-no-marks"};
constexpr const char16_t* kObjectsAndDates[] = {u"typed.duration(parameters.span)",
                                                u"typed.url('http://quorvane.example/', 'caption')",
                                                u"parameters.when", u"typed.time(parameters.when)"};
constexpr char kDocument[] =
    "<!DOCTYPE Scriptwell [<!ENTITY e \"\xC3\xA9\">]>"
    "<Scriptwell Language=\"JavaScript\" "
    "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>'&e;'</Code></Scriptwell>";

int OpenDescriptors() {
  DIR* const folder = opendir("/proc/self/fd");
  if (folder == nullptr) return -1;
  int count = 0;
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count - 3;  // ".", ".." and the folder's own
}

class Leak : public devservice::testing::ServiceTest {
 protected:
  void Use(const std::string& url) {
    const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model_);
    ASSERT_EQ(raw->SetServer(FromUtf8(url), u""), S_OK);
  }
  bool Runs(const char16_t* script, IParameters* parameters = nullptr) {
    Variant result;
    if (model_->Execute(u"JavaScript", script, parameters, &result) == S_OK) return true;
    ++failures_;
    return false;
  }
  bool RunsFile(const std::string& name) {
    Variant result;
    return model_->ExecuteFile(FromUtf8(name), list_.get(), &result) == S_OK;
  }
  // Dates, objects and documents, some of which fail.
  void RoundOfKinds() {
    for (const char16_t* script : kObjectsAndDates) EXPECT_TRUE(Runs(script, list_.get()));
    EXPECT_TRUE(RunsFile(files_.Write("good.xml", kDocument)));
    EXPECT_FALSE(RunsFile(files_.Write("broken.xml", std::string(kDocument) + "<")));
    EXPECT_FALSE(RunsFile(files_.Path("none.xml")));
    EXPECT_FALSE(Runs(u"1", ParameterList({{u"never", Variant::FromDate(1e300)}}).get()));
    for (const char* value : kUnreadable) {
      Use(service_->Url() + "/odd/" + value);
      EXPECT_FALSE(Runs(u"1"));
    }
  }
  // A session with good and failing calls, and the odd form of this round.
  void Round(int round) {
    Use(service_->Url());
    EXPECT_EQ(model_->CreateUserSession(u"Username=joe;"), S_OK);
    EXPECT_TRUE(Runs(u"parameters.a + parameters.b", list_.get()));
    EXPECT_FALSE(Runs(u"throw new ScriptError(5, 'five')", list_.get()));
    EXPECT_FALSE(Runs(u"null"));
    EXPECT_FALSE(Runs(u"1", refused_.get()));
    EXPECT_TRUE(Runs(u"'x'.repeat(100000)"));
    RoundOfKinds();
    Use(service_->Url() + "/odd/" + kOddForms[static_cast<std::size_t>(round) % std::size(kOddForms)]);
    Runs(u"'\u00E9'", list_.get());
    Use("http://127.0.0.1:1");
    EXPECT_FALSE(Runs(u"1", list_.get()));
    EXPECT_TRUE(Failed(model_->CloseUserSession()));
    Use(service_->Url());
    EXPECT_EQ(model_->CloseUserSession(), S_OK);
  }
  // A whole life of service, model and host, with `rounds` rounds.
  void Life(int rounds) {
    StartWith(devservice::testing::TestOptions());
    FakeHostPtr host(new FakeHost);
    const CountingObjectPtr object(new CountingObject);
    duration_ = CreateDuration(u"P1DT2H");
    list_ = ParameterList({{u"a", Variant::FromInt(1)},
                           {u"b", Variant::FromString(u"two")},
                           {u"when", Variant::FromDate(45356.5)},
                           {u"span", Variant::FromObject(duration_.get())}});
    refused_ = ParameterList({{u"o", Variant::FromObject(object.get())}});
    model_ = CreateConnectionModel(FromUtf8(service_->Url()), u"", host->Unknown());
    FillFormaters();
    for (int round = 0; round < rounds; ++round) Round(round);
    ExpectCountsAsAtTheStart(host, object);
    refused_.reset();
    list_.reset();
    duration_.reset();
    model_.reset();
    EXPECT_EQ(host->References(), 1U);
    EXPECT_EQ(object->References(), 1U);
    CloseKeptConnections();
    service_->Stop();
  }
  void ExpectCountsAsAtTheStart(const FakeHostPtr& host, const CountingObjectPtr& object) {
    EXPECT_EQ(host->References(), 2U);
    EXPECT_EQ(object->References(), 2U);
    for (IUnknown* kept : {static_cast<IUnknown*>(list_.get()), static_cast<IUnknown*>(refused_.get()),
                           static_cast<IUnknown*>(model_.get())}) {
      EXPECT_EQ(kept->AddRef(), 2U);
      kept->Release();
    }
    EXPECT_EQ(duration_->AddRef(), 3U);  // this one, the list's and the test's
    duration_->Release();
  }

  int failures_ = 0;
  TemporaryDirectory files_;
  IDurationPtr duration_;
  IParametersPtr list_;
  IParametersPtr refused_;
  IConnectionModelPtr model_;
};

TEST_F(Leak, HundredsOfCallsLeaveNothingBehind) {
  Life(1);
  const int descriptors = OpenDescriptors();
  ASSERT_GT(descriptors, 2);
  failures_ = 0;
  Life(22);
  // Per round eight scripts fail whatever the form; three of the eleven forms give a value.
  EXPECT_EQ(failures_, 22 * 8 + 22 - 3 * 2);
  EXPECT_EQ(OpenDescriptors(), descriptors);
  EXPECT_EQ(FakeHost::Live(), 0);
  EXPECT_EQ(CountingObject::Live(), 0);
}

}  // namespace
}  // namespace qv
