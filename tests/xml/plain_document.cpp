#include "plain_document.h"

namespace qv {
namespace {

using Piece = const char16_t*;

constexpr Piece kDeclarations[] = {u"<?xml version=\"1.0\" encoding=\"utf-8\"?>", u"<?xml version='1.0'?>\n",
                                   u"<?xml version = '1.0'  encoding= 'x-Y.z_1'  ?>",
                                   u"<?xml version='1.0' standalone=\"yes\"?>",
                                   u"<?xml version='1.0' encoding='UTF-16' standalone='no' ?>\n\n"};
constexpr Piece kRareDeclarations[] = {u"<?xml version='1.1'?>",
                                       u"<?xml version='1.0' encoding=''?>",
                                       u"<?xml version='1.0' encoding='8859'?>",
                                       u"<?xml version='1.0'encoding='a'?>",
                                       u"<?xml version='1.0' standalone='maybe'?>",
                                       u"<?xml version='1.0' standalone='no' encoding='a'?>",
                                       u"<?xml\tversion='1.0'\n?>",
                                       u"<?xml encoding='a'?>",
                                       u"<?xml version='1.0' ?",
                                       u"<?xml version='1.0\" ?>",
                                       u"<?xml-a?>",
                                       u"\uFEFF",
                                       u" <?xml version='1.0'?>",
                                       u"<?xml ?>",
                                       u"<?p?>",
                                       u"<!---->",
                                       u"<!DOCTYPE a>",
                                       u"x"};
constexpr Piece kNames[] = {u"a", u"b", u"a", u"ab", u"row", u"q1:Record", u"soap:Envelope", u"_x", u"n-1.2"};
constexpr Piece kRareNames[] = {u"A",     u"a:",      u"a:b:c",  u":a",      u":",       u"1a",
                                u"-a",    u".a",      u"\u00E9", u"a\u00E9", u"a\u00B7", u"xml",
                                u"xmlns", u"x\u0300", u"",       u"a\u2028", u"a;b"};
constexpr Piece kAttributes[] = {u"k", u"xsi:type", u"xmlns:a", u"m", u"id", u"z", u"a"};
constexpr Piece kSpaces[] = {u" ", u" ", u" ", u" ", u"\n", u"\t", u"  ", u" \n\t"};
constexpr Piece kTexts[] = {u"x",
                            u"text",
                            u"12.5",
                            u" ",
                            u"\n",
                            u"\t ",
                            u"]",
                            u"] ]>",
                            u">",
                            u"\"'",
                            u"&amp;",
                            u"&lt;",
                            u"&gt;",
                            u"&quot;",
                            u"&apos;",
                            u"&#65;",
                            u"&#x20aC;",
                            u"&#10;",
                            u"&#13;",
                            u"&#x1F600;",
                            u"&#9;",
                            u"\u00FC\u4E2D",
                            u"\u2028",
                            u"\u0085",
                            u"\u007F",
                            u"\U0001F600",
                            u"\uFFFD",
                            u"&#93;",
                            u"=",
                            u"/",
                            u"?",
                            u"!",
                            u";",
                            u"&#x10FFFF;",
                            u"a/>b",
                            u"\uFEFF",
                            u"&#0000000065;",
                            u"&#xFFFD;",
                            u"&#x3c;b&#62;",
                            u"--",
                            u"\u00A0"};
constexpr Piece kRareTexts[] = {u"]]>",        u"]]",
                                u"]&#93;>",    u"\r\n",
                                u"\r",         u"\x01",
                                u"\uFFFE",     u"\uFFFF",
                                u"&",          u"&;",
                                u"&lt",        u"&LT;",
                                u"&#;",        u"&#x;",
                                u"&#X41;",     u"&#0;",
                                u"&#1;",       u"&#xD800;",
                                u"&#xDFFF;",   u"&#xFFFE;",
                                u"&#x110000;", u"&#99999999999;",
                                u"&# 65;",     u"&nobody;",
                                u"<",          u"</",
                                u"<!",         u"<?p d?>",
                                u"<!--c-->",   u"<![CDATA[d]]>",
                                u"\x7F\x1F",   u"&#31;",
                                u"&#x1FFFE;",  u"&amp ;",
                                u"& amp;"};

std::u16string LoneHalves(std::uint32_t which) {
  const char16_t halves[] = {0xD83D, 0xDE00, u'x', 0xD83D, 0xDE00, 0xDE00, 0xD83D, u'y'};
  return {halves + which, which % 3 + 1};
}

}  // namespace

// xorshift64*: the library's engines are many times slower.
std::uint32_t PlainDocuments::Below(std::uint32_t bound) {
  state_ ^= state_ >> 12;
  state_ ^= state_ << 25;
  state_ ^= state_ >> 27;
  const auto drawn = static_cast<std::uint32_t>((state_ * 0x2545F4914F6CDD1DU) >> 32);
  return static_cast<std::uint32_t>((std::uint64_t{drawn} * bound) >> 32);
}

const std::u16string& PlainDocuments::Next() {
  out_.clear();
  if (OneIn(3)) out_ += OneIn(6) ? Any(kRareDeclarations) : Any(kDeclarations);
  if (OneIn(12)) out_ += Any(kSpaces);
  Element(3);
  if (OneIn(12)) out_ += Any(kSpaces);
  if (OneIn(40)) Text();
  if (OneIn(60)) Element(0);
  if (OneIn(3)) Spoil();
  return out_;
}

void PlainDocuments::Element(unsigned depth) {
  const Piece name = OneIn(100) ? Any(kRareNames) : Any(kNames);
  out_ += u'<';
  out_ += name;
  if (OneIn(3)) Attributes();
  if (OneIn(15)) out_ += Any(kSpaces);
  if (OneIn(4)) {
    out_ += u"/>";
    return;
  }
  out_ += u'>';
  Content(depth);
  out_ += u"</";
  out_ += name;
  if (OneIn(15)) out_ += Any(kSpaces);
  out_ += u'>';
}

// A name may come twice.
void PlainDocuments::Attributes() {
  const std::uint32_t count = 1 + Below(3);
  std::uint32_t which = Below(7);
  for (std::uint32_t i = 0; i < count; ++i, which += OneIn(50) ? 0 : 1) {
    const char16_t quote = OneIn(2) ? u'\'' : u'"';
    if (!OneIn(200)) out_ += Any(kSpaces);
    out_ += OneIn(100) ? Any(kRareNames) : kAttributes[which % 7];
    if (OneIn(15)) out_ += Any(kSpaces);
    out_ += u'=';
    if (OneIn(15)) out_ += Any(kSpaces);
    out_ += quote;
    for (std::uint32_t pieces = Below(4); pieces != 0; --pieces) {
      const Piece piece = OneIn(300) ? Any(kRareTexts) : Any(kTexts);
      for (Piece unit = piece; *unit != 0; ++unit)
        out_ += *unit != quote && *unit != u'\n' && *unit != u'\t' ? *unit : OneIn(20) ? *unit : u'_';
    }
    out_ += quote;
  }
}

void PlainDocuments::Content(unsigned depth) {
  for (std::uint32_t count = Below(4); count != 0; --count) {
    if (depth != 0 && OneIn(2)) {
      Element(depth - 1);
    } else {
      Text();
    }
  }
}

void PlainDocuments::Text() {
  for (std::uint32_t count = 1 + Below(3); count != 0; --count) {
    if (OneIn(300)) {
      out_ += LoneHalves(Below(6));
    } else {
      out_ += OneIn(150) ? Any(kRareTexts) : Any(kTexts);
    }
  }
}

char16_t PlainDocuments::AnyUnit() {
  constexpr char16_t kMarks[] = u"<>&;/='\"]?!-: \n\t\rxa0#\u00E9";
  if (!OneIn(20)) return kMarks[Below(sizeof kMarks / sizeof kMarks[0] - 1)];
  return static_cast<char16_t>(Below(OneIn(2) ? 0x80 : 0x10000));
}

// One change somewhere.
void PlainDocuments::Spoil() {
  const std::uint32_t place = Below(static_cast<std::uint32_t>(out_.size()));
  switch (Below(5)) {
    case 0:
      out_.resize(place);
      break;
    case 1:
      out_.erase(place, 1 + Below(3));
      break;
    case 2:
      out_.insert(place, out_, Below(static_cast<std::uint32_t>(out_.size())), 1 + Below(8));
      break;
    case 3:
      out_[place] = AnyUnit();
      break;
    default:
      out_.insert(place, 1, AnyUnit());
  }
}

}  // namespace qv
