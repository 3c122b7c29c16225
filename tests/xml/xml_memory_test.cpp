// The ceiling on memory that a host sets for its thread.
#include "qvscriptwells/xml_memory.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <utility>

#include <xercesc/util/OutOfMemoryException.hpp>

#include "fixtures/temporary_directory.h"
#include "qvscriptwells/wide_string.h"
#include "xml_fixture.h"

namespace qv {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;
constexpr char16_t kTooMuch[] = u"The document needs more memory than it may have.";

class XmlMemoryTest : public XmlFixture {
 protected:
  XmlMemoryTest() { SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling); }
  ~XmlMemoryTest() override { SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling); }

  // 8 million units of dense markup: 63 MB.
  static std::u16string DenseText() { return u"<r>" + Repeat(u"<a/>", 2000000) + u"</r>"; }

  // A million units, nearly all of an entity, and 32 copies of it: 2 bytes for each unit of them at least.
  static std::u16string TextOfCopies() {
    return u"<!DOCTYPE r [<!ENTITY e '" + Repeat(u"x", 1000000) + u"'>]><r>" + Repeat(u"&e;", 32) + u"</r>";
  }

  // What the parser of a refused text has taken.
  static std::size_t BytesTakenBefore(std::u16string_view text, std::size_t ceiling) {
    SetThreadXmlMemoryCeiling(ceiling);
    QvDomParser parser;
    EXPECT_THROW(parser.ParseHostileText(text, "application/xml"), XERCES_CPP_NAMESPACE::SAXParseException);
    return parser.BytesInUse();
  }

  static std::size_t BytesFor(std::u16string_view text) {
    QvDomParser parser;
    parser.ParseHostileText(text, "application/xml");
    return parser.BytesInUse();
  }
};

TEST_F(XmlMemoryTest, StartsWithoutACeiling) {
  std::size_t ceiling = 0;
  std::thread([&] { ceiling = ThreadXmlMemoryCeiling(); }).join();
  EXPECT_EQ(ceiling, kNoXmlMemoryCeiling);
  EXPECT_EQ(ceiling, 18446744073709551615U);
}

TEST_F(XmlMemoryTest, DenseTextAndCopiesOfAnEntityAreReadWithoutACeilingAndRefusedAtIt) {
  const std::pair<std::u16string, std::size_t> rows[] = {{DenseText(), 40 * kMegabyte},
                                                         {TextOfCopies(), 60 * kMegabyte}};
  for (const auto& [text, bytes] : rows) {
    SetThreadXmlMemoryCeiling(kNoXmlMemoryCeiling);
    EXPECT_GT(BytesFor(text), bytes);
    EXPECT_EQ(RefusalOf(text, 32 * kMegabyte).message, kTooMuch);
    EXPECT_LE(BytesTakenBefore(text, 32 * kMegabyte), 48 * kMegabyte);
  }
}

TEST_F(XmlMemoryTest, ReallyNoMoreIsTakenFromTheSystem) {
  const std::u16string text = DenseText();
  const pid_t child = fork();
  if (child == 0) {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    const bool refused = RefusalOf(text, 32 * kMegabyte).thrown;
    getrusage(RUSAGE_SELF, &after);
    _exit(refused && after.ru_maxrss - before.ru_maxrss < 64L * 1024 ? 0 : 1);  // kB
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST_F(XmlMemoryTest, SmallTextIsReadAlsoAfterARefusal) {
  SetThreadXmlMemoryCeiling(kMegabyte);
  ExpectRefused(DenseText());
  ExpectRead(u"<r>" + Repeat(u"<a/>", 1000) + u"</r>");
}

TEST_F(XmlMemoryTest, HighCeilingDoesNotLiftTheLimitsOfTheLibrary) {
  // The document type keeps the library's tree, of which a level takes 90 bytes a unit.
  const std::u16string levels = u"<!DOCTYPE a>" + Repeat(u"<a>", 1000000) + Repeat(u"</a>", 1000000);
  EXPECT_EQ(RefusalOf(levels, kNoXmlMemoryCeiling - 1).message, kTooMuch);
}

TEST_F(XmlMemoryTest, OtherThreadsAreNotAffected) {
  SetThreadXmlMemoryCeiling(kMegabyte);
  bool refused = true;
  std::thread([&] { refused = RefusalOf(DenseText()).thrown; }).join();
  EXPECT_FALSE(refused);
}

TEST_F(XmlMemoryTest, HoldsForScriptDocuments) {
  const TemporaryDirectory directory;
  const std::string path = directory.Write("a.xml", "<r>" + ToUtf8(Repeat(u"<a/>", 200000)) + "</r>");
  QvDomParser parser;
  EXPECT_NO_THROW(parser.parse(path.c_str(), false));
  SetThreadXmlMemoryCeiling(kMegabyte);
  QvDomParser limited;
  EXPECT_THROW(limited.parse(path.c_str(), false), XERCES_CPP_NAMESPACE::OutOfMemoryException);
}

}  // namespace
}  // namespace qv
