// Documents by chance, whole and broken, read in each of our ways and by the XML library's own parser: the
// same refusals and the same trees. QV_RANDOM_DOCUMENTS sets how many documents each slice compares.
#include <cstdlib>
#include <string>

#include <xercesc/dom/DOMException.hpp>

#include "needs_plain_scanner.h"
#include "plain_document.h"
#include "random_document.h"
#include "stock_parser.h"
#include "tree_comparison.h"
#include "xml/answer_document.h"
#include "xml/parse_memory.h"
#include "xml/plain_scanner.h"
#include "xml_fixture.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr std::uint32_t kSlices = 10;

std::uint32_t DocumentsOfSlice(std::uint32_t usual) {
  const char* const wanted = std::getenv("QV_RANDOM_DOCUMENTS");
  return wanted == nullptr ? usual : static_cast<std::uint32_t>(std::stoul(wanted));
}

// How reading ended; empty for a document that was read.
template <class Read>
std::string EndOf(const Read& read) {
  try {
    read();
  } catch (const xc::SAXParseException& error) {
    return std::to_string(error.getLineNumber()) + ":" + std::to_string(error.getColumnNumber()) + " " +
           ToUtf8(error.getMessage()) + " in " + ToUtf8(error.getSystemId());
  } catch (const xc::DOMException&) {
    return "cannot be built";
  }
  return {};
}

class DocumentRandomTest : public XmlFixture, public ::testing::WithParamInterface<std::uint32_t> {
 protected:
  void Compare(std::u16string_view text) {
    XmlNode theirs;
    const std::string theirEnd = EndOf([&] { theirs = stock_.Parse(text); });
    QvDomParser parser;
    AnswerDocument document;
    const std::string parserEnd = EndOf([&] { parser.ParseHostileText(text, "application/xml"); });
    const std::string documentEnd = EndOf([&] { document.ReadText(text, "application/xml"); });
    EXPECT_EQ(parserEnd, documentEnd);
    ++count_;
    if (theirEnd.empty() && parserEnd.empty()) {
      EXPECT_EQ(DifferenceBetween(parser.Document(), theirs), "");
      EXPECT_EQ(DifferenceBetween(document.Document(), theirs), "");
      return;
    }
    ++refused_;
    if (theirEnd == "cannot be built") return;  // our parser has its own message for that
    EXPECT_EQ(parserEnd, theirEnd);
  }

  StockParser stock_;
  std::uint32_t count_ = 0;
  std::uint32_t refused_ = 0;
};

TEST_P(DocumentRandomTest, DocumentsAndRefusalsAreTheLibrarysOwn) {
  const std::uint32_t wanted = DocumentsOfSlice(3000);
  Random random(GetParam() + 1);
  while (count_ < wanted && !HasFailure()) {
    const std::string whole = RandomDocument(&random);
    const std::string bytes = random.OneIn(4) ? Damaged(whole, &random) : whole;
    SCOPED_TRACE("document " + std::to_string(count_) + ":\n" + bytes.substr(0, 4000));
    Compare(FromUtf8(bytes).view());
  }
  // Both kinds of documents must really have been met.
  EXPECT_GT(refused_, wanted / 6);
  EXPECT_LT(refused_, wanted / 2);
}

TEST_P(DocumentRandomTest, PlainDocumentsInEachWay) {
  const std::uint32_t wanted = DocumentsOfSlice(1000);
  PlainDocuments documents(GetParam() + 1);
  while (count_ < wanted && !HasFailure()) {
    const std::u16string& text = documents.Next();
    SCOPED_TRACE("document " + std::to_string(count_) + ":\n" + Shown(WideString(text)));
    Compare(text);
  }
}

// What the scanner accepts the library accepts, and reads the same from it. What it does not accept is the
// library's anyway, so there is nothing to compare.
TEST_P(DocumentRandomTest, ScannerReadsWhatTheLibraryReads) {
  NEEDS_PLAIN_SCANNER();
  const std::uint32_t wanted = DocumentsOfSlice(20000);
  PlainDocuments documents(GetParam() + 1000);
  ParseMemory memory;
  CompactTree tree(memory);
  std::uint32_t plain = 0;
  for (; count_ < wanted && !HasFailure(); ++count_) {
    const std::u16string& text = documents.Next();
    tree.Forget();
    memory.GiveAllBack();
    tree.Start(text, CompactTree::CeilingFor(text.size()));
    if (!ScanPlainDocument(text, tree)) continue;
    ++plain;
    XmlNode theirs;
    const std::string end = EndOf([&] { theirs = stock_.Parse(text); });
    if (end.empty() && DifferenceBetween(XmlNode(tree, 0), theirs).empty()) continue;
    ADD_FAILURE() << "document " << count_ << ": " << Shown(WideString(text)) << "\n"
                  << end << DifferenceBetween(XmlNode(tree, 0), theirs);
  }
  EXPECT_GT(plain, wanted / 4);
  RecordProperty("documents", static_cast<int>(count_));
  RecordProperty("plain", static_cast<int>(plain));
}

INSTANTIATE_TEST_SUITE_P(Slices, DocumentRandomTest, ::testing::Range(0U, kSlices));

}  // namespace
}  // namespace qv
