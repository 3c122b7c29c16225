// A program that includes nothing but the C++ library.
#include <scriptwells/scriptwells.h>

#include <iostream>

int main() {
  try {
    scriptwells::Session session("http://127.0.0.1:1", {"joe", "secret"});
  } catch (const scriptwells::ConnectionError& error) {
    std::cout << scriptwells::Version() << " " << ToString(error.phase()) << "\n";
  }
}
