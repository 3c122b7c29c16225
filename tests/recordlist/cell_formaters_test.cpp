// The formaters of a table's cells, found by the type of the column.
#include "recordlist/cell_formaters.h"

#include <limits>

#include "format/probe_formater.h"
#include "recordlist/record_list_test.h"

namespace qv {
namespace {

class CellFormatersTest : public FactoryFixture {
 protected:
  std::string ReadOf(std::int32_t type) {
    return Thrown([&] { cells_.ReadCell(type, XmlNode()); });
  }
  std::string WriteOf(std::int32_t type) {
    return Thrown([&] { cells_.WriteCell(type, Int(5)); });
  }
  // A cell of this type reads empty and writes nothing.
  void ExpectNothing(std::int32_t type) {
    const XmlText xml(u"<a>5</a>");
    EXPECT_EQ(ShownValue(cells_.ReadCell(type, xml.Root().FirstChild())), "VT_EMPTY") << type;
    EXPECT_TRUE(cells_.WriteCell(type, Int(5)).empty()) << type;
  }

  CellFormaters cells_;
};

TEST_F(CellFormatersTest, TypeWithoutFormaterReadsEmptyAndWritesNothing) {
  for (const std::int32_t type :
       {0, 7, 9, 14, 15, 19, 22, 24, 25, -1, 1000, 65540, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()})
    ExpectNothing(type);
}

TEST_F(CellFormatersTest, EmptyFactoryReadsEmptyAndWritesNothing) {
  Factory()->Clear();
  for (std::int32_t type = 0; type < 25; ++type) ExpectNothing(type);
}

TEST_F(CellFormatersTest, EachTypeAsksForItsOwnFormater) {
  const struct {
    std::int32_t type;
    const char16_t* name;
  } rows[] = {{1, u"string"},   {2, u"boolean"}, {3, u"float"},  {4, u"double"},
              {5, u"duration"}, {6, u"string"},  {8, u"string"}, {10, u"int"},
              {11, u"short"},   {12, u"long"},   {13, u"byte"},  {16, u"datetime"},
              {17, u"time"},    {18, u"date"},   {23, u"url"},   {14, u"unsigned short"}};
  for (const auto& row : rows) {
    Factory()->Clear();
    ProbeFormaterCreator creator(row.name);
    CellFormaters cells;
    EXPECT_EQ(ShownValue(cells.ReadCell(row.type, XmlNode())), "VT_BSTR probe") << row.type;
    EXPECT_EQ(cells.WriteCell(row.type, Variant()), u"probe") << row.type;
  }
}

// Types side by side: no formater takes the place of another one.
TEST_F(CellFormatersTest, TypesDoNotMix) {
  const XmlText xml(u"<a>2</a>");
  const struct {
    std::int32_t type;
    const char* value;
  } rows[] = {{1, "VT_BSTR 2"}, {10, "VT_INT 2"}, {0, "VT_EMPTY"}, {4, "VT_R8 2"},
              {24, "VT_EMPTY"}, {11, "VT_I2 2"},  {13, "VT_I1 2"}};
  for (int round = 0; round < 2; ++round) {
    for (const auto& row : rows)
      EXPECT_EQ(ShownValue(cells_.ReadCell(row.type, xml.Root().FirstChild())), row.value);
    EXPECT_EQ(ShownValue(cells_.ReadCell(23, XmlNode())), "VT_EMPTY");
  }
}

TEST_F(CellFormatersTest, FailureOfAFormaterIsItsOwnOrHasOneMessage) {
  for (const auto& row : kFormaterFailures) {
    Factory()->Clear();
    FailingFormaterCreator creator(u"double");
    creator.formater.fail = row.fail;
    CellFormaters cells;
    EXPECT_EQ(Thrown([&] { cells.ReadCell(4, XmlNode()); }), row.thrown);
    EXPECT_EQ(Thrown([&] { cells.WriteCell(4, Variant()); }), row.thrown);
  }
}

TEST_F(CellFormatersTest, RealFormatersFailAsTheyAre) {
  for (const std::int32_t type : {16, 17, 18}) EXPECT_EQ(ReadOf(type), kNotAccurate) << type;
  EXPECT_EQ(ReadOf(5), kCannotCreate);
  EXPECT_EQ(WriteOf(5), kCannotCreate);
}

}  // namespace
}  // namespace qv
