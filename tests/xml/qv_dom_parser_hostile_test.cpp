// What a server may send to hurt its caller.
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <xercesc/framework/MemBufInputSource.hpp>

#include "xml_fixture.h"

namespace qv {
namespace {

// A file with text in a directory of its own, and a watch that sees whoever opens it.
class WatchedFile {
 public:
  WatchedFile() {
    directory_ = mkdtemp(pattern_);
    path_ = directory_ + "/secret.txt";
    std::ofstream(path_) << "<!ENTITY secret 'stolen'>stolen";
    watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_ACCESS);
  }
  ~WatchedFile() {
    close(watch_);
    unlink(path_.c_str());
    rmdir(directory_.c_str());
  }
  WatchedFile(const WatchedFile&) = delete;
  WatchedFile& operator=(const WatchedFile&) = delete;

  std::u16string Path() const { return {path_.begin(), path_.end()}; }
  // True if the file was opened since the last question.
  bool WasOpened() const {
    char events[4096];
    return read(watch_, events, sizeof events) > 0;
  }
  void Open() const { close(open(path_.c_str(), O_RDONLY | O_CLOEXEC)); }

 private:
  char pattern_[32] = "/tmp/qv_xml_test_XXXXXX";
  std::string directory_;
  std::string path_;
  int watch_ = -1;
};

// A socket on loopback that sees whoever connects.
class WatchedPort {
 public:
  WatchedPort() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address_;
    const int bound = bind(socket_, reinterpret_cast<sockaddr*>(&address_), length);
    EXPECT_EQ(bound, 0);
    EXPECT_EQ(listen(socket_, 8), 0);
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &length);
  }
  ~WatchedPort() { close(socket_); }
  WatchedPort(const WatchedPort&) = delete;
  WatchedPort& operator=(const WatchedPort&) = delete;

  std::u16string Url() const {
    const std::string url = "http://127.0.0.1:" + std::to_string(ntohs(address_.sin_port)) + "/x.dtd";
    return {url.begin(), url.end()};
  }
  bool WasCalled() const {
    pollfd waiting{socket_, POLLIN, 0};
    return poll(&waiting, 1, 50) > 0;
  }
  void Call() const {
    const int caller = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(caller, reinterpret_cast<const sockaddr*>(&address_), sizeof address_), 0);
    close(caller);
  }

 private:
  int socket_;
  sockaddr_in address_{};
};

class HostileTextTest : public XmlFixture {};

// The ways in which a document can point outside.
std::u16string Outside(int way, const std::u16string& url) {
  switch (way) {
    case 0:
      return u"<!DOCTYPE a SYSTEM '" + url + u"'><a/>";
    case 1:
      return u"<!DOCTYPE a PUBLIC 'p' '" + url + u"'><a/>";
    case 2:
      return u"<!DOCTYPE a [<!ENTITY x SYSTEM '" + url + u"'>]><a>&x;</a>";
    case 3:
      return u"<!DOCTYPE a [<!ENTITY % x SYSTEM '" + url + u"'> %x;]><a/>";
    case 4:
      return u"<!DOCTYPE a SYSTEM '" + url + u"' [<!ENTITY y 'z'>]><a>&y;</a>";
    default:
      return u"<!DOCTYPE a [<!ENTITY x SYSTEM '" + url + u"'><!ENTITY y '&x;'>]><a>&y;</a>";
  }
}
constexpr int kWaysOutside = 6;

TEST_F(HostileTextTest, FilesAreNeverOpened) {
  const WatchedFile file;
  file.Open();
  ASSERT_TRUE(file.WasOpened()) << "the watch does not see an open";
  for (int way = 0; way < kWaysOutside; ++way) {
    for (const std::u16string& url : {file.Path(), u"file://" + file.Path()}) {
      const Refusal refusal = RefusalOf(Outside(way, url));
      EXPECT_TRUE(refusal.thrown) << way;
      EXPECT_EQ(refusal.systemId, u"application/xml") << way;
      EXPECT_EQ(refusal.line, 1U) << way;
      EXPECT_FALSE(file.WasOpened()) << way;
    }
  }
}

