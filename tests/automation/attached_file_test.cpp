// The AttachedFile object as a host meets it.
#include <gtest/gtest.h>

#include <string>

#include "automation/slot_order.h"
#include "automation/waiting_record.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

class AttachedFileObject : public testing::Test {
 protected:
  AttachedFileObject() : object_(CreateAttachedFile()) { LeaveStaleRecord(); }
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

  IAttachedFilePtr object_;
};

TEST_F(AttachedFileObject, StartsEmptyWithOnes) {
  std::int32_t lifeTime = 0;
  std::int32_t cleanUp = 0;
  EXPECT_EQ(Name(), "<null>");
  EXPECT_EQ(object_->get_SourceFileLifeTime(&lifeTime), S_OK);
  EXPECT_EQ(object_->get_CleanUp(&cleanUp), S_OK);
  EXPECT_EQ(lifeTime, 1);
  EXPECT_EQ(cleanUp, 1);
  EXPECT_EQ(Flag(), VARIANT_FALSE);
}

TEST_F(AttachedFileObject, InitAndPutStoreTheName) {
  EXPECT_EQ(object_->Init(u"a.txt"), S_OK);
  EXPECT_EQ(Name(), "a.txt");
  EXPECT_EQ(object_->put_Filename(u"b.txt"), S_OK);
  EXPECT_EQ(Name(), "b.txt");
}

TEST_F(AttachedFileObject, NumbersAndIdAreKept) {
  EXPECT_EQ(object_->put_FileId(u"7"), S_OK);
  EXPECT_EQ(object_->put_SourceFileLifeTime(-5), S_OK);
  EXPECT_EQ(object_->put_CleanUp(0), S_OK);
  WideString id;
  std::int32_t lifeTime = 0;
  std::int32_t cleanUp = 9;
  EXPECT_EQ(object_->get_FileId(&id), S_OK);
  EXPECT_EQ(object_->get_SourceFileLifeTime(&lifeTime), S_OK);
  EXPECT_EQ(object_->get_CleanUp(&cleanUp), S_OK);
  EXPECT_EQ(Shown(id), "7");
  EXPECT_EQ(lifeTime, -5);
  EXPECT_EQ(cleanUp, 0);
}

TEST_F(AttachedFileObject, ReadingTheTicketClearsTheFlag) {
  EXPECT_EQ(object_->put_TicketId(u"t"), S_OK);
  EXPECT_EQ(Flag(), VARIANT_TRUE);
  WideString ticket;
  EXPECT_EQ(object_->get_TicketId(&ticket), S_OK);
  EXPECT_EQ(Shown(ticket), "t");
  EXPECT_EQ(Flag(), VARIANT_FALSE);
}

TEST_F(AttachedFileObject, NullOutPointersAreRefused) {
  object_->put_TicketId(u"t");
  EXPECT_EQ(object_->get_Filename(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_FileId(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_SourceFileLifeTime(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_CleanUp(nullptr), E_POINTER);
  EXPECT_EQ(object_->get_TicketId(nullptr), E_POINTER);
  EXPECT_EQ(object_->IsTicketId(nullptr), E_POINTER);
  EXPECT_EQ(Flag(), VARIANT_TRUE) << "a refused read is none";
}

TEST_F(AttachedFileObject, IsAParameterOfItsType) {
  const IParameterPtr parameter = CreateParameter();
  ASSERT_EQ(parameter->SetValues(u"doc", Variant::FromObject(CreateAttachedFile(u"a").get())), S_OK);
  WideString type;
  EXPECT_EQ(parameter->get_ParamTypeAsString(&type), S_OK);
  EXPECT_EQ(Shown(type), "AttachedFile");
}

// Read slot before write slot, in the order that hosts were compiled for.
TEST(AttachedFileSlots, StandInOrder) {
  auto init = &IAttachedFile::Init;
  auto getName = &IAttachedFile::get_Filename;
  auto putName = &IAttachedFile::put_Filename;
  auto getId = &IAttachedFile::get_FileId;
  auto putId = &IAttachedFile::put_FileId;
  auto getLife = &IAttachedFile::get_SourceFileLifeTime;
  auto putLife = &IAttachedFile::put_SourceFileLifeTime;
  auto getClean = &IAttachedFile::get_CleanUp;
  auto putClean = &IAttachedFile::put_CleanUp;
  auto getTicket = &IAttachedFile::get_TicketId;
  auto putTicket = &IAttachedFile::put_TicketId;
  auto isTicket = &IAttachedFile::IsTicketId;
  const std::ptrdiff_t first = PlaceOf(&init);
  const void* const rest[] = {&getName,  &putName,  &getId,     &putId,     &getLife, &putLife,
                              &getClean, &putClean, &getTicket, &putTicket, &isTicket};
  std::ptrdiff_t place = first;
  for (const void* operation : rest) EXPECT_EQ(PlaceOf(operation), place += kSlot);
}

}  // namespace
}  // namespace qv
