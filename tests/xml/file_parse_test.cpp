// Parsing by file name.
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/wide_string.h"
#include "xml/local_entities.h"
#include "xml/xml_walk.h"
#include "xml_fixture.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

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
  FileParseTest() {
    std::string pattern = (fs::temp_directory_path() / "qv_file_parse_XXXXXX").string();
    directory_ = mkdtemp(pattern.data());
  }
  ~FileParseTest() override { fs::remove_all(directory_); }

  std::string Write(const std::string& name, const std::string& bytes) const {
    const fs::path path = directory_ / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }

  // The text of the document element of a file.
  static WideString TextOf(const std::string& fileName) {
    QvDomParser parser;
    parser.parse(fileName.c_str(), false);
    return WideString(GetNodeText(DocumentElement(parser.Document())));
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

  fs::path directory_;
};

// Ten entities, each ten times the one before it: 10^9 references.
TEST_F(FileParseTest, EntitiesThatGrowWithoutBoundAreRefused) {
  std::string text = "<!DOCTYPE r [<!ENTITY e0 'x'>";
  for (int i = 1; i < 10; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '";
    for (int n = 0; n < 10; ++n) text += "&e" + std::to_string(i - 1) + ";";
    text += "'>";
  }
  EXPECT_NE(RefusalOf(Write("lol.xml", text + "]><r>&e9;</r>")), "(accepted)");
}

TEST_F(FileParseTest, ThousandsOfReferencesAreFine) {
  std::string text = "<!DOCTYPE r [<!ENTITY e 'x'>]><r>";
  for (int i = 0; i < 9000; ++i) text += "&e;";
  EXPECT_EQ(RefusalOf(Write("many.xml", text + "</r>")), "(accepted)");
}

// Beyond this number the XML library's time grows by its square.
TEST_F(FileParseTest, TooManyDifferentElementsAreRefused) {
  std::string text = "<r>";
  for (int i = 0; i < 16383; ++i) text += "<e" + std::to_string(i) + "/>";
  EXPECT_EQ(RefusalOf(Write("most.xml", text + "</r>")), "(accepted)");
  EXPECT_NE(RefusalOf(Write("more.xml", text + "<f/></r>")), "(accepted)");
}

TEST_F(FileParseTest, PipesAsEntitiesAreRefusedAndNotWaitedFor) {
  const std::string pipe = (directory_ / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& id :
       {std::string("pipe"), std::string("p%69pe"), std::string("pipe%00x"), pipe, "file://" + pipe,
        "file:///" + pipe, "file:" + pipe, "file://localhost" + pipe}) {
    const std::string entity = "<!DOCTYPE r [<!ENTITY e SYSTEM '" + id + "'>]><r>&e;</r>";
    for (const char* name : {"entity.xml", "entity?.xml"})
      EXPECT_NE(RefusalOf(Write(name, entity)), "(accepted)") << id;
    EXPECT_NE(RefusalOf(Write("type.xml", "<!DOCTYPE r SYSTEM '" + id + "'><r/>")), "(accepted)") << id;
  }
}

TEST_F(FileParseTest, PipeIsRefusedAndNotWaitedFor) {
  const std::string path = (directory_ / "pipe").string();
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(RefusalOf(path), "file:///" + path + ":0:0");
  for (const char* end : {"", "?x", "#x"})
    EXPECT_EQ(RefusalOf("file://" + path + end), "file://" + path + end + ":0:0");
}

TEST_F(FileParseTest, PipeWithQueryOrFragmentInItsNameIsRefusedAndNotWaitedFor) {
  for (const char* name : {"pipe?.xml", "pipe#.xml", "pipe:.xml"}) {
    const std::string path = (directory_ / name).string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(RefusalOf(path), path + ":0:0");
  }
}

TEST_F(FileParseTest, AbsolutePathIsRead) {
  EXPECT_EQ(TextOf(Write("a.xml", "<r>text</r>")), u"text");
}

TEST_F(FileParseTest, FileUrlOfEachFormIsRead) {
  const std::string path = Write("a.xml", "<r>text</r>");
  for (const char* start :
       {"file://", "file:", "file://localhost", "FILE://", "File:", "fIlE://LocalHost", "file:///"})
    EXPECT_EQ(TextOf(start + path), u"text") << start;
}