TEST_F(HostileTextTest, ConnectionsAreNeverMade) {
  const WatchedPort called;
  called.Call();
  ASSERT_TRUE(called.WasCalled()) << "the port does not see a caller";
  const WatchedPort port;
  for (int way = 0; way < kWaysOutside; ++way) {
    EXPECT_TRUE(RefusalOf(Outside(way, port.Url())).thrown) << way;
    EXPECT_FALSE(port.WasCalled()) << way;
  }
}

TEST_F(HostileTextTest, SchemaHintsAndInclusionsAreOnlyAttributesAndElements) {
  const WatchedFile file;
  const XmlNode root =
      Root(u"<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='u " + file.Path() +
           u"' xsi:noNamespaceSchemaLocation='" + file.Path() +
           u"'><xi:include xmlns:xi='http://www.w3.org/2001/XInclude' parse='text' href='" + file.Path() +
           u"'/></a>");
  EXPECT_EQ(root.FirstChild().Name(), u"xi:include");
  EXPECT_TRUE(root.FirstChild().FirstChild().IsNull());
  EXPECT_FALSE(file.WasOpened());
}

TEST_F(HostileTextTest, SixtyFourExpansionsAreRead) {
  const XmlNode root = Root(u"<!DOCTYPE a [<!ENTITY e 'x'>]><a>" + Repeat(u"&e;", 64) + u"</a>");
  int references = 0;
  for (XmlNode child = root.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
    EXPECT_EQ(child.FirstChild().Value(), u"x");
    ++references;
  }
  EXPECT_EQ(references, 64);
}

TEST_F(HostileTextTest, SixtyFifthExpansionIsRefusedAtItsPlace) {
  const Refusal refusal = RefusalOf(u"<!DOCTYPE a [<!ENTITY e 'x'>]>\n<a>" + Repeat(u"&e;", 65) + u"</a>");
  EXPECT_TRUE(refusal.thrown);
  EXPECT_EQ(refusal.systemId, u"application/xml");
  EXPECT_EQ(refusal.line, 2U);
  EXPECT_EQ(refusal.column, 199U);  // behind "<a>" and 65 references of 3
}

TEST_F(HostileTextTest, ExpansionsInAttributesCountToo) {
  EXPECT_FALSE(RefusalOf(u"<!DOCTYPE a [<!ENTITY e 'x'>]><a b='" + Repeat(u"&e;", 64) + u"'/>").thrown);
  EXPECT_TRUE(RefusalOf(u"<!DOCTYPE a [<!ENTITY e 'x'>]><a b='" + Repeat(u"&e;", 65) + u"'/>").thrown);
}

TEST_F(HostileTextTest, CharacterReferencesAndPredefinedNamesDoNotCount) {
  const XmlNode root =
      Root(u"<a b='" + Repeat(u"&lt;&#65;", 1000) + u"'>" + Repeat(u"&amp;&#x42;", 1000) + u"</a>");
  EXPECT_EQ(root.Attribute(u"b").Value(), Repeat(u"<A", 1000));
  EXPECT_EQ(GetNodeText(root), Repeat(u"&B", 1000));
}

TEST_F(HostileTextTest, BillionLaughsAreRefused) {
  std::u16string text = u"<!DOCTYPE a [<!ENTITY l0 'lol'>";
  for (char16_t level = u'1'; level <= u'9'; ++level) {
    const std::u16string below = std::u16string(u"&l") + static_cast<char16_t>(level - 1) + u";";
    text += std::u16string(u"<!ENTITY l") + level + u" '" + Repeat(below, 10) + u"'>";
  }
  EXPECT_TRUE(RefusalOf(text + u"]><a>&l9;</a>").thrown);
  EXPECT_TRUE(RefusalOf(text + u"]><a b='&l9;'/>").thrown);
}

