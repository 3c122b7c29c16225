// The faster builder against the library's own on documents by chance, whole and broken: the same reports,
// the same exceptions, the same trees, also those that an error left unfinished. QV_RANDOM_DOCUMENTS sets how
// many documents each slice compares.
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
#include "random_document.h"
#include "tree_comparison.h"
#include "xml/tree_builder.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

constexpr std::uint32_t kSlices = 10;
constexpr std::uint32_t kDocumentsOfSlice = 3000;
constexpr std::uint32_t kDocumentsOfParser = 4;

std::string Described(const char* kind, const xc::SAXParseException& report) {
  return std::string(kind) + " " + std::to_string(report.getLineNumber()) + ":" +
         std::to_string(report.getColumnNumber()) + " " + ToUtf8(report.getMessage()) + " in " +
         ToUtf8(report.getSystemId());
}

// Writes down everything that is reported. A strict one throws at errors.
class Recorder : public xc::ErrorHandler {
 public:
  explicit Recorder(bool isStrict) : isStrict_(isStrict) {}
  void warning(const xc::SAXParseException& report) override {
    reports_.push_back(Described("warning", report));
  }
  void error(const xc::SAXParseException& report) override { Take("error", report); }
  void fatalError(const xc::SAXParseException& report) override { Take("fatal", report); }
  void resetErrors() override {}
  void Note(const std::string& what) { reports_.push_back(what); }
  std::vector<std::string> TakeReports() { return std::move(reports_); }

 private:
  void Take(const char* kind, const xc::SAXParseException& report) {
    reports_.push_back(Described(kind, report));
    if (isStrict_) throw xc::SAXParseException(report);
  }

  const bool isStrict_;
  std::vector<std::string> reports_;
};

// Settings by chance, the same for all parsers. True when errors are to be thrown.
bool Configure(Random* random, std::initializer_list<xc::XercesDOMParser*> parsers) {
  const std::uint32_t validation = random->Below(8);
  // A document that is not valid is often not valid at its root.
  const bool isStrict = validation != 0 && !random->OneIn(4);
  const bool namespaces = random->OneIn(3);
  const bool schema = random->OneIn(16);
  const bool schemaInfo = random->OneIn(16);
  const bool entityNodes = !random->OneIn(3);
  const bool comments = !random->OneIn(4);
  const bool ignorableBlanks = !random->OneIn(4);
  const bool goesOnAfterFatal = random->OneIn(4);
  const bool inclusion = random->OneIn(16);
  for (xc::XercesDOMParser* parser : parsers) {
    parser->setDoNamespaces(namespaces || schema);
    parser->setDoSchema(schema);
    parser->setCreateSchemaInfo(schemaInfo);
    parser->setCreateEntityReferenceNodes(entityNodes);
    parser->setCreateCommentNodes(comments);
    parser->setIncludeIgnorableWhitespace(ignorableBlanks);
    parser->setExitOnFirstFatalError(!goesOnAfterFatal);
    parser->setDoXInclude(inclusion);
    parser->setValidationScheme(validation == 0   ? xc::XercesDOMParser::Val_Always
                                : validation == 1 ? xc::XercesDOMParser::Val_Auto
                                                  : xc::XercesDOMParser::Val_Never);
    parser->setLoadExternalDTD(false);
    parser->setDisableDefaultEntityResolution(true);
  }
  return isStrict;
}

// A parser with what it reported.
class Side {
 public:
  Side(xc::XercesDOMParser* parser, bool isStrict) : parser_(*parser), recorder_(isStrict) {
    parser->setErrorHandler(&recorder_);
  }

  std::vector<std::string> Parse(const std::string& text) {
    const xc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "chance",
                                       false);
    try {
      parser_.parse(source);
    } catch (const xc::SAXParseException& error) {
      recorder_.Note(Described("thrown", error));
    } catch (const xc::DOMException& error) {
      recorder_.Note("thrown code " + std::to_string(error.code));
    } catch (const xc::XMLException& error) {
      recorder_.Note("thrown " + ToUtf8(error.getMessage()) + " " + std::to_string(error.getCode()));
    }
    return recorder_.TakeReports();
  }

  const xc::DOMDocument* Document() { return parser_.getDocument(); }

 private:
  xc::XercesDOMParser& parser_;
  Recorder recorder_;
};

std::uint32_t DocumentsOfSlice() {
  const char* const wanted = std::getenv("QV_RANDOM_DOCUMENTS");
  return wanted == nullptr ? kDocumentsOfSlice : static_cast<std::uint32_t>(std::atoi(wanted));
}

class TreeBuilderRandomTest : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  // Few documents with the same two parsers, so that the remains of one document meet the next.
  void CompareGroup(std::uint32_t seed) {
    Random random(seed);
    TreeBuilder builder;
    xc::XercesDOMParser library;
    const bool isStrict = Configure(&random, {&builder, &library});
    Side ours(&builder, isStrict);
    Side theirs(&library, isStrict);
    for (std::uint32_t i = 0; i < kDocumentsOfParser && !HasFailure(); ++i) {
      const bool isDamaged = random.OneIn(4);
      const std::string whole = RandomDocument(&random);
      const std::string text = isDamaged ? Damaged(whole, &random) : whole;
      SCOPED_TRACE("seed " + std::to_string(seed) + ", document " + std::to_string(i) + ":\n" +
                   text.substr(0, 4000));
      Compare(&ours, &theirs, text, isDamaged);
    }
  }

  void Compare(Side* ours, Side* theirs, const std::string& text, bool isDamaged) {
    const std::vector<std::string> reports = ours->Parse(text);
    EXPECT_EQ(reports, theirs->Parse(text));
    EXPECT_EQ(DifferenceBetween(ours->Document(), theirs->Document()), "");
    ++count_;
    damaged_ += isDamaged ? 1U : 0U;
    const bool isRefused = !reports.empty() && reports.back().find("fatal") == 0;
    refused_ += isRefused || (!reports.empty() && reports.back().find("thrown") == 0) ? 1U : 0U;
  }

  XmlLibraryHold library_;
  std::uint32_t count_ = 0;
  std::uint32_t damaged_ = 0;
  std::uint32_t refused_ = 0;
};

TEST_P(TreeBuilderRandomTest, DocumentsAndReportsAreTheLibrarysOwn) {
  const std::uint32_t firstSeed = GetParam() * 1'000'000;
  const std::uint32_t wanted = DocumentsOfSlice();
  for (std::uint32_t seed = firstSeed; count_ < wanted && !HasFailure(); ++seed) CompareGroup(seed);
  // Both kinds of documents must really have been met.
  EXPECT_GT(damaged_, wanted / 5);
  EXPECT_GT(refused_, wanted / 5);
  EXPECT_LT(refused_, wanted / 3);
  RecordProperty("documents", static_cast<int>(count_));
  RecordProperty("refused", static_cast<int>(refused_));
}

INSTANTIATE_TEST_SUITE_P(Slices, TreeBuilderRandomTest, ::testing::Range(0U, kSlices));

}  // namespace
}  // namespace qv
