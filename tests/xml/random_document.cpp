#include "random_document.h"

#include <cstddef>
#include <vector>

namespace qv {
namespace {

using Pieces = std::vector<const char*>;

// Prefixes of the namespaces that every outermost element declares.
const Pieces kNames = {
    "a", "b", "c", "row", "cell", "p:a", "p:b", "q:row", "_x", "n-1.2", "\xC3\xA9t\xC3\xA9"};
const Pieces kAttributeNames = {"k",      "m",        "z",   "p:k", "q:type",   "id",
                                "_given", "xml:lang", "n-1", "d",   "\xC3\xB6", "xml:space"};
const Pieces kAttributeValues = {"",          "1",         "two words",  " edges ",        "&lt;&amp;",
                                 "&#65;b",    "a\nb\tc",   "&#10;&#x9;", "\xE2\x82\xAC 5", "\xF0\x9F\x98\x80",
                                 "it&apos;s", "&quot;&gt;"};
const Pieces kTexts = {
    "text",        "12345",        "2024-03-05T10:15:30.0Z", "&amp;",      "a&lt;b&gt;c",   "&#65;&#x42;",
    "caf\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",       "two\nlines", "\r\nreturns\r", "]] >",
    "&#xD;",       "\"quoted' "};
const Pieces kBlanks = {" ", "\n", "\n  ", "\t", "\r\n", "   \n\n"};
const Pieces kBeside = {"<!--said-->", "<!---->",     "<!-- - -->", "<?p?>",
                        "<?p data?>",  "<?q a='b'?>", "<?q ? >?>"};
const Pieces kData = {"<![CDATA[]]>", "<![CDATA[<raw>&]]>", "<![CDATA[x]]><![CDATA[y]]>", "<![CDATA[ ]]>"};
const Pieces kTextReferences = {"&t;", "&u;", "&n;"};
const Pieces kReferences = {"&t;", "&u;", "&n;", "&e;", "&f;", "&g;", "&empty;"};
const Pieces kDeclarations = {"",
                              "",
                              "",
                              "<?xml version='1.0'?>",
                              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
                              "<?xml version='1.0' standalone='yes' ?>",
                              "<?xml version='1.0' encoding='utf-8' standalone='no'?>",
                              "<?xml version='1.1'?>"};
// Each is optional.
const Pieces kSubset = {"<!ELEMENT a (b|c|row)*>",
                        "<!ELEMENT b EMPTY>",
                        "<!ELEMENT c ANY>",
                        "<!ELEMENT row (cell+)>",
                        "<!ELEMENT cell (#PCDATA)>",
                        "<!ATTLIST a d CDATA 'given' id ID #IMPLIED>",
                        "<!ATTLIST b k (1|2) '1' z NMTOKENS #IMPLIED>",
                        "<!ATTLIST row m CDATA #FIXED 'fixed' p:k CDATA 'x y'>",
                        "<!ATTLIST cell id ID #IMPLIED n-1 IDREF #IMPLIED z CDATA #REQUIRED>",
                        "<!ATTLIST c xml:space (default|preserve) 'preserve'>",
                        "<!NOTATION gif PUBLIC '-//gif'><!ENTITY picture SYSTEM 'p.gif' NDATA gif>",
                        "<!NOTATION jpg SYSTEM 'jpg'>",
                        "<!ENTITY far SYSTEM 'far.ent'>",
                        "<!ENTITY % inside '<!ELEMENT q:row ANY>'> %inside;",
                        "<!--declared-->",
                        "<?p in the subset?>",
                        "\n  "};
// These are in every subset, since contents refer to them.
const char kEntities[] =
    "<!ENTITY t 'text'><!ENTITY u '&#233;&t;'><!ENTITY n '[&t;&u;]'><!ENTITY empty ''>"
    "<!ENTITY e '<b k=\"v\">in</b>tail'><!ENTITY f '<row><cell>&t;</cell></row>&e;'>"
    "<!ENTITY g '<!--c--><a><c/><![CDATA[d]]>&n;</a>'>";

class Writer {
 public:
  explicit Writer(Random* random) : random_(*random), hasSubset_(random->OneIn(3)) {}

  std::string Document() {
    out_ += Any(kDeclarations);
    Beside();
    if (hasSubset_) DocumentType();
    Beside();
    Element(Below(6), " xmlns:p='urn:p' xmlns:q=\"urn:q\"");
    Beside();
    return out_;
  }

 private:
  std::uint32_t Below(std::uint32_t bound) { return random_.Below(bound); }
  const char* Any(const Pieces& pieces) { return pieces[Below(static_cast<std::uint32_t>(pieces.size()))]; }

  void Beside() {
    while (random_.OneIn(3)) out_ += Any(random_.OneIn(2) ? kBlanks : kBeside);
  }

  void DocumentType() {
    out_ += std::string("<!DOCTYPE ") + Any(kNames);
    if (random_.OneIn(20)) out_ += " SYSTEM 'nowhere.dtd'";
    out_ += " [";
    for (const char* piece : kSubset)
      if (random_.OneIn(3)) out_ += piece;
    out_ += kEntities;
    out_ += "]>";
  }