TEST_F(HostileTextTest, BillionLaughsOfParameterEntitiesAreRefused) {
  std::u16string text = u"<!DOCTYPE a [<!ENTITY % l0 '<!--lol-->'>";
  for (char16_t level = u'1'; level <= u'9'; ++level) {
    const std::u16string below = std::u16string(u"&#37;l") + static_cast<char16_t>(level - 1) + u";";
    text += std::u16string(u"<!ENTITY % l") + level + u" '" + Repeat(below, 10) + u"'>";
  }
  EXPECT_TRUE(RefusalOf(text + u"%l9;]><a/>").thrown);
}

TEST_F(HostileTextTest, SomeParameterEntitiesAreRead) {
  const XmlNode root =
      Root(u"<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'> %p; " + Repeat(u"%p; ", 30) + u"]><a>&e;</a>");
  EXPECT_EQ(root.FirstChild().FirstChild().Value(), u"x");
}

TEST_F(HostileTextTest, EntityThatHoldsItselfIsRefused) {
  EXPECT_TRUE(RefusalOf(u"<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>").thrown);
  EXPECT_TRUE(RefusalOf(u"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a b='&e;'/>").thrown);
  EXPECT_TRUE(RefusalOf(u"<!DOCTYPE a [<!ENTITY % p '&#37;p;'> %p;]><a/>").thrown);
}

// 80 kB that would grow to gigabytes.
TEST_F(HostileTextTest, QuadraticBlowUpIsRefused) {
  const std::u16string text = u"<!DOCTYPE a [<!ENTITY e '" + Repeat(u"x", 40000) + u"'>]><a>";
  EXPECT_TRUE(RefusalOf(text + Repeat(u"&e;", 13000) + u"</a>").thrown);
}

TEST_F(HostileTextTest, DeepDocumentIsReadAndReleased) {
  constexpr int kDepth = 100000;
  XmlNode node = Root(Repeat(u"<a>", kDepth) + Repeat(u"</a>", kDepth));
  int depth = 0;
  for (; !node.IsNull(); node = node.FirstChild()) ++depth;
  EXPECT_EQ(depth, kDepth);
}

TEST_F(HostileTextTest, MillionLevelsEndInAnAnswerNotInACrash) {
  const std::u16string text = Repeat(u"<a>", 1000000);
  EXPECT_TRUE(RefusalOf(text).thrown);
  const Refusal closed = RefusalOf(text + Repeat(u"</a>", 1000000));
  EXPECT_TRUE(closed.thrown);
  EXPECT_EQ(closed.message, u"The document needs more memory than it may have.");
}

TEST_F(HostileTextTest, MemoryCeilingIsAParseErrorAtThePlaceReached) {
  const std::u16string text = u"<a>\n" + Repeat(u"<b/>", 200000) + u"</a>";
  EXPECT_FALSE(RefusalOf(text).thrown);
  const Refusal refusal = RefusalOf(text, 4 << 20);
  EXPECT_TRUE(refusal.thrown);
  EXPECT_EQ(refusal.systemId, u"application/xml");
  EXPECT_EQ(refusal.line, 2U);
  EXPECT_GT(refusal.column, 1000U);
  EXPECT_EQ(refusal.message, u"The document needs more memory than it may have.");
}

TEST_F(HostileTextTest, MemoryCeilingGrowsWithTheText) {
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(0), 67108864U);
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(1000000), 131108864U);
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(100000000), 2147483648U);
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(134217728), 2147483648U);
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(1000000000), 16000000000U);
  EXPECT_EQ(QvDomParser::MemoryCeilingFor(static_cast<std::size_t>(-1)), 18446744073709551600U);
}

