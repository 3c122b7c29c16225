// Records a session on a tape, and plays it without the server.
//   guide_tapes http://127.0.0.1:8080
#include <filesystem>
#include <iostream>

#include <scriptwells/scriptwells.h>

namespace {

void Record(const std::string& server) {
  scriptwells::Options options;
  options.record = "sum.tape";
  scriptwells::Session session(server, {"joe", "secret"}, options);
  std::cout << session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}}) << "\n";
}

void Play() {
  scriptwells::Options options;
  options.replay = "sum.tape";
  scriptwells::Session session("http://no.server", {"joe"}, options);
  std::cout << session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}}) << "\n";
  session.Run("parameters.a - parameters.b");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::filesystem::remove("sum.tape");
    Record(argc > 1 ? argv[1] : "http://127.0.0.1:8080");
    Play();
    return 1;
  } catch (const scriptwells::Error& error) {
    std::cout << "not on the tape: " << ToString(error.phase()) << "\n";
    return 0;
  }
}
