// The AttachedFile object as a host meets it.
#include <gtest/gtest.h>

#include "automation/property_checks.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

class AttachedFileObject : public testing::Test {
 protected:
  void TearDown() override { ClearErrorInfo(); }

  std::string Name() {
    WideString value(u"before");
    EXPECT_EQ(object_->get_Filename(&value), S_OK);
    return Shown(value);
  }
  VARIANT_BOOL Flag() {
    VARIANT_BOOL value = 7;
    EXPECT_EQ(object_->IsTicketId(&value), S_OK);
    return value;
  }

  const IAttachedFilePtr object_ = CreateAttachedFile();
};

TEST_F(AttachedFileObject, PropertiesAreKept) {
  using I = IAttachedFile;
  ExpectText("Filename", object_, &I::get_Filename, &I::put_Filename);
  ExpectText("FileId", object_, &I::get_FileId, &I::put_FileId);
  ExpectText("TicketId", object_, &I::get_TicketId, &I::put_TicketId);
  ExpectProperty<I, std::int32_t>("SourceFileLifeTime", object_, &I::get_SourceFileLifeTime,
                                  &I::put_SourceFileLifeTime, 77, 1, {-5, 0, 70000});
  ExpectProperty<I, std::int32_t>("CleanUp", object_, &I::get_CleanUp, &I::put_CleanUp, 77, 1,
                                  {0, -5, 70000});
}

TEST_F(AttachedFileObject, InitAndPutStoreTheName) {
  EXPECT_EQ(object_->Init(u"a.txt"), S_OK);
  EXPECT_EQ(Name(), "a.txt");
  EXPECT_EQ(object_->put_Filename(u"b.txt"), S_OK);
  EXPECT_EQ(Name(), "b.txt");
}

TEST_F(AttachedFileObject, ReadingTheTicketClearsTheFlag) {
  EXPECT_EQ(Flag(), VARIANT_FALSE);
  EXPECT_EQ(object_->put_TicketId(u"t"), S_OK);
  EXPECT_EQ(Flag(), VARIANT_TRUE);
  EXPECT_EQ(object_->get_TicketId(nullptr), E_POINTER);
  EXPECT_EQ(object_->IsTicketId(nullptr), E_POINTER);
  EXPECT_EQ(Flag(), VARIANT_TRUE) << "a refused read does not count";
  WideString ticket;
  EXPECT_EQ(object_->get_TicketId(&ticket), S_OK);
  EXPECT_EQ(Shown(ticket), "t");
  EXPECT_EQ(Flag(), VARIANT_FALSE);
}

TEST_F(AttachedFileObject, IsAParameterOfItsType) {
  const IParameterPtr parameter = CreateParameter();
  ASSERT_EQ(parameter->SetValues(u"doc", Variant::FromObject(CreateAttachedFile(u"a").get())), S_OK);
  WideString type;
  EXPECT_EQ(parameter->get_ParamTypeAsString(&type), S_OK);
  EXPECT_EQ(Shown(type), "AttachedFile");
}

}  // namespace
}  // namespace qv
