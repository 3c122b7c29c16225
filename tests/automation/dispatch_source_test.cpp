// The source of a failure is the name of the class that failed, where the registry knows one. Ordinarily it
// knows only the client's; here it knows all of them, so that each failure shows its class.
#include <gtest/gtest.h>

#include "automation/late_call.h"
#include "fixtures/environment.h"
#include "fixtures/fake_http.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

// The classes whose members can fail with a message, by their ids.
constexpr char kNames[] =
    "[HKEY_CLASSES_ROOT\\CLSID\\{01932093-F909-400B-B02E-7AEDABA33A36}\\ProgID]\n@=\"the client\"\n"
    "[HKEY_CLASSES_ROOT\\CLSID\\{2541DC31-DF90-43BF-ABEF-76838F412E28}\\ProgID]\n@=\"the model\"\n"
    "[HKEY_CLASSES_ROOT\\CLSID\\{F17B9F00-6E84-4F33-8601-07EBFC331928}\\ProgID]\n@=\"the link\"\n"
    "[HKEY_CLASSES_ROOT\\CLSID\\{7F769EC9-9F94-41B4-80A6-3940C023CC0C}\\ProgID]\n@=\"the span\"\n"
    "[HKEY_CLASSES_ROOT\\CLSID\\{0F896FE3-62B0-4650-BCD3-1AA51CB97304}\\ProgID]\n@=\"the list\"\n"
    "[HKEY_CLASSES_ROOT\\CLSID\\{38F018C5-1B8F-4E6E-AFC1-48F7E7441200}\\ProgID]\n@=\"the parameter\"\n";

class DispatchSource : public testing::Test {
 protected:
  DispatchSource() {
    ClearErrorInfo();
    directory_.Write("classes.reg", kNames);
  }
  void TearDown() override { ClearErrorInfo(); }

  static std::string SourceOf(IDispatch* object, DISPID id, const std::vector<Variant>& arguments,
                              std::uint16_t flags = DISPATCH_METHOD) {
    LateCall call(object, id, flags);
    EXPECT_TRUE(Failed(call.With(arguments).Run()));
    return Shown(call.failure.bstrSource);
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
};

TEST_F(DispatchSource, IsTheClassThatFailed) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  EXPECT_EQ(SourceOf(client.get(), 1, {}), "the client");
  EXPECT_EQ(SourceOf(client.get(), 4, {}), "the client");
  const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client);
  EXPECT_EQ(SourceOf(raw.get(), 1, {FromDispatch(nullptr)}), "the client");
  const IParametersPtr list = CreateParameters();
  EXPECT_EQ(SourceOf(list.get(), 2, {I2(0)}), "the list");
  EXPECT_EQ(SourceOf(list.get(), 3, {I2(0)}), "the list");
  const IConnectionModelPtr model = CreateConnectionModel();
  EXPECT_EQ(SourceOf(model.get(), 3, {Text(u"l"), Text(u"s"), FromDispatch(list.get())}), "the model");
  EXPECT_EQ(SourceOf(model.get(), 4, {Text(u"f"), FromDispatch(list.get())}), "the model");
  EXPECT_EQ(SourceOf(CreateUrl().get(), 3, {Text(u"nowhere")}, DISPATCH_PROPERTYPUT), "the link");
}

TEST_F(DispatchSource, IsTheModelForEachOfItsFailures) {
  FakeHttp http;
  http.Fail(HttpStep::kOpen, E_FAIL, u"no route", 1);
  http.Fail(HttpStep::kOpen, E_FAIL, u"no route", 2);
  const IConnectionModelPtr model = CreateConnectionModel(u"http://srv", u"", nullptr);
  EXPECT_EQ(SourceOf(model.get(), 1, {Text(u"")}), "the model");
  ASSERT_EQ(model->SetUSID(u"u1"), S_OK);
  EXPECT_EQ(SourceOf(model.get(), 2, {}), "the model");
  EXPECT_EQ(SourceOf(model.get(), 7, {Text(u"nowhere"), Text(u"/none")}), "the model");
}

TEST_F(DispatchSource, IsTheDurationForEachOfItsUnits) {
  const IDurationPtr span = CreateDuration();
  for (DISPID id = 3; id <= 8; ++id)
    EXPECT_EQ(SourceOf(span.get(), id, {I2(-1)}, DISPATCH_PROPERTYPUT), "the span") << id;
}

// A failed read of the model through the client is the client's failure, with the model's message.
TEST_F(DispatchSource, IsTheClientForAServerNameThatItsModelRefuses) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  ASSERT_EQ(client->put_ServerName(u"srv"), S_OK);
  LateCall call(client.get(), 1);
  EXPECT_EQ(call.Code(), "0x80020009");
  EXPECT_EQ(Shown(call.failure.bstrSource), "the client");
  EXPECT_EQ(Shown(call.failure.bstrDescription),
            "Cannot parse url, expecting 'http://' after protocol name.");
}

TEST_F(DispatchSource, IsTheParameterForAValueThatCannotBeCopied) {
  const IParameterPtr parameter = CreateParameter();
  std::vector<Variant> block(2);
  block[0] = Variant::FromRaw(0x0FFF, VariantData{});
  block[1] = Text(u"k");
  DISPPARAMS arguments;
  arguments.rgvarg = block.data();
  arguments.cArgs = 2;
  EXCEPINFO failure;
  EXPECT_EQ(parameter->Invoke(1, Guid{}, 0, 1, &arguments, nullptr, &failure, nullptr), DISP_E_BADVARTYPE);
  EXPECT_EQ(Shown(failure.bstrSource), "the parameter");
}

TEST_F(DispatchSource, IsEmptyWithoutANameInTheRegistry) {
  directory_.Write("classes.reg", "");
  EXPECT_EQ(SourceOf(CreateQvScriptwells().get(), 4, {}), "<null>");
  EXPECT_EQ(SourceOf(CreateParameters().get(), 2, {I2(0)}), "<null>");
}

}  // namespace
}  // namespace qv
