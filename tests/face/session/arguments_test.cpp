// Arguments of every form and type, as the script sees them.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "face/session/refusal.h"
#include "face/session/session_fixture.h"

namespace scriptwells {
namespace {

using test::RefusalOf;
using test::SessionTest;

TEST_F(SessionTest, TakesArgumentsOfEveryForm) {
  Session session = Open();
  const auto joined = [&](const Arguments& arguments) {
    return session.Run("Object.keys(parameters).map(k => k + '=' + parameters[k]).join()", arguments)
        .As<std::string>();
  };
  EXPECT_EQ(joined({{"a", "1"}}), "a=1");
  EXPECT_EQ(joined({{"a", "1"}, {"b", "2"}}), "a=1,b=2");
  EXPECT_EQ(joined(Arguments().Add("x", 1).Add("y", "text")), "x=1,y=text");
  EXPECT_EQ(joined(std::map<std::string, int>{{"m", 1}, {"n", 2}}), "m=1,n=2");
  EXPECT_EQ(joined(std::map<std::string, Value>{{"m", 1.5}, {"n", true}}), "m=1.5,n=true");
  EXPECT_EQ(joined({}), "");
}

TEST_F(SessionTest, SendsEveryTypeAsItIs) {
  Session session = Open();
  const Arguments arguments = {{"b", true},
                               {"byte", Byte(-5)},
                               {"s", short{7}},
                               {"i", -3},
                               {"l", 5'000'000'000L},
                               {"u", 4'000'000'000U},
                               {"f", 0.5F},
                               {"d", 2.25},
                               {"t", std::string_view("Grüße <&>")},
                               {"date", Date{2024, 3, 5}},
                               {"time", Time{10, 15, 30, 0}},
                               {"when", DateTime{{2024, 3, 5}, {10, 15, 30, 0}}},
                               {"span", Duration::Parse("P1DT2H")}};
  EXPECT_EQ(session
                .Run("[parameters.b, parameters.byte, parameters.s, parameters.i, parameters.l, parameters.u,"
                     " parameters.f, parameters.d, parameters.t].join('|')",
                     arguments)
                .As<std::string>(),
            "true|-5|7|-3|5000000000|4000000000|0.5|2.25|Grüße <&>");
  EXPECT_EQ(session.Run("parameters.date", arguments).As<Date>(), (Date{2024, 3, 5}));
  EXPECT_EQ(session.Run("typed.time(parameters.time)", arguments).As<Time>(), (Time{10, 15, 30, 0}));
  EXPECT_EQ(session.Run("parameters.when", arguments).As<DateTime>(),
            (DateTime{{2024, 3, 5}, {10, 15, 30, 0}}));
  EXPECT_EQ(session.Run("parameters.span", arguments).As<Duration>(), Duration::Parse("P1DT2H"));
}

TEST_F(SessionTest, RefusesArgumentsBeforeAnythingIsSent) {
  Session session = Open();
  const auto refused = [&](const Arguments& arguments) {
    return RefusalOf(Phase::kConversion, [&] { session.Run("1", arguments); });
  };
  EXPECT_EQ(refused({{"a", 1}, {"a", 2}}), "argument 'a' is given twice");
  EXPECT_EQ(refused({{"", 1}}), "the name of an argument is empty");
  EXPECT_EQ(refused({{"\xFF", 1}}), "the name of an argument is not valid UTF-8");
  EXPECT_EQ(refused({{"a", Table()}}).rfind("argument 'a': a table cannot be sent", 0), 0U);
  EXPECT_EQ(refused({{"a", Link{"http://x/", ""}}}).rfind("argument 'a': a URL cannot be sent", 0), 0U);
  EXPECT_EQ(refused({{"a", Value()}}).rfind("argument 'a': ", 0), 0U);
  Arguments many;
  for (int i = 0; i <= 32767; ++i) many.Add("a" + std::to_string(i), i);
  EXPECT_EQ(refused(many), "more than 32767 arguments");
  EXPECT_EQ(Seen("Execute"), 0);
}

TEST_F(SessionTest, StrictRefusesWhatSendingWouldChange) {
  Options options;
  options.strict = true;
  Session session = Open(options);
  const auto refused = [&](const Arguments& arguments) {
    return RefusalOf(Phase::kConversion, [&] { session.Run("1", arguments); });
  };
  EXPECT_EQ(refused({{"pi", 3.14159265}}), "argument 'pi' travels with 6 significant digits");
  EXPECT_EQ(refused({{"when", DateTime{{2024, 3, 5}, {}}}}), "argument 'when' travels as date");
  EXPECT_EQ(refused({{"t", "\xF0\x9F\x98\x80"}}).rfind("argument 't' holds U+1F600", 0), 0U);
  EXPECT_EQ(session.Run("1", {{"pi", 3.14}}).As<int>(), 1);
  RunOptions loose;
  loose.strict = false;
  EXPECT_EQ(session.Run("1", {{"pi", 3.14159265}}, loose).As<int>(), 1);
}

TEST_F(SessionTest, StrictRefusesAnswersThatDoNotArrive) {
  Options options;
  options.strict = true;
  Session session = Open(options);
  for (const char* script : {"typed.long(5)", "typed.byte(5)"})
    EXPECT_THROW(session.Run(script), ConversionError) << script;
  EXPECT_EQ(session.Run("typed.int(5)").As<int>(), 5);
}

}  // namespace
}  // namespace scriptwells
