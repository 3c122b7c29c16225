// Parsing by file name, and walks through what was parsed.
#include <xercesc/sax/SAXParseException.hpp>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/wide_string.h"
#include "xml/local_entities.h"
#include "xml/xml_walk.h"
#include "xml_fixture.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

constexpr char kBroken[] = "<r>\n <a></b></r>";  // at line 2, column 7

class CurrentDirectory {
 public:
  explicit CurrentDirectory(const fs::path& path) { fs::current_path(path); }
  ~CurrentDirectory() { fs::current_path(before_); }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;

 private:
  const fs::path before_ = fs::current_path();
};

class FileParseTest : public XmlFixture {
 protected:
  // The text of the document element of a file.
  static std::string TextOf(const std::string& fileName) {
    QvDomParser parser;
    parser.parse(fileName.c_str(), false);
    return ToUtf8(GetNodeText(DocumentElement(parser.Document())));
  }
  // What a refused file is reported as: system id, line and column.
  static std::string RefusalOf(const std::string& fileName) {
    QvDomParser parser;
    try {
      parser.parse(fileName.c_str(), false);
    } catch (const xercesc::SAXParseException& error) {
      return ToUtf8(error.getSystemId()) + ":" + std::to_string(error.getLineNumber()) + ":" +
             std::to_string(error.getColumnNumber());
    }
    return "(accepted)";
  }
  void ExpectAccepted(const std::string& name, const std::string& bytes) const {
    EXPECT_EQ(RefusalOf(directory_.Write(name, bytes)), "(accepted)") << name;
  }
  void ExpectRefused(const std::string& name, const std::string& bytes) const {
    EXPECT_NE(RefusalOf(directory_.Write(name, bytes)), "(accepted)") << name;
  }
  // Refused with the name as the system id, before the first line.
  static void ExpectNotOpened(const std::string& name) { EXPECT_EQ(RefusalOf(name), name + ":0:0"); }

  std::string Url(const std::string& name) const { return "file://" + directory_.Path(name); }
  std::string Pipe(const std::string& name) const {
    EXPECT_EQ(mkfifo(directory_.Path(name).c_str(), 0600), 0);
    return directory_.Path(name);
  }

  const TemporaryDirectory directory_;
};

std::string Repeated(const std::string& piece, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += piece;
  return all;
}

// Ten entities, each ten times the one before it: 10^9 references.
TEST_F(FileParseTest, EntitiesThatGrowWithoutBoundAreRefused) {
  std::string text = "<!DOCTYPE r [<!ENTITY e0 'x'>";
  for (int i = 1; i < 10; ++i)
    text += "<!ENTITY e" + std::to_string(i) + " '" + Repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
  ExpectRefused("lol.xml", text + "]><r>&e9;</r>");
}

TEST_F(FileParseTest, ManyReferencesAreFineButNotTooManyInAFileOfAnyName) {
  const auto references = [](int count) {
    return "<!DOCTYPE r [<!ENTITY e 'x'>]><r>" + Repeated("&e;", count) + "</r>";
  };
  ExpectAccepted("many.xml", references(9000));
  for (const char* name : {"e.xml", "e?.xml", "e#.xml", "e:.xml"}) ExpectRefused(name, references(10001));
  EXPECT_NE(RefusalOf(Url("e.xml?")), "(accepted)");
}

// Beyond this number the XML library's time grows by its square.
TEST_F(FileParseTest, TooManyDifferentElementsAreRefused) {
  const std::string text = "<r>" + ToUtf8(Numbered(u"<e", 16383, u"/>"));
  ExpectAccepted("most.xml", text + "</r>");
  ExpectRefused("more.xml", text + "<f/></r>");
}

