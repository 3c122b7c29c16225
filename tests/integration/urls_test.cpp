// Links in answers, which arrive as objects without link and caption, and as parameters, which are refused.
#include "value_test.h"

namespace qv {
namespace {

constexpr char kNotBuilt[] = "0x80020009 Cannot build a url object.";
constexpr char kRefused[] = "0x80020009 Cannot create the xml document.";

IUrlPtr UrlIn(const Variant& value) {
  EXPECT_EQ(value.Tag(), VT_UNKNOWN) << ShownValue(value);
  return As<IUrl>(value.Object());
}

// "link|caption|text"
std::string PartsOf(IUrl* url) {
  if (url == nullptr) return "no url";
  WideString link, caption, text;
  EXPECT_EQ(url->get_Url(&link), S_OK);
  EXPECT_EQ(url->get_UrlCaption(&caption), S_OK);
  EXPECT_EQ(url->ToString(&text), S_OK);
  return ToUtf8(link) + "|" + ToUtf8(caption) + "|" + ToUtf8(text);
}
std::string PartsOf(const Variant& value) {
  return PartsOf(UrlIn(value).get());
}

class Urls : public ValueTest {};

TEST_F(Urls, AnswerIsAnObjectWithoutLinkAndCaption) {
  EXPECT_EQ(PartsOf(Answer(u"typed.url('http://quorvane.example/', 'Quorvane')")), "||");
  EXPECT_EQ(PartsOf(Answer(u"typed.url({url: 'http://quorvane.example/a?b&c', caption: '<&>'})")), "||");
  EXPECT_EQ(PartsOf(Answer(u"typed.url('http://quorvane.example/')")), "||");
  EXPECT_EQ(PartsOf(Answer(u"typed.url('', '')")), "||");
}

// No link is parsed on its way in.
TEST_F(Urls, LinkThatIsNoneIsAnObjectAllTheSame) {
  EXPECT_EQ(PartsOf(Answer(u"typed.url('no link at all', '')")), "||");
}

TEST_F(Urls, AnswerIsNoDuration) {
  const Variant answer = Answer(u"typed.url('http://quorvane.example/')");
  EXPECT_EQ(As<IDuration>(answer.Object()), nullptr);
}

TEST_F(Urls, AnswerHoldsTheOnlyReference) {
  const Variant answer = Answer(u"typed.url('http://quorvane.example/')");
  ASSERT_EQ(answer.Tag(), VT_UNKNOWN);
  EXPECT_EQ(answer.Object()->AddRef(), 2u);
  EXPECT_EQ(answer.Object()->Release(), 1u);
}

TEST_F(Urls, AnswerWithoutCaptionIsAnObject) {
  EXPECT_EQ(PartsOf(OddAnswer("url-no-caption")), "||");
}

TEST_F(Urls, AnswerWithoutLinkIsNotBuilt) {
  EXPECT_EQ(OddOutcome("url-empty-parts"), kNotBuilt);
}

TEST_F(Urls, AnswerWithoutMarksIsNotBuilt) {
  EXPECT_EQ(OddOutcome("url-no-marks"), kNotBuilt);
}

TEST_F(Urls, AnswerWithoutTextIsEmpty) {
  EXPECT_EQ(OddOutcome("url-nothing"), "VT_EMPTY");
}

TEST_F(Urls, ObjectOutlivesTheModelThatAnsweredIt) {
  const IUrlPtr url = UrlIn(Answer(u"typed.url('http://quorvane.example/')"));
  model_.reset();
  CloseKeptConnections();
  service_->Stop();
  ASSERT_NE(url, nullptr);
  EXPECT_EQ(PartsOf(url.get()), "||");
  EXPECT_EQ(url->put_Url(u"http://quorvane.example/a"), S_OK);
  EXPECT_EQ(url->put_UrlCaption(u"A"), S_OK);
  EXPECT_EQ(PartsOf(url.get()), "http://quorvane.example/a|A|http://quorvane.example/a");
}

TEST_F(Urls, ParameterIsRefusedBeforeAnythingIsSent) {
  const IUrlPtr url = CreateUrl();
  ExpectRefused(Variant::FromObject(url.get()), kRefused);
  ASSERT_EQ(url->put_Url(u"http://quorvane.example/a"), S_OK);
  ExpectRefused(Variant::FromObject(url.get()), kRefused);
}

TEST_F(Urls, AnswerIsRefusedAsAParameter) {
  ExpectRefused(Answer(u"typed.url('http://quorvane.example/')"), kRefused);
}

}  // namespace
}  // namespace qv
