// Where a fault says that the script failed.
#include "face/exchange/fault_place.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

std::string FaultWith(const std::string& source) {
  return "<soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;description&gt;d&lt;/"
         "description&gt;&lt;source&gt;" +
         source + "&lt;/source&gt;&lt;/ErrorObject&gt;</faultstring></soap:Fault>";
}

std::string Place(const std::string& answer, const std::string& description) {
  const FaultPlace place = PlaceOfFault(answer, description);
  return std::to_string(place.line) + ":" + std::to_string(place.column);
}

TEST(FaultPlace, IsThatOfTheSource) {
  EXPECT_EQ(Place(FaultWith("script, line 12"), "oops"), "12:0");
  EXPECT_EQ(Place(FaultWith("a &amp;lt;script&amp;gt;, line 3, column 45"), "oops (line 7)"), "3:45");
}

TEST(FaultPlace, ElseThatAtTheEndOfTheMessage) {
  EXPECT_EQ(Place("", "Can't find variable: foo (line 4)"), "4:0");
  EXPECT_EQ(Place(FaultWith("script"), "oops (line 4, column 2)"), "4:2");
}

TEST(FaultPlace, ElseUnknown) {
  for (const char* description : {"", "line 4", "see line 4 (or not)", "(line )", "(line -)",
                                  "oops (line 4) more", "(outline 4x", "(line 99999999999)"})
    EXPECT_EQ(Place(FaultWith("script"), description), "0:0") << description;
  EXPECT_EQ(Place("<faultstring>no end", "oops"), "0:0");
}

}  // namespace
}  // namespace scriptwells
