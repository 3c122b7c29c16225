// A test of a program's own, against the installed service.
#include <scriptwells/testing.h>

#include <iostream>

int main() {
  scriptwells::DevelopmentService service;
  scriptwells::Session session = service.Connect();
  std::cout << session.Run("6 * 7") << " " << service.Counts()["Execute"] << "\n";
}