TEST_F(FileParseTest, FileUrlIsAbsolute) {
  Write("a.xml", "<r>here</r>");
  const CurrentDirectory inside(directory_);
  EXPECT_EQ(RefusalOf("file:///a.xml"), "file:///a.xml:0:0");
}

TEST_F(FileParseTest, FileUrlIsDecodedWithoutQueryAndFragment) {
  const std::string path = Write("a b#c?.xml", "<r>odd</r>");
  const std::string url = "file://" + directory_.string() + "/a%20b%23c%3F.xml";
  for (const char* end : {"", "?x=%zz", "#top", "?x#top", "#top?x"})
    EXPECT_EQ(TextOf(url + end), u"odd") << end;
  EXPECT_EQ(RefusalOf("file://" + path), "file://" + path + ":0:0");  // ends at "#"
  Write("\xFF\\%.xml", "<r>bytes</r>");
  EXPECT_EQ(TextOf("file:" + directory_.string() + "/%ff%5c%25.xml"), u"bytes");
}

TEST_F(FileParseTest, FileUrlsThatNameNoLocalFileAreRefused) {
  const std::string path = Write("a.xml", "<r>text</r>");
  const CurrentDirectory inside(directory_);
  for (const std::string& url :
       {std::string("file:a.xml"), std::string("FILE:a.xml"), std::string("file:"), std::string("file://"),
        std::string("file://a.xml"), std::string("file://localhost"), std::string("file:?") + path,
        "file://host" + path, "file://127.0.0.1" + path, "file://localhost:80" + path,
        "file://" + path + "%00", "file://" + path + "%", "file://" + path + "%4", "file://" + path + "%4g",
        "file://" + path + "%+4"})
    EXPECT_EQ(RefusalOf(url), url + ":0:0");
}

TEST_F(FileParseTest, PathWithoutRootIsRelativeToTheCurrentDirectory) {
  Write("sub/a.xml", "<r>here</r>");
  Write("sub/a?.xml", "<r>there</r>");
  const CurrentDirectory inside(directory_);
  EXPECT_EQ(TextOf("sub/a.xml"), u"here");
  EXPECT_EQ(TextOf("sub/a?.xml"), u"there");
}

TEST_F(FileParseTest, BackslashesBlanksPercentSignsAndOtherLettersAreAsTheyStand) {
  Write("a b/%41 \xC3\xA9.xml", "<r>odd</r>");
  EXPECT_EQ(TextOf(directory_.string() + "\\a b\\%41 \xC3\xA9.xml"), u"odd");
}

TEST_F(FileParseTest, EncodingIsTheFilesOwn) {
  EXPECT_EQ(TextOf(Write("l.xml", "<?xml version='1.0' encoding='iso-8859-1'?><r>\xE9</r>")), u"\u00e9");
  EXPECT_EQ(TextOf(Write("u.xml", std::string("\xFF\xFE<\0r\0>\0\xE9\0<\0/\0r\0>\0", 18))), u"\u00e9");
}

TEST_F(FileParseTest, ErrorNamesTheUrlAndThePlace) {
  const std::string path = Write("bad.xml", "<r>\n <a></b></r>");
  EXPECT_EQ(RefusalOf(path), "file:///" + path + ":2:7");
}

TEST_F(FileParseTest, MissingFileIsAParseErrorAtLineZero) {
  const std::string path = (directory_ / "none.xml").string();
  EXPECT_EQ(RefusalOf(path), "file:///" + path + ":0:0");
}

TEST_F(FileParseTest, DirectoryIsAParseError) {
  EXPECT_EQ(RefusalOf(directory_.string()), "file:///" + directory_.string() + ":0:0");
}

TEST_F(FileParseTest, OtherSchemesAreNotOpened) {
  EXPECT_EQ(RefusalOf("http://127.0.0.1:1/a.xml"), "http://127.0.0.1:1/a.xml:0:0");
  EXPECT_EQ(RefusalOf("http://127.0.0.1:1/a.xml?x=1"), "http://127.0.0.1:1/a.xml?x=1:0:0");
  EXPECT_EQ(RefusalOf("ftp://127.0.0.1:1/a.xml#top"), "ftp://127.0.0.1:1/a.xml#top:0:0");
}

