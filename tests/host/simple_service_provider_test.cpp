#include <gtest/gtest.h>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/simple_host.h"

namespace qv {
namespace {

class SimpleServiceProvider : public ::testing::Test {
 protected:
  IUnknownPtr Get(const WideString& name) {
    IUnknown* service = nullptr;
    EXPECT_EQ(provider_->GetService(name, &service), S_OK);
    return IUnknownPtr(service, false);
  }

  IQvClientServicesPtr services_ = CreateSimpleHost({u"joe", nullptr, nullptr, nullptr});
  IQvServiceProviderPtr provider_ = CreateSimpleServiceProvider(services_.get());
};

TEST_F(SimpleServiceProvider, KnownNameGivesTheServices) {
  const IUnknownPtr service = Get(u"QvClientServices");
  ASSERT_TRUE(service);
  const IQvClientServicesPtr same = As<IQvClientServices>(service);
  EXPECT_EQ(same.get(), services_.get());
}

TEST_F(SimpleServiceProvider, OtherNamesGiveNull) {
  EXPECT_FALSE(Get(u"qvclientservices"));
  EXPECT_FALSE(Get(u"QvClientServices "));
  EXPECT_FALSE(Get(u""));
  EXPECT_FALSE(Get(nullptr));
}

TEST_F(SimpleServiceProvider, WithoutServicesTheNameGivesNull) {
  provider_ = CreateSimpleServiceProvider(nullptr);
  EXPECT_FALSE(Get(u"QvClientServices"));
}

TEST_F(SimpleServiceProvider, NullOutPointerIsRefused) {
  EXPECT_EQ(provider_->GetService(u"QvClientServices", nullptr), E_POINTER);
}

TEST_F(SimpleServiceProvider, EachAnswerCarriesOneReference) {
  EXPECT_EQ(services_->AddRef(), 3u);  // ours, the provider's, and this one
  services_->Release();
  {
    const IUnknownPtr service = Get(u"QvClientServices");
    EXPECT_EQ(services_->AddRef(), 4u);
    services_->Release();
  }
  EXPECT_EQ(services_->AddRef(), 3u);
  services_->Release();
}

TEST_F(SimpleServiceProvider, ServicesOutliveTheCallersReference) {
  services_.reset();
  EXPECT_TRUE(Get(u"QvClientServices"));
}

TEST_F(SimpleServiceProvider, OffersItsTwoInterfacesOnly) {
  void* object = nullptr;
  EXPECT_EQ(provider_->QueryInterface(IQvServiceProvider::kIid, &object), S_OK);
  static_cast<IQvServiceProvider*>(object)->Release();
  EXPECT_EQ(provider_->QueryInterface(IQvClientServices::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

}  // namespace
}  // namespace qv