// Memory that runs out at any point whatsoever is a refusal, and parser and document can still be destroyed.
TEST_F(HostileTextTest, MemoryMayRunOutAnywhere) {
  std::u16string nested;  // entities inside each other, deeper than the library's first room for them
  for (char16_t name = u'B'; name < u'V'; ++name) {
    nested += std::u16string(u"<!ENTITY ") + name + u" '&" + static_cast<char16_t>(name - 1) + u";'>";
  }
  const std::u16string text =
      u"<?xml version='1.0'?><!DOCTYPE a [<!ENTITY A 'inmost'>" + nested +
      u"<!ELEMENT a ANY><!ATTLIST a d CDATA 'v'><!NOTATION n SYSTEM 's'>"
      u"<!ENTITY % p '<!ENTITY e \"x&#38;f;<b/>\">'>%p;<!ENTITY f 'y'>]><!--c--><a k='&f;" +
      Repeat(u"v", 300) + u"'>t&e;&U;<![CDATA[d]]><?p d?>" + Repeat(u"<c f='g'>h</c>", 300) +
      Repeat(u"long", 5000) + Repeat(u"<i>", 100) + Repeat(u"</i>", 100) + u"</a>";
  ASSERT_FALSE(RefusalOf(text).thrown);
  int refused = 0;
  std::size_t memory = 0;
  for (; RefusalOf(text, memory).thrown; memory += 512) ++refused;
  EXPECT_GT(refused, 500);
  EXPECT_FALSE(RefusalOf(text, memory + 1000000).thrown);
}

TEST_F(HostileTextTest, TooManyElementNamesAreRefused) {
  const auto names = [](int count) {
    std::u16string text = u"<r>";
    for (int i = 1; i < count; ++i) {
      const std::string number = std::to_string(i);
      text += u"<n" + std::u16string(number.begin(), number.end()) + u"/>";
    }
    return text + u"</r>";
  };
  EXPECT_FALSE(RefusalOf(names(16384)).thrown);
  EXPECT_EQ(RefusalOf(names(16385)).message, u"The document has too many different elements.");
}

TEST_F(HostileTextTest, TooManyAttributesOfAnElementAreRefused) {
  const auto attributes = [](int count) {
    std::u16string text = u"<r";
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(i);
      text += u" n" + std::u16string(number.begin(), number.end()) + u"=''";
    }
    return text + u"/>";
  };
  EXPECT_FALSE(RefusalOf(attributes(4096)).thrown);
  EXPECT_EQ(RefusalOf(attributes(4097)).message, u"The element has too many attributes.");
}

TEST_F(HostileTextTest, TooManyDeclarationsAreRefused) {
  const auto declarations = [](int count) {
    return u"<!DOCTYPE r [" + Repeat(u"<!ENTITY e 'x'>", count) + u"]><r/>";
  };
  EXPECT_FALSE(RefusalOf(declarations(4096)).thrown);
  EXPECT_EQ(RefusalOf(declarations(4097)).message, u"The document has too many declarations.");
}

// Attribute names are not kept in the library's table of names, which would take minutes here.
TEST_F(HostileTextTest, ManyAttributeNamesAreReadInLinearTime) {
  std::u16string text = u"<r>";
  for (int i = 0; i < 300000; ++i) {
    const std::string number = std::to_string(i);
    text += u"<n a" + std::u16string(number.begin(), number.end()) + u"='1'/>";
  }
  EXPECT_EQ(Root(text + u"</r>").LastChild().Attribute(u"a299999").Value(), u"1");
}

// A document that the host trusts is parsed by the operation of the base class, without these limits.
TEST_F(HostileTextTest, LimitsAreForHostileTextOnly) {
  std::string bytes = "<!DOCTYPE a [<!ENTITY e 'x'>]><a>";
  for (int i = 0; i < 65; ++i) bytes += "&e;";
  bytes += "</a>";
  QvDomParser parser;
  parser.parse(XERCES_CPP_NAMESPACE::MemBufInputSource(reinterpret_cast<const XMLByte*>(bytes.data()),
                                                       bytes.size(), "x", false));
  EXPECT_EQ(parser.Document().LastChild().LastChild().FirstChild().Value(), u"x");
}

}  // namespace
}  // namespace qv
