#include "recordlist/cell_formaters.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>

#include "fixtures/fake_record_list.h"
#include "fixtures/shown_value.h"
#include "fixtures/thrown.h"
#include "fixtures/xml_text.h"
#include "format/factory_fixture.h"
#include "format/formater_creator.h"
#include "format/probe_formater.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv {
namespace {

constexpr char kCannotCreate[] = "EQvException 0x00000000 Cannot create the recordlist";

// A formater that fails both ways as a test wants.
class FailingFormater : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode&) override {
    fail();
    return Variant();
  }
  WideString WriteValue(const Variant&) override {
    fail();
    return u"";
  }
  std::function<void()> fail;
};

class FailingFormaterCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater; }
  FailingFormater formater;
};

class CellFormatersTest : public FactoryFixture {
 protected:
  std::string ReadOf(std::int32_t type) {
    return Thrown([&] { cells_.ReadCell(type, XmlNode()); });
  }
  std::string WriteOf(std::int32_t type) {
    return Thrown([&] { cells_.WriteCell(type, Variant::FromInt(5)); });
  }
  // What both directions throw when the formater of column type 4 fails so.
  std::string FailsWith(const std::function<void()>& fail) {
    Factory()->Clear();
    FailingFormaterCreator creator(u"double");
    creator.formater.fail = fail;
    CellFormaters cells;
    const std::string read = Thrown([&] { cells.ReadCell(4, XmlNode()); });
    EXPECT_EQ(Thrown([&] { cells.WriteCell(4, Variant()); }), read);
    return read;
  }

  CellFormaters cells_;
};

TEST_F(CellFormatersTest, TypeWithoutFormaterReadsEmptyAndWritesNothing) {
  const XmlText xml(u"<a>5</a>");
  for (const std::int32_t type :
       {0, 7, 9, 14, 15, 19, 22, 24, 25, -1, 1000, 65540, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(ShownValue(cells_.ReadCell(type, xml.Root().FirstChild())), "VT_EMPTY") << type;
    EXPECT_TRUE(cells_.WriteCell(type, Variant::FromInt(5)).IsEmpty()) << type;
  }
}

TEST_F(CellFormatersTest, EmptyFactoryReadsEmptyAndWritesNothing) {
  Factory()->Clear();
  const XmlText xml(u"<a>5</a>");
  for (std::int32_t type = 0; type < 25; ++type) {
    EXPECT_EQ(ShownValue(cells_.ReadCell(type, xml.Root().FirstChild())), "VT_EMPTY") << type;
    EXPECT_TRUE(cells_.WriteCell(type, Variant::FromInt(5)).IsEmpty()) << type;
  }
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
    EXPECT_EQ(Shown(cells.WriteCell(row.type, Variant())), "probe") << row.type;
  }
}

// Types side by side: no formater stands in for another one.
TEST_F(CellFormatersTest, TypesDoNotMix) {
  const XmlText xml(u"<a>2</a>");
  const XmlNode text = xml.Root().FirstChild();
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(ShownValue(cells_.ReadCell(1, text)), "VT_BSTR 2");
    EXPECT_EQ(ShownValue(cells_.ReadCell(10, text)), "VT_INT 2");
    EXPECT_EQ(ShownValue(cells_.ReadCell(0, text)), "VT_EMPTY");
    EXPECT_EQ(ShownValue(cells_.ReadCell(4, text)), "VT_R8 2");
    EXPECT_EQ(ShownValue(cells_.ReadCell(24, text)), "VT_EMPTY");
    EXPECT_EQ(ShownValue(cells_.ReadCell(11, text)), "VT_I2 2");
    EXPECT_EQ(ShownValue(cells_.ReadCell(13, text)), "VT_I1 2");
    EXPECT_EQ(ShownValue(cells_.ReadCell(23, XmlNode())), "VT_EMPTY");
  }
}

TEST_F(CellFormatersTest, FormatersOwnWordsPassWithTheirCode) {
  EXPECT_EQ(FailsWith([] { throw EQvException(u"my words", 7); }), "EQvException 0x80040007 my words");
  EXPECT_EQ(FailsWith([] { throw EQvException(u"no number"); }), "EQvException 0x00000000 no number");
  EXPECT_EQ(FailsWith([] { throw EQvException(WideString(), 7); }), "EQvException 0x80040007 <null>");
}

TEST_F(CellFormatersTest, AnyOtherFailureHasOneText) {
  EXPECT_EQ(FailsWith([] { _com_raise_error(E_POINTER); }), kCannotCreate);
  EXPECT_EQ(FailsWith([] { _com_raise_error(E_OUTOFMEMORY); }), kCannotCreate);
  EXPECT_EQ(FailsWith([] { throw std::runtime_error("words"); }), kCannotCreate);
  EXPECT_EQ(FailsWith([] { throw 5; }), kCannotCreate);
}

TEST_F(CellFormatersTest, RealFormatersFailAsTheyAre) {
  for (const std::int32_t type : {16, 17, 18})
    EXPECT_EQ(ReadOf(type), "EQvException 0x00000000 Unable to convert a value with the given accuracy")
        << type;
  EXPECT_EQ(ReadOf(5), kCannotCreate);
  EXPECT_EQ(WriteOf(5), kCannotCreate);
}

}  // namespace
}  // namespace qv