  void Element(std::uint32_t depth, const char* declarations) {
    const std::string name = Any(kNames);
    out_ += "<" + name + declarations;
    Attributes();
    if (random_.OneIn(6)) {
      out_ += "/>";
      return;
    }
    out_ += ">";
    Content(depth);
    out_ += "</" + name + (random_.OneIn(10) ? " >" : ">");
  }

  void Attributes() {
    const std::uint32_t step = 1 + Below(6);
    for (std::size_t i = Below(12); i < kAttributeNames.size(); i += step) Attribute(kAttributeNames[i]);
    if (!random_.OneIn(60)) return;
    const std::uint32_t many = 20 + Below(300);
    for (std::uint32_t i = 0; i < many; ++i) Attribute("m" + std::to_string((i * 7919) % 1009));
  }

  void Attribute(const std::string& name) {
    const char* const quote = random_.OneIn(2) ? "'" : "\"";
    const bool refers = hasSubset_ && random_.OneIn(5);
    const std::string value =
        name == "xml:space" ? "preserve" : Any(refers ? kTextReferences : kAttributeValues);
    out_ += Any(kBlanks) + name + (random_.OneIn(9) ? " = " : "=") + quote + value + quote;
  }

  void Content(std::uint32_t depth) {
    if (random_.OneIn(5)) return Rows();
    if (random_.OneIn(150)) return Deep();
    const std::uint32_t count = Below(5);
    for (std::uint32_t i = 0; i < count; ++i) Piece(depth);
  }

  void Piece(std::uint32_t depth) {
    switch (Below(8)) {
      case 0:
        out_ += Any(kBlanks);
        break;
      case 1:
        out_ += Any(kBeside);
        break;
      case 2:
        out_ += Any(kData);
        break;
      case 3:
        out_ += Any(hasSubset_ ? kReferences : kTexts);
        break;
      case 4:
        Text();
        break;
      default:
        if (depth != 0) Element(depth - 1, "");
    }
  }

  // Few are longer than the library's read buffer.
  void Text() {
    const std::uint32_t count = random_.OneIn(200) ? 4000 : 1 + Below(3);
    for (std::uint32_t i = 0; i < count; ++i) out_ += Any(kTexts);
  }

  // The shape of an answer with a table.
  void Rows() {
    const std::uint32_t rows = Below(4);
    const std::uint32_t cells = Below(4);
    for (std::uint32_t i = 0; i < rows; ++i) {
      out_ += "<row>";
      for (std::uint32_t j = 0; j < cells; ++j)
        out_ += random_.OneIn(4) ? "<cell/>" : std::string("<cell>") + Any(kTexts) + "</cell>";
      out_ += "</row>";
    }
  }

  void Deep() {
    const std::uint32_t levels = 50 + Below(1500);
    for (std::uint32_t i = 0; i < levels; ++i) out_ += i % 3 == 0 ? "<c>x" : "<c>";
    for (std::uint32_t i = 0; i < levels; ++i) out_ += i % 5 == 0 ? "</c>y" : "</c>";
  }

  Random& random_;
  const bool hasSubset_;
  std::string out_;
};

const std::vector<std::string> kFaults = {"<",
                                          "&",
                                          "</c>",
                                          "</",
                                          "<!",
                                          "<b k='1' k='2'/>",
                                          "<b k=1/>",
                                          "&nobody;",
                                          "&#0;",
                                          "&#xFFFF;",
                                          std::string("\x01"),
                                          "\xFF",
                                          "\xC3",
                                          "<c>",
                                          "]]>",
                                          "<!-- a -- b -->",
                                          "<?xml version='1.0'?>",
                                          "<![CDATA[",
                                          "<b></c>",
                                          "<nobody:b/>",
                                          "<b <c/>",
                                          "<1/>",
                                          "&far;",
                                          "<b k='<'/>"};

std::size_t PlaceIn(const std::string& document, Random* random) {
  return random->Below(static_cast<std::uint32_t>(document.size()));
}

// After the next ">" from a random position, where contents are likely.
std::size_t PlaceBehindTag(const std::string& document, Random* random) {
  const std::size_t end = document.find('>', PlaceIn(document, random));
  return end == std::string::npos ? document.size() : end + 1;
}

}  // namespace

std::string RandomDocument(Random* random) {
  return Writer(random).Document();
}

std::string Damaged(const std::string& document, Random* random) {
  std::string damaged = document;
  switch (random->Below(6)) {
    case 0:
      damaged.resize(PlaceIn(document, random));
      break;
    case 1:
      damaged.erase(PlaceIn(document, random), 1 + random->Below(8));
      break;
    case 2:
      damaged[PlaceIn(document, random)] = "<>&'\"/!?=x"[random->Below(10)];
      break;
    default:
      damaged.insert(PlaceBehindTag(document, random),
                     kFaults[random->Below(static_cast<std::uint32_t>(kFaults.size()))]);
  }
  return damaged;
}

}  // namespace qv
