// How to test a program that runs scripts: against a development service of the test's own. Link
// QvScriptwells::testing; the program `scriptwells` has to be installed.
#include <cstdlib>
#include <iostream>
#include <string>

#include "scriptwells/scriptwells.h"
#include "scriptwells/testing.h"

namespace {

// The function to be tested: how many customers a city has, or -1 if the server does not know the city.
int CustomersIn(const std::string& city, scriptwells::Session& session) {
  try {
    return session.Run("({Rome: 3, Oslo: 1})[parameters.city]", {{"city", city}}).As<int>();
  } catch (const scriptwells::ScriptError& error) {
    if (error.number() == 404U) return -1;
    throw;
  }
}

void Expect(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "failed: " << what << "\n";
  std::exit(1);
}

void TestAnswer(scriptwells::DevelopmentService& service) {
  scriptwells::Session session = service.Connect();
  Expect(CustomersIn("Rome", session) == 3, "the number comes from the script");
  Expect(service.Requests().back().body.find("Rome") != std::string::npos, "the city is sent as a parameter");
}

void TestUnknownCity(scriptwells::DevelopmentService& service) {
  scriptwells::Session session = service.Connect();
  scriptwells::OrderedFault unknown;
  unknown.number = 404;
  unknown.text = "no such city";
  service.Order(unknown);
  Expect(CustomersIn("Atlantis", session) == -1, "an unknown city is no failure");
}

void TestBrokenConnection(scriptwells::DevelopmentService& service) {
  scriptwells::Session session = service.Connect();
  scriptwells::OrderedFault cut;
  cut.kind = scriptwells::OrderedFault::Kind::kCutAnswer;
  service.Order(cut);
  const auto before = service.Counts()["Execute"];
  try {
    CustomersIn("Rome", session);
    Expect(false, "a broken answer is reported");
  } catch (const scriptwells::ConnectionError&) {
    Expect(service.Counts()["Execute"] == before + 1, "a script is not run twice");
  }
}

}  // namespace

int main() {
  try {
    scriptwells::DevelopmentService service;
    TestAnswer(service);
    TestUnknownCity(service);
    TestBrokenConnection(service);
    std::cout << "all tests passed\n";
    return 0;
  } catch (const scriptwells::Error& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
