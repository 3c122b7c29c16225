// Runs scripts at the same time, one after the other without waiting, and cancels one.
//   guide_threads http://127.0.0.1:8080
#include <iostream>
#include <thread>
#include <vector>

#include <scriptwells/scriptwells.h>

namespace {

int Square(const std::string& server, int number) {
  scriptwells::Session session(server, {"joe", "secret"});
  return session.Run("parameters.n * parameters.n", {{"n", number}}).As<int>();
}

void UseThreads(const std::string& server) {
  std::vector<std::future<int>> squares;
  for (int number = 1; number <= 3; ++number)
    squares.push_back(std::async(std::launch::async, Square, server, number));
  for (std::future<int>& square : squares) std::cout << square.get() << "\n";
}

void RunLater(const std::string& server) {
  scriptwells::Options options;
  options.executor = scriptwells::ThreadPool(2);
  scriptwells::Session session(server, {"joe", "secret"}, options);
  std::future<scriptwells::Value> first = session.RunAsync("6 * 7");
  std::future<scriptwells::Value> second = session.RunAsync("'after it'");
  std::cout << first.get() << " " << second.get() << "\n";
}

void CancelCall(const std::string& server) {
  scriptwells::CancelToken token;
  scriptwells::Options options;
  options.cancel = token;
  scriptwells::Session session(server, {"joe", "secret"}, options);
  std::thread other([token]() mutable { token.Cancel(); });
  try {
    session.Run("for (;;) ;");
  } catch (const scriptwells::CancelledError&) {
    std::cout << "cancelled\n";
  }
  other.join();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string server = argc > 1 ? argv[1] : "http://127.0.0.1:8080";
    UseThreads(server);
    RunLater(server);
    CancelCall(server);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