TEST_F(FileParseTest, PipesAsEntitiesAreRefusedAndNotWaitedFor) {
  const std::string pipe = Pipe("pipe");
  for (const std::string& id :
       {std::string("pipe"), std::string("p%69pe"), std::string("pipe%00x"), pipe, "file://" + pipe,
        "file:///" + pipe, "file:" + pipe, "file://localhost" + pipe}) {
    SCOPED_TRACE(id);
    for (const char* name : {"entity.xml", "entity?.xml"})
      ExpectRefused(name, "<!DOCTYPE r [<!ENTITY e SYSTEM '" + id + "'>]><r>&e;</r>");
    ExpectRefused("type.xml", "<!DOCTYPE r SYSTEM '" + id + "'><r/>");
  }
}

TEST_F(FileParseTest, PipesOfAnyNameAreRefusedAndNotWaitedFor) {
  const std::string path = Pipe("pipe");
  EXPECT_EQ(RefusalOf(path), "file:///" + path + ":0:0");
  for (const char* end : {"", "?x", "#x"}) ExpectNotOpened("file://" + path + end);
  for (const char* name : {"pipe?.xml", "pipe#.xml", "pipe:.xml"}) ExpectNotOpened(Pipe(name));
}

TEST_F(FileParseTest, PathsAndFileUrlsOfEachFormAreRead) {
  const std::string path = directory_.Write("a.xml", "<r>text</r>");
  for (const char* start :
       {"", "file://", "file:", "file://localhost", "FILE://", "File:", "fIlE://LocalHost", "file:///"})
    EXPECT_EQ(TextOf(start + path), "text") << start;
}

TEST_F(FileParseTest, FileUrlIsDecodedWithoutQueryAndFragment) {
  const std::string path = directory_.Write("a b#c?.xml", "<r>odd</r>");
  for (const char* end : {"", "?x=%zz", "#top", "?x#top", "#top?x"})
    EXPECT_EQ(TextOf(Url("a%20b%23c%3F.xml") + end), "odd") << end;
  ExpectNotOpened("file://" + path);  // ends at "#"
  directory_.Write("\xFF\\%.xml", "<r>bytes</r>");
  EXPECT_EQ(TextOf("file:" + directory_.Path("%ff%5c%25.xml")), "bytes");
}

TEST_F(FileParseTest, OtherUrlsAreNotOpened) {
  const std::string path = directory_.Write("a.xml", "<r>text</r>");
  const CurrentDirectory inside(directory_.Path());
  for (const char* url :
       {"file:///a.xml", "file:a.xml", "FILE:a.xml", "file:", "file://", "file://a.xml", "file://localhost",
        "http://127.0.0.1:1/a.xml", "http://127.0.0.1:1/a.xml?x=1", "ftp://127.0.0.1:1/a.xml#top"})
    ExpectNotOpened(url);
  for (const char* start : {"file:?", "file://host", "file://127.0.0.1", "file://localhost:80"})
    ExpectNotOpened(start + path);
  for (const char* end : {"%00", "%", "%4", "%4g", "%+4"}) ExpectNotOpened("file://" + path + end);
}

TEST_F(FileParseTest, PathWithoutRootIsRelativeToTheCurrentDirectory) {
  directory_.Write("sub/a.xml", "<r>here</r>");
  directory_.Write("sub/a?.xml", "<r>there</r>");
  const CurrentDirectory inside(directory_.Path());
  EXPECT_EQ(TextOf("sub/a.xml"), "here");
  EXPECT_EQ(TextOf("sub/a?.xml"), "there");
}

TEST_F(FileParseTest, BackslashesSeparateAndOtherCharactersStay) {
  directory_.Write("a b/%41 \xC3\xA9.xml", "<r>odd</r>");
  EXPECT_EQ(TextOf(directory_.Path() + "\\a b\\%41 \xC3\xA9.xml"), "odd");
}

TEST_F(FileParseTest, EncodingIsTheFilesOwn) {
  for (const std::string& bytes : {std::string("<?xml version='1.0' encoding='iso-8859-1'?><r>\xE9</r>"),
                                   std::string("\xFF\xFE<\0r\0>\0\xE9\0<\0/\0r\0>\0", 18)})
    EXPECT_EQ(TextOf(directory_.Write("a.xml", bytes)), "\xC3\xA9");
}

