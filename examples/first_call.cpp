// A first program: runs scripts, reads a table, uploads a file and downloads another. It reads report.pdf and
// writes into results/, in the current directory.
//   first_call http://127.0.0.1:8080
#include <iostream>

#include <scriptwells/scriptwells.h>

namespace {

void MakeFirstCalls(const std::string& server) {
  scriptwells::Session session(server, {"joe", "secret"});
  int sum = session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}}).As<int>();  // 42
  std::cout << sum << "\n";

  for (const auto& row : session.Run("[{city: 'Rome', people: 2748109}]").AsTable())
    std::cout << row["city"].As<std::string>() << " " << row["people"].As<int>() << "\n";

  session.Run("parameters.doc.size", {{"doc", scriptwells::File{"report.pdf"}}});
  session.Download(session.Run("publish('out.txt', 'text')").As<std::string>(), "results");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    MakeFirstCalls(argc > 1 ? argv[1] : "http://127.0.0.1:8080");
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
