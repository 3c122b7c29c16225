// What a server may send to hurt its caller.
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <xercesc/framework/MemBufInputSource.hpp>

#include "fixtures/temporary_directory.h"
#include "qvscriptwells/wide_string.h"
#include "xml_fixture.h"

namespace qv {
namespace {

// A file with text, and a watch that sees whoever opens it.
class WatchedFile {
 public:
  WatchedFile() { inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_ACCESS); }
  ~WatchedFile() { close(watch_); }
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
  const TemporaryDirectory directory_;
  const std::string path_ = directory_.Write("secret.txt", "<!ENTITY secret 'stolen'>stolen");
  const int watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
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

constexpr char16_t kTooMuchMemory[] = u"The document needs more memory than it may have.";

class HostileTextTest : public XmlFixture {};

// The ways in which a document can point outside.
std::vector<std::u16string> Outside(const std::u16string& url) {
  return {u"<!DOCTYPE a SYSTEM '" + url + u"'><a/>",
          u"<!DOCTYPE a PUBLIC 'p' '" + url + u"'><a/>",
          u"<!DOCTYPE a [<!ENTITY x SYSTEM '" + url + u"'>]><a>&x;</a>",
          u"<!DOCTYPE a [<!ENTITY % x SYSTEM '" + url + u"'> %x;]><a/>",
          u"<!DOCTYPE a SYSTEM '" + url + u"' [<!ENTITY y 'z'>]><a>&y;</a>",
          u"<!DOCTYPE a [<!ENTITY x SYSTEM '" + url + u"'><!ENTITY y '&x;'>]><a>&y;</a>"};
}

// A document with one entity "e" and this after its document type.
std::u16string WithEntity(const std::u16string& value, const std::u16string& rest) {
  return u"<!DOCTYPE a [<!ENTITY e '" + value + u"'>]>" + rest;
}

TEST_F(HostileTextTest, FilesAreNeverOpened) {
  const WatchedFile file;
  file.Open();
  ASSERT_TRUE(file.WasOpened()) << "the watch does not see an open";
  for (const std::u16string& url : {file.Path(), u"file://" + file.Path()}) {
    for (const std::u16string& text : Outside(url)) {
      const Refusal refusal = RefusalOf(text);
      EXPECT_TRUE(refusal.thrown) << Start(text);
      EXPECT_EQ(refusal.systemId, u"application/xml") << Start(text);
      EXPECT_EQ(refusal.line, 1U) << Start(text);
      EXPECT_FALSE(file.WasOpened()) << Start(text);
    }
  }
}

TEST_F(HostileTextTest, ConnectionsAreNeverMade) {
  const WatchedPort called;
  called.Call();
  ASSERT_TRUE(called.WasCalled()) << "the port does not see a caller";
  const WatchedPort port;
  for (const std::u16string& text : Outside(port.Url())) {
    ExpectRefused(text);
    EXPECT_FALSE(port.WasCalled()) << Start(text);
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

TEST_F(HostileTextTest, SixtyFourExpansionsAreReadAndOneMoreIsRefusedAtItsPlace) {
  const XmlNode root = Root(WithEntity(u"x", u"<a>" + Repeat(u"&e;", 64) + u"</a>"));
  int references = 0;
  for (XmlNode child = root.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
    EXPECT_EQ(child.FirstChild().Value(), u"x");
    ++references;
  }
  EXPECT_EQ(references, 64);
  // The column is after "<a>" and 65 references of 3.
  ExpectRefusedAt(WithEntity(u"x", u"\n<a>" + Repeat(u"&e;", 65) + u"</a>"), 2, 199);
  ExpectRead(WithEntity(u"x", u"<a b='" + Repeat(u"&e;", 64) + u"'/>"));
  ExpectRefused(WithEntity(u"x", u"<a b='" + Repeat(u"&e;", 65) + u"'/>"));
}

TEST_F(HostileTextTest, CharacterReferencesAndPredefinedNamesDoNotCount) {
  const XmlNode root =
      Root(u"<a b='" + Repeat(u"&lt;&#65;", 1000) + u"'>" + Repeat(u"&amp;&#x42;", 1000) + u"</a>");
  EXPECT_EQ(root.Attribute(u"b").Value(), Repeat(u"<A", 1000));
  EXPECT_EQ(GetNodeText(root), Repeat(u"&B", 1000));
}

// Nine levels of entities, each ten times the one below it.
std::u16string BillionLaughs(const std::u16string& mark, const std::u16string& reference,
                             const std::u16string& laugh) {
  std::u16string text = u"<!DOCTYPE a [<!ENTITY " + mark + u"l0 '" + laugh + u"'>";
  for (char16_t level = u'1'; level <= u'9'; ++level) {
    text += u"<!ENTITY " + mark + u"l" + level + u" '";
    for (int i = 0; i < 10; ++i) text += reference + u"l" + static_cast<char16_t>(level - 1) + u";";
    text += u"'>";
  }
  return text;
}

TEST_F(HostileTextTest, BillionLaughsAreRefused) {
  for (const char16_t* rest : {u"]><a>&l9;</a>", u"]><a b='&l9;'/>"})
    ExpectRefused(BillionLaughs(u"", u"&", u"lol") + rest);
  ExpectRefused(BillionLaughs(u"% ", u"&#37;", u"<!--lol-->") + u"%l9;]><a/>");
}

TEST_F(HostileTextTest, SomeParameterEntitiesAreRead) {
  const XmlNode root =
      Root(u"<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'> %p; " + Repeat(u"%p; ", 30) + u"]><a>&e;</a>");
  EXPECT_EQ(root.FirstChild().FirstChild().Value(), u"x");
}

// The last one is 80 kB that would grow to gigabytes.
TEST_F(HostileTextTest, EntityThatHoldsItselfOrBlowsUpIsRefused) {
  ExpectRefused(WithEntity(u"&e;", u"<a>&e;</a>"));
  ExpectRefused(u"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a b='&e;'/>");
  ExpectRefused(u"<!DOCTYPE a [<!ENTITY % p '&#37;p;'> %p;]><a/>");
  ExpectRefused(WithEntity(Repeat(u"x", 40000), u"<a>" + Repeat(u"&e;", 13000) + u"</a>"));
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
  ExpectRefused(text);
  ExpectRead(text + Repeat(u"</a>", 1000000));
  ExpectMessage(u"<!DOCTYPE a>" + text + Repeat(u"</a>", 1000000), kTooMuchMemory);
}

TEST_F(HostileTextTest, MemoryCeilingIsAParseErrorAtThePlaceReached) {
  const std::u16string text = u"<a>\n" + Repeat(u"<b/>", 200000) + u"</a>";
  EXPECT_FALSE(RefusalOf(text).thrown);
  const Refusal refusal = RefusalOf(text, 4 << 20);
  EXPECT_TRUE(refusal.thrown);
  EXPECT_EQ(refusal.systemId, u"application/xml");
  EXPECT_EQ(refusal.line, 2U);
  EXPECT_GT(refusal.column, 1000U);
  EXPECT_EQ(refusal.message, kTooMuchMemory);
}

TEST_F(HostileTextTest, MemoryCeilingGrowsWithTheText) {
  const std::pair<std::size_t, std::size_t> rows[] = {
      {0, 67108864},           {1000000, 131108864},      {100000000, 2147483648},
      {134217728, 2147483648}, {1000000000, 16000000000}, {SIZE_MAX, 18446744073709551600U}};
  for (const auto& [units, bytes] : rows) EXPECT_EQ(QvDomParser::MemoryCeilingFor(units), bytes) << units;
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

TEST_F(HostileTextTest, TooManyNamesAttributesOrDeclarationsAreRefused) {
  const auto names = [](int count) { return u"<r>" + Numbered(u"<n", count - 1, u"/>") + u"</r>"; };
  const auto attributes = [](int count) { return u"<r" + Numbered(u" n", count, u"=''") + u"/>"; };
  const auto declarations = [](int count) {
    return u"<!DOCTYPE r [" + Repeat(u"<!ENTITY e 'x'>", count) + u"]><r/>";
  };
  ExpectRead(names(16384));
  ExpectMessage(names(16385), u"The document has too many different elements.");
  ExpectRead(attributes(4096));
  ExpectMessage(attributes(4097), u"The element has too many attributes.");
  ExpectRead(declarations(4096));
  ExpectMessage(declarations(4097), u"The document has too many declarations.");
}

// Attribute names are not kept in the library's table of names, which would take minutes here.
TEST_F(HostileTextTest, ManyAttributeNamesAreReadInLinearTime) {
  const std::u16string text = u"<r>" + Numbered(u"<n a", 300000, u"='1'/>") + u"</r>";
  for (const char16_t* type : {u"", u"<!DOCTYPE r>"})
    EXPECT_EQ(Root(type + text).LastChild().Attribute(u"a299999").Value(), u"1");
}

// A document that the host trusts is parsed by the operation of the base class, without these limits.
TEST_F(HostileTextTest, LimitsAreForHostileTextOnly) {
  const std::string bytes = ToUtf8(WithEntity(u"x", u"<a>" + Repeat(u"&e;", 65) + u"</a>"));
  QvDomParser parser;
  parser.parse(XERCES_CPP_NAMESPACE::MemBufInputSource(reinterpret_cast<const XMLByte*>(bytes.data()),
                                                       bytes.size(), "x", false));
  EXPECT_EQ(parser.Document().LastChild().LastChild().FirstChild().Value(), u"x");
}

}  // namespace
}  // namespace qv