TEST_F(FileParseTest, ErrorNamesTheUrlAndThePlace) {
  const std::string bad = directory_.Write("bad.xml", kBroken);
  EXPECT_EQ(RefusalOf(bad), "file:///" + bad + ":2:7");
  for (const std::string& path : {directory_.Path("none.xml"), directory_.Path()})
    EXPECT_EQ(RefusalOf(path), "file:///" + path + ":0:0");
}

// With the prefix the system id would be another, and with it every message about the file.
TEST_F(FileParseTest, NameWithQueryFragmentOrColonIsTheSystemIdItself) {
  for (const char* name : {"a?b.xml", "a#b.xml", "%41?.xml", "10:30.xml"}) {
    EXPECT_EQ(TextOf(directory_.Write(name, "<r>found</r>")), "found") << name;
    const std::string path = directory_.Write(name, kBroken);
    EXPECT_EQ(RefusalOf(path), path + ":2:7");
  }
}

TEST_F(FileParseTest, LocalEntityIsResolvedAndOneOnTheNetworkRefused) {
  const std::string part = directory_.Write("part.txt", "from a file");
  const std::string path =
      directory_.Write("e.xml", "<!DOCTYPE r [<!ENTITY e SYSTEM \"file://" + part + "\">]><r>&e;</r>");
  QvDomParser parser;
  parser.parse(path.c_str(), false);
  const XmlNode reference = DocumentElement(parser.Document()).FirstChild();
  EXPECT_EQ(reference.NodeType(), 5);
  EXPECT_EQ(reference.FirstChild().Value(), u"from a file");
  const std::string far =
      directory_.Write("n.xml", "<!DOCTYPE r [<!ENTITY e SYSTEM \"http://127.0.0.1:1/e\">]><r>&e;</r>");
  EXPECT_EQ(RefusalOf(far), "http://127.0.0.1:1/e:0:0");
}

TEST_F(FileParseTest, EmptyNameHasTheMessageOfTheNameRules) {
  QvDomParser parser;
  EXPECT_EQ(Thrown([&] { parser.parse("", false); }),
            "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
}

TEST(NamesNetwork, SchemesOtherThanFileDo) {
  for (const char16_t* name : {u"http://h/x", u"HTTPS://h", u"ftp:x", u"a+b-c.1:x"})
    EXPECT_TRUE(NamesNetwork(name)) << ToUtf8(name);
  for (const char16_t* name : {u"file:///x", u"FILE:x", u"c:\\x", u"a/b:c", u"", u"x", u"1a:b", u":x"})
    EXPECT_FALSE(NamesNetwork(name)) << ToUtf8(name);
}

class XmlWalkTest : public XmlFixture {
 protected:
  static std::string NamesOn(const XmlNode& root) {
    std::string names;
    for (XmlWalk walk(root); !walk.Node().IsNull(); walk.Next()) names += ToUtf8(walk.Node().Name()) + " ";
    return names;
  }
};

TEST_F(XmlWalkTest, VisitsTheNodesBelowItsRootInDocumentOrder) {
  const XmlNode root = Root(u"<r><a><b/>t</a><c/></r>");
  EXPECT_EQ(NamesOn(root), "r a b #text c ");
  EXPECT_EQ(NamesOn(root.FirstChild()), "a b #text ");
  EXPECT_EQ(NamesOn(XmlNode()), "");
}

TEST_F(XmlWalkTest, DocumentElementFollowsCommentsAndInstructions) {
  const XmlNode root = Root(u"<!--c--><?p?><r/>");
  EXPECT_EQ(DocumentElement(root.Parent()).Name(), u"r");
  EXPECT_TRUE(DocumentElement(XmlNode()).IsNull());
}

}  // namespace
}  // namespace qv
