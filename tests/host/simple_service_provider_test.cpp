// The ready-made service provider: it knows one service.
#include <gtest/gtest.h>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/simple_host.h"

namespace qv {
namespace {

class SimpleServiceProvider : public ::testing::Test {
 protected:
  IUnknownPtr Get(const WideString& name) {
    IUnknownPtr service;
    EXPECT_EQ(provider_->GetService(name, Put(service)), S_OK);
    return service;
  }

  IQvClientServicesPtr services_ = CreateSimpleHost({u"joe", nullptr, nullptr, nullptr});
  IQvServiceProviderPtr provider_ = CreateSimpleServiceProvider(services_.get());
};

TEST_F(SimpleServiceProvider, KnowsOneName) {
  const IUnknownPtr service = Get(u"QvClientServices");
  ASSERT_TRUE(service);
  EXPECT_EQ(As<IQvClientServices>(service), services_);
  for (const char16_t* name : {u"qvclientservices", u"QvClientServices ", u""}) EXPECT_FALSE(Get(name));
  EXPECT_FALSE(Get(nullptr));
  EXPECT_EQ(provider_->GetService(u"QvClientServices", nullptr), E_POINTER);
}

TEST_F(SimpleServiceProvider, WithoutServicesTheNameGivesNull) {
  provider_ = CreateSimpleServiceProvider(nullptr);
  EXPECT_FALSE(Get(u"QvClientServices"));
}

TEST_F(SimpleServiceProvider, EachAnswerCarriesOneReference) {
  EXPECT_EQ(services_->AddRef(), 3U);  // ours, the provider's, and this one
  services_->Release();
  {
    const IUnknownPtr service = Get(u"QvClientServices");
    EXPECT_EQ(services_->AddRef(), 4U);
    services_->Release();
  }
  EXPECT_EQ(services_->AddRef(), 3U);
  services_->Release();
}

TEST_F(SimpleServiceProvider, ServicesOutliveTheCallersReference) {
  services_.reset();
  EXPECT_TRUE(Get(u"QvClientServices"));
}

TEST_F(SimpleServiceProvider, OffersItsTwoInterfacesOnly) {
  EXPECT_EQ(As<IQvServiceProvider>(provider_), provider_);
  EXPECT_EQ(As<IUnknown>(provider_), provider_);
  void* object = this;
  EXPECT_EQ(provider_->QueryInterface(IQvClientServices::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

}  // namespace
}  // namespace qv
