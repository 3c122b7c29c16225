// Links in answers, which arrive as objects without link and caption, and as parameters, which are refused.
#include "value_test.h"

namespace qv {
namespace {

constexpr char kNotBuilt[] = "0x80020009 Cannot build a url object.";
constexpr char kRefused[] = "0x80020009 Cannot create the xml document.";
constexpr char16_t kLink[] = u"typed.url('http://quorvane.example/')";

class Urls : public ValueTest {
 protected:
  // "link|caption|text"
  static std::string PartsOf(const IUrlPtr& url) {
    if (url == nullptr) return "no url";
    WideString link;
    WideString caption;
    WideString text;
    EXPECT_EQ(url->get_Url(&link), S_OK);
    EXPECT_EQ(url->get_UrlCaption(&caption), S_OK);
    EXPECT_EQ(url->ToString(&text), S_OK);
    return ToUtf8(link) + "|" + ToUtf8(caption) + "|" + ToUtf8(text);
  }
};

// No link is parsed on its way in, so one that is none is an object too.
TEST_F(Urls, AnswerIsAnObjectWithoutLinkAndCaption) {
  for (const char16_t* script : {u"typed.url('http://quorvane.example/', 'Quorvane')",
                                 u"typed.url({url: 'http://quorvane.example/a?b&c', caption: '<&>'})", kLink,
                                 u"typed.url('', '')", u"typed.url('no link at all', '')"})
    EXPECT_EQ(PartsOf(ObjectIn<IUrl>(Answer(script))), "||");
  EXPECT_EQ(PartsOf(ObjectIn<IUrl>(OddAnswer("url-no-caption"))), "||");
}

TEST_F(Urls, AnswerIsNoDurationAndHasOneReference) {
  const Variant answer = Answer(kLink);
  EXPECT_EQ(As<IDuration>(answer.Object()), nullptr);
  ExpectOnlyReference(answer);
}

TEST_F(Urls, AnswerWithoutLinkOrMarksIsNotBuiltAndOneWithoutTextIsEmpty) {
  ExpectOdd({{"url-empty-parts", kNotBuilt}, {"url-no-marks", kNotBuilt}, {"url-nothing", "VT_EMPTY"}});
}

TEST_F(Urls, ObjectOutlivesTheModelThatAnsweredIt) {
  const IUrlPtr url = ObjectIn<IUrl>(Answer(kLink));
  EndEverything();
  ASSERT_NE(url, nullptr);
  EXPECT_EQ(PartsOf(url), "||");
  EXPECT_EQ(url->put_Url(u"http://quorvane.example/a"), S_OK);
  EXPECT_EQ(url->put_UrlCaption(u"A"), S_OK);
  EXPECT_EQ(PartsOf(url), "http://quorvane.example/a|A|http://quorvane.example/a");
}

TEST_F(Urls, ParameterIsRefusedBeforeAnythingIsSent) {
  const IUrlPtr url = CreateUrl();
  ExpectRefused(Variant::FromObject(url.get()), kRefused);
  ASSERT_EQ(url->put_Url(u"http://quorvane.example/a"), S_OK);
  ExpectRefused(Variant::FromObject(url.get()), kRefused);
  ExpectRefused(Answer(kLink), kRefused);
}

}  // namespace
}  // namespace qv
