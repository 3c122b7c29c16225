// Opens sessions with options, hands one to another program, and sees what passes.
//   guide_sessions http://127.0.0.1:8080
#include <iostream>

#include <scriptwells/scriptwells.h>

namespace {

void RunOneScript(const std::string& server) {
  scriptwells::Session session(server, {"joe", "secret"});
  scriptwells::Value sum = session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}});
  std::cout << sum << "\n";
}

void SetOptions(const std::string& server) {
  scriptwells::Options options;
  options.silenceTimeout = std::chrono::minutes(5);
  options.strict = true;
  scriptwells::Session session(server, {"joe", "secret"}, options);

  scriptwells::RunOptions once;
  once.totalTimeout = std::chrono::seconds(20);
  session.Run("6 * 7", {}, once);
}

void PassOn(const std::string& server) {
  scriptwells::Session first(server, {"joe", "secret"});
  const std::string id = first.Release();

  scriptwells::Session second = scriptwells::Session::Adopt(server, id);
  std::cout << second.Run("'still open'") << "\n";
  second.Close();
}

void Listen(const std::string& server) {
  scriptwells::Options options;
  options.listener = [](const scriptwells::Exchange& exchange) {
    std::cout << ToString(exchange.purpose) << " " << exchange.status << "\n";
  };
  scriptwells::Session session(server, {"joe", "secret"}, options);
  session.Run("6 * 7");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string server = argc > 1 ? argv[1] : "http://127.0.0.1:8080";
    RunOneScript(server);
    SetOptions(server);
    PassOn(server);
    Listen(server);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