// With the prefix the system id would be another, and with it every message about the file.
TEST_F(FileParseTest, NameWithQueryOrFragmentIsTheSystemIdAsItStands) {
  for (const char* name : {"a?b.xml", "a#b.xml", "%41?.xml"}) {
    EXPECT_EQ(TextOf(Write(name, "<r>found</r>")), u"found") << name;
    const std::string path = Write(name, "<r>\n <a></b></r>");
    EXPECT_EQ(RefusalOf(path), path + ":2:7");
  }
}

TEST_F(FileParseTest, NameWithAColonThatIsNoSchemeIsTheSystemIdAsItStands) {
  EXPECT_EQ(TextOf(Write("10:30.xml", "<r>found</r>")), u"found");
  const std::string path = Write("10:30.xml", "<r>\n <a></b></r>");
  EXPECT_EQ(RefusalOf(path), path + ":2:7");
}

TEST_F(FileParseTest, FileOfAnyNameHasTheLimits) {
  std::string text = "<!DOCTYPE r [<!ENTITY e 'x'>]><r>";
  for (int i = 0; i < 10001; ++i) text += "&e;";
  text += "</r>";
  for (const char* name : {"e.xml", "e?.xml", "e#.xml", "e:.xml"})
    EXPECT_NE(RefusalOf(Write(name, text)), "(accepted)") << name;
  EXPECT_NE(RefusalOf("file://" + directory_.string() + "/e.xml?"), "(accepted)");
}

TEST_F(FileParseTest, LocalEntityIsResolved) {
  const std::string part = Write("part.txt", "from a file");
  const std::string path =
      Write("e.xml", "<!DOCTYPE r [<!ENTITY e SYSTEM \"file://" + part + "\">]><r>&e;</r>");
  QvDomParser parser;
  parser.parse(path.c_str(), false);
  const XmlNode reference = DocumentElement(parser.Document()).FirstChild();
  EXPECT_EQ(reference.NodeType(), 5);
  EXPECT_EQ(reference.FirstChild().Value(), u"from a file");
}

TEST_F(FileParseTest, EntityOnTheNetworkIsRefused) {
  const std::string path =
      Write("n.xml", "<!DOCTYPE r [<!ENTITY e SYSTEM \"http://127.0.0.1:1/e\">]><r>&e;</r>");
  EXPECT_EQ(RefusalOf(path), "http://127.0.0.1:1/e:0:0");
}

TEST_F(FileParseTest, EmptyNameHasTheWordsOfTheNameRules) {
  QvDomParser parser;
  try {
    parser.parse("", false);
    ADD_FAILURE();
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Description(), u"IsFileNameURL - File Name is missing.");
  }
}

TEST(NamesNetwork, SchemesOtherThanFileDo) {
  for (const char16_t* name : {u"http://h/x", u"HTTPS://h", u"ftp:x", u"a+b-c.1:x"})
    EXPECT_TRUE(NamesNetwork(name));
  for (const char16_t* name : {u"file:///x", u"FILE:x", u"c:\\x", u"a/b:c", u"", u"x", u"1a:b", u":x"})
    EXPECT_FALSE(NamesNetwork(name)) << ToUtf8(name);
}

class XmlWalkTest : public XmlFixture {};

TEST_F(XmlWalkTest, VisitsNodesInDocumentOrder) {
  std::string names;
  for (XmlWalk walk(Root(u"<r><a><b/>t</a><c/></r>")); !walk.Node().IsNull(); walk.Next())
    names += ToUtf8(walk.Node().Name()) + " ";
  EXPECT_EQ(names, "r a b #text c ");
}

TEST_F(XmlWalkTest, StaysBelowItsRoot) {
  std::string names;
  const XmlNode first = Root(u"<r><a><b/></a><c/></r>").FirstChild();
  for (XmlWalk walk(first); !walk.Node().IsNull(); walk.Next()) names += ToUtf8(walk.Node().Name()) + " ";
  EXPECT_EQ(names, "a b ");
}

TEST_F(XmlWalkTest, NothingIsNoWalk) {
  EXPECT_TRUE(XmlWalk(XmlNode()).Node().IsNull());
}

TEST_F(XmlWalkTest, DocumentElementStandsBehindCommentsAndInstructions) {
  const XmlNode root = Root(u"<!--c--><?p?><r/>");
  EXPECT_EQ(DocumentElement(root.Parent()).Name(), u"r");
  EXPECT_TRUE(DocumentElement(XmlNode()).IsNull());
}

}  // namespace
}  // namespace qv
